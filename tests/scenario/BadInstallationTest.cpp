#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

// What lies wrong beside the program, or answers wrong from the cloud.
class TBadInstallation : public TProgramFixture {};

TEST_F(TBadInstallation, NamesTheIntervalThatIsNoNumber) {
    Edit(SystemFile, "PauseTime=1000", "PauseTime=soon");
    Dialogs.ExpectMessage(
        "/t/cfg/system_hushvane.inn: [CommInitNabto] PauseTime: 'soon' is not a valid floating point "
        "value");
    Start();
    EXPECT_TRUE(Application.IsTerminated);
}

TEST_F(TBadInstallation, AsksForAProfileWhenTheOneOfTheModelIsMissing) {
    Files.Content.erase(Profile);
    Dialogs.ExpectMessage(Language("TestfileComport", "ProfileMissing") + " \\t\\profile\\Aria450");
    Dialogs.ExpectOpenFile(Language("HeadAppl", "DialogOpenProfileCaption"), std::nullopt);
    Start();
    EXPECT_FALSE(Main().Profile.ProfileLoaded);
    EXPECT_TRUE(Main().FCurrentInifilesPath.plsfile.empty());
    Close();
}

TEST_F(TBadInstallation, FindsTheProfileOfTheControllerBehindAGateway) {
    Arguments[1] = "410000000002";
    Start();
    EXPECT_EQ(Main().Caption(), "/t/profile/Loft120_english.pls");
    RunUntilRows(2);
    EXPECT_EQ(Program->Nabto.queriesFile, "gateway.xml");
    Close();
}

TEST_F(TBadInstallation, LeavesAReadOnlyProfileAsItIs) {
    Files.Unwritable.insert(Profile);
    const std::string before = Files.Content[Profile];
    Start();
    Close();
    EXPECT_EQ(Files.Content[Profile], before);
    EXPECT_EQ(FilesBelow("/t/log/systemlog").size(), 2u);
}

TEST_F(TBadInstallation, ShowsWhatIsWrongWithTheCloudAndEndsOnCancel) {
    Arguments = {};
    struct TCase {
        bool Online;
        TCloudFaults Faults;
        std::vector<std::string> Messages;
    };
    const TCase cases[] = {
        {false, {}, {"No connection to server", "An error occurred during login."}},
        {true,
         {"", 503, false, false, 64, 0},
         {"ERROR: Could not authenticate. ResponseCode: 503 HTTP/1.1 503 Service Unavailable    EXCEPTION: "
          "HTTP/1.1 503 Service "
          "Unavailable",
          "An error occurred during login."}},
        {true, {"", 0, true, false, 64, 0}, {"An error occurred during login."}},
        {true, {"", 0, false, true, 64, 0}, {"You are not authorized to use the datalogger."}},
        {true, {"", 0, false, false, 63, 0}, {"An error occurred during login."}},
    };
    for (const auto& test : cases) {
        Online = test.Online;
        Cloud->SetFaults(test.Faults);
        Dialogs.ExpectForm("NabtoLogOn", [this](TForm&) {
            Program->NabtoLogOn.EditUser.Enter("service");
            Program->NabtoLogOn.EditPW.Enter("tidewell");
            Program->NabtoLogOn.ButOk.Click();
        });
        for (const auto& text : test.Messages)
            Dialogs.ExpectMessage(text);
        Dialogs.ExpectForm("NabtoLogOn", {}); // closed by its frame
        Start();
        EXPECT_TRUE(Application.IsTerminated);
        Program.reset();
        EXPECT_TRUE(Dialogs.AllAnswered());
    }
}

TEST_F(TBadInstallation, OpensTheSetupDialogWithoutADeviceId) {
    Arguments = {"-LoginUserPW", "service;tidewell"};
    Dialogs.ExpectForm("SetupForm", [this](TForm&) {
        TSetupForm& setup = Program->SetupForm;
        setup.ButDeviceSearch.Click();
        EXPECT_THAT(setup.ListBoxLocalDevices.Items(), testing::Contains("410000000001"));
        setup.txtRemote.Enter("410000000003"); // somebody else's
        Dialogs.ExpectMessage("You do not have permission to access this device \"410000000003.hv.example\"");
        setup.ButCommOk.Click();
        setup.txtRemote.Enter("410000000001");
        setup.ButCommOk.Click();
        EXPECT_FALSE(setup.Visible());
    });
    Start();
    EXPECT_TRUE(Main().DeviceID.Visible());
    RunUntilRows(2);
    EXPECT_EQ(Main().Caption(), Profile);
    Files.Put("/t/nabto_config/users/x", "");
    Time.Advance(30000);
    EXPECT_THAT(FilesBelow("/t/nabto_config/users"), testing::IsEmpty());
    Close();
}

} // namespace
} // namespace tidewell::test
