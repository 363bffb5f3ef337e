#include "rig/Wire.h"

#include "link/DeviceQueries.h"
#include "rig/Test.h"

#include <nlohmann/json.hpp>

namespace tidewell::test {

namespace {

using TJson = nlohmann::ordered_json;

constexpr std::string_view invoke = "nabtoRpcInvoke ";
constexpr std::string_view domain = ".hv.example";
constexpr std::string_view identity = "@users.tidewell.example 7d0f3c52a91e"; // of the user "service"

std::string Plain(const TJson& value) {
    return value.is_string() ? value.get<std::string>() : value.dump();
}

std::string Join(const TJson& object, const char* separator) {
    std::string text;
    for (const auto& [name, value] : object.items())
        text += (text.empty() ? "" : separator) + Plain(value);
    return text;
}

void EraseFirst(std::string& text, std::string_view part) {
    if (const auto at = text.find(part); at != std::string::npos)
        text.erase(at, part.size());
}

// "{"request":{...}}" in the order of its members.
std::string Arguments(const TJson& json) {
    std::string text;
    const auto& request = json.at("request");
    for (const auto& [name, value] : request.items()) {
        if (name == "list" && !value.empty() && value[0].contains("payload"))
            text += " x" + std::to_string(value.size());
        else if (name == "list")
            for (const auto& row : value)
                text += " " + Join(row, ".");
        else if (name == "blocknumber")
            text += " #" + Plain(value);
        else if (name != "blockCRC" && name != "ping")
            text += (text.empty() ? " " : ",") + Plain(value);
    }
    return text;
}

struct TToken {
    std::string Before, After; // of a packet: beside its number
    std::optional<long> First, Last;

    explicit TToken(const std::string& text) : Before(text) {
        const auto at = text.find(" #");
        if (at == std::string::npos)
            return;
        std::size_t end = 0;
        First = Last = std::stol(text.substr(at + 2), &end);
        Before = text.substr(0, at + 2);
        After = text.substr(at + 2 + end);
    }
    bool IsFollowedBy(const TToken& next) const {
        return Last && next.First && Before == next.Before && After == next.After && *next.First == *Last + 1;
    }
    std::string Text() const {
        return !First          ? Before
               : First == Last ? Before + std::to_string(*First) + After
                               : Before + std::to_string(*First) + "-" + std::to_string(*Last) + After;
    }
};

std::vector<std::string> WithRanges(const std::vector<std::string>& calls) {
    std::vector<TToken> tokens;
    for (const std::string& call : calls) {
        const TToken token(call);
        if (!tokens.empty() && tokens.back().IsFollowedBy(token))
            tokens.back().Last = token.Last;
        else
            tokens.push_back(token);
    }
    std::vector<std::string> texts;
    for (const TToken& token : tokens)
        texts.push_back(token.Text());
    return texts;
}

// How often the group of that length at a place stands there in a row.
std::size_t Repeats(const std::vector<std::string>& texts, std::size_t at, std::size_t length) {
    std::size_t count = 1;
    for (std::size_t next = at + length; next + length <= texts.size(); next += length, ++count)
        for (std::size_t i = 0; i < length; ++i)
            if (texts[next + i] != texts[at + i])
                return count;
    return count;
}

} // namespace

std::string FieldOf(const std::string& json, const std::string& name) {
    const TJson parsed = TJson::parse(json, nullptr, false);
    return parsed.is_object() && parsed.contains(name) ? Plain(parsed[name]) : std::string();
}

std::string ShortCall(const std::string& call) {
    if (call == "nabtoFree" || call.starts_with("nabtoStreamReadIntoBuf"))
        return {};
    std::string text = call.substr(std::string_view("nabto").size());
    EraseFirst(text, domain);
    EraseFirst(text, identity);
    if (!call.starts_with(invoke))
        return text;
    const auto slash = text.find('/', text.find("//") + 2);
    const auto query = text.find(".json?json=");
    const std::string device = text.substr(text.find("//") + 2, slash - text.find("//") - 2);
    const TJson json =
        TJson::parse(text.substr(query + std::string_view(".json?json=").size()), nullptr, false);
    return text.substr(slash + 1, query - slash - 1) + " " + device +
           (json.is_object() ? Arguments(json) : std::string(" ?"));
}

bool IsQuestion(const std::string& call, const std::string& question) {
    const auto fields = SplitStrictly(question);
    if (fields.size() < 4 || !call.starts_with(invoke))
        return false;
    return call.find("ReadValue.json?") != std::string::npos &&
           call.ends_with(ValueToJson(fields[2], fields[3], fields[0]));
}

std::string JoinCalls(const std::vector<std::string>& calls) {
    const auto texts = WithRanges(calls);
    std::string line;
    for (std::size_t at = 0; at < texts.size();) {
        std::size_t length = 1;
        std::size_t count = Repeats(texts, at, 1);
        for (std::size_t other = 2; other <= 6 && count == 1; ++other)
            if (Repeats(texts, at, other) > 2) {
                length = other;
                count = Repeats(texts, at, other);
            }
        std::string group;
        for (std::size_t i = 0; i < length; ++i)
            group += (i == 0 ? "" : ", ") + texts[at + i];
        if (length > 1)
            group = "(" + group + ")";
        line += (line.empty() ? "" : ", ") + group + (count == 1 ? "" : " *" + std::to_string(count));
        at += length * count;
    }
    return line;
}

} // namespace tidewell::test
