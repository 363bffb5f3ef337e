#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const users = "/t/nabto_config/users";
const char* const gateway = "410000000002";

// Every way from the icon to a logging program, with each library call, request and dialog on it.
class TStartRoads : public TProgramFixture {
  protected:
    static TStep DeviceRequest(const std::string& token, const std::string& id = Device) {
        return Request("GET /devices/" + id + "/0/Nabtouser [" + token + "]", 200);
    }
    static TStep KeepAlive(const std::string& token, int code = 200) {
        return Request("POST /keepAlive [" + token + "]", code);
    }
    // Starts the program, which has to come as far as an open profile. What a former run left goes first.
    void Begin(const std::vector<std::string>& arguments, const std::string& profile) {
        Files.Put(std::string(users) + "/former@example.com", "x");
        Arguments = arguments;
        Began = Time.Milliseconds();
        Start();
        CheckLog();
        EXPECT_EQ(Main().Caption(), profile);
        EXPECT_EQ(Main().DeviceID.Visible(), !testing::Value(arguments, testing::Contains("-devid")));
        EXPECT_EQ(FilesBelow(users).size(), 1u);
    }
    // The library's profiles go half a minute after the setup dialog, and nothing else.
    void ExpectProfilesRemoved() {
        Files.Put("/t/nabto_config/users/sub/kept", "x");
        Time.Advance(29900); // a question of the log may take a few ms longer
        EXPECT_EQ(FilesBelow(users).size(), 2u);
        Time.Advance(200);
        EXPECT_THAT(FilesBelow(users), ElementsAre("/t/nabto_config/users/sub/kept"));
        Files.Content.erase("/t/nabto_config/users/sub/kept");
    }
    // A log that starts by itself, and the close so long after the start.
    void ExpectToTheEnd(int seconds, const TSteps& steps) {
        Expect(steps);
        Expect({"nabtoCloseSession", "nabtoShutdown"});
        Time.Advance(seconds * 1000 - static_cast<int>(Time.Milliseconds() - Began));
        EXPECT_GT(static_cast<int>(Program->LogBuffers.DatalogCount), seconds / 4);
        Close();
        DropPollsFromLog();
        CheckLog();
        EXPECT_THAT(FilesBelow(users), IsEmpty());
    }

  private:
    std::int64_t Began = 0;
};

TEST_F(TStartRoads, ByTheDialogsAlone) {
    Process.Output = "Result2:4f9a,#ENDResult3:tidewell"; // serves both tools
    Edit(SystemFile, "LastLoginPW=", "LastLoginPW=4f9a");
    Expect({LogOn("service", "wrong"), LoginRequest("service", "wrong", 401),
            Box("Username or password is incorrect."), LogOn("service", "tidewell"),
            LoginRequest("service", "tidewell", 200), SetupDialog([](TSetupForm& setup) {
                EXPECT_FALSE(setup.ListBoxLocalDevices.Visible());
                setup.txtRemote.Enter(Device);
                setup.ButCommOk.Click();
                EXPECT_FALSE(setup.Visible());
            }),
            DeviceRequest("token1")});
    Expect(OpenedSession());
    ExpectPings(Device, 2);
    Begin({}, Profile);
    EXPECT_THAT(Process.Calls, ElementsAre("run /t/share/E [wrong] [0A12C00000000000]",
                                           "run /t/share/D [4f9a] [0A12C00000000000]",
                                           "run /t/share/E [tidewell] [0A12C00000000000]",
                                           "run /t/share/D [4f9a] [0A12C00000000000]"));
    const TNabtoLogOn& form = Program->NabtoLogOn;
    EXPECT_EQ(form.EditPW.Text() + form.LoginPassword + form.CLoginPassword + Program->NabtoDevice.LastPW,
              "");
    EXPECT_EQ(KHelper.Loaded, 0);
    EXPECT_EQ(Program->NabtoDevice.lblConnectedUser.Caption(), "User: service");
    EXPECT_EQ(Program->NabtoDevice.LblNabto.Caption(), "ID : 410000000001.hv.example");
    ExpectProfilesRemoved();
    ExpectToTheEnd(610, {DeviceRequest("token1"), KeepAlive("token1"), KeepAlive("token2")});
}

TEST_F(TStartRoads, ByNameAndPasswordOfTheCommandLine) {
    Expect({LoginRequest("service", "tidewell", 200), DeviceRequest("token1", gateway)});
    Expect(OpenedSession());
    ExpectPings(gateway, 1);
    Expect({"nabtoRpcSetDefaultInterface gateway.xml"});
    ExpectPings(gateway, 2);
    Begin({"-devid", gateway, "-LoginUserPW", "service;tidewell;more"}, "/t/profile/Loft120_english.pls");
    EXPECT_THAT(Process.Calls, IsEmpty()); // there was no dialog to prepare a password in
    EXPECT_EQ(Program->Options.Arguments.back() + Program->_commandLineParameters.UserNamePW, "service");
    ExpectToTheEnd(610, {DeviceRequest("token1", gateway), KeepAlive("token1"), KeepAlive("token2")});
}

TEST_F(TStartRoads, ByATokenInPlaceOfALogon) {
    const auto login =
        Cloud->Handle({"POST", "/api/v1.2/login", "", R"({"Username": "service", "Password": "tidewell"})"});
    const std::string jwt = login.Authorization.substr(std::string("Bearer ").size());
    // In the second order the link is wanted before the token is known, and again when it is.
    for (const auto& arguments : {std::vector<std::string>{"-jwt", jwt, "-devid", Device},
                                  std::vector<std::string>{"-devid", Device, "-jwt", jwt}}) {
        Expect({DeviceRequest(login.Authorization)});
        Expect(OpenedSession());
        ExpectPings(Device, 2);
        Begin(arguments, Profile);
        EXPECT_EQ(Program->NabtoDevice.lblConnectedUser.Caption(), "");
        EXPECT_FALSE(Program->ApiClient.CanUseDatalogger()); // and nobody asks
        ExpectToTheEnd(20, {DeviceRequest(login.Authorization)});
    }
}

TEST_F(TStartRoads, ByAnOfflineSessionThatNeedsNoNetworkAfterwards) {
    Expect({LogOn("service", "tidewell", true), LoginRequest("service", "tidewell", 200),
            Request("GET /Nabtouser [token1]", 200), "nabtoStartup nabto_config", "nabtoGetLocalDevices",
            SetupDialog([this](TSetupForm& setup) {
                Online = false;                                   // the PC is cut off
                EXPECT_TRUE(setup.ListBoxLocalDevices.Visible()); // with no search asked for
                EXPECT_THAT(setup.ListBoxLocalDevices.Items(), ElementsAre(Device, gateway));
                setup.txtRemote.Enter("410000000003");
                setup.butping.Click();
                setup.ButCommOk.Click();
                EXPECT_TRUE(setup.Visible());
                setup.ListBoxLocalDevices.ClickItem(0);
                setup.ButCommOk.Click();
                EXPECT_FALSE(setup.Visible());
            }),
            Box("You cannot connect to the remote device \"410000000003\" during an offline session."),
            Box("You cannot connect to the remote device \"410000000003.hv.example\" during an offline "
                "session.")});
    Expect(OpenedSession());
    ExpectPings(Device, 2);
    Begin({}, Profile);
    ExpectProfilesRemoved();
    EXPECT_THAT(
        Main().MemoEventLog.Lines(),
        testing::Contains("No link to the device 410000000003.hv.example: in an offline session it must "
                          "have been found on the local network"));
    ExpectToTheEnd(610, {KeepAlive("token1", -1), KeepAlive("token1", -1)});
}

} // namespace
} // namespace tidewell::test
