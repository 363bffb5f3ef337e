#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

// The main form closed below something that then goes on: a wait or a dialog.
class TCloseInTheMiddle : public TProgramFixture {
  protected:
    void CloseMain() {
        Main().Close();
        EXPECT_TRUE(Application.IsTerminated);
        ShownAtClose = Dialogs.Shown.size();
        StepsAtClose = Log.size();
    }
    // In the next message box or file dialog.
    void CloseInNextDialog() {
        Dialogs.Meanwhile = [this] { CloseMain(); };
    }
    // Asks nothing more, polls nothing more, and has left its files once.
    void ExpectEnded() {
        ASSERT_TRUE(Application.IsTerminated);
        Files.Put("/t/nabto_config/users/x", "");
        Time.Advance(600000);
        EXPECT_TRUE(Files.FileExists("/t/nabto_config/users/x")); // no timer empties the folder
        Program->Finish();
        EXPECT_EQ(Dialogs.Shown.size(), ShownAtClose) << testing::PrintToString(Dialogs.Texts());
        EXPECT_EQ(Log.size(), StepsAtClose) << testing::PrintToString(Log);
        EXPECT_EQ(FilesBelow("/t/log/systemlog").size(), 2u); // a second close would make a second datalog
    }
    std::size_t ShownAtClose = 0;
    std::size_t StepsAtClose = 0;
};

TEST_F(TCloseInTheMiddle, OfTheFirstPings) {
    Files.Content[Simulation] += "\n[Faults aria1]\nLatency=700ms\n";
    for (const int later : {0, 700}) { // within each of the pings
        SCOPED_TRACE(later);
        Time.After(2500 + later, [this, later] { // the splash lines and the second stage's timer take 2400 ms
            EXPECT_EQ(QueryCount("ping.json"), 1 + later / 700);
            CloseMain();
        });
        Start();
        ExpectEnded();
        EXPECT_FALSE(Program->Profile.ProfileLoaded);
        Program.reset();
        Libraries.Calls.clear();
        for (const auto& path : FilesBelow("/t/log"))
            Files.Content.erase(path);
    }
}

TEST_F(TCloseInTheMiddle, OfTheQuestionBeforeALog) {
    for (const EModalResult answer : {EModalResult::Yes, EModalResult::No}) {
        Start();
        Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), answer);
        CloseInNextDialog();
        Main().TrafficButton.Click();
        EXPECT_FALSE(Program->LiveLog.DatalogOn);
        ExpectEnded();
        Program.reset();
        for (const auto& path : FilesBelow("/t/log"))
            Files.Content.erase(path);
    }
}

TEST_F(TCloseInTheMiddle, OfTheLogonDialog) {
    Arguments = {"-devid", Device};
    Dialogs.ExpectForm("NabtoLogOn", [this](TForm&) {
        Program->NabtoLogOn.EditUser.Enter("service");
        Program->NabtoLogOn.EditPW.Enter("tidewell");
        CloseMain();
        Program->NabtoLogOn.ButOk.Click();
    });
    Start();
    EXPECT_EQ(QueryCount("ping.json"), 0);
    ExpectEnded();
}

TEST_F(TCloseInTheMiddle, OfARefusalBeforeAnOfflineSession) {
    Arguments = {"-devid", Device};
    Dialogs.ExpectForm("NabtoLogOn", [this](TForm&) {
        Program->NabtoLogOn.EditUser.Enter("service");
        Program->NabtoLogOn.EditPW.Enter("wrong");
        Program->NabtoLogOn.offLineSessionCheckBox.SetChecked(true);
        Program->NabtoLogOn.ButOk.Click();
    });
    Dialogs.ExpectMessage("Username or password is incorrect.");
    CloseInNextDialog();
    Start();
    ExpectEnded();
}

TEST_F(TCloseInTheMiddle, OfTheSetupDialog) {
    Arguments = {"-LoginUserPW", "service;tidewell"};
    Dialogs.ExpectForm("SetupForm", [this](TForm&) { CloseMain(); });
    Start();
    ExpectEnded();
}

TEST_F(TCloseInTheMiddle, OfThePingsBehindTheSetupDialog) {
    Arguments = {"-LoginUserPW", "service;tidewell"};
    Files.Content[Simulation] += "\n[Faults aria1]\nLatency=700ms\n";
    Dialogs.ExpectForm("SetupForm", [this](TForm&) {
        Program->SetupForm.txtRemote.Enter(Device);
        Time.After(100, [this] { CloseMain(); });
        Program->SetupForm.ButCommOk.Click();
    });
    Start();
    ExpectEnded();
}

TEST_F(TCloseInTheMiddle, OfTheProfileDialog) {
    struct TCase {
        const char* Changed; // in the system file
        const char* To;
        std::optional<std::filesystem::path> Answer;
    };
    const std::string fresh = Files.Content[SystemFile];
    for (const auto& test : {TCase{"PortScan=TRUE", "PortScan=FALSE", Profile},
                             TCase{"AutoloadProfile=TRUE", "AutoloadProfile=FALSE", std::nullopt}}) {
        Files.Content[SystemFile] = fresh;
        Edit(SystemFile, test.Changed, test.To);
        Dialogs.ExpectOpenFile(Language("HeadAppl", "DialogOpenProfileCaption"), test.Answer);
        CloseInNextDialog();
        Start();
        ExpectEnded();
        EXPECT_TRUE(Log.empty());
        Program.reset();
        Log.clear();
        for (const auto& path : FilesBelow("/t/log"))
            Files.Content.erase(path);
    }
}

TEST_F(TCloseInTheMiddle, OfTheQuestionBeforeAProfile) {
    Start();
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageStopLog"), EModalResult::Ok);
    CloseInNextDialog();
    Main().OpenProfile2.Click();
    ExpectEnded();
}

TEST_F(TCloseInTheMiddle, OfAMessageBeforeADialog) {
    // There is no profile for the model: the box would be followed by the file dialog.
    Files.Content.erase(Profile);
    Dialogs.ExpectMessage(Language("TestfileComport", "ProfileMissing") + " \\t\\profile\\Aria450");
    CloseInNextDialog();
    Start();
    ExpectEnded();
}

TEST_F(TCloseInTheMiddle, OfTheRefusalToLogWithoutAProfile) {
    Files.Content[Simulation] += "\n[Faults aria1]\nNoAnswer=on\n";
    Dialogs.ExpectMessage(Language("TestfileComport", "Erroritemnumberdoesnotmatch"));
    Start();
    Dialogs.ExpectMessage("Profile NOT loaded...");
    CloseInNextDialog();
    Main().TrafficButton.Click();
    ExpectEnded();
}

// A change of language ends the program first, and closes the form behind the message loop.
TEST_F(TCloseInTheMiddle, OfAReadBackByAChangeOfLanguage) {
    Start();
    Time.After(3000, [this] {
        EXPECT_TRUE(Program->ReadBack.Running());
        Application.Terminate();
        StepsAtClose = Log.size();
    });
    Program->SetpointFiles.SetpointSaveSetpoints("Device Aria 450");
    EXPECT_THAT(Main().MemoEventLog.Lines(), testing::Contains("Setpoints not saved: the reading was ended"));
    Program->Finish();
    ExpectEnded();
}

} // namespace
} // namespace tidewell::test
