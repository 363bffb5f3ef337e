#include "cloud/ApiClient.h"

#include "rig/FakePorts.h"
#include "rig/IdleProgram.h"
#include "rig/Test.h"

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

const std::string Base = "https://api.example:4161/api/v1.2";

THttpReply Reply(const std::string& status, const std::string& body = {}) {
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
    TFixedDialogs Dialogs;
    TIdleProgram Program;
    TApiClient Client{Program, Dialogs};
    TCredentials Credentials;

    ApiClient() { Client.UseService(Http, {"api.example", 4161}); }
    // "operation|status|body" of one who is logged in: the result, what is known afterwards and the diary.
    std::string Call(std::string_view input) {
        const std::string operation = Piece(input, 0);
        Client.token = "old";
        Client._isLoggedIn = true;
        Client.debugLines.clear();
        Credentials = {"user", "id"};
        Http.Replies = {Reply(Piece(input, 1), std::ranges::count(input, '|') > 1 ? Piece(input, 2) : "")};
        const int result = operation == "login"       ? Client.Login("anna", "secret")
                           : operation == "logout"    ? Client.Logout()
                           : operation == "keepAlive" ? Client.KeepAlive()
                                                      : Client.GetNabtoUserInfo("410000000001", Credentials);
        std::vector<std::string> told{std::to_string(result), Client._isLoggedIn ? "in" : "out",
                                      Client.token + " " + Credentials.Username + Credentials.Password};
        for (const std::string& line : Client.debugLines)
            if (!line.starts_with("Calling url: " + Base))
                told.push_back(line);
        return Join(told, ", ");
    }
};

// The boxes, and what the user sees of a refusal, are told in tests/journeys.
TEST_F(ApiClient, TakesAReplyWholeOrNotAtAll) {
    const auto call = [this](std::string_view input) { return Call(input); };
    Client.Login("anna", "before"); // so that the token is hers
    const std::string failed = " -> -1, out, old userid, ";
    const std::string raised = failed + "ERROR in login: Unable to call the API. Reason: ";
    ExpectRows(
        call,
        {"login|200 OK|<html>" + raised + "the reply is no JSON, error at byte 1",
         "login|200 OK|[]" + raised + "the reply is no JSON object",
         "login|200 OK|{}" + raised + "the reply has no array PermissionFlags",
         "login|200 OK|" + Flags("true", 10, 63) + raised + "PermissionFlags has 63 members instead of 64",
         "login|200 OK|" + Flags("null", 63) + raised + "member 63 of PermissionFlags is no boolean",
         "login|299 Odd" + failed + "ERROR: Could not authenticate. ResponseCode: 299 HTTP/1.1 299 Odd"});
    for (const std::string& flags : {Flags("false"), Flags("\"True\""), Flags("\"1\""), Flags("0.0"),
                                     Flags("true", 9), Flags("true", 11)})
        ExpectRows(call, {"login|200 OK|" + flags + " -> -3, out,  userid"});
    for (const char* flag : {"true", "\"true\"", "1", "-2.5e300"})
        ExpectRows(call, {"login|200 OK|" + Flags(flag) + " -> 0, in, Bearer new.token userid"});
    ExpectRows(call, {"login|200 OK -> -3, out,  userid"}); // nothing of the former login
    const std::string kept = " -> -1, in, old userid, ";
    const std::string broken = kept + "s: HTTP/1.1 200 OK, ERROR: Unable to call the API. Reason: ";
    ExpectRows(call, {"device|200 OK|{\"User\":\"u\"}" + broken + "the reply has no text ID",
                      "device|200 OK|{\"User\":7,\"ID\":\"i\"}" + broken + "the reply has no text User",
                      "device|200 OK" + kept + "ERROR: Could not parse the result from login.",
                      "device|204 No Content" + kept + "ERROR: Could not authenticate. ResponseCode: 204",
                      "device|200 OK|{\"User\":\"u\",\"ID\":\"i\"} -> 0, in, old ui"});
}

TEST_F(ApiClient, KeepAliveRollsTheTokenAndLogoutForgetsIt) {
    const std::string refused = "ERROR: Could not authenticate. ResponseCode: ";
    const std::string unauthorized = "401 HTTP/1.1 401 Unauthorized    EXCEPTION: HTTP/1.1 401 Unauthorized";
    ExpectRows([this](std::string_view input) { return Call(input); },
               {"keepAlive|401 Unauthorized -> -3, in, old userid, UNAUTHORIZED: Not logged in., ERROR: "
                "Request failed with Errorcode: " +
                    unauthorized,
                "keepAlive|204 No Content -> -1, in, old userid, " + refused + "204 HTTP/1.1 204 No Content",
                "keepAlive|200 OK|not read -> 0, in, Bearer new.token userid",
                "logout|401 Unauthorized -> -3, out,  userid, UNORTHORIZED: Not logged in., " + refused +
                    unauthorized,
                "logout|204 No Content -> -1, out,  userid", "logout|200 OK -> 0, out,  userid"});
}

TEST_F(ApiClient, LivesWithoutATokenOrAService) {
    THttpReply bare = Reply("200 OK", Flags("true"));
    bare.Headers.clear();
    Http.Replies = {bare, bare};
    int told = 0;
    Client.OnNoToken = [&told] { ++told; };
    EXPECT_EQ(Client.Login("anna", "secret") + 10 * told, 10);
    EXPECT_EQ(Client.debugLines.back(), "ERROR: The reply of the login has no token.");
    Client.UseService(Http, {"", 4161});
    EXPECT_EQ(Client.KeepAlive(), -1);
    EXPECT_EQ(Client.LastFailure, "key ApiHost in section [Cloud] of the system file is missing or empty");
}

TEST_F(ApiClient, SendsWhatIsAskedFor) {
    Client.Login("jørn", "a\"b\\c"); // unescaped
    const THttpRequest login = Http.Requests.back();
    EXPECT_EQ(login.ConnectTimeout, std::chrono::seconds(20)); // the user waits for it
    EXPECT_THAT(login.Headers,
                ElementsAre(Pair("Accept", "application/json"), Pair("Content-Type", "application/json")));
    EXPECT_EQ(login.Body, "{  \"Username\": \"jørn\", \"Password\": \"a\"b\\c\", \"MajorVersion\": \"0\", "
                          "\"MinorVersion\": \"0\", \"PatchVersion\": \"0\", \"RevisionNumber\": \"0\"}");
    Client.KeepAlive(); // nobody waits for it
    EXPECT_EQ(Http.Requests.back().WholeTimeout, std::chrono::milliseconds(4500));
    EXPECT_EQ(Http.Requests.back().ConnectTimeout, std::chrono::milliseconds(4500));
    EXPECT_THAT(Http.Requests.back().Headers.back(), Pair("Authorization", ""));
    Client.GetNabtoUserInfo("0419-0/../x?:\xC3\xB8", Credentials); // one piece of the path
    EXPECT_EQ(Http.Requests.back().Url, Base + "/devices/0419-0%2F%2E%2E%2F%78%3F%3A%C3%B8/0/Nabtouser");
}

} // namespace
} // namespace tidewell::test
