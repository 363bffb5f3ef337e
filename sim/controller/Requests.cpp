#include "sim/controller/Requests.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cstddef>
#include <limits>
#include <utility>

namespace tidewell {

namespace {

using TJson = nlohmann::ordered_json;

constexpr std::int64_t MostAddress = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t MostValues = 65536;

std::int32_t Within(std::int64_t value, std::int64_t least, std::int64_t most, const std::string& name) {
    if (value < least || value > most)
        throw ERequestRefused("member \"" + name + "\" is out of range");
    return static_cast<std::int32_t>(value);
}

const TJson& Member(const TJson& request, const std::string& name) {
    const auto found = request.is_object() ? request.find(name) : request.end();
    if (found == request.end())
        throw ERequestRefused("member \"" + name + "\" is missing");
    return *found;
}

TRegisterAddress AddressMembers(const TJson& request) {
    const std::int64_t address = TextMember(request, "address");
    const std::int64_t obj = TextMember(request, "obj");
    return {Within(obj, -MostAddress, MostAddress, "obj"), Within(address, 0, MostAddress, "address")};
}

} // namespace

std::string JsonText(const TJson& json) {
    return json.dump(-1, ' ', false, TJson::error_handler_t::replace);
}

std::string ErrorReply(const std::string& body) {
    return JsonText({{"error", {{"body", body}}}});
}

TJson ParseRequest(std::string_view requestJson) {
    TJson outer = TJson::parse(requestJson, nullptr, false);
    if (outer.is_object() && outer.contains("request") && outer["request"].is_object())
        return std::move(outer["request"]);
    throw ERequestRefused("malformed request");
}

std::int64_t TextMember(const TJson& request, const std::string& name) {
    const TJson& member = Member(request, name);
    std::int64_t value = 0;
    if (member.is_string()) {
        const auto& text = member.get_ref<const std::string&>();
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, value);
        if (error == std::errc() && stop == end)
            return value;
    }
    throw ERequestRefused("member \"" + name + "\" is no string of decimal digits");
}

std::int64_t NumberMember(const TJson& request, const std::string& name) {
    const TJson& member = Member(request, name);
    if (!member.is_number_integer())
        throw ERequestRefused("member \"" + name + "\" is no whole number");
    return member.get<std::int64_t>();
}

std::int64_t NumberMember(const TJson& request, const std::string& name, std::int64_t most) {
    return Within(NumberMember(request, name), 0, most, name);
}

const TJson& ListMember(const TJson& request, const std::string& name) {
    const TJson& member = Member(request, name);
    if (!member.is_array())
        throw ERequestRefused("member \"" + name + "\" is no list");
    return member;
}

std::vector<TRegisterAddress> ReadAddresses(const TJson& request) {
    const TRegisterAddress first = AddressMembers(request);
    const std::int32_t length = Within(TextMember(request, "length"), 0, MostValues, "length");
    Within(std::int64_t{first.Address} + length, 0, MostAddress, "length");
    std::vector<TRegisterAddress> addresses;
    addresses.reserve(static_cast<std::size_t>(length));
    for (std::int32_t i = 0; i < length; ++i)
        addresses.push_back({first.Obj, first.Address + i});
    return addresses;
}

std::vector<TWriteEntry> WriteEntries(const TJson& request) {
    const TJson& list = ListMember(request, "list");
    if (list.empty())
        throw ERequestRefused("member \"list\" is empty");
    std::vector<TWriteEntry> entries;
    entries.reserve(list.size());
    for (const TJson& element : list) {
        const TRegisterAddress at = AddressMembers(element);
        const std::int32_t value = Within(TextMember(element, "value"), 0, 65535, "value");
        entries.push_back({at, static_cast<std::uint16_t>(value)});
    }
    return entries;
}

} // namespace tidewell
