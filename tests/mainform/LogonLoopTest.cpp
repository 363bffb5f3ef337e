#include "mainform/LogonLoop.h"

#include "support/FakeKHelper.h"
#include "support/FakePorts.h"
#include "support/ScriptedDialogs.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

THttpReply Reply(int code, const std::string& body = {}) {
    THttpReply reply;
    reply.Code = code;
    reply.Body = body;
    reply.Headers = {{"Authorization", "Bearer t"}};
    return reply;
}

THttpReply Flags(bool mayUse) {
    std::string flags;
    for (int i = 0; i < 64; ++i)
        flags += std::string(i == 0 ? "" : ",") + (i == 10 && mayUse ? "true" : "false");
    return Reply(200, R"({"PermissionFlags":[)" + flags + "]}");
}

struct TLogon : testing::Test {
    int Run(const std::string& userNamePassword) {
        return Loop.Run(Client, userNamePassword, [this] { return Closing; });
    }
    // Shows the dialog once, fills it and ends it.
    void ExpectDialog(const std::string& user, const std::string& password, EModalResult end) {
        Dialogs.ExpectForm("NabtoLogOn", [this, user, password, end](TForm&) {
            EXPECT_EQ(LogOn.EditUser.Text() + LogOn.EditPW.Text(), "");
            LogOn.EditUser.Enter(user);
            LogOn.EditPW.Enter(password);
            (end == EModalResult::Ok ? LogOn.ButOk : LogOn.ButCancel).Click();
        });
    }
    TScriptedDialogs Dialogs;
    TScriptedHttp Http;
    TApiClient Client{Http, Dialogs, TCloudAddress{"cloud.example.com", 4161}};
    TFakeKHelper KHelper;
    TFakeProcess Process;
    TCurrentInifilesPath Paths;
    TNabtoLogOn LogOn{KHelper, Process, Dialogs, Paths, [] {
                          return std::string();
                      }};
    TLabel User{"lblConnectedUser"};
    int Repaints = 0;
    bool Closing = false;
    TLogonLoop Loop{Dialogs, LogOn, User, [this] {
                        ++Repaints;
                    }};
};

TEST_F(TLogon, AsksAgainUntilItWorks) {
    Http.Replies = {Reply(401), Flags(false), Flags(true)};
    ExpectDialog("me", "wrong", EModalResult::Ok);
    Dialogs.ExpectMessage("Username or password is incorrect.");
    ExpectDialog("guest", "right", EModalResult::Ok);
    Dialogs.ExpectMessage("You are not authorized to use the datalogger.");
    ExpectDialog("me", "right", EModalResult::Ok);
    EXPECT_EQ(Run(""), 0);
    EXPECT_EQ(User.Caption(), "User: me");
    EXPECT_EQ(Repaints, 3);
}

TEST_F(TLogon, EndsOnCancelWithoutACall) {
    ExpectDialog("me", "x", EModalResult::Cancel);
    EXPECT_EQ(Run(""), -1);
    EXPECT_TRUE(Http.Requests.empty());
    EXPECT_EQ(User.Caption(), "");
}

TEST_F(TLogon, TakesNameAndPasswordFromTheCommandLine) {
    Http.Replies = {Flags(true)};
    EXPECT_EQ(Run("me;se cret"), 0);
    EXPECT_NE(Http.Requests.at(0).Body.find(R"("Username": "me", "Password": "se cret")"), std::string::npos);
}

TEST_F(TLogon, NeverLeavesOffARefusedCommandLineUnlessTheProgramCloses) {
    Http.Replies = {Reply(401), Reply(401)};
    Dialogs.ExpectMessage("Username or password is incorrect.");
    Dialogs.ExpectMessage("Username or password is incorrect.");
    int passes = 0;
    const int result = Loop.Run(Client, "me", [&passes] { return passes++ == 2; });
    EXPECT_EQ(result, -2);
    EXPECT_EQ(Http.Requests.size(), 2u);
}

TEST_F(TLogon, LetsTheOfflineSessionDecide) {
    Http.Replies = {Flags(true), Reply(500), Reply(401), Reply(200, R"({"User":"u","ID":"i"})")};
    LogOn.offLineSessionCheckBox.SetChecked(true);
    ExpectDialog("me", "right", EModalResult::Ok);
    Dialogs.ExpectMessage("An error occurred during prepare offline session.");
    ExpectDialog("me", "wrong", EModalResult::Ok);
    Dialogs.ExpectMessage("Username or password is incorrect.");
    EXPECT_EQ(Run(""), 0); // even after a refused login
    EXPECT_TRUE(Client._isLocalSession);
}

} // namespace
} // namespace tidewell::test
