#include "cloud/ApiClient.h"

#include "support/IdleProgram.h"
#include "support/ScriptedDialogs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <stdexcept>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

const std::string Base = "https://api.example:4161/api/v1.2";

// Replies in the order given. An exchange too many throws, and so shows in the client's diary.
class TScriptedHttp : public IHttp {
  public:
    std::deque<THttpReply> Replies;
    std::vector<THttpRequest> Requests;

    THttpReply Exchange(const THttpRequest& request) override {
        Requests.push_back(request);
        if (Replies.empty()) {
            throw std::runtime_error("socket handler broke");
        }
        THttpReply reply = Replies.front();
        Replies.pop_front();
        return reply;
    }
};

THttpReply Reply(int code, const std::string& reason, const std::string& body = {}) {
    THttpReply reply;
    reply.Code = code;
    reply.Reason = "HTTP/1.1 " + std::to_string(code) + " " + reason;
    reply.Body = body;
    reply.Headers = {{"Content-Type", "application/json"}, {"authorization", "Bearer new.token"}};
    return reply;
}

THttpReply NoReply() {
    THttpReply reply;
    reply.Error = "Could not resolve host: api.example";
    return reply;
}

const std::string NoConnection = "No connection: Could not resolve host: api.example";

// 64 flags, all false but one, told as a JSON text.
std::string Flags(std::size_t index, const std::string& set, std::size_t count = 64) {
    std::string list;
    for (std::size_t at = 0; at < count; ++at) {
        list += (at == 0 ? "" : ",") + (at == index ? set : std::string("false"));
    }
    return "{\"PermissionFlags\":[" + list + "]}";
}

struct ApiClient : testing::Test {
    TScriptedHttp Http;
    TScriptedDialogs Dialogs;
    TIdleProgram Program;
    TApiClient Client{Program, Dialogs};
    ApiClient() { Client.UseService(Http, {"api.example", 4161}); }

    void Held() {
        Client.token = "Bearer old.token";
        Client._isLoggedIn = true;
    }
};

TEST_F(ApiClient, LoginTellsEachFailureInItsOwnWay) {
    struct TCase {
        THttpReply Answer;
        int Result;
        std::vector<std::string> Diary;
        EMessageKind Kind = EMessageKind::Plain; // Plain: no box
        std::string Box = {};
    };
    const std::string refused =
        "ERROR: Could not authenticate. ResponseCode: 500 HTTP/1.1 500 Oops    EXCEPTION: HTTP/1.1 500 Oops";
    const std::string outer = "ERROR in login: Unable to call the API. Reason: ";
    const std::vector<TCase> cases{
        {Reply(200, "OK", "<html>"), -1, {outer + "the reply is no JSON, error at byte 1"}},
        {Reply(200, "OK", "[]"), -1, {outer + "the reply is no JSON object"}},
        {Reply(200, "OK", "{}"), -1, {outer + "the reply has no array PermissionFlags"}},
        {Reply(200, "OK", Flags(10, "true", 63)),
         -1,
         {outer + "PermissionFlags has 63 members instead of 64"}},
        {Reply(200, "OK", Flags(63, "null")), -1, {outer + "member 63 of PermissionFlags is no boolean"}},
        {NoReply(), -1, {NoConnection}, EMessageKind::Warning, "No connection to server"},
        {Reply(500, "Oops"), -1, {refused}, EMessageKind::Information, refused},
        {Reply(401, "Unauthorized"), -2, {"NOT AUTHENTICATED: Wrong username or password."}},
        {Reply(202, "Accepted", Flags(10, "true")),
         -1,
         {"ERROR: Could not authenticate. ResponseCode: 202 HTTP/1.1 202 Accepted"}},
        {Reply(200, "OK"), -3, {}},
    };
    for (const TCase& expected : cases) {
        SCOPED_TRACE(expected.Answer.Reason + expected.Answer.Body);
        Client.debugLines.clear();
        Dialogs.Shown.clear();
        Client._isLoggedIn = true;
        Http.Replies = {expected.Answer};
        if (!expected.Box.empty()) {
            Dialogs.ExpectMessage(expected.Box);
        }
        EXPECT_EQ(Client.Login("anna", "secret"), expected.Result);
        EXPECT_FALSE(Client._isLoggedIn);
        EXPECT_EQ(Client.token, "");
        EXPECT_FALSE(Client.CanUseDatalogger());
        EXPECT_THAT(Client.debugLines, ElementsAreArray(expected.Diary));
        ASSERT_EQ(Dialogs.Shown.size(), expected.Box.empty() ? 0U : 1U);
        if (!expected.Box.empty()) {
            EXPECT_EQ(Dialogs.Shown[0].Kind, expected.Kind);
        }
    }
}

TEST_F(ApiClient, LoginReadsEachKindOfFlag) {
    const std::vector<std::pair<std::string, bool>> members{
        {"true", true}, {"false", false},   {"\"true\"", true}, {"\"True\"", false}, {"\"1\"", false},
        {"1", true},    {"-2.5e300", true}, {"0", false},       {"0.0", false},
    };
    for (const auto& [text, right] : members) {
        SCOPED_TRACE(text);
        Http.Replies = {Reply(200, "OK", Flags(10, text))};
        EXPECT_EQ(Client.Login("anna", "secret"), right ? 0 : -3);
        EXPECT_EQ(Client.CanUseDatalogger(), right);
        EXPECT_EQ(Client._isLoggedIn, right);
        EXPECT_EQ(Client.token, right ? "Bearer new.token" : "");
    }
}

TEST_F(ApiClient, LoginWithoutTheRightKeepsNothingOfTheFormerLogin) {
    Http.Replies = {Reply(200, "OK", Flags(10, "true")), Reply(200, "OK")};
    ASSERT_EQ(Client.Login("anna", "secret"), 0);
    EXPECT_EQ(Client.Login("bert", "secret"), -3);
    EXPECT_EQ(Client.token, "");
    EXPECT_THAT(Client.permissions, testing::Each(false));
}

TEST_F(ApiClient, LoginDropsTheTokenOfAnotherUser) {
    int told = 0;
    Client.OnNoToken = [&told] { ++told; };
    const THttpReply refused = Reply(401, "Unauthorized");
    THttpReply bare = Reply(200, "OK", Flags(10, "true"));
    bare.Headers.clear();
    Http.Replies = {Reply(200, "OK", Flags(10, "true")), refused, refused, bare};
    ASSERT_EQ(Client.Login("anna", "secret"), 0);
    EXPECT_EQ(Client.Login("anna", "sceret"), -2);
    EXPECT_EQ(Client.token, "Bearer new.token");
    EXPECT_EQ(Client.Login("bert", "x"), -2);
    EXPECT_EQ(Client.token, "");
    EXPECT_EQ(told, 0);
    EXPECT_EQ(Client.Login("bert", "secret"), 0);
    EXPECT_EQ(Client.debugLines.back(), "ERROR: The reply of the login has no token.");
    EXPECT_EQ(told, 1);
}

TEST_F(ApiClient, LoginSendsTheTemplateUnescaped) {
    Http.Replies = {Reply(401, "Unauthorized")};
    Held();
    Client.Login("jørn", "a\"b\\c");
    ASSERT_EQ(Http.Requests.size(), 1U);
    const THttpRequest& request = Http.Requests[0];
    EXPECT_EQ(request.Method + " " + request.Url, "POST " + Base + "/login");
    EXPECT_EQ(request.ConnectTimeout, std::chrono::seconds(20)); // the user waits for it
    EXPECT_THAT(request.Headers,
                ElementsAre(Pair("Accept", "application/json"), Pair("Content-Type", "application/json")));
    EXPECT_EQ(request.Body, "{  \"Username\": \"jørn\", \"Password\": \"a\"b\\c\", \"MajorVersion\": \"0\", "
                            "\"MinorVersion\": \"0\", \"PatchVersion\": \"0\", \"RevisionNumber\": \"0\"}");
}

TEST_F(ApiClient, IdentityIsAskedForAloneAndForOfflineSessions) {
    struct TCase {
        THttpReply Answer;
        int Result;
        std::vector<std::string> Diary; // behind the line with the address
    };
    const std::string reason = "ERROR: Unable to call the API. Reason: ";
    const std::vector<TCase> cases{
        {Reply(200, "OK", "<html>"),
         -1,
         {"s: HTTP/1.1 200 OK", reason + "the reply is no JSON, error at byte 1"}},
        {Reply(200, "OK", R"({"User":"u"})"),
         -1,
         {"s: HTTP/1.1 200 OK", reason + "the reply has no text ID"}},
        {Reply(200, "OK", R"({"User":7,"ID":"i"})"),
         -1,
         {"s: HTTP/1.1 200 OK", reason + "the reply has no text User"}},
        {Reply(200, "OK"), -1, {"ERROR: Could not parse the result from login."}},
        {Reply(204, "No Content"), -1, {"ERROR: Could not authenticate. ResponseCode: 204"}},
        {Reply(401, "Unauthorized"),
         -3,
         {"UNORTHORIZED: Not logged in.", "ERROR: Could not authenticate. ResponseCode: 401 HTTP/1.1 401 "
                                          "Unauthorized    EXCEPTION: HTTP/1.1 401 Unauthorized"}},
        {Reply(403, "Forbidden"),
         -1,
         {"ERROR: Could not authenticate. ResponseCode: 403 HTTP/1.1 403 Forbidden    EXCEPTION: HTTP/1.1 "
          "403 Forbidden"}},
        {NoReply(),
         -1,
         {NoConnection,
          "ERROR: Could not authenticate. ResponseCode: -1     EXCEPTION: Could not resolve host: "
          "api.example"}},
        {Reply(200, "OK", R"({"User":"u@x","ID":"i"})"), 0, {}},
    };
    Held();
    for (const TCase& expected : cases) {
        for (const bool offline : {false, true}) {
            SCOPED_TRACE(expected.Answer.Reason + expected.Answer.Body + (offline ? " offline" : ""));
            const std::string url = Base + (offline ? "/Nabtouser" : "/devices/410000000001/0/Nabtouser");
            std::vector<std::string> diary{"Calling url: " + url};
            diary.insert(diary.end(), expected.Diary.begin(), expected.Diary.end());
            Client.debugLines.clear();
            Client._isLocalSession = false;
            Http.Replies = {expected.Answer};
            TCredentials credentials{"before", "before"};
            Client._creds = credentials;
            EXPECT_EQ(offline ? Client.BeginOfflineSession()
                              : Client.GetNabtoUserInfo("410000000001", credentials),
                      expected.Result);
            EXPECT_EQ((offline ? Client._creds : credentials).Username,
                      expected.Result == 0 ? "u@x" : "before");
            EXPECT_EQ((offline ? Client._creds : credentials).Password,
                      expected.Result == 0 ? "i" : "before");
            EXPECT_EQ(Client._isLocalSession, offline && expected.Result == 0);
            EXPECT_THAT(Client.debugLines, ElementsAreArray(diary));
            EXPECT_EQ(Http.Requests.back().Method + " " + Http.Requests.back().Url, "GET " + url);
            EXPECT_EQ(Http.Requests.back().Headers.back(),
                      std::make_pair(std::string("Authorization"), std::string("Bearer old.token")));
        }
    }
}

TEST_F(ApiClient, OfflineSessionAnswersFromMemory) {
    TCredentials credentials{"before", "before"};
    EXPECT_NE(Client.GetOfflineSessionCredentials(credentials), 0);
    EXPECT_EQ(credentials.Username, "before");

    Http.Replies = {Reply(200, "OK", R"({"User":"u","ID":"i"})")};
    ASSERT_EQ(Client.BeginOfflineSession(), 0);
    EXPECT_EQ(Client.GetOfflineSessionCredentials(credentials), 0);
    EXPECT_EQ(credentials.Username + credentials.Password, "ui");

    EXPECT_EQ(Client.GetNabtoUserInfo("410000000001", credentials), -1);
    EXPECT_EQ(credentials.Username + credentials.Password, "");
    EXPECT_EQ(Http.Requests.size(), 1U);
}

TEST_F(ApiClient, KeepAliveRollsTheTokenOrNotesWhyNot) {
    struct TCase {
        THttpReply Answer;
        int Result;
        std::vector<std::string> Diary;
    };
    THttpReply unrolled = Reply(200, "OK");
    unrolled.Headers.clear();
    const std::vector<TCase> cases{
        {NoReply(),
         -1,
         {NoConnection,
          "ERROR: Request failed with Errorcode: -1     EXCEPTION: Could not resolve host: api.example"}},
        {Reply(401, "Unauthorized"),
         -3,
         {"UNAUTHORIZED: Not logged in.", "ERROR: Request failed with Errorcode: 401 HTTP/1.1 401 "
                                          "Unauthorized    EXCEPTION: HTTP/1.1 401 Unauthorized"}},
        {Reply(204, "No Content"),
         -1,
         {"ERROR: Could not authenticate. ResponseCode: 204 HTTP/1.1 204 No Content"}},
        {unrolled, 0, {}},
        {Reply(200, "OK", "not read"), 0, {}},
    };
    Held();
    for (const TCase& expected : cases) {
        SCOPED_TRACE(expected.Answer.Reason);
        Client.debugLines.clear();
        Http.Replies = {expected.Answer};
        EXPECT_EQ(Client.KeepAlive(), expected.Result);
        std::vector<std::string> diary{"Calling url: " + Base + "/keepAlive"};
        diary.insert(diary.end(), expected.Diary.begin(), expected.Diary.end());
        EXPECT_THAT(Client.debugLines, ElementsAreArray(diary));
        EXPECT_EQ(Client.token, expected.Answer.Body.empty() ? "Bearer old.token" : "Bearer new.token");
    }
    EXPECT_EQ(Http.Requests[0].Method + Http.Requests[0].Body, "POST");
}

TEST_F(ApiClient, LogoutForgetsBeforeItAsks) {
    const std::vector<std::pair<THttpReply, int>> cases{{NoReply(), -1},
                                                        {Reply(401, "Unauthorized"), -3},
                                                        {Reply(204, "No Content"), -1},
                                                        {Reply(200, "OK"), 0}};
    for (const auto& [answer, result] : cases) {
        SCOPED_TRACE(answer.Reason);
        Held();
        Client._creds = {"u", "i"};
        Http.Replies = {answer};
        EXPECT_EQ(Client.Logout(), result);
        EXPECT_EQ(Client.token + Client._creds.Username + Client._creds.Password, "");
        EXPECT_FALSE(Client._isLoggedIn);
        EXPECT_EQ(Http.Requests.back().Headers.back(),
                  std::make_pair(std::string("Authorization"), std::string()));
    }
    EXPECT_THAT(
        Client.debugLines,
        ElementsAre(NoConnection,
                    "ERROR: Could not authenticate. ResponseCode: -1     EXCEPTION: Could not resolve "
                    "host: api.example",
                    "UNORTHORIZED: Not logged in.",
                    "ERROR: Could not authenticate. ResponseCode: 401 HTTP/1.1 401 Unauthorized    "
                    "EXCEPTION: HTTP/1.1 401 Unauthorized"));
}

TEST_F(ApiClient, WhatElseIsRaisedEndsInTheDiary) {
    const std::string reason = "Unable to call the API. Reason: socket handler broke";
    TCredentials credentials;
    EXPECT_EQ(Client.Login("anna", "secret"), -1);
    EXPECT_EQ(Client.Logout(), -1);
    EXPECT_EQ(Client.KeepAlive(), -1);
    EXPECT_EQ(Client.GetNabtoUserInfo("410000000001", credentials), -1);
    EXPECT_THAT(Client.debugLines, ElementsAre("ERROR in login: " + reason, "ERROR in logout: " + reason,
                                               HasSubstr("/keepAlive"), "ERROR in login: " + reason,
                                               HasSubstr("410000000001"), "s: ", "ERROR: " + reason));
}

TEST_F(ApiClient, TellsWhyThereIsNoConnection) {
    std::vector<std::string> reasons;
    Client.OnNoConnection = [&](const std::string& reason) { reasons.push_back(reason); };
    Http.Replies = {NoReply(), Reply(200, "OK"), Reply(500, "Oops")};
    for (int call = 0; call < 3; ++call) {
        Client.KeepAlive();
    }
    EXPECT_THAT(reasons, ElementsAre("Could not resolve host: api.example"));

    TApiClient nowhere(Program, Dialogs);
    nowhere.UseService(Http, {"", 4161});
    Dialogs.ExpectMessage("No connection to server");
    EXPECT_EQ(nowhere.Login("anna", "secret"), -1);
    EXPECT_THAT(nowhere.debugLines, ElementsAre("No connection: key ApiHost in section [Cloud] of the "
                                                "system file is missing or empty"));
    EXPECT_EQ(Http.Requests.size(), 3U);
}

TEST_F(ApiClient, DeviceIdStaysOnePieceOfThePath) {
    TCredentials credentials;
    Http.Replies = {Reply(404, "Not Found")};
    EXPECT_EQ(Client.GetNabtoUserInfo("41-0/../x?\xC3\xB8", credentials), -1);
    EXPECT_EQ(Http.Requests.at(0).Url, Base + "/devices/41-0%2F%2E%2E%2F%78%3F%C3%B8/0/Nabtouser");
}

TEST_F(ApiClient, TokenOfTheCommandLineLogsIn) {
    Client.SetAccessToken(" \t ");
    EXPECT_FALSE(Client._isLoggedIn);
    EXPECT_THAT(Client.token, IsEmpty());
    Client.SetAccessToken(" a.b.c");
    EXPECT_TRUE(Client._isLoggedIn);
    EXPECT_EQ(Client.token, "Bearer  a.b.c");
    EXPECT_FALSE(Client.CanUseDatalogger());
}

} // namespace
} // namespace tidewell::test
