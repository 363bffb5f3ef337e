#include "cloud/ApiClient.h"

#include "core/KvSupport.h"
#include "core/Table.h"
#include "support/FakePorts.h"
#include "support/IdleProgram.h"
#include "support/ScriptedDialogs.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

const std::string Base = "https://api.example:4161/api/v1.2";
const std::string NoName = "Could not resolve host: api.example";

THttpReply Reply(const std::string& status, const std::string& body = {}) {
    if (status == "none")
        return NoReply(NoName);
    return {std::stoi(status),
            "HTTP/1.1 " + status,
            {},
            body,
            {{"Type", "x"}, {"authorization", "Bearer new.token"}}};
}

// 64 flags, all false but one.
std::string Flags(const std::string& set, std::size_t index = 10, std::size_t count = 64) {
    std::vector<std::string> flags(count, "false");
    flags.at(index) = set;
    return "{\"PermissionFlags\":[" + Join(flags, ",") + "]}";
}

struct ApiClient : testing::Test {
    TScriptedHttp Http;
    TScriptedDialogs Dialogs;
    TIdleProgram Program;
    TApiClient Client{Program, Dialogs};
    TCredentials Credentials;

    ApiClient() {
        Client.UseService(Http, {"api.example", 4161});
        Dialogs.AllowMessage("No connection to server");
        Dialogs.AllowMessage("ERROR: Could not authenticate. ResponseCode: 500 HTTP/1.1 500 Oops    "
                             "EXCEPTION: HTTP/1.1 500 Oops");
    }
    // "operation|status|body" of one who is logged in: the result, what is known afterwards, the diary and
    // the boxes.
    std::string Call(std::string_view input) {
        const std::string operation = Piece(input, 0);
        Client.token = "old";
        Client._isLoggedIn = true;
        Client._isLocalSession = false;
        Client._creds = Credentials = {"user", "id"};
        Client.debugLines.clear();
        Dialogs.Shown.clear();
        Http.Replies = {Reply(Piece(input, 1), std::ranges::count(input, '|') > 1 ? Piece(input, 2) : "")};
        const int result = operation == "login"       ? Client.Login("anna", "secret")
                           : operation == "logout"    ? Client.Logout()
                           : operation == "keepAlive" ? Client.KeepAlive()
                           : operation == "offline"   ? Client.BeginOfflineSession()
                                                      : Client.GetNabtoUserInfo("410000000001", Credentials);
        std::vector<std::string> told{std::to_string(result)};
        told.push_back(Client._isLoggedIn ? "in" : "out");
        told.push_back(Client._isLocalSession ? "offline" : "online");
        told.push_back(Client.token + " " + Client._creds.Username + Client._creds.Password + " " +
                       Credentials.Username + Credentials.Password);
        for (std::string line : Client.debugLines) {
            if (const std::size_t base = line.find(Base); base != std::string::npos)
                line.erase(base, Base.size());
            told.push_back(line);
        }
        for (const auto& box : Dialogs.Shown)
            told.push_back(box.Kind == EMessageKind::Warning ? "a warning" : "a note");
        return Join(told, ", ");
    }
};

TEST_F(ApiClient, LoginTellsEachFailureInItsOwnWay) {
    const auto call = [this](std::string_view input) { return Call(input); };
    Client.Login("anna", "before"); // so that the token is hers
    const std::string failed = " -> -1, out, online, old userid userid, ";
    const std::string raised = failed + "ERROR in login: Unable to call the API. Reason: ";
    const std::string refused = failed + "ERROR: Could not authenticate. ResponseCode: ";
    ExpectRows(
        call,
        {"login|200 OK|<html>" + raised + "the reply is no JSON, error at byte 1",
         "login|200 OK|[]" + raised + "the reply is no JSON object",
         "login|200 OK|{}" + raised + "the reply has no array PermissionFlags",
         "login|200 OK|{\"PermissionFlags\":7}" + raised + "the reply has no array PermissionFlags",
         "login|200 OK|" + Flags("true", 10, 63) + raised + "PermissionFlags has 63 members instead of 64",
         "login|200 OK|" + Flags("null", 63) + raised + "member 63 of PermissionFlags is no boolean",
         "login|none" + failed + "No connection: " + NoName + ", a warning",
         "login|500 Oops" + refused + "500 HTTP/1.1 500 Oops    EXCEPTION: HTTP/1.1 500 Oops, a note",
         "login|202 Accepted" + refused + "202 HTTP/1.1 202 Accepted",
         "login|299 Odd" + refused + "299 HTTP/1.1 299 Odd",
         "login|401 Unauthorized -> -2, out, online, old userid userid, NOT AUTHENTICATED: Wrong username or "
         "password."});
    const std::string noRight = " -> -3, out, online,  userid userid";
    for (const std::string& flags : {Flags("false"), Flags("\"True\""), Flags("\"1\""), Flags("0.0"),
                                     Flags("true", 9), Flags("true", 11)})
        ExpectRows(call, {"login|200 OK|" + flags + noRight});
    for (const char* flag : {"true", "\"true\"", "1", "-2.5e300"})
        ExpectRows(call,
                   {"login|200 OK|" + Flags(flag) + " -> 0, in, online, Bearer new.token userid userid"});
    EXPECT_TRUE(Client.CanUseDatalogger());
    ExpectRows(call, {"login|200 OK" + noRight}); // nothing of the former login
    int told = 0;
    Client.OnNoToken = [&told] { ++told; };
    THttpReply bare = Reply("200 OK", Flags("true"));
    bare.Headers.clear();
    Http.Replies = {bare};
    EXPECT_EQ(Client.Login("anna", "secret"), 0);
    EXPECT_EQ(Client.debugLines.back(), "ERROR: The reply of the login has no token.");
    EXPECT_EQ(told, 1);
}

// For an offline session and for one device.
TEST_F(ApiClient, IdentityIsTakenWholeOrNotAtAll) {
    const auto call = [this](std::string_view input) { return Call(input); };
    const std::string raised = "s: HTTP/1.1 200 OK, ERROR: Unable to call the API. Reason: ";
    const std::string refused = "ERROR: Could not authenticate. ResponseCode: ";
    const std::pair<std::string, std::string> ways[] = {{"offline", "/Nabtouser"},
                                                        {"device", "/devices/410000000001/0/Nabtouser"}};
    for (const auto& [way, path] : ways) {
        const std::string told = " in, online, old userid userid, Calling url: " + path + ", ";
        const std::string failed = " -> -1," + told;
        ExpectRows(
            call, {way + "|200 OK|<html>" + failed + raised + "the reply is no JSON, error at byte 1",
                   way + "|200 OK|{\"User\":\"u\"}" + failed + raised + "the reply has no text ID",
                   way + "|200 OK|{\"User\":7,\"ID\":\"i\"}" + failed + raised + "the reply has no text User",
                   way + "|200 OK" + failed + "ERROR: Could not parse the result from login.",
                   way + "|204 No Content" + failed + refused + "204",
                   way + "|403 Forbidden" + failed + refused +
                       "403 HTTP/1.1 403 Forbidden    EXCEPTION: HTTP/1.1 403 Forbidden",
                   way + "|none" + failed + "No connection: " + NoName + ", " + refused +
                       "-1     EXCEPTION: " + NoName,
                   way + "|401 Unauthorized -> -3," + told + "UNORTHORIZED: Not logged in., " + refused +
                       "401 HTTP/1.1 401 Unauthorized    EXCEPTION: HTTP/1.1 401 Unauthorized"});
    }
    const std::string good = "|200 OK|{\"User\":\"u\",\"ID\":\"i\"} -> 0, in, ";
    ExpectRows(call,
               {"device" + good + "online, old userid ui, Calling url: /devices/410000000001/0/Nabtouser",
                "offline" + good + "offline, old ui userid, Calling url: /Nabtouser"});
    Credentials = {"before", "before"};
    EXPECT_EQ(Client.GetOfflineSessionCredentials(Credentials), 0);
    EXPECT_EQ(Credentials.Username + Credentials.Password, "ui");
    EXPECT_EQ(Client.GetNabtoUserInfo("410000000001", Credentials), -1);
    EXPECT_EQ(Credentials.Username + Credentials.Password, "");
}

TEST_F(ApiClient, KeepAliveRollsTheTokenAndLogoutForgetsIt) {
    const auto call = [this](std::string_view input) { return Call(input); };
    const std::string kept = "in, online, old userid userid, Calling url: /keepAlive, ";
    const std::string failed = "ERROR: Request failed with Errorcode: ";
    const std::string refused = "ERROR: Could not authenticate. ResponseCode: ";
    const std::string unauthorized = "401 HTTP/1.1 401 Unauthorized    EXCEPTION: HTTP/1.1 401 Unauthorized";
    const std::string silent = "No connection: " + NoName + ", ";
    ExpectRows(call, {"keepAlive|none -> -1, " + kept + silent + failed + "-1     EXCEPTION: " + NoName,
                      "keepAlive|401 Unauthorized -> -3, " + kept + "UNAUTHORIZED: Not logged in., " +
                          failed + unauthorized,
                      "keepAlive|204 No Content -> -1, " + kept + refused + "204 HTTP/1.1 204 No Content",
                      "keepAlive|200 OK|not read -> 0, in, online, Bearer new.token userid userid, Calling "
                      "url: /keepAlive"});
    EXPECT_EQ(Http.Requests.back().WholeTimeout, std::chrono::milliseconds(4500)); // nobody waits for it
    EXPECT_EQ(Http.Requests.back().ConnectTimeout, std::chrono::milliseconds(4500));
    const std::string gone = "out, online,   userid";
    ExpectRows(call, {"logout|none -> -1, " + gone + ", " + silent + refused + "-1     EXCEPTION: " + NoName,
                      "logout|401 Unauthorized -> -3, " + gone + ", UNORTHORIZED: Not logged in., " +
                          refused + unauthorized,
                      "logout|204 No Content -> -1, " + gone, "logout|200 OK -> 0, " + gone});
    EXPECT_THAT(Http.Requests.back().Headers.back(), Pair("Authorization", ""));
    THttpReply unrolled = Reply("200 OK");
    unrolled.Headers.clear();
    Http.Replies = {unrolled};
    Client.token = "old";
    EXPECT_EQ(Client.KeepAlive(), 0);
    EXPECT_EQ(Client.token, "old");
}

TEST_F(ApiClient, SendsWhatIsAskedFor) {
    Client.token = "old";
    Client.Login("jørn", "a\"b\\c"); // unescaped
    const THttpRequest login = Http.Requests.back();
    EXPECT_EQ(login.Method + " " + login.Url, "POST " + Base + "/login");
    EXPECT_EQ(login.ConnectTimeout, std::chrono::seconds(20)); // the user waits for it
    EXPECT_THAT(login.Headers,
                ElementsAre(Pair("Accept", "application/json"), Pair("Content-Type", "application/json")));
    EXPECT_EQ(login.Body, "{  \"Username\": \"jørn\", \"Password\": \"a\"b\\c\", \"MajorVersion\": \"0\", "
                          "\"MinorVersion\": \"0\", \"PatchVersion\": \"0\", \"RevisionNumber\": \"0\"}");
    Client.GetNabtoUserInfo("0419-0/../x?:\xC3\xB8", Credentials); // one piece of the path
    EXPECT_EQ(Http.Requests.back().Url, Base + "/devices/0419-0%2F%2E%2E%2F%78%3F%3A%C3%B8/0/Nabtouser");
    Client.UseService(Http, {"", 4161});
    EXPECT_EQ(Client.KeepAlive(), -1);
    EXPECT_EQ(Client.LastFailure, "key ApiHost in section [Cloud] of the system file is missing or empty");
    Program.Open = false;
    Client.UseService(Http, {"api.example", 4161});
    EXPECT_EQ(Client.KeepAlive(), -1);
    EXPECT_EQ(Http.Requests.size(), 2U);
}

TEST_F(ApiClient, TokenOfTheCommandLineLogsIn) {
    Client.SetAccessToken(" \t ");
    EXPECT_EQ(Client.token + (Client._isLoggedIn ? "in" : "out"), "out");
    Client.SetAccessToken(" a.b.c");
    EXPECT_EQ(Client.token + (Client._isLoggedIn ? "in" : "out"), "Bearer  a.b.cin");
}

} // namespace
} // namespace tidewell::test
