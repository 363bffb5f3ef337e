#include "sim/nabto/DeclaredMembers.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace tidewell {

namespace {

using TJson = nlohmann::ordered_json;

std::string JsonText(const TJson& json) {
    return json.dump(-1, ' ', false, TJson::error_handler_t::replace);
}

} // namespace

std::string ErrorReply(const std::string& body) {
    return JsonText({{"error", {{"body", body}}}});
}

std::optional<std::string> UndeclaredMember(const TInterfaceDefinition::TQuery& query,
                                            std::string_view request) {
    const TJson json = TJson::parse(request, nullptr, false);
    if (json.is_object() && json.contains("request") && json["request"].is_object()) {
        for (const auto& [name, value] : json["request"].items())
            if (!query.Request.contains(name))
                return name;
    }
    return std::nullopt;
}

std::string Declared(const TInterfaceDefinition::TQuery& query, std::string reply) {
    TJson json = TJson::parse(reply, nullptr, false);
    if (!json.is_object() || !json.contains("response") || !json["response"].is_object())
        return reply;
    TJson kept = TJson::object();
    for (const auto& [name, value] : json["response"].items())
        if (query.Response.contains(name))
            kept[name] = value;
    if (kept.size() == json["response"].size())
        return reply;
    json["response"] = std::move(kept);
    return JsonText(json);
}

} // namespace tidewell
