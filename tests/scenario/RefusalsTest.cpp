#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tidewell::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string wrongPassword = "Username or password is incorrect.";
const std::string notAuthorized = "You are not authorized to use the datalogger.";
const std::string loginFailed = "An error occurred during login.";
const std::string offlineFailed = "An error occurred during prepare offline session.";
const std::string unlinked = "An error occurred when initializing communication to the device.";

std::string Refused(const std::string& status) {
    return "ERROR: Could not authenticate. ResponseCode: " + status.substr(9, 3) + " " + status +
           "    EXCEPTION: " + status;
}

std::string NoRight(const std::string& address) {
    return "You do not have permission to access this device \"" + address + "\"";
}

template <class T>
TCloudFaults With(T TCloudFaults::*member, T value) {
    TCloudFaults faults;
    faults.*member = value;
    return faults;
}

// What does not come to a linked controller: each box, and every request and library call before and behind.
class TRefusals : public TProgramFixture {
  protected:
    void SignIn() {
        Arguments = {"-LoginUserPW", "service;tidewell"};
        Expect({LoginRequest("service", "tidewell", 200)});
    }
    void ExpectLink() {
        Expect({DeviceRequest(Device, 200)});
        Expect(OpenedSession());
        ExpectPings(Device, 2);
    }
    static void Link(TSetupForm& setup) {
        setup.txtRemote.Enter(Device);
        setup.ButCommOk.Click();
        EXPECT_FALSE(setup.Visible());
    }
    static TStep DeviceRequest(const std::string& id, int code) {
        return Request("GET /devices/" + id + "/0/Nabtouser [token1]", code);
    }
    // Why there was no link, as the event log tells.
    std::vector<std::string> Causes() {
        const std::string start = "No link to the device 410000000001.hv.example: ";
        std::vector<std::string> causes;
        for (const std::string& line : Main().MemoEventLog.Lines())
            if (line.starts_with(start))
                causes.push_back(line.substr(start.size()));
        return causes;
    }
    void ExpectClose() { Expect({"nabtoCloseSession", "nabtoShutdown"}); }
    // Below each of the next message boxes, with its number from 1 on.
    void BelowEachBox(const std::function<void(int)>& action, int number = 1) {
        Dialogs.Meanwhile = [this, action, number] {
            BelowEachBox(action, number + 1);
            action(number);
        };
    }
};

// The dialog comes again after each refusal; here it is cancelled then.
TEST_F(TRefusals, OfALogon) {
    struct TCase {
        std::string Name;
        TSteps Steps;
        TCloudFaults Faults;
        bool Online = true;
    };
    const auto logOn = LogOn("service", "tidewell");
    const auto login = [](int code) { return LoginRequest("service", "tidewell", code); };
    const TCase cases[] = {
        {"cancel", {}, {}},
        {"nothing typed in ten minutes",
         {{"form NabtoLogOn",
           [this] {
               Time.Advance(600000);
               Program->NabtoLogOn.ButOk.Click();
           }},
          Request("POST /keepAlive []", 401),
          Request("POST /keepAlive []", 401),
          LoginRequest("", "", 401),
          Box(wrongPassword)},
         {}},
        {"a quote breaks the request",
         {LogOn("service", "a\"b"), LoginRequest("service", "a\"b", 400),
          Box(Refused("HTTP/1.1 400 Bad Request")), Box(loginFailed)},
         {}},
        {"flag 10", {LogOn("guest", "guest"), LoginRequest("guest", "guest", 200), Box(notAuthorized)}, {}},
        {"no flags", {logOn, login(200), Box(notAuthorized)}, With(&TCloudFaults::EmptyBody, true)},
        {"service is down",
         {logOn, login(503), Box(Refused("HTTP/1.1 503 Service Unavailable")), Box(loginFailed)},
         With(&TCloudFaults::RefuseCode, 503)},
        {"no network", {logOn, login(-1), Box("No connection to server"), Box(loginFailed)}, {}, false},
        {"offline without a network",
         {LogOn("service", "tidewell", true), login(-1), Box("No connection to server"), Box(loginFailed),
          Request("GET /Nabtouser []", -1), Box(offlineFailed)},
         {},
         false},
        {"offline after a refused logon",
         {LogOn("service", "x", true), LoginRequest("service", "x", 401), Box(wrongPassword),
          Request("GET /Nabtouser []", 401), Box(offlineFailed)},
         {}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.Name);
        Online = test.Online;
        Cloud->SetFaults(test.Faults);
        Expect(test.Steps);
        Expect({CancelLogOn()});
        ExpectClose();
        Arguments = {};
        Start();
        EXPECT_TRUE(Application.IsTerminated);
        EXPECT_EQ(FilesBelow("/t/log/systemlog").size(), 2u);
        Program.reset();
        CheckLog();
        for (const auto& path : FilesBelow("/t/log"))
            Files.Content.erase(path);
    }
}

TEST_F(TRefusals, OfTheCommandLineRepeatUntilSomethingEndsThem) {
    struct TCase {
        std::string Value, Password;
        bool Closes; // otherwise the service changes its mind
    };
    for (const auto& test : {TCase{"service", "", true}, TCase{"service;x", "x", true},
                             TCase{"service;tidewell", "tidewell", false}}) {
        SCOPED_TRACE(test.Value);
        Cloud->SetFaults(With(&TCloudFaults::RefuseCode, test.Closes ? 0 : 401));
        BelowEachBox([&](int number) {
            if (number < 5)
                return;
            if (test.Closes)
                Main().Close();
            else
                Cloud->SetFaults({});
        });
        for (int i = 0; i < 5; ++i)
            Expect({LoginRequest("service", test.Password, 401), Box(wrongPassword)});
        if (!test.Closes) {
            Expect({LoginRequest("service", test.Password, 200), SetupDialog(Link)});
            ExpectLink();
        }
        ExpectClose();
        Arguments = {"-LoginUserPW", test.Value};
        Start();
        EXPECT_EQ(Application.IsTerminated, test.Closes);
        Close();
        CheckLog();
    }
}

// The password for a later start is prepared or not; the login takes what was typed.
TEST_F(TRefusals, ToPrepareAPasswordCostNoLogon) {
    const std::string noDll = "Error Dll not loaded";
    const std::string noKey =
        "The password cannot be scrambled: the function GetCPUIDasString of the library "
        "KHelper is not loaded";
    struct TCase {
        bool Library, Function;
        std::optional<std::string> Output; // of both tools
        TSteps Before, After;
        bool Private = false;
    };
    const TCase cases[] = {
        {false, true, {}, {Box(noDll)}, {Box(noKey)}},
        {true, false, {}, {}, {Box(noKey)}},
        {true, true, std::nullopt, {}, {}}, // no tool
        {true, true, "Result2:no end", {}, {}},
        {true, true, "Result2:,#ENDResult3:\xFF\x01", {}, {}},
        {true, false, {}, {}, {}, true}, // no tool is run, so no key is missed
    };
    for (const auto& test : cases) {
        KHelper.Present = test.Library;
        KHelper.HasFunction = test.Function;
        Process.Output = test.Output;
        Process.Calls.clear();
        if (test.Private)
            Files.Content[SystemFile] += "[Logon]\nPrivatePassword=true\n";
        Expect(test.Before);
        Expect({LogOn("service", "tidewell")});
        Expect(test.After);
        Expect({LoginRequest("service", "tidewell", 200),
                SetupDialog([](TSetupForm& setup) { setup.Close(); })});
        ExpectClose();
        Arguments = {};
        Start();
        EXPECT_EQ(Process.Calls.empty(), test.Private || !test.Library || !test.Function);
        EXPECT_EQ(
            std::ranges::count(Main().MemoEventLog.Lines(), "Library KHelper not loaded: there is none"),
            test.Library ? 0 : 1);
        Close();
        CheckLog();
    }
}

TEST_F(TRefusals, OfADeviceLeaveTheSetupDialogOpen) {
    struct TCase {
        std::string Typed, PathId;
        int Code;
        std::string Address;
    };
    const TCase cases[] = {
        {"", "", 404, ""},
        {"41000000000a", "41000000000%61", 404, "41000000000a.hv.example"},
        {"41000000001", "41000000001%2E", 404, "41000000001.hv.example"},
        {"../../A", "%2E%2E%2F%2E%2E%2F%41%2E%68%76%2E%65", 404, "../../A.hv.example"},
        {"410000000003", "410000000003", 403, "410000000003.hv.example"},
        {"410000000003.HV.Example", "410000000003", 403, "410000000003.HV.Example"},
        {"4100000000031", "410000000003", 403, "4100000000031.hv.example"},
        {Device, Device, -1, "410000000001.hv.example"},
    };
    const std::string identity = "DeviceID: 410000000001.hv.example\rModel: 30021\rVarenummer: 20450\r"
                                 "HP SW version: 214\rNP SW version: 107\rBT SW version: 31";
    Files.Unwritable.insert(SystemFile);
    SignIn();
    Expect({SetupDialog([&](TSetupForm& setup) {
        for (const auto& test : cases) {
            SCOPED_TRACE(test.Typed);
            Online = test.Code != -1;
            setup.txtRemote.Enter(test.Typed);
            setup.ButCommOk.Click();
            EXPECT_TRUE(setup.Visible());
            EXPECT_EQ(setup.txtRemote.Text(), test.Address);
            EXPECT_EQ(Dialogs.Shown.back().Kind, EMessageKind::Warning);
        }
        Online = true;
        for (const char* id : {"410000000003", Device}) {
            setup.txtRemote.Enter(id);
            setup.butping.Click();
            EXPECT_TRUE(setup.Visible());
            EXPECT_EQ(setup.txtRemote.Text(), id);
        }
        Link(setup);
    })});
    for (const auto& test : cases)
        Expect({DeviceRequest(test.PathId, test.Code), Box(NoRight(test.Address))});
    Expect({DeviceRequest("410000000003", 403), Box(NoRight("410000000003")), DeviceRequest(Device, 200)});
    Expect(OpenedSession());
    ExpectPings(Device, 1);
    Expect({Box(identity), DeviceRequest(Device, 200)});
    ExpectPings(Device, 2);
    Start();
    CheckLog();
    EXPECT_EQ(Main().Caption(), Profile);
    EXPECT_THAT(Main().MemoEventLog.Lines(), Contains("No connection: Failed to connect"));
    EXPECT_THAT(Main().MemoEventLog.Lines(),
                Contains("Device 410000000001.hv.example not saved: Cannot write " + std::string(SystemFile) +
                         ": Permission denied"));
    Close();
}

TEST_F(TRefusals, OfATokenOfTheCommandLineStandInTheStatusBar) {
    for (int i = 0; i < 3; ++i) // by the option, by the choice of the profile, by the log
        Expect({Request("GET /devices/410000000001/0/Nabtouser [Bearer old]", 401)});
    ExpectClose();
    Arguments = {"-jwt", "old", "-verbose", "-devid", Device};
    Start();
    EXPECT_THAT(Main().MemoEventLog.Lines(), Contains("Unknown option: -verbose"));
    EXPECT_THAT(Application.Errors, testing::ElementsAre("Unknown option: -verbose"));
    Time.Advance(20000);
    EXPECT_EQ(Program->NabtoDevice.LblNabto.Caption(),
              "Not authorized to device \"410000000001.hv.example\" (status not ok)");
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    EXPECT_THAT(Causes(), ElementsAre("HTTP/1.1 401 Unauthorized",
                                      "HTTP/1.1 401 Unauthorized")); // profile and log; sign-in is over
    Close();
    CheckLog();
}

// A failed preparation asks again, and the token of its logon stays: with it a refused logon can be offline.
TEST_F(TRefusals, OfAnOfflineSessionAskAgain) {
    TCloudFaults refused = With(&TCloudFaults::RefuseCode, 503);
    refused.Path = "/Nabtouser";
    Cloud->SetFaults(refused);
    BelowEachBox([this](int) { Cloud->SetFaults({}); });
    Expect({LogOn("service", "tidewell", true), LoginRequest("service", "tidewell", 200),
            Request("GET /Nabtouser [token1]", 503), Box(offlineFailed), LogOn("service", "x", true),
            LoginRequest("service", "x", 401), Box(wrongPassword), Request("GET /Nabtouser [token1]", 200),
            "nabtoStartup nabto_config", "nabtoGetLocalDevices", SetupDialog([](TSetupForm& setup) {
                setup.ListBoxLocalDevices.ClickItem(0);
                setup.butping.Click();
                setup.ButCommOk.Click();
                EXPECT_TRUE(setup.Visible());
            }),
            Box("An error occurred when trying to initialize the nabto connection."), Box(unlinked)});
    ExpectClose();
    Arguments = {};
    Start();
    Time.Advance(20000);
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    EXPECT_THAT(Causes(), testing::Each("nobody is signed in"));
    Close();
    CheckLog();
}

TEST_F(TRefusals, OfAnotherUserTakeNothingOfTheFirst) {
    TCloudFaults refused = With(&TCloudFaults::RefuseCode, 503);
    refused.Path = "/Nabtouser";
    Cloud->SetFaults(refused);
    BelowEachBox([this](int) { Cloud->SetFaults({}); });
    Expect({LogOn("service", "tidewell", true), LoginRequest("service", "tidewell", 200),
            Request("GET /Nabtouser [token1]", 503), Box(offlineFailed), LogOn("guest", "x", true),
            LoginRequest("guest", "x", 401), Box(wrongPassword), Request("GET /Nabtouser []", 401),
            Box(offlineFailed), CancelLogOn()});
    ExpectClose();
    Arguments = {};
    Start();
    Program.reset();
    CheckLog();
}

TEST_F(TRefusals, OfAnExpiredTokenLeaveTheLinkAsItIs) {
    Expect({LoginRequest("service", "tidewell", 200)});
    ExpectLink();
    Expect({DeviceRequest(Device, 200)}); // the log starts
    for (int minutes = 5; minutes <= 60; minutes += 5)
        Expect({Request("POST /keepAlive [token1]", -1)});
    Expect({Request("POST /keepAlive [token1]", 401)});
    Start();
    Time.Advance(10000);
    Online = false;
    Time.Advance(60 * 60000);
    Online = true;
    Time.Advance(5 * 60000);
    DropPollsFromLog();
    CheckLog();
    EXPECT_GT(Program->LogBuffers.DatalogCount, 2500u);

    Expect({SetupDialog([](TSetupForm& setup) {
                setup.ButCommOk.Click();
                EXPECT_TRUE(setup.Visible());
            }),
            DeviceRequest(Device, 401), Box(NoRight(""))});
    Expect({DeviceRequest(Device, 401)}); // nor does a log start any more
    Main().Setup1.Click();
    Main().TrafficButton.Click();
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    DropPollsFromLog();
    CheckLog();
    EXPECT_THAT(Causes(), ElementsAre("HTTP/1.1 401 Unauthorized", "HTTP/1.1 401 Unauthorized"));
    Expect({DeviceRequest(Device, -1)}); // a silent cloud
    Online = false;
    Main().TrafficButton.Click();
    CheckLog();
    EXPECT_EQ(Causes().back(), "Failed to connect");
    Close();
}

TEST_F(TRefusals, OfAMissingNativeLibraryAreTold) {
    Libraries.Present = false;
    SignIn();
    Expect({SetupDialog([](TSetupForm& setup) {
        setup.ButDeviceSearch.Click();
        EXPECT_TRUE(setup.ListBoxLocalDevices.Visible());
        EXPECT_THAT(setup.ListBoxLocalDevices.Items(), IsEmpty());
        Link(setup);
    })});
    // The dialog and the choice of the profile both try to open the session.
    for (int i = 0; i < 2; ++i)
        Expect({DeviceRequest(Device, 200), Box("No NabtoStartUp/NabtoOpenSession Function Loaded")});
    Expect({Box(Language("TestfileComport", "Erroritemnumberdoesnotmatch")),
            Box("No NabtoCloseSession Function Loaded"), Box("No NabtoShutdown Function Loaded")});
    Start();
    EXPECT_EQ(Program->NabtoDevice.LblNabto.Caption(), "ID : 410000000001.hv.example");
    for (const char* line : {"Library nabto_client_api not loaded: there is none",
                             "NOT CONNECTED TO BASESTATION! the library or one of its functions is missing"})
        EXPECT_THAT(Main().MemoEventLog.Lines(), Contains(line));
    Close();
    CheckLog();
}

TEST_F(TRefusals, FindNoDeviceAndTwoHundred) {
    Nabto.Configure({});
    SignIn();
    Expect({SetupDialog([this](TSetupForm& setup) {
                setup.ButDeviceSearch.Click();
                EXPECT_TRUE(setup.ListBoxLocalDevices.Visible());
                EXPECT_THAT(setup.ListBoxLocalDevices.Items(), IsEmpty());
                setup.ListBoxLocalDevices.ClickItem(0);
                TSimulation many;
                for (int i = 0; i < 200; ++i) {
                    TControllerSetup& controller = many.Controllers.emplace_back();
                    controller.Id = std::to_string(420000000000 + i);
                }
                Nabto.Configure(many);
                setup.ButDeviceSearch.Click();
                ASSERT_EQ(setup.ListBoxLocalDevices.Items().size(), 200u);
                setup.ListBoxLocalDevices.ClickItem(199);
                EXPECT_EQ(setup.txtRemote.Text(), "420000000199");
                EXPECT_TRUE(setup.IsLocalDevice("420000000000.hv.example"));
            }),
            "nabtoStartup nabto_config", "nabtoGetLocalDevices", "nabtoStartup nabto_config",
            "nabtoGetLocalDevices"});
    Start();
    CheckLog();
    Close();
}

TEST_F(TRefusals, TheLogsOfARunMayGoAMonthLater) {
    Start();
    RunUntilRows(2);
    Close();
    ASSERT_EQ(FilesBelow("/t/log/systemlog").size(), 2u);
    Log.clear();
    for (int day = 0; day < 29; ++day)
        Time.Advance(24 * 3600000);
    Expect({Box("Systemlog contain 2 old files > 30 days. Delete files?", EModalResult::Yes)});
    SignIn();
    Expect({SetupDialog([](TSetupForm& setup) { setup.Close(); })});
    Start();
    CheckLog();
    EXPECT_THAT(FilesBelow("/t/log/systemlog"), IsEmpty());
    Close();
}

} // namespace
} // namespace tidewell::test
