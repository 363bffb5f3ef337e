#include "Support.h"
#include "core/Guard.h"
#include "desktop/QtPictures.h"
#include "desktop/QtProcess.h"

namespace tidewell::test {

namespace {

TTime LocalTime(int hour, int minute, int second) {
    const QDateTime local(QDate(2026, 3, 2), QTime(hour, minute, second));
    return TTime(std::chrono::milliseconds(local.toMSecsSinceEpoch()));
}

class PortsTest : public testing::Test {
  protected:
    TTestDesk Desk;
    TRobot Robot;
};

} // namespace

TEST(QtClock, WritesTimesAsTheLocaleDoes) {
    const TTime time = LocalTime(8, 5, 9);
    for (const auto& [locale, date, shortTime, longTime] :
         {std::tuple{"C", "2026-03-02", "08:05", "08:05:09"},
          {"de_DE", "02.03.26", "08:05", "08:05:09"},
          {"en_US", "3/2/26", "8:05 AM", "8:05:09 AM"}}) {
        const TQtClock clock{QLocale(QString::fromLatin1(locale))};
        EXPECT_EQ(clock.ShortDate(time), date) << locale;
        EXPECT_EQ(clock.ShortTime(time), shortTime) << locale;
        EXPECT_EQ(clock.LongTime(time), longTime) << locale;
    }
    EXPECT_EQ(TQtClock().HourMinute(time), (std::pair{8, 5}));
    EXPECT_EQ(TQtClock().Midnight(time), LocalTime(0, 0, 0));
}

TEST_F(PortsTest, SleepPaintsAndDeliversNoTick) {
    struct TCounter : QWidget {
        int Paints = 0;
        void paintEvent(QPaintEvent*) override { ++Paints; }
    } window;
    window.show();
    const auto timer = Desk.Timers.CreateTimer();
    int ticks = 0;
    timer->SetInterval(10);
    timer->SetHandler([&] { ++ticks; });
    timer->SetEnabled(true);
    QElapsedTimer elapsed;
    elapsed.start();
    Desk.Wait.Sleep(60);
    EXPECT_GE(elapsed.elapsed(), 60);
    EXPECT_GE(window.Paints, 1);
    Desk.Wait.Sleep(5); // the tick that is due waits for the event loop
    EXPECT_EQ(ticks, 0);
    Desk.Wait.ProcessMessages();
    EXPECT_TRUE(ticks >= 1 && ticks <= 3) << ticks; // six were missed, and are not made up for
    Desk.Wait.Sleep(30);
    timer->SetEnabled(false); // drops what is due
    ticks = 0;
    Desk.Wait.ProcessMessages();
    EXPECT_EQ(ticks, 0);
}

TEST_F(PortsTest, ATickMayFailAndMayEndItsTimer) {
    auto timer = Desk.Timers.CreateTimer();
    timer->SetInterval(1);
    bool first = true;
    timer->SetHandler([&] {
        if (!std::exchange(first, false))
            return timer.reset();
        timer->SetEnabled(false);
        throw TError("tick failed");
    });
    timer->SetEnabled(true);
    Robot.OnMessage("tick failed");
    EXPECT_TRUE(WaitFor([&] { return Robot.Done(); }));
    timer->SetEnabled(true);
    EXPECT_TRUE(WaitFor([&] { return !timer; }));
}

TEST_F(PortsTest, MessageBoxesGiveTheAnswerOfTheirButtonOrFrame) {
    using TBox = QMessageBox;
    constexpr auto byFrame = TBox::NoButton;
    const auto ask = [this](EButtons buttons) {
        return Desk.Dialogs.ShowMessageBox(EMessageKind::Warning, "<i>one</i>\rtwo", buttons);
    };
    Robot.On("MessageBox", [this](QWidget&) { Desk.Dialogs.CancelAll(); });
    EXPECT_EQ(ask(EButtons::YesNo), EModalResult::No);
    EXPECT_EQ(ask(EButtons::YesNo), EModalResult::No); // not shown
    Desk.Dialogs.EndCancelAll();
    for (const auto& [buttons, click, expected] : {std::tuple{EButtons::Ok, TBox::Ok, EModalResult::Ok},
                                                   {EButtons::OkCancel, byFrame, EModalResult::Cancel},
                                                   {EButtons::YesNo, TBox::Yes, EModalResult::Yes},
                                                   {EButtons::YesNo, byFrame, EModalResult::No}}) {
        Robot.On<TBox>("MessageBox", [button = click](TBox& box) {
            EXPECT_EQ(box.windowTitle() + ": " + box.text(), "Warning: <i>one</i>\ntwo");
            EXPECT_EQ(box.icon(), TBox::Warning);
            button == byFrame ? (void)box.close() : box.button(button)->click();
        });
        EXPECT_EQ(ask(buttons), expected);
    }
}

TEST_F(PortsTest, InputBoxesAndFileDialogsTellTheAnswer) {
    Robot.On<QInputDialog>("InputBox", [](QInputDialog& box) {
        EXPECT_EQ(box.windowTitle() + box.labelText(), "Device IDEnter Device ID:");
        box.setTextValue("4711");
        box.accept();
    });
    EXPECT_EQ(Desk.Dialogs.InputBox("Device ID", "Enter Device ID:"), "4711");
    Robot.On<QFileDialog>("OpenDialog", [](QFileDialog& box) {
        EXPECT_EQ(box.windowTitle(), "Open");
        EXPECT_EQ(box.nameFilters(), (QStringList{"Logs (*.csv *.zls)", "All (*.*)"}));
        EXPECT_EQ(box.fileMode(), QFileDialog::ExistingFile);
        box.reject();
    });
    const std::vector<TFileFilter> filters{{"Logs (*.csv)", "*.csv;*.zls"}, {"All", "*.*"}};
    EXPECT_FALSE(Desk.Dialogs.OpenFile({"Open", std::filesystem::temp_directory_path(), filters, true}));
}

TEST_F(PortsTest, TheWaitCursorStaysAwayFromDialogs) {
    const auto waits = [] {
        const QCursor* const cursor = QApplication::overrideCursor();
        return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
    };
    {
        const TWaitCursor outer(Desk.Dialogs);
        { const TWaitCursor inner(Desk.Dialogs); }
        ASSERT_TRUE(waits());
        Robot.On("MessageBox", [&](QWidget&) {
            EXPECT_EQ(QApplication::overrideCursor(), nullptr);
            Type("\n");
        });
        Desk.Dialogs.ShowMessage("done");
        EXPECT_TRUE(waits());
    }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(PortsTest, TheLoopEndsForGoodButAMessageIsSeenFirst) {
    Robot.OnMessage("cannot start");
    QTimer::singleShot(0, [&] {
        Application().Terminate();
        Desk.Dialogs.ShowMessage("cannot start");
    });
    Application().Run();
    EXPECT_TRUE(Robot.Done());
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
