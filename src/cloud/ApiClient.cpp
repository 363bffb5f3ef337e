#include "cloud/ApiClient.h"

#include "core/Errors.h"
#include "core/Guard.h"
#include "core/Numbers.h"
#include "core/ProgramState.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <exception>
#include <string_view>

namespace tidewell {

namespace {

constexpr std::size_t DataloggerFlag = 10;
constexpr std::chrono::milliseconds KeepAliveLimit(4500); // the windows stand still meanwhile

// How an exchange ended: with no reply, or one from 300 on, the HTTP client counts as having raised an
// exception.
bool Raised(const THttpReply& reply) {
    return reply.Code < 0 || reply.Code >= 300;
}

std::string RaisedText(const THttpReply& reply) {
    return reply.Code < 0 ? reply.Error : reply.Reason;
}

std::string CodeText(const THttpReply& reply) {
    return std::to_string(reply.Code) + " " + reply.Reason;
}

std::string RefusedLine(const THttpReply& reply) {
    return "ERROR: Could not authenticate. ResponseCode: " + CodeText(reply);
}

std::string ExceptionPart(const THttpReply& reply) {
    return "    EXCEPTION: " + RaisedText(reply);
}

nlohmann::json ParseObject(const std::string& body) {
    nlohmann::json json;
    try {
        json = nlohmann::json::parse(body);
    } catch (const nlohmann::json::parse_error& error) {
        throw TError("the reply is no JSON, error at byte " + std::to_string(error.byte));
    }
    if (!json.is_object())
        throw TError("the reply is no JSON object");
    return json;
}

bool FlagValue(const nlohmann::json& member, std::size_t index) {
    if (member.is_boolean())
        return member.get<bool>();
    if (member.is_string())
        return member.get_ref<const std::string&>() == "true";
    if (member.is_number())
        return member.get<double>() != 0.0;
    throw TError("member " + std::to_string(index) + " of PermissionFlags is no boolean");
}

std::array<bool, TApiClient::PermissionCount> ParsePermissions(const std::string& body) {
    const nlohmann::json json = ParseObject(body);
    const auto flags = json.find("PermissionFlags");
    if (flags == json.end() || !flags->is_array())
        throw TError("the reply has no array PermissionFlags");
    std::array<bool, TApiClient::PermissionCount> result{};
    if (flags->size() < result.size()) {
        throw TError("PermissionFlags has " + std::to_string(flags->size()) + " members instead of " +
                     std::to_string(result.size()));
    }
    for (std::size_t index = 0; index < result.size(); ++index)
        result[index] = FlagValue((*flags)[index], index);
    return result;
}

std::string TextMember(const nlohmann::json& json, const char* name) {
    const auto member = json.find(name);
    if (member == json.end() || !member->is_string())
        throw TError(std::string("the reply has no text ") + name);
    return member->get<std::string>();
}

// A device id as one piece of a path.
std::string PathPiece(const std::string& text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string piece;
    for (const char character : text) {
        if ((character >= '0' && character <= '9') || character == '-') {
            piece += character;
        } else {
            const auto code = static_cast<unsigned char>(character);
            piece += {'%', digits[code / 16], digits[code % 16]};
        }
    }
    return piece;
}

} // namespace

void TApiClient::UseService(IHttp& http, const TCloudAddress& address) {
    Http = &http;
    HostKnown = !address.Host.empty();
    BaseUrl = "https://" + address.Host + ":" + std::to_string(address.Port) + "/api/v1.2";
}

THttpReply TApiClient::Exchange(const THttpRequest& request) {
    if (!HostKnown)
        return NoReply("key ApiHost in section [Cloud] of the system file is missing or empty");
    const TWaitCursor busy(Dialogs); // a server that is slow to answer holds the screen
    return Http->Exchange(request);
}

THttpReply TApiClient::Call(const std::string& method, const std::string& url, const std::string& body,
                            bool authorize, std::chrono::milliseconds limit) {
    if (!Program.IsOpen())
        return NoReply("the program is closed");
    THttpRequest request{
        method, url, {{"Accept", "application/json"}, {"Content-Type", "application/json"}}, body};
    request.ConnectTimeout = std::min(request.ConnectTimeout, limit);
    request.WholeTimeout = limit;
    if (authorize)
        request.Headers.emplace_back("Authorization", token);
    THttpReply reply = Exchange(request);
    LastFailure = reply.Code == 200 ? std::string() : RaisedText(reply);
    if (reply.Code < 0) {
        debugLines.push_back("No connection: " + reply.Error);
        OnNoConnection(reply.Error);
    }
    return reply;
}

int TApiClient::Login(const std::string& username, const std::string& password) {
    _isLoggedIn = false;
    if (TokenUser != username)
        token.clear();
    TokenUser = username;
    try {
        const std::string body =
            R"({  "Username": ")" + username + R"(", "Password": ")" + password +
            R"(", "MajorVersion": "0", "MinorVersion": "0", "PatchVersion": "0", "RevisionNumber": "0"})";
        return LoginReply(Call("POST", BaseUrl + "/login", body, false));
    } catch (const std::exception& error) {
        debugLines.push_back(std::string("ERROR in login: Unable to call the API. Reason: ") + error.what());
        return -1;
    }
}

int TApiClient::LoginReply(const THttpReply& reply) {
    if (Raised(reply)) {
        if (reply.Code == 401) {
            debugLines.emplace_back("NOT AUTHENTICATED: Wrong username or password.");
            return -2;
        }
        if (reply.Code < 0) {
            Dialogs.ShowMessageBox(EMessageKind::Warning, "No connection to server", EButtons::Ok);
            return -1;
        }
        const std::string line = RefusedLine(reply) + ExceptionPart(reply);
        debugLines.push_back(line);
        Dialogs.ShowMessageBox(EMessageKind::Information, line, EButtons::Ok);
        return -1;
    }
    if (reply.Code != 200) {
        debugLines.push_back(RefusedLine(reply));
        return -1;
    }
    // The rights of a former login must not outlive it.
    permissions.fill(false);
    if (!reply.Body.empty())
        permissions = ParsePermissions(reply.Body);
    if (!CanUseDatalogger()) {
        token.clear();
        return -3;
    }
    token = reply.Header("Authorization");
    if (token.empty()) {
        debugLines.emplace_back("ERROR: The reply of the login has no token.");
        OnNoToken();
    }
    _isLoggedIn = true;
    return 0;
}

int TApiClient::Refused(const THttpReply& reply, const char* notLoggedIn, const std::string& line) {
    if (reply.Code == 401)
        debugLines.emplace_back(notLoggedIn);
    debugLines.push_back(line + ExceptionPart(reply));
    return reply.Code == 401 ? -3 : -1;
}

int TApiClient::Logout() {
    _isLoggedIn = false;
    token.clear();
    _creds = {};
    try {
        const THttpReply reply = Call("POST", BaseUrl + "/logout", {}, true);
        if (Raised(reply))
            return Refused(reply, "UNORTHORIZED: Not logged in.", RefusedLine(reply));
        return reply.Code == 200 ? 0 : -1;
    } catch (const std::exception& error) {
        debugLines.push_back(std::string("ERROR in logout: Unable to call the API. Reason: ") + error.what());
        return -1;
    }
}

int TApiClient::GetNabtoUserInfo(const std::string& deviceID, TCredentials& credentials) {
    if (_isLocalSession) {
        credentials = {};
        return -1;
    }
    return FetchIdentity("/devices/" + PathPiece(deviceID) + "/0/Nabtouser", credentials);
}

int TApiClient::BeginOfflineSession() {
    const int result = FetchIdentity("/Nabtouser", _creds);
    if (result == 0)
        _isLocalSession = true;
    return result;
}

int TApiClient::FetchIdentity(const std::string& path, TCredentials& credentials) {
    THttpReply reply;
    try {
        debugLines.push_back("Calling url: " + BaseUrl + path);
        reply = Call("GET", BaseUrl + path, {}, true);
        if (Raised(reply))
            return Refused(reply, "UNORTHORIZED: Not logged in.", RefusedLine(reply));
        if (reply.Code != 200) {
            debugLines.push_back("ERROR: Could not authenticate. ResponseCode: " +
                                 std::to_string(reply.Code));
            return -1;
        }
        if (reply.Body.empty()) {
            LastFailure = "the reply is empty";
            debugLines.emplace_back("ERROR: Could not parse the result from login.");
            return -1;
        }
        const nlohmann::json json = ParseObject(reply.Body);
        credentials = TCredentials{TextMember(json, "User"), TextMember(json, "ID")};
        return 0;
    } catch (const std::exception& error) {
        LastFailure = error.what();
        debugLines.push_back("s: " + reply.Reason);
        debugLines.push_back(std::string("ERROR: Unable to call the API. Reason: ") + error.what());
        return -1;
    }
}

int TApiClient::GetOfflineSessionCredentials(TCredentials& credentials) const {
    if (!_isLocalSession)
        return -1;
    credentials = _creds;
    return 0;
}

int TApiClient::KeepAlive() {
    try {
        debugLines.push_back("Calling url: " + BaseUrl + "/keepAlive");
        const THttpReply reply = Call("POST", BaseUrl + "/keepAlive", {}, true, KeepAliveLimit);
        if (Raised(reply)) {
            return Refused(reply, "UNAUTHORIZED: Not logged in.",
                           "ERROR: Request failed with Errorcode: " + CodeText(reply));
        }
        if (reply.Code != 200) {
            debugLines.push_back(RefusedLine(reply));
            return -1;
        }
        // A server that does not roll the token sends none; the one held is then still good.
        if (const std::string rolled = reply.Header("Authorization"); !rolled.empty())
            token = rolled;
        return 0;
    } catch (const std::exception& error) {
        debugLines.push_back(std::string("ERROR in login: Unable to call the API. Reason: ") + error.what());
        return -1;
    }
}

void TApiClient::SetAccessToken(const std::string& jwt) {
    if (Trim(jwt).empty())
        return;
    token = "Bearer " + jwt;
    TokenUser.clear();
    _isLoggedIn = true;
}

bool TApiClient::CanUseDatalogger() const {
    return permissions[DataloggerFlag];
}

} // namespace tidewell
