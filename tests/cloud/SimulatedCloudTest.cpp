#include "sim/cloud/SimulatedCloud.h"

#include "cloud/ApiClient.h"
#include "core/DiskFiles.h"
#include "core/IniFile.h"
#include "sim/cloud/CloudConfig.h"
#include "support/IdleProgram.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

using testing::HasSubstr;

TCloudConfig ExampleConfig() {
    return ReadCloudConfig(TIniFile(TDiskFiles(), EXAMPLE_CLOUD_INI));
}

// The example cloud in virtual time, with the program's own client in front of it.
struct SimulatedCloud : testing::Test {
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TCloudConfig Config = ExampleConfig();
    std::unique_ptr<TSimulatedCloud> Service;
    std::unique_ptr<TInProcessCloud> Http;
    TIdleProgram Program;
    std::unique_ptr<TApiClient> Client;
    TCredentials Credentials;

    void SetUp() override { Start(); }

    void Start() {
        Service = std::make_unique<TSimulatedCloud>(Config, [this] { return Time.Now(); });
        Http = std::make_unique<TInProcessCloud>(*Service, Time);
        Client = std::make_unique<TApiClient>(Program, Dialogs);
        Client->UseService(*Http, {"localhost", 4161});
    }

    int Code(const std::string& method, const std::string& path, const std::string& body = {}) {
        return Service->Handle({method, path, Client->token, body}).Code;
    }
};

TEST(CloudConfig, NamesWhatItCannotUnderstand) {
    const std::string user = "[User anna]\nPassword=x\n";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "there is no section [User <name>]"},
        {"[User anna]\nFlags=10\n", "[User anna] Password=: the key is missing"},
        {user + "Flags=10;64\n", "[User anna] Flags=64: not a flag"},
        {user + "Devices=410000000009\n", "[User anna] Devices=410000000009: no such device"},
        {user + "[Devices]\n4100=x\n", "[Devices] 4100=x: a device id has 12 digits"},
        {user + "[Service]\nTokenLifetime=soon\n", "[Service] TokenLifetime=soon: not a number"},
        {user + "[Faults]\nFlagCount=65\n", "[Faults] FlagCount=65: not a number from 0 to 64"},
        {user + "[Faults]\nRefuseCode=99\n", "[Faults] RefuseCode=99"},
        {user + "[Faults]\nNoJson=perhaps\n", "perhaps"},
        {user + "[Faults]\nNoJsn=true\n", "[Faults] NoJsn=true: unknown key"},
        {user + "[Faults]\nNoJson true\n", "line 4: \"NoJson true\" is neither a section nor key=value"},
        {user + "Flag=10\n", "[User anna] Flag=10: unknown key"},
        {user + "[Service]\nTokenLifeTme=5\n", "[Service] TokenLifeTme=5: unknown key"},
        {user + "[User ]\nPassword=x\n", "section [User] names no user"},
        {user + "[Users]\nbert=x\n", "section [Users] belongs to nothing"},
    };
    for (const auto& [text, message] : cases) {
        SCOPED_TRACE(text);
        TMemoryFiles files;
        files.Put("/home/cloud.ini", text);
        try {
            ReadCloudConfig(TIniFile(files, "/home/cloud.ini"));
            ADD_FAILURE() << "was accepted";
        } catch (const std::exception& error) {
            EXPECT_THAT(error.what(), testing::AllOf(HasSubstr("cloud.ini"), HasSubstr(message)));
        }
    }
}

TEST_F(SimulatedCloud, RefusesWhatItDoesNotKnow) {
    const std::string base = "/api/v1.2";
    EXPECT_EQ(Code("POST", base + "/login", "{"), 400);
    EXPECT_EQ(Code("POST", base + "/login", R"({"Username":"service","Password":1})"), 400);
    EXPECT_EQ(Code("POST", base + "/login", R"({"Username":"service","Password":"Tidewell"})"), 401);
    EXPECT_EQ(Code("POST", base + "/login", R"({"Username":"nobody","Password":"tidewell"})"), 401);
    EXPECT_EQ(Code("GET", base + "/login"), 405);
    EXPECT_EQ(Code("POST", "/login"), 404);
    EXPECT_EQ(Code("GET", base + "/devices/410000000001/1/Nabtouser"), 404);
    EXPECT_EQ(Code("GET", base + "/devices//0/Nabtouser"), 404);
    EXPECT_EQ(Code("GET", base + "/Nabtouser"), 401);
    Client->token = "Bearer made.up.token";
    for (const char* path : {"/keepAlive", "/logout"}) {
        EXPECT_EQ(Code("POST", base + path), 401);
    }
}

TEST_F(SimulatedCloud, GivesEachUserItsRights) {
    EXPECT_EQ(Client->Login("guest", "guest"), -3);
    EXPECT_EQ(Client->Login("guest", "tidewell"), -2);

    ASSERT_EQ(Client->Login("service", "tidewell"), 0);
    EXPECT_THAT(Client->token,
                testing::MatchesRegex("Bearer [A-Za-z0-9_-]+\\.[A-Za-z0-9_-]+\\.[A-Za-z0-9_-]+"));
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000002", Credentials), 0);
    EXPECT_EQ(Credentials.Username + " " + Credentials.Password,
              "service@users.tidewell.example 7d0f3c52a91e");
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000003", Credentials), -1);
    EXPECT_THAT(Client->debugLines.back(), HasSubstr("403 Forbidden"));
    EXPECT_EQ(Client->GetNabtoUserInfo("419999999999", Credentials), -1);
    EXPECT_THAT(Client->debugLines.back(), HasSubstr("404 Not Found"));

    ASSERT_EQ(Client->Login("trainee", "tidewell"), 0);
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000002", Credentials), -1);
    EXPECT_EQ(Client->BeginOfflineSession(), 0);
    EXPECT_EQ(Client->_creds.Username, "trainee@users.tidewell.example");
}

TEST_F(SimulatedCloud, TokensRollAndExpire) {
    ASSERT_EQ(Client->Login("service", "tidewell"), 0);
    const std::string first = Client->token;
    Time.Advance(3599 * 1000);
    EXPECT_EQ(Client->KeepAlive(), 0);
    EXPECT_NE(Client->token, first);
    Time.Advance(3599 * 1000);
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000001", Credentials), 0);
    Time.Advance(1000);
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000001", Credentials), -3);
    EXPECT_EQ(Client->KeepAlive(), -3);

    ASSERT_EQ(Client->Login("service", "tidewell"), 0);
    const std::string second = Client->token;
    ASSERT_EQ(Client->KeepAlive(), 0);
    Client->token = second;
    EXPECT_EQ(Client->KeepAlive(), -3);
}

TEST_F(SimulatedCloud, AChangedConfigurationConcernsTokensGivenOut) {
    ASSERT_EQ(Client->Login("service", "tidewell"), 0);
    Config.TokenRequests = 2;
    Service->SetConfig(Config);
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000001", Credentials), 0);
    EXPECT_EQ(Client->KeepAlive(), 0); // a new token counts anew
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000001", Credentials), 0);
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000001", Credentials), 0);
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000001", Credentials), -3);

    Config.TokenRequests = 0;
    const auto change = [this](auto make) {
        ASSERT_EQ(Client->Login("service", "tidewell"), 0);
        Time.Advance(5000);
        ASSERT_EQ(Client->KeepAlive(), 0);
        Time.Advance(5000);
        make();
        Service->SetConfig(Config);
    };
    change([this] { Config.Users.at("service").NabtoUser.clear(); });
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000001", Credentials), 0);
    EXPECT_EQ(Credentials.Username, "");
    change([this] { Config.TokenLifetimeSeconds = 5; });
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000001", Credentials), -3);
    Config.TokenLifetimeSeconds = 3600;
    Service->SetConfig(Config);
    change([this] { Config.Users.erase("service"); });
    EXPECT_EQ(Client->KeepAlive(), -3);
}

TEST_F(SimulatedCloud, FaultsReachTheClientAsToldOnTheirPathAlone) {
    const auto with = [&](auto change) {
        TCloudFaults faults;
        change(faults);
        Service->SetFaults(faults);
    };
    with([](TCloudFaults& faults) { faults.NoJson = true; });
    EXPECT_EQ(Client->Login("service", "tidewell"), -1);
    with([](TCloudFaults& faults) { faults.FlagCount = 11; });
    EXPECT_EQ(Client->Login("service", "tidewell"), -1);
    EXPECT_THAT(Client->debugLines.back(), HasSubstr("PermissionFlags has 11 members"));
    with([](TCloudFaults& faults) { faults.EmptyBody = true; });
    EXPECT_EQ(Client->Login("service", "tidewell"), -3);

    with([](TCloudFaults& faults) {
        faults.RefuseCode = 503;
        faults.Path = "/Nabtouser";
    });
    EXPECT_EQ(Client->Login("service", "tidewell"), 0);
    EXPECT_EQ(Client->GetNabtoUserInfo("410000000001", Credentials), -1);
    EXPECT_THAT(Client->debugLines.back(), HasSubstr("503 Service Unavailable"));
    EXPECT_EQ(Client->KeepAlive(), 0);

    with([](TCloudFaults& faults) { faults.DelayMs = 1500; });
    EXPECT_EQ(Client->KeepAlive(), 0);
    with([](TCloudFaults& faults) { faults.DelayMs = 60001; });
    EXPECT_EQ(Client->BeginOfflineSession(), -1);
    EXPECT_THAT(Client->debugLines.back(), HasSubstr("timed out after 60000"));
    EXPECT_EQ(Client->KeepAlive(), -1); // nobody waits for it
    EXPECT_THAT(Time.Sleeps, testing::ElementsAre(1500, 60000, testing::Le(5000)));

    Http->Connected = false;
    Dialogs.ExpectMessage("No connection to server");
    EXPECT_EQ(Client->Login("service", "tidewell"), -1);
}

} // namespace
} // namespace tidewell::test
