#include "Support.h"
#include "core/Errors.h"
#include "core/Guard.h"
#include "core/controls/Menu.h"
#include "desktop/QtPictures.h"
#include "desktop/QtProcess.h"

#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

namespace tidewell::test {

namespace {

TTime LocalTime(int hour, int minute, int second) {
    const QDateTime local(QDate(2026, 3, 2), QTime(hour, minute, second));
    return TTime(std::chrono::milliseconds(local.toMSecsSinceEpoch()));
}

} // namespace

TEST(QtClock, WritesTimesAsTheLocaleDoes) {
    const TTime time = LocalTime(8, 5, 9);
    for (const auto& [locale, date, shortTime, longTime] :
         {std::tuple{"C", "2026-03-02", "08:05", "08:05:09"},
          {"de_DE", "02.03.26", "08:05", "08:05:09"},
          {"da_DK", "02.03.2026", "08.05", "08.05.09"},
          {"en_US", "3/2/26", "8:05 AM", "8:05:09 AM"}}) {
        const TQtClock clock{QLocale(QString::fromLatin1(locale))};
        EXPECT_EQ(clock.ShortDate(time), date) << locale;
        EXPECT_EQ(clock.ShortTime(time), shortTime) << locale;
        EXPECT_EQ(clock.LongTime(time), longTime) << locale;
    }
    EXPECT_EQ(TQtClock().HourMinute(time), (std::pair{8, 5}));
    EXPECT_EQ(TQtClock().Midnight(time), LocalTime(0, 0, 0));
}

TEST(QtWait, SleepPaintsAndDeliversNoTick) {
    TTestDesk desk;
    struct TCounter : QWidget {
        int Paints = 0;
        void paintEvent(QPaintEvent*) override { ++Paints; }
    } window;
    window.show();
    const auto timer = desk.Timers.CreateTimer();
    int ticks = 0;
    timer->SetInterval(10);
    timer->SetHandler([&] { ++ticks; });
    timer->SetEnabled(true);
    QElapsedTimer elapsed;
    elapsed.start();
    desk.Wait.Sleep(60);
    EXPECT_GE(elapsed.elapsed(), 60);
    EXPECT_GE(window.Paints, 1);
    desk.Wait.Sleep(5); // the tick that is due waits for the event loop
    EXPECT_EQ(ticks, 0);
    desk.Wait.ProcessMessages();
    EXPECT_GE(ticks, 1);
    EXPECT_LE(ticks, 3); // six were missed, and are not made up for
    desk.Wait.Sleep(30);
    timer->SetEnabled(false); // drops what is due
    ticks = 0;
    desk.Wait.ProcessMessages();
    EXPECT_EQ(ticks, 0);
}

TEST(QtTimers, ATickMayFailAndMayEndItsTimer) {
    TTestDesk desk;
    auto timer = desk.Timers.CreateTimer();
    int ticks = 0;
    timer->SetInterval(1);
    timer->SetHandler([&] {
        timer->SetEnabled(false);
        if (++ticks == 1)
            throw TError("tick failed");
        timer.reset();
    });
    timer->SetEnabled(true);
    const TOnMessageBox answer([](QMessageBox& box) { box.reject(); });
    EXPECT_TRUE(WaitFor([&] { return answer.Text == "tick failed"; }));
    timer->SetEnabled(true);
    EXPECT_TRUE(WaitFor([&] { return ticks == 2; }));
    EXPECT_FALSE(timer);
}

TEST(QtDialogs, MessageBoxesGiveTheAnswerOfTheirButtonOrFrame) {
    using TBox = QMessageBox;
    constexpr auto byFrame = TBox::NoButton;
    TTestDesk desk;
    for (const auto& [buttons, click, expected] : {std::tuple{EButtons::Ok, TBox::Ok, EModalResult::Ok},
                                                   {EButtons::Ok, byFrame, EModalResult::Ok},
                                                   {EButtons::OkCancel, TBox::Ok, EModalResult::Ok},
                                                   {EButtons::OkCancel, byFrame, EModalResult::Cancel},
                                                   {EButtons::YesNo, TBox::Yes, EModalResult::Yes},
                                                   {EButtons::YesNo, byFrame, EModalResult::No}}) {
        const TOnMessageBox answer([button = click](TBox& box) {
            EXPECT_EQ(box.icon(), TBox::Warning);
            EXPECT_EQ(box.windowTitle(), "Warning");
            if (button == byFrame)
                box.close();
            else
                box.button(button)->click();
        });
        EXPECT_EQ(desk.Dialogs.ShowMessageBox(EMessageKind::Warning, "<i>one</i>\rtwo", buttons), expected);
        EXPECT_EQ(answer.Text, "<i>one</i>\ntwo");
    }
}

TEST(QtDialogs, InputBoxesAndFileDialogsTellTheAnswer) {
    TTestDesk desk;
    for (const bool accept : {true, false}) {
        const TOnNext<QInputDialog> answer([accept](QInputDialog& box) {
            EXPECT_EQ(box.windowTitle() + box.labelText(), "Device IDEnter Device ID:");
            box.setTextValue("4711");
            box.done(accept ? QDialog::Accepted : QDialog::Rejected);
        });
        const auto id = desk.Dialogs.InputBox("Device ID", "Enter Device ID:");
        EXPECT_EQ(id.value_or("none"), accept ? "4711" : "none");
    }
    const TOnNext<QFileDialog> cancel([](QFileDialog& box) {
        EXPECT_EQ(box.windowTitle(), "Open");
        EXPECT_EQ(box.nameFilters(), (QStringList{"Logs (*.csv *.zls)", "All (*.*)"}));
        EXPECT_EQ(box.fileMode(), QFileDialog::ExistingFile);
        box.reject();
    });
    const std::vector<TFileFilter> filters{{"Logs (*.csv)", "*.csv;*.zls"}, {"All", "*.*"}};
    EXPECT_FALSE(desk.Dialogs.OpenFile({"Open", std::filesystem::temp_directory_path(), filters, true}));
}

TEST(QtDialogs, TheWaitCursorStaysAwayFromDialogs) {
    TTestDesk desk;
    {
        const TWaitCursor outer(desk.Dialogs);
        { const TWaitCursor inner(desk.Dialogs); }
        ASSERT_TRUE(QApplication::overrideCursor());
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        const TOnMessageBox answer([](QMessageBox& box) {
            EXPECT_FALSE(QApplication::overrideCursor());
            box.accept();
        });
        desk.Dialogs.ShowMessage("done");
        EXPECT_TRUE(QApplication::overrideCursor());
    }
    EXPECT_FALSE(QApplication::overrideCursor());
}

TEST(QtDialogs, APopupMenuRunsTheChosenEntry) {
    TTestDesk desk;
    TPopupMenu menu("Setpointpopup");
    TMenuItem save("Save", "Save");
    menu.Items = {save};
    bool clicked = false;
    save.OnClick = [&] { clicked = true; };
    const TOnNext<QMenu> choose([&desk](QMenu& view) {
        EXPECT_TRUE(desk.Dialogs.IsModalOpen());
        view.setActiveAction(view.actions().constFirst());
        QTest::keyClick(&view, Qt::Key_Return);
    });
    desk.Dialogs.Popup(menu);
    EXPECT_FALSE(desk.Dialogs.IsModalOpen());
    EXPECT_TRUE(clicked);
}

TEST(QtDialogs, CancelAllAnswersOpenAndLaterDialogs) {
    TTestDesk desk;
    const auto ask = [&desk] {
        return desk.Dialogs.ShowMessageBox(EMessageKind::Confirmation, "Go on?", EButtons::YesNo);
    };
    {
        const TOnMessageBox cancel([&desk](QMessageBox&) { desk.Dialogs.CancelAll(); });
        EXPECT_EQ(ask(), EModalResult::No);
    }
    EXPECT_EQ(ask(), EModalResult::No); // not shown
    desk.Dialogs.EndCancelAll();
    const TOnMessageBox answer([](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
    EXPECT_EQ(ask(), EModalResult::Yes);
}

TEST(QtApplication, TheLoopEndsForGoodButAMessageIsSeenFirst) {
    TTestDesk desk;
    bool later = false;
    QTimer::singleShot(0, [&] {
        Application().Terminate();
        const TOnMessageBox answer([](QMessageBox& box) { box.accept(); });
        desk.Dialogs.ShowMessage("cannot start");
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
    const QTemporaryDir folder;
    const QString sign = folder.filePath("a b");
    EXPECT_TRUE(process.Start("/bin/sh", {"-c", "echo > \"$1\"", "sh", sign.toStdString()}));
    EXPECT_TRUE(WaitFor([&] { return QFile::exists(sign); }));
}

TEST(QtPictures, RefusesWhatIsNoPicture) {
    for (const char* bad : {"", "no picture", "\x89PNG\r\n\x1a\n"})
        EXPECT_THROW(TQtPictures().Check(bad), TError);
}

} // namespace tidewell::test
