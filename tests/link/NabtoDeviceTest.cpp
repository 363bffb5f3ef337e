#include "link/NabtoDevice.h"

#include "LinkRig.h"
#include "cloud/ApiClient.h"
#include "core/Errors.h"
#include "link/Nabto.h"
#include "model/ModbusPanel.h"

#include <gmock/gmock.h>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string id = "123456789012";

struct TFakeHttp : IHttp {
    THttpReply Exchange(const THttpRequest& request) override {
        Urls.push_back(request.Url);
        THttpReply reply;
        reply.Code = Code;
        reply.Body = Body;
        return reply;
    }
    std::vector<std::string> Urls;
    int Code = 200;
    std::string Body = R"({"User":"u","ID":"p"})";
};

class TNabtoDeviceTest : public TLinkRig {
  protected:
    TNabtoDeviceTest()
        : TLinkRig({"/app/cfg/system_x.inn", "/app/cfg/deutsch.lng", {}, "/app/cfg", "/app"}, {}) {
        Files.Put(Paths.Systemfile,
                  "[CommInitNabto]\r\n; the link\r\nName=Vent\r\nEnabled=TRUE\r\nPauseTime=500\r\n"
                  "DelayBetweenQuestions=10\r\nDomain=Remote.example\r\nLastLoginUser=me\r\n");
        Files.Put("/app/p.pls", "[NabtoDevice]\nq1=0;3;100;1;\n");
        Files.Put(Interface, "<xml/>");
        Client._isLoggedIn = true;
        Client.UseService(Http, {"api.example", 4161});
        World.Profile.ErrorLogOffset = 512;
        Device.OnSetup = [this] { World.MemoEventLog.Add("Setup1Click"); };
        Device.OnErrorlog = [this](const std::string& words, const std::string&) { Events.push_back(words); };
        Device.FormCreate(Language);
    }
    void Answer(const std::string& reply) {
        Library.Reply = [reply](const std::string&) { return reply; };
    }

    const char* const Interface = "/app/nabto_config/standalone.xml";
    TFakeHttp Http;
    std::vector<std::string> Events; // that were told upward
    TIniFile Language{"[Nabtodriver]\nButping=Anpingen\nlabfrom=von\nadjustdays=Tage\n"};
    TApiClient& Client = World.ApiClient;
    TModbusPanel& Panel = World.Panel;
    TNabtoDevice Device{World.Needs};
    const std::vector<std::string>& EventLog = World.MemoEventLog.Lines();
};

TEST_F(TNabtoDeviceTest, CreationReadsConfigurationAndTexts) {
    EXPECT_EQ(Device.name, "Vent");
    EXPECT_EQ(Device.LastUser, "me");
    EXPECT_TRUE(Device.enabled);
    EXPECT_EQ(Device.Cycle.timerLogger->Interval(), 500);
    EXPECT_EQ(Device.Cycle.timerQuery->Interval(), 10);
    EXPECT_EQ(Device.btnPing.Caption(), "Anpingen");
    EXPECT_EQ(Device.FlashDatalog.DT_LabelFrom.Caption(), "von");
    EXPECT_EQ(Device.FlashDatalog.MischStrings.adjustdays, "Tage");
    EXPECT_TRUE(Device.isEnabled());
    Files.Put(Paths.Systemfile, "[CommInitNabto]\nEnabled=0\n");
    EXPECT_FALSE(Device.isEnabled());
    Files.Put(Paths.Systemfile, "[CommInitNabto]\nPauseTime=soon\n");
    EXPECT_THROW(Device.FormCreate(Language), EConvertError);
}

TEST_F(TNabtoDeviceTest, TheDomainIsAddedOnceAndTheDeviceKept) {
    struct TCase {
        std::string Domain, Given, Device;
    };
    for (const auto& [domain, given, taken] :
         std::vector<TCase>{{"Remote.example", id, id + ".Remote.example"},
                            {"Remote.example", id + ".rEMOTE.EXAMPLE", id + ".rEMOTE.EXAMPLE"},
                            {"", id, id},
                            {"Remote.example", "", id}}) {
        Device.Domain = domain;
        EXPECT_EQ(Device.init(given, Client), 0);
        EXPECT_EQ(Device.device, taken);
    }
    EXPECT_THAT(Files.Read(Paths.Systemfile), HasSubstr("; the link\r\nName=Vent\r\n"));
    EXPECT_THAT(Files.Read(Paths.Systemfile), HasSubstr("Device=" + id + "\r\n"));
    EXPECT_FALSE(Http.Urls.empty());
    EXPECT_THAT(Http.Urls, testing::Each("https://api.example:4161/api/v1.2/devices/" + id + "/0/Nabtouser"));
    const std::string before = Files.Read(Paths.Systemfile);
    Files.Unwritable.insert(Paths.Systemfile);
    EXPECT_EQ(Device.init("999999999999", Client), 0);
    EXPECT_EQ(Files.Read(Paths.Systemfile), before);
    ASSERT_EQ(EventLog.size(), 1U);
    EXPECT_THAT(EventLog[0], testing::StartsWith("Device 999999999999.Remote.example not saved: "));
}

TEST_F(TNabtoDeviceTest, ALinkNeedsAnIdentityAndAStartedLibrary) {
    Http.Body = R"({"User":"","ID":"p"})";
    Device.initialized = true;
    EXPECT_EQ(Device.init(id, Client), -3);
    EXPECT_FALSE(Device.initialized);
    EXPECT_EQ(Device.LblNabto.Caption(),
              "Not authorized to device \"" + id + ".Remote.example\" (creds.Username not ok)");
    Http.Body = R"({"User":"u","ID":"p"})";
    Library.Results["nabtoStartup"] = {NABTO_FAILED};
    EXPECT_EQ(Device.init(id, Client), 0);
    EXPECT_EQ(Device.LblNabto.Caption(), "NOT CONNECTED TO BASESTATION!");
    EXPECT_EQ(EventLog.back(), "NOT CONNECTED TO BASESTATION! failed");
    Device.startLog();
    EXPECT_FALSE(Device.Cycle.timerLogger->Enabled());
    Files.Content.erase(Interface);
    EXPECT_EQ(Device.init(id, Client), 0);
    EXPECT_EQ(Device.LblNabto.Caption(), "Connected to Basestation");
    EXPECT_EQ(EventLog.back(), "Interface file missing: " + std::string(Interface));
}

TEST_F(TNabtoDeviceTest, TellsOfWholeCycles) {
    Device.SetNabtoQuestion("/app/p.pls");
    EXPECT_EQ(Device.Showquestions(), "q1=0;3;100;1;\r\n");
    Device.init(id, Client);
    Answer(R"({"response":{"data":[{"value":5}]}})");
    Device.FOnCycleDone = [this] { Events.push_back("cycle " + Device.NabtoResultstring()); };
    Device.startLog();
    Time.Advance(520);
    EXPECT_THAT(Events, ElementsAre("cycle 5; "));
    EXPECT_EQ(Device.Snapshot.SetDatapointListCount, 1);
    EXPECT_EQ(Device.NabtoResultstring(), "");
    Device.stopLog();
}

TEST_F(TNabtoDeviceTest, ReadsAndWritesSingleValues) {
    Device.device = "d";
    Answer(R"({"response":{"status":0}})");
    const TDeviceUse::TAction action(Device.Use);
    EXPECT_EQ(Device.GetResponsstatus(Device.SendValue(action, -1, 512, 11)), 0);
    EXPECT_EQ(Device.ReadValue(3, 5, 10), R"({"response":{"status":0}})");
    Device.ReadValue(4, 5, 11);
    EXPECT_EQ(Device.ReadValue(5, 5, 1), "");
    EXPECT_THAT(Library.Calls,
                ElementsAre("nabtoRpcInvoke none nabto://d/setpointWriteValue.json?json="
                            R"({"request":{"list":[{"obj":"0","address":"512","value":"65535"}]}})",
                            "nabtoRpcInvoke none nabto://d/setpointReadValue.json?json="
                            R"({"request":{"address":"5","length":"1","obj":"10"}})",
                            "nabtoRpcInvoke none nabto://d/datapointReadValue.json?json="
                            R"({"request":{"address":"5","length":"1","obj":"0"}})"));
}

TEST_F(TNabtoDeviceTest, PingShowsWhoAnswered) {
    Device.device = "d";
    Dialogs.ExpectMessage("Device is not available");
    Device.btnPing.Click();
    EXPECT_THAT(Device.memoDebug.Lines(), IsEmpty());
    Answer(
        R"({"response":{"Pong":1886350951,"Devicenumber":1,"Model":2,"Version HP":3,"Version NP":4,"Version HBDE":5}})");
    Dialogs.ExpectMessage(
        "DeviceID: d\rModel: 2\rVarenummer: 1\rHP SW version: 3\rNP SW version: 4\rBT SW version: 5");
    Device.btnPing.Click();
    EXPECT_THAT(Device.memoDebug.Lines(), ElementsAre("DeviceID: d", "Ping Response: OK"));
    Answer(
        R"({"response":{"Pong":1886350951,"Devicenumber":1,"Model":30011,"Version":6,"SlaveDevicenumber":7,"SlaveModel":8}})");
    Dialogs.ExpectMessage("Gateway DeviceID: d\rGateway Model: 30011\rGateway Number: 1\rGateway Version: 6\r"
                          "Slave Number: 7\rSlaveModel: 8");
    Device.btnPing.Click();
}

TEST_F(TNabtoDeviceTest, AFormClosedDuringItsPingTellsNothing) {
    Device.device = "d";
    Dialogs.Show(Device);
    Library.Reply = [this](const std::string&) -> std::optional<std::string> {
        Device.Close();
        return std::nullopt;
    };
    Device.btnPing.Click();
    Library.Reply = [this](const std::string&) {
        World.Program.Open = false;
        return R"({"response":{"Pong":1886350951}})";
    };
    Device.btnPing.Click();
    EXPECT_THAT(Device.memoDebug.Lines(), IsEmpty());
}

TEST_F(TNabtoDeviceTest, ListsTheReadQuestions) {
    Panel.CycleReadList = {"1;3;100;2;List;Dev;0;", "1;4;200;1;Data;Dev;1;"};
    Device.memoDebug.Add("before");
    Device.btnShowReadList.Click();
    EXPECT_THAT(Device.memoDebug.Lines(),
                ElementsAre("before", "1;3;100;2;List;Dev;0;", "1;4;200;1;Data;Dev;1;"));
    Device.btnClearLog.Click();
    EXPECT_THAT(Device.memoDebug.Lines(), IsEmpty());
}

TEST_F(TNabtoDeviceTest, TheFormShowsWhatItsSettingsAllow) {
    Device.device = "d";
    Device.FlashDatalog.PanelFDDatalog.SetVisible(true);
    for (const bool set : {true, false}) {
        Device.EnableContineousUpdate = Device.Enable_debugShowExtendedVersionInfo = set;
        World.Profile.NabtoErrorlogEnable = Device.ShowButtonDevid = set;
        Dialogs.Show(Device);
        EXPECT_TRUE(Device.BtnUpdate.Visible() && Device.FlashDatalog.ButFlashDatalog.Visible());
        for (const TButton* button : {&Device.ButErorlog, &Device.ButContUpdate, &Device.butChangeDeviceID,
                                      &Device.ServiceTools.ExtendedSystemVersion})
            EXPECT_EQ(button->Visible(), set) << button->Name();
        Device.Hide();
    }
    EXPECT_EQ(Device.StatusBar.Panels()[1].Text, "Current DeviceID : d");
    EXPECT_EQ(Device.LblNabto.Caption(), "ID : d");
    Device.ShowButtonDevid = true;
    Dialogs.Show(Device);
    Events.clear();
    World.MemoEventLog.Clear();
    Device.butChangeDeviceID.Click();
    EXPECT_TRUE(Device.Visible());
    Device.Close();
    EXPECT_FALSE(Device.FlashDatalog.PanelFDDatalog.Visible());
    EXPECT_THAT(EventLog, ElementsAre("Setup1Click", "Nabto form active", "Nabto form closed"));
}

TEST_F(TNabtoDeviceTest, ShowsProgressInWholePercent) {
    bool turned = false;
    Time.After(0, [&] { turned = true; });
    Nabto.DoUpdateProgress();
    EXPECT_EQ(Device.StatusBar.Panels()[2].Text, "progress 0 %");
    EXPECT_TRUE(turned);
    Nabto.currentstreamlength = 3;
    Nabto.currentstreamprogress = 2;
    Nabto.DoUpdateProgress();
    EXPECT_EQ(Device.StatusBar.Panels()[2].Text, "progress 66 %");
}

TEST_F(TNabtoDeviceTest, TheIdentityPanelLaysOutItsBlock) {
    auto& identity = Device.Identity;
    Device.device = "d";
    Device.ButAccount.SetVisible(true);
    Device.ButAccount.Click();
    EXPECT_TRUE(identity.PanelDevice.Visible());

    Dialogs.ExpectInput("Device ID", id + "x");
    identity.btnDeviceID.Click();
    EXPECT_FALSE(identity.btnSaveInfo.Enabled());
    Dialogs.ExpectInput("CryptoKey", "000102030405060708090A0B0C0d0e0f");
    identity.btnCryptoKey.Click();
    Dialogs.ExpectInput("Device ID", std::nullopt);
    identity.btnDeviceID.Click();
    EXPECT_EQ(identity.lblDeviceID.Caption(), id + "x");
    identity.btnSaveInfo.Click();
    const auto& block = identity.Identity;
    EXPECT_EQ(std::string(block.begin(), block.begin() + 12), id);
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_EQ(block[12 + i], i);
    EXPECT_TRUE(std::all_of(block.begin() + 28, block.end(), [](auto byte) { return byte == 0; }));
    EXPECT_EQ(identity.LblJson.Caption(), " ");

    for (const auto* key :
         {"00010203", "000102030405060708090A0B0C0d0e0g", "-10102030405060708090A0B0C0d0e0f"}) {
        Dialogs.ExpectInput("CryptoKey", key);
        identity.btnCryptoKey.Click();
        Dialogs.ExpectMessage("CryptoKey must be 32 hexadecimal digits");
        identity.btnSaveInfo.Click();
    }

    Dialogs.ExpectInput("User Account", "");
    identity.btnUserAccount.Click();
    EXPECT_THAT(Library.Calls, IsEmpty());
    Dialogs.ExpectInput("User Account", "someone@else.example");
    identity.btnUserAccount.Click();
    EXPECT_EQ(identity.useraccount, "someone@else.example");
    EXPECT_THAT(Library.Calls,
                ElementsAre("nabtoRpcInvoke none nabto://d/ping.json?json="
                            R"({"request":{"usernumber":"1","user":"service@tidewell.example"}})"));
}

} // namespace

} // namespace tidewell::test
