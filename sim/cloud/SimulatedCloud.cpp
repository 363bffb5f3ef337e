#include "sim/cloud/SimulatedCloud.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <random>
#include <utility>

namespace tidewell {

namespace {

constexpr std::string_view Prefix = "/api/v1.2";
constexpr std::string_view DevicePrefix = "/devices/";
constexpr std::string_view DeviceSuffix = "/0/Nabtouser";

TCloudReply Refusal(int code, std::string_view why) {
    return {code, nlohmann::json{{"Message", why}}.dump(), {}, 0};
}

TCloudReply NotLoggedIn() {
    return Refusal(401, "The token is unknown or has expired.");
}

std::string Base64Url(std::string_view bytes) {
    static constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    std::string text;
    std::uint32_t bits = 0;
    unsigned held = 0;
    for (const char byte : bytes) {
        bits = (bits << 8U) | static_cast<unsigned char>(byte);
        for (held += 8; held >= 6; held -= 6)
            text += digits[(bits >> (held - 6)) & 63U];
    }
    if (held > 0)
        text += digits[(bits << (6 - held)) & 63U];
    return text;
}

std::string RandomBytes(std::size_t count) {
    std::random_device source;
    std::string bytes(count, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(source() & 0xFFU); });
    return bytes;
}

bool IsDevicePath(std::string_view path) {
    return path.size() > DevicePrefix.size() + DeviceSuffix.size() && path.starts_with(DevicePrefix) &&
           path.ends_with(DeviceSuffix);
}

// The words of a status line, "Not Found".
std::string_view ReasonPhrase(int code) {
    static const std::map<int, std::string_view> phrases{{200, "OK"},
                                                         {201, "Created"},
                                                         {204, "No Content"},
                                                         {302, "Found"},
                                                         {400, "Bad Request"},
                                                         {401, "Unauthorized"},
                                                         {403, "Forbidden"},
                                                         {404, "Not Found"},
                                                         {405, "Method Not Allowed"},
                                                         {500, "Internal Server Error"},
                                                         {502, "Bad Gateway"},
                                                         {503, "Service Unavailable"}};
    const auto found = phrases.find(code);
    return found == phrases.end() ? "Unknown" : found->second;
}

std::string PathOf(std::string_view url) {
    const std::size_t scheme = url.find("://");
    const std::size_t path = url.find('/', scheme == std::string_view::npos ? 0 : scheme + 3);
    return path == std::string_view::npos ? "/" : std::string(url.substr(path));
}

} // namespace

TSimulatedCloud::TSimulatedCloud(TCloudConfig config, TNow now)
    : Config(std::move(config)), Now(std::move(now)) {}

void TSimulatedCloud::SetFaults(const TCloudFaults& faults) {
    const std::lock_guard lock(Guard);
    Config.Faults = faults;
}

void TSimulatedCloud::SetConfig(const TCloudConfig& config) {
    const std::lock_guard lock(Guard);
    Config = config;
}

std::size_t TSimulatedCloud::RequestCount() const {
    const std::lock_guard lock(Guard);
    return Requests;
}

TCloudReply TSimulatedCloud::Handle(const TCloudRequest& request) {
    const std::lock_guard lock(Guard);
    ++Requests;
    const TCloudFaults& faults = Config.Faults;
    if (!FaultApplies(request))
        return Route(request);
    TCloudReply reply =
        faults.RefuseCode != 0 ? Refusal(faults.RefuseCode, "Refused on purpose.") : Route(request);
    if (faults.NoJson)
        reply.Body = "<html><body>Down for maintenance</body></html>";
    if (faults.EmptyBody)
        reply.Body.clear();
    reply.DelayMs = faults.DelayMs;
    return reply;
}

bool TSimulatedCloud::FaultApplies(const TCloudRequest& request) const {
    return std::string_view(request.Path).ends_with(Config.Faults.Path);
}

TCloudReply TSimulatedCloud::Route(const TCloudRequest& request) {
    std::string_view path = request.Path;
    if (!path.starts_with(Prefix))
        return Refusal(404, "No such path.");
    path.remove_prefix(Prefix.size());
    const bool posted = path == "/login" || path == "/logout" || path == "/keepAlive";
    if (!posted && path != "/Nabtouser" && !IsDevicePath(path))
        return Refusal(404, "No such path.");
    if (request.Method != (posted ? "POST" : "GET"))
        return Refusal(405, "Not with this method.");
    if (path == "/login")
        return Login(request);

    const auto session = FindSession(request);
    if (session == Sessions.end())
        return NotLoggedIn();
    const std::string name = session->second.User;
    const auto user = Config.Users.find(name);
    if (user == Config.Users.end())
        return NotLoggedIn();
    if (path == "/logout") {
        Sessions.erase(session);
        return {};
    }
    if (path == "/keepAlive") {
        Sessions.erase(session);
        return {200, {}, OpenSession(name), 0};
    }
    return path == "/Nabtouser" ? Identity(user->second) : Device(user->second, path);
}

TCloudReply TSimulatedCloud::Login(const TCloudRequest& request) {
    const nlohmann::json body = nlohmann::json::parse(request.Body, nullptr, false);
    const auto text = [&](const char* name) -> const std::string* {
        const auto member = body.is_object() ? body.find(name) : body.end();
        return member != body.end() && member->is_string() ? &member->get_ref<const std::string&>() : nullptr;
    };
    const std::string* const name = text("Username");
    const std::string* const password = text("Password");
    if (name == nullptr || password == nullptr)
        return Refusal(400, "The body has to be a JSON object with the texts Username and Password.");
    const auto user = Config.Users.find(*name);
    if (user == Config.Users.end() || user->second.Password != *password)
        return Refusal(401, "Wrong user name or password.");
    nlohmann::json flags = nlohmann::json::array();
    const std::size_t count =
        FaultApplies(request) ? static_cast<std::size_t>(Config.Faults.FlagCount) : user->second.Flags.size();
    for (std::size_t index = 0; index < std::min(count, user->second.Flags.size()); ++index)
        flags.push_back(user->second.Flags[index]);
    return {200, nlohmann::json{{"PermissionFlags", flags}}.dump(), OpenSession(*name), 0};
}

TCloudReply TSimulatedCloud::Identity(const TCloudUser& user) const {
    return {200, nlohmann::json{{"User", user.NabtoUser}, {"ID", user.NabtoId}}.dump(), {}, 0};
}

TCloudReply TSimulatedCloud::Device(const TCloudUser& user, std::string_view path) const {
    const std::string_view id =
        path.substr(DevicePrefix.size(), path.size() - DevicePrefix.size() - DeviceSuffix.size());
    if (std::find(Config.Devices.begin(), Config.Devices.end(), id) == Config.Devices.end())
        return Refusal(404, "No such device.");
    if (std::find(user.Devices.begin(), user.Devices.end(), id) == user.Devices.end())
        return Refusal(403, "This device is not yours.");
    return Identity(user);
}

TSimulatedCloud::TSessions::iterator TSimulatedCloud::FindSession(const TCloudRequest& request) {
    const auto oldest = Now() - std::chrono::seconds(Config.TokenLifetimeSeconds);
    std::erase_if(Sessions, [oldest](const auto& entry) { return entry.second.Opened <= oldest; });
    const auto session = Sessions.find(request.Authorization);
    if (session == Sessions.end())
        return session;
    if (Config.TokenRequests > 0 && ++session->second.Requests > Config.TokenRequests) {
        Sessions.erase(session);
        return Sessions.end();
    }
    return session;
}

std::string TSimulatedCloud::OpenSession(const std::string& user) {
    const auto now = Now();
    const auto expires = now + std::chrono::seconds(Config.TokenLifetimeSeconds);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(expires.time_since_epoch()).count();
    const std::string payload = nlohmann::json{{"sub", user}, {"exp", seconds}}.dump();
    std::string header = "Bearer " + Base64Url(R"({"alg":"HS256","typ":"JWT"})") + "." + Base64Url(payload) +
                         "." + Base64Url(RandomBytes(32));
    Sessions[header] = {user, now, 0};
    return header;
}

THttpReply TInProcessCloud::Exchange(const THttpRequest& request) {
    if (!Connected)
        return NoReply("Failed to connect");
    THttpReply sent; // for its look-up of headers
    sent.Headers = request.Headers;
    const TCloudReply answer =
        Cloud.Handle({request.Method, PathOf(request.Url), sent.Header("Authorization"), request.Body});
    if (answer.DelayMs > request.WholeTimeout.count()) {
        const auto limit = static_cast<int>(request.WholeTimeout.count());
        Wait.Sleep(limit);
        return NoReply("Operation timed out after " + std::to_string(limit) + " milliseconds");
    }
    if (answer.DelayMs > 0)
        Wait.Sleep(answer.DelayMs);
    THttpReply reply;
    reply.Code = answer.Code;
    reply.Reason = "HTTP/1.1 " + std::to_string(answer.Code) + " " + std::string(ReasonPhrase(answer.Code));
    reply.Body = answer.Body;
    if (!answer.Authorization.empty())
        reply.Headers.emplace_back("Authorization", answer.Authorization);
    return reply;
}

} // namespace tidewell
