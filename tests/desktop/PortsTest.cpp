#include "Support.h"
#include "core/Errors.h"
#include "core/controls/Menu.h"
#include "desktop/QtClock.h"
#include "desktop/QtPictures.h"
#include "desktop/QtProcess.h"

#include <QBuffer>
#include <QDateTime>
#include <QFileDialog>
#include <QInputDialog>
#include <QMenu>
#include <QTest>

namespace tidewell::test {

namespace {

TTime LocalTime(int hour, int minute, int second) {
    const QDateTime local(QDate(2026, 3, 2), QTime(hour, minute, second));
    return TTime(std::chrono::milliseconds(local.toMSecsSinceEpoch()));
}

} // namespace

TEST(QtClock, WritesTimesAsTheLocaleDoes) {
    struct TCase {
        const char* Locale;
        const char* Date;
        const char* Short;
        const char* Long;
    };
    const TTime time = LocalTime(8, 5, 9);
    for (const TCase& expected :
         {TCase{"C", "2026-03-02", "08:05", "08:05:09"}, TCase{"de_DE", "02.03.26", "08:05", "08:05:09"},
          TCase{"da_DK", "02.03.2026", "08.05", "08.05.09"},
          TCase{"en_US", "3/2/26", "8:05 AM", "8:05:09 AM"}}) {
        const TQtClock clock{QLocale(QString::fromLatin1(expected.Locale))};
        EXPECT_EQ(clock.ShortDate(time), expected.Date) << expected.Locale;
        EXPECT_EQ(clock.ShortTime(time), expected.Short) << expected.Locale;
        EXPECT_EQ(clock.LongTime(time), expected.Long) << expected.Locale;
    }
    const TQtClock system;
    EXPECT_EQ(system.HourMinute(time), (std::pair{8, 5}));
    EXPECT_EQ(system.Midnight(time), LocalTime(0, 0, 0));
    EXPECT_FALSE(system.ShortDate(time).empty());
}

TEST(QtWait, SleepDeliversNoTickAndProcessMessagesDoes) {
    TTestDesk desk;
    const auto timer = desk.Timers.CreateTimer();
    int ticks = 0;
    timer->SetInterval(10);
    timer->SetHandler([&] { ++ticks; });
    timer->SetEnabled(true);
    QElapsedTimer elapsed;
    elapsed.start();
    desk.Wait.Sleep(80);
    EXPECT_GE(elapsed.elapsed(), 80);
    EXPECT_EQ(ticks, 0);
    desk.Wait.Sleep(5); // the tick that is due waits for the event loop
    EXPECT_EQ(ticks, 0);
    desk.Wait.ProcessMessages();
    EXPECT_GE(ticks, 1);
    EXPECT_LE(ticks, 3); // eight were missed, and are not made up for

    desk.Wait.Sleep(30);
    timer->SetEnabled(false); // drops what is due
    ticks = 0;
    desk.Wait.ProcessMessages();
    EXPECT_EQ(ticks, 0);
}

TEST(QtWait, SleepPaints) {
    TTestDesk desk;
    struct TCounter : QWidget {
        int Paints = 0;
        void paintEvent(QPaintEvent*) override { ++Paints; }
    } window;
    window.resize(50, 50);
    window.show();
    desk.Wait.Sleep(50);
    EXPECT_GE(window.Paints, 1);
    const int before = window.Paints;
    window.update();
    desk.Wait.Sleep(30);
    EXPECT_GT(window.Paints, before);
}

TEST(QtTimers, ATimerMayDieInItsOwnTick) {
    TTestDesk desk;
    auto timer = desk.Timers.CreateTimer();
    bool ticked = false;
    timer->SetInterval(1);
    timer->SetHandler([&] {
        timer.reset();
        ticked = true;
    });
    timer->SetEnabled(true);
    EXPECT_TRUE(WaitFor([&] { return ticked; }));
}

TEST(QtTimers, AnExceptionIsShownAndTheTimerGoesOn) {
    TTestDesk desk;
    const auto timer = desk.Timers.CreateTimer();
    int ticks = 0;
    timer->SetInterval(1);
    timer->SetHandler([&] {
        timer->SetEnabled(false);
        if (++ticks == 1)
            throw TError("tick failed");
    });
    timer->SetEnabled(true);
    const TOnMessageBox answer([](QMessageBox& box) { box.reject(); });
    EXPECT_TRUE(WaitFor([&] { return answer.Text == "tick failed"; }));
    timer->SetEnabled(true);
    EXPECT_TRUE(WaitFor([&] { return ticks == 2; }));
}

TEST(QtDialogs, MessageBoxesGiveTheAnswerOfTheirButtonOrFrame) {
    struct TCase {
        EButtons Buttons;
        QMessageBox::StandardButton Click; // NoButton: by the frame
        EModalResult Answer;
    };
    TTestDesk desk;
    for (const TCase& step : {TCase{EButtons::Ok, QMessageBox::Ok, EModalResult::Ok},
                              TCase{EButtons::Ok, QMessageBox::NoButton, EModalResult::Ok},
                              TCase{EButtons::OkCancel, QMessageBox::Ok, EModalResult::Ok},
                              TCase{EButtons::OkCancel, QMessageBox::Cancel, EModalResult::Cancel},
                              TCase{EButtons::OkCancel, QMessageBox::NoButton, EModalResult::Cancel},
                              TCase{EButtons::YesNo, QMessageBox::Yes, EModalResult::Yes},
                              TCase{EButtons::YesNo, QMessageBox::No, EModalResult::No},
                              TCase{EButtons::YesNo, QMessageBox::NoButton, EModalResult::No}}) {
        const TOnMessageBox answer([&step](QMessageBox& box) {
            EXPECT_EQ(box.icon(), QMessageBox::Warning);
            if (step.Click == QMessageBox::NoButton)
                box.close();
            else
                box.button(step.Click)->click();
        });
        EXPECT_EQ(desk.Dialogs.ShowMessageBox(EMessageKind::Warning, "<i>one</i>\rtwo", step.Buttons),
                  step.Answer);
        EXPECT_EQ(answer.Text, "<i>one</i>\ntwo");
    }
}

TEST(QtDialogs, InputBoxesAndFileDialogsTellTheAnswer) {
    TTestDesk desk;
    {
        const TOnNext<QInputDialog> answer([](QInputDialog& box) {
            EXPECT_EQ(box.windowTitle(), "Device ID");
            EXPECT_EQ(box.labelText(), "Enter Device ID:");
            box.setTextValue("4711");
            box.accept();
        });
        EXPECT_EQ(desk.Dialogs.InputBox("Device ID", "Enter Device ID:"), "4711");
    }
    {
        const TOnNext<QInputDialog> cancel([](QInputDialog& box) { box.reject(); });
        EXPECT_FALSE(desk.Dialogs.InputBox("Device ID", "Enter Device ID:"));
    }

    const TFileDialog dialog{"Open",
                             std::filesystem::temp_directory_path(),
                             {{"Logs (*.csv)", "*.csv;*.zls"}, {"All", "*.*"}},
                             true};
    const TOnNext<QFileDialog> cancel([](QFileDialog& box) {
        EXPECT_EQ(box.windowTitle(), "Open");
        EXPECT_EQ(box.nameFilters(), (QStringList{"Logs (*.csv *.zls)", "All (*.*)"}));
        EXPECT_EQ(box.fileMode(), QFileDialog::ExistingFile);
        box.reject();
    });
    EXPECT_FALSE(desk.Dialogs.OpenFile(dialog));
}

TEST(QtDialogs, APopupMenuRunsTheChosenEntry) {
    TTestDesk desk;
    TPopupMenu menu("Setpointpopup");
    TMenuItem save("Save", "Save");
    menu.Items = {save};
    bool clicked = false;
    save.OnClick = [&] {
        clicked = true;
    };
    const TOnNext<QMenu> choose([](QMenu& view) {
        EXPECT_EQ(view.objectName(), "Setpointpopup");
        view.setActiveAction(view.actions().constFirst());
        QTest::keyClick(&view, Qt::Key_Return);
    });
    desk.Dialogs.Popup(menu);
    EXPECT_TRUE(clicked);
}

TEST(QtDialogs, CancelAllAnswersOpenAndLaterDialogs) {
    TTestDesk desk;
    {
        const TOnMessageBox cancel([&](QMessageBox&) { desk.Dialogs.CancelAll(); });
        EXPECT_EQ(desk.Dialogs.ShowMessageBox(EMessageKind::Confirmation, "Go on?", EButtons::YesNo),
                  EModalResult::No);
    }
    EXPECT_EQ(desk.Dialogs.ShowMessageBox(EMessageKind::Plain, "not shown", EButtons::OkCancel),
              EModalResult::Cancel);
    desk.Dialogs.EndCancelAll();
    const TOnMessageBox answer([](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
    EXPECT_EQ(desk.Dialogs.ShowMessageBox(EMessageKind::Plain, "shown", EButtons::OkCancel),
              EModalResult::Ok);
}

TEST(QtApplication, TheLoopEndsForGoodButAMessageIsSeenFirst) {
    TTestDesk desk;
    bool later = false;
    QTimer::singleShot(0, [&] {
        Application().Terminate();
        const TOnMessageBox answer([](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
        desk.Dialogs.ShowMessageBox(EMessageKind::Error, "cannot start", EButtons::Ok);
        EXPECT_EQ(answer.Text, "cannot start");
        later = true;
    });
    Application().Run();
    EXPECT_TRUE(later);
    Application().Run(); // returns at once
}

TEST(QtProcess, TakesBothOutputsAndTellsWhatCannotStart) {
    TQtProcess process;
    EXPECT_EQ(process.Run("/bin/sh", {"-c", "echo \"$1\"; pwd >&2", "sh", "a b;c"}, "/"), "a b;c\n/\n");
    EXPECT_FALSE(process.Run("/no/such/program", {}, "/"));
    EXPECT_FALSE(process.Start("/no/such/program", {}));
    EXPECT_TRUE(process.Start("/bin/true", {}));
}

TEST(QtPictures, RefusesWhatIsNoPicture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.save(&buffer, "PNG");
    EXPECT_EQ(TQtPictures::Decode(bytes.toStdString()).size(), QSize(3, 2));
    for (const std::string& bad : {std::string(), std::string("no picture"), bytes.left(20).toStdString()})
        EXPECT_THROW(TQtPictures().Check(bad), TError);
}

} // namespace tidewell::test
