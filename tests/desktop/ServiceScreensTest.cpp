#include "ProgramOnScreen.h"
#include "Robot.h"
#include "Support.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>

#include <gmock/gmock.h>

namespace tidewell::test {

namespace {

using testing::HasSubstr;

const std::filesystem::path package =
    std::filesystem::path(TIDEWELL_SOURCE_DIR) / "installation/firmware/aria450/config.fwc";

// A technician at the service screens of a linked controller.
class ServiceScreens : public testing::Test {
  protected:
    ServiceScreens() {
        Screen.Arguments = {"-devid", "410000000001", "-LoginUserPW", "service;tidewell"};
        // The file dialog shows the real disk.
        const TDiskFiles disk;
        for (const auto& entry : std::filesystem::directory_iterator(package.parent_path()))
            Screen.Files.Put(entry.path(), disk.Read(entry.path()));
    }
    ~ServiceScreens() override { EXPECT_TRUE(Robot.Done()); }

    // Runs the start, and then what the robot does.
    void Run() {
        Screen.Build();
        Screen.Advance(200);
        EXPECT_TRUE(WaitFor([this] { return Robot.Done(); }, 20'000));
    }
    template <class TWidget>
    static TWidget& Child(const QWidget& window, const char* name) {
        auto* const child = window.findChild<TWidget*>(QString::fromLatin1(name));
        if (child == nullptr)
            throw std::runtime_error(name);
        return *child;
    }
    static std::string Text(const QWidget& window, const char* label) {
        return Child<QLabel>(window, label).text().toStdString();
    }
    static void Click(const QWidget& window, const char* name) {
        QTest::mouseClick(&Child<QWidget>(window, name), Qt::LeftButton);
    }
    void Answer(const std::string& text, const QString& keys) {
        Robot.On("MessageBox", [text, keys](QWidget& box) {
            EXPECT_EQ(static_cast<QMessageBox&>(box).text().toStdString(), text);
            Type(keys);
        });
    }
    QWidget& View(const TForm& form) { return *Screen.Desktop.Dialogs.FindView(form); }
    std::vector<std::string> Kept(const char* mask) {
        return Screen.Files.List("/opt/tidewell/log/userlog", mask);
    }

    TProgramOnScreen Screen;
    TRobot Robot{[this](const QString& line) {
        ADD_FAILURE() << line.toStdString();
        Screen.Desktop.Dialogs.CancelAll();
    }};
};

} // namespace

TEST_F(ServiceScreens, AnUpdateShowsHowFarItIsAndLocksTheRest) {
    bool looked = false;
    Robot.On("FormMain", [&](QWidget& main) {
        Screen.Time.After(3000, [&] {
            QWidget& view = View(Screen.Program->NabtoDevice);
            EXPECT_EQ(Text(view, "LabUpdatePhase"), "Sending the firmware");
            EXPECT_EQ(Text(view, "LabUpdateFile"), "File 2 of 3: 30021_display.bin");
            EXPECT_EQ(Text(view, "LabUpdateElapsed"), "Elapsed 0:00:03");
            EXPECT_TRUE(Child<QProgressBar>(view, "UpdateProgress").isVisible());
            EXPECT_THAT(Child<QPlainTextEdit>(view, "memoDebug").toPlainText().toStdString(),
                        HasSubstr("RPC File upload done time elapsed"));
            EXPECT_EQ(Text(main, "LblUpdate"),
                      "Firmware update: Sending the firmware, File 2 of 3: 30021_display.bin");
            for (const char* locked : {"TrafficButton", "but_swupdate", "but_errorlog"})
                EXPECT_FALSE(Child<QWidget>(main, locked).isEnabled()) << locked;
            EXPECT_FALSE(Child<QWidget>(view, "BtnUpdate").isEnabled());
            EXPECT_TRUE(Child<QWidget>(view, "ButUpdateStop").focusPolicy() & Qt::TabFocus);
            Answer("Stopping the update can leave the controller half updated. Stop it?", "\x1b");
            Click(view, "ButUpdateStop");
            Answer("A firmware update is running. It goes on without this window. Close the window?", "\n");
            view.close();
            EXPECT_FALSE(view.isVisible());
            Click(main, "ButShowUpdate");
            EXPECT_TRUE(view.isVisible());
            Answer("A firmware update is running. Closing the program ends it and can leave the controller "
                   "half updated. Close the program?",
                   "\x1b");
            main.close();
            EXPECT_TRUE(main.isVisible());
            Robot.On("MessageBox", [&](QWidget& box) {
                EXPECT_EQ(static_cast<QMessageBox&>(box).text().toStdString(),
                          "Download success Device is online again");
                EXPECT_EQ(box.parentWidget(), &view);
                Type("\n");
            });
            looked = true;
        });
        Robot.On("OpenDialog", [](QWidget&) { Type(QString::fromStdString(package.string()) + u'\n'); });
        Click(main, "but_swupdate");
        EXPECT_FALSE(Child<QWidget>(main, "UpdatePanel").isVisible());
        EXPECT_TRUE(Child<QWidget>(main, "TrafficButton").isEnabled());
    });
    Run();
    EXPECT_TRUE(looked);
    EXPECT_EQ(Text(View(Screen.Program->NabtoDevice), "LabUpdatePhase"), "Update succeeded");
    EXPECT_FALSE(Child<QWidget>(View(Screen.Program->NabtoDevice), "ButUpdateStop").isVisibleTo(nullptr));
    EXPECT_EQ(Kept("FW-Update_OK_*").size(), 1U);
}

TEST_F(ServiceScreens, TheFlashLogComesToTheGraph) {
    Robot.On("FormMain", [](QWidget&) { Press(Qt::Key_F11); });
    Robot.On("NabtoDevice", [this](QWidget& view) {
        Click(view, "ButFlashDatalog");
        TTrackBar2& tracker = Screen.Program->NabtoDevice.FlashDatalog.DayTracker;
        const int oldest = tracker.UpperPosition();
        tracker.SetUpperPosition(0);
        Click(view, "DT_GetData");
        EXPECT_TRUE(Child<QWidget>(view, "DT_LabelNotice").isVisible());
        EXPECT_EQ(Text(view, "DT_LabelNotice"), "The range is empty, so nothing was read.");
        tracker.SetUpperPosition(oldest);
        Child<QWidget>(view, "DayTracker").setFocus(Qt::TabFocusReason);
        for (const Qt::Key key : {Qt::Key_PageUp, Qt::Key_Tab, Qt::Key_Home, Qt::Key_PageUp, Qt::Key_Tab})
            Press(key);
        EXPECT_EQ(Focused(), "DT_MaskeditStartDate");
        Type("00012"); // and by hand half a day
        EXPECT_EQ(Focused(), "DT_MaskeditStartDate");
        Press(Qt::Key_Tab);
        EXPECT_EQ(Focused(), "DT_MaskeditEndDate");
        Click(view, "DT_GetData");
    });
    Answer("The flash datalog is downloaded and saved. Show it on the graph?", "\n");
    Robot.On("FormMain", [](QWidget& main) {
        EXPECT_EQ(main.windowTitle().toStdString(), "/opt/tidewell/profile/Aria450_english_Flash.pls");
        EXPECT_FALSE(Child<QTabWidget>(main, "TheTab").isTabVisible(0));
    });
    Run();
    // From block 22 back to block 90.
    const auto& channels = Screen.Program->GraphPage.graph.Channels;
    EXPECT_EQ(channels[0].Data.Points().size(), 68 * 16U);
    EXPECT_FALSE(View(Screen.Program->NabtoDevice).isVisible());
    EXPECT_EQ(Kept("FDlog_*").size(), 1U);
}

TEST_F(ServiceScreens, TheErrorLogHasAPageThatBeginsAtItsTop) {
    auto& simulation = Screen.Files.Content["/opt/tidewell/nabto_config/simulation.ini"];
    simulation += "\n[Faults aria1]\nRefuse=2; query=eepReadRaw.json; times=1\n";
    Robot.On("FormMain", [](QWidget& main) {
        Click(main, "but_errorlog");
        EXPECT_TRUE(Child<QWidget>(main, "ErrorLogNotice").isVisible());
        EXPECT_EQ(Text(main, "LblErrorLogNotice"),
                  "The error log was not read: the device refused (status 2).");
        EXPECT_FALSE(Child<QWidget>(main, "ButErrorLogNotice").isVisible());
        Click(main, "ButHideErrorLogNotice");
        EXPECT_FALSE(Child<QWidget>(main, "ErrorLogNotice").isVisible());
        Click(main, "but_errorlog");
        const auto& tabs = Child<QTabWidget>(main, "TheTab");
        EXPECT_EQ(tabs.tabText(tabs.currentIndex()).toStdString(), "ErrorLog");
        const auto& memo = Child<QPlainTextEdit>(main, "MemoErrorlog");
        EXPECT_TRUE(memo.isVisible());
        EXPECT_EQ(memo.verticalScrollBar()->value(), 0);
        EXPECT_GT(memo.verticalScrollBar()->maximum(), 0);
        const QStringList lines = memo.toPlainText().split(u'\n');
        ASSERT_EQ(lines.size(), 102);
        EXPECT_THAT(lines[1].toStdString(), testing::MatchesRegex("Number1 Time .* Errornumber .* O(N|FF)+"));
        EXPECT_EQ(lines[101].toStdString(), "File saved in userlog directory");
    });
    Run();
    EXPECT_EQ(Kept("errorlog *").size(), 1U);
}

} // namespace tidewell::test
