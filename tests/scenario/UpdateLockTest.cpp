#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

using testing::EndsWith;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr const char* package = "/t/firmware/aria450/config.fwc";
constexpr const char* leaveQuestion =
    "A firmware update is running. It goes on without this window. Close the "
    "window?";
constexpr const char* endQuestion =
    "A firmware update is running. Closing the program ends it and can leave the "
    "controller half updated. Close the program?";

// What the rest of the program does while a firmware update runs.
class TUpdateLock : public TProgramFixture {
  protected:
    void SetUp() override {
        Start();
        Dialogs.ExpectOpenFile("Open", package);
    }
    TNabtoDevice& Driver() { return Program->NabtoDevice; }
    // Names of what a user could still start.
    std::vector<std::string> Usable() {
        std::vector<std::string> names;
        for (const TMenuItem& menu : Main().MainMenu.Items)
            for (const TMenuItem& item : menu.Items)
                if (item.Visible() && item.Enabled())
                    names.push_back(item.Name());
        std::vector<TControl*> controls{&Main().TrafficButton,
                                        &Main().DeviceID,
                                        &Main().but_swupdate,
                                        &Main().but_errorlog,
                                        &Program->SetpointPage.SetpointGrid,
                                        &Program->SetpointPage.SetpointTreeView,
                                        &Driver().BtnUpdate,
                                        &Driver().btnPing,
                                        &Driver().btnClearLog,
                                        &Driver().ButErorlog,
                                        &Driver().butChangeDeviceID,
                                        &Driver().FlashDatalog.ButFlashDatalog,
                                        &Program->SetupForm.ButCommOk,
                                        &Program->SetupForm.butping};
        for (const TControl* control : controls)
            if (control->Enabled())
                names.push_back(control->Name());
        return names;
    }
    void Press(EKey key) {
        bool handled = false;
        Main().OnKeyDown(key, handled);
    }
    // Runs in the middle of the first file.
    void During(std::function<void()> action) {
        Time.After(1000, [this, action = std::move(action)] {
            ASSERT_TRUE(Driver().UpdateStatus.Running());
            EXPECT_EQ(Driver().UpdateStatus.LabUpdateFile.Caption(), "File 1 of 3: 30021_main.bin");
            action();
        });
    }
    std::vector<std::string> UpdateLogs() { return Files.List("/t/log/userlog", "FW-Update_*"); }
};

TEST_F(TUpdateLock, NothingElseCanBeStarted) {
    Program->LiveLog.StartLog(false, true);
    EXPECT_TRUE(Program->LiveLog.DatalogOn);
    const auto usable = Usable();
    During([this] {
        EXPECT_FALSE(Program->LiveLog.DatalogOn); // the log was stopped
        EXPECT_THAT(Usable(), UnorderedElementsAre("Nabtodebug1", "Close1"));
        for (const EKey key : {EKey::F2, EKey::F4, EKey::F5, EKey::F8, EKey::F12})
            Press(key); // any dialog would fail the test
        EXPECT_FALSE(Program->LiveLog.DatalogOn);
        Main().but_swupdate.Click();
        // Its form can be closed, and be shown again.
        Dialogs.ExpectMessage(leaveQuestion, EModalResult::No);
        Driver().Close();
        EXPECT_TRUE(Driver().Visible());
        Dialogs.ExpectMessage(leaveQuestion, EModalResult::Yes);
        Driver().Close();
        EXPECT_FALSE(Driver().Visible());
        Press(EKey::F11);
        EXPECT_TRUE(Driver().Visible());
        Dialogs.ExpectMessage(endQuestion, EModalResult::No);
        Press(EKey::Escape);
        EXPECT_FALSE(Application.IsTerminated);
        Dialogs.ExpectMessage("Download success Device is online again");
    });
    Main().but_swupdate.Click();
    EXPECT_EQ(Usable(), usable);
    EXPECT_EQ(UpdateLogs().size(), 1U);
    EXPECT_FALSE(Driver().UpdateStatus.Running());
    Close();
}

TEST_F(TUpdateLock, AClosedProgramEndsTheUpdate) {
    for (const bool asked : {true, false}) {
        std::size_t queries = 0;
        if (!asked)
            Dialogs.ExpectOpenFile("Open", package);
        During([&] {
            if (asked)
                Dialogs.ExpectMessage(endQuestion, EModalResult::Yes);
            Program->CloseDown.AskBeforeClose = asked; // as when the system ends the program
            Main().Close();
            EXPECT_TRUE(Application.IsTerminated);
            queries = Libraries.Calls.size();
        });
        Driver().BtnUpdateClick();
        Time.Advance(600000);
        EXPECT_LE(Libraries.Calls.size(), queries + 1);
        ASSERT_EQ(UpdateLogs().size(), 1U);
        const auto path = "/t/log/userlog/" + UpdateLogs()[0];
        EXPECT_NE(path.find("FW-Update_Error_"), std::string::npos);
        EXPECT_THAT(Files.Read(path), EndsWith("The program was closed during the update\r\n"));
        Files.Remove(path);
        Program->Finish();
        Program.reset();
        Start();
    }
    Dialogs.ExpectOpenFile("Open", std::nullopt);
    Dialogs.ExpectMessage("Unable to open file");
    Dialogs.ExpectMessage("Error during update!");
    Driver().BtnUpdateClick();
    Close();
}

} // namespace
} // namespace tidewell::test
