#include "link/DeviceQueries.h"

#include "core/Numbers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <set>
#include <utility>

namespace tidewell {

namespace {

void AppendJsonText(std::string& target, std::string_view text) {
    constexpr std::string_view hex = "0123456789ABCDEF";
    target += '"';
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        switch (character) {
        case '"':
        case '\\':
        case '/':
            target += '\\';
            target += character;
            break;
        case '\b':
            target += "\\b";
            break;
        case '\t':
            target += "\\t";
            break;
        case '\n':
            target += "\\n";
            break;
        case '\f':
            target += "\\f";
            break;
        case '\r':
            target += "\\r";
            break;
        default:
            if (code < 32) {
                target += "\\u00";
                target += hex[code >> 4U];
                target += hex[code & 15U];
            } else {
                target += character;
            }
        }
    }
    target += '"';
}

// An upload sends millions of bytes, each as an object {"payload":<byte>}: those texts stand ready, with the
// comma to the next one.
constexpr std::string_view payloadStart = "{\"payload\":";
using TPayloadText = std::array<char, payloadStart.size() + 5>;

constexpr std::size_t PayloadLength(std::size_t byte) {
    return payloadStart.size() + (byte < 10 ? 1 : byte < 100 ? 2 : 3) + 2;
}

constexpr std::array<TPayloadText, 256> MakePayloadTexts() {
    std::array<TPayloadText, 256> texts{};
    for (std::size_t byte = 0; byte < texts.size(); ++byte) {
        TPayloadText& text = texts[byte];
        std::ranges::copy(payloadStart, text.begin());
        std::size_t end = PayloadLength(byte);
        text[--end] = ',';
        text[--end] = '}';
        for (std::size_t rest = byte; end > payloadStart.size(); rest /= 10)
            text[--end] = static_cast<char>('0' + rest % 10);
    }
    return texts;
}

constexpr auto payloadTexts = MakePayloadTexts();

// {"request":{...}} with the members in the order of the calls.
class TRequest {
  public:
    TRequest& Text(std::string_view name, std::string_view value) {
        Begin(name);
        AppendJsonText(Json, value);
        return *this;
    }
    // A number that goes as a JSON string.
    TRequest& Digits(std::string_view name, std::int64_t value) { return Text(name, std::to_string(value)); }
    TRequest& Number(std::string_view name, std::int64_t value) { return Raw(name, std::to_string(value)); }
    TRequest& Payload(std::span<const std::uint8_t> bytes) {
        Begin("list");
        Json.reserve(Json.size() + bytes.size() * payloadTexts.front().size() + 2);
        Json += '[';
        for (const std::uint8_t byte : bytes) {
            const TPayloadText& text = payloadTexts[byte];
            Json.append(text.data(), PayloadLength(byte));
        }
        if (!bytes.empty())
            Json.pop_back();
        Json += ']';
        return *this;
    }
    TRequest& Raw(std::string_view name, std::string_view json) {
        Begin(name);
        Json += json;
        return *this;
    }
    std::string Members() const { return Json; }
    std::string Close() const { return "{\"request\":{" + Json + "}}"; }

  private:
    void Begin(std::string_view name) {
        if (!Json.empty())
            Json += ',';
        AppendJsonText(Json, name);
        Json += ':';
    }
    std::string Json;
};

// Reads a reply in one pass and keeps only what TDeviceReply holds, so that depth and length of what a device
// sends cost nothing. Of members with the same name the first counts.
class TReplyReader : public nlohmann::json_sax<nlohmann::json> {
  public:
    TDeviceReply Reply;

    bool null() override { return Scalar("null", false); }
    bool boolean(bool value) override { return Scalar(value ? "true" : "false", false); }
    bool number_integer(number_integer_t value) override { return Scalar(std::to_string(value), true); }
    bool number_unsigned(number_unsigned_t value) override { return Scalar(std::to_string(value), true); }
    bool number_float(number_float_t, const string_t& text) override {
        // The parser hands the point over as the C locale's.
        std::string plain = text;
        if (const auto point = plain.find_first_not_of("+-0123456789eE"); point != std::string::npos)
            plain[point] = '.';
        return Scalar(plain, true);
    }
    bool string(string_t& text) override { return Scalar(text, false); }
    bool binary(binary_t&) override { return true; }

    bool start_object(std::size_t) override {
        if (Skipped > 0 || !Fresh) {
            ++Skipped;
            return true;
        }
        switch (Place) {
        case EPlace::Outside:
            Enter(EPlace::Root);
            break;
        case EPlace::Root:
            if (Key == "error") {
                Reply.Error.emplace();
                Enter(EPlace::Error);
            } else if (Key == "response") {
                Reply.HasResponse = true;
                Enter(EPlace::Response);
            } else {
                ++Skipped;
            }
            break;
        case EPlace::Data:
            Enter(EPlace::Element);
            break;
        default:
            ++Skipped;
        }
        return true;
    }
    bool end_object() override {
        Leave();
        return true;
    }
    bool start_array(std::size_t) override {
        if (Place == EPlace::Outside)
            return false;
        if (Skipped == 0 && Fresh && Place == EPlace::Response && Key == "data") {
            Reply.Values.emplace();
            Enter(EPlace::Data);
        } else {
            ++Skipped;
        }
        return true;
    }
    bool end_array() override {
        Leave();
        return true;
    }
    bool key(string_t& name) override {
        if (Skipped == 0) {
            Key = name;
            Fresh = Wanted(name) && (Place == EPlace::Element ? !std::exchange(ValueSeen, true)
                                                              : Seen.emplace(Place, name).second);
        }
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
        return false;
    }

  private:
    enum class EPlace { Outside, Root, Error, Response, Data, Element };
    struct TMember {
        std::string_view Name;
        std::optional<TDeviceReply::TNumber> TDeviceReply::*Field;
    };
    static constexpr std::array<TMember, 10> members{{
        {"status", &TDeviceReply::Status},
        {"Pong", &TDeviceReply::Pong},
        {"Devicenumber", &TDeviceReply::Devicenumber},
        {"Model", &TDeviceReply::Model},
        {"Version HP", &TDeviceReply::VersionHP},
        {"Version NP", &TDeviceReply::VersionNP},
        {"Version HBDE", &TDeviceReply::VersionHBDE},
        {"SlaveDevicenumber", &TDeviceReply::SlaveDevicenumber},
        {"SlaveModel", &TDeviceReply::SlaveModel},
        {"Version", &TDeviceReply::Version},
    }};

    bool Wanted(std::string_view name) const {
        switch (Place) {
        case EPlace::Root:
            return name == "error" || name == "response";
        case EPlace::Error:
            return name == "body";
        case EPlace::Response:
            return name == "data" || std::ranges::find(members, name, &TMember::Name) != members.end();
        case EPlace::Element:
            return name == "value";
        default:
            return false;
        }
    }
    void Enter(EPlace place) {
        Place = place;
        Fresh = true;
        ValueSeen = false;
    }
    void Leave() {
        if (Skipped > 0) {
            --Skipped;
            return;
        }
        switch (Place) {
        case EPlace::Element:
            Enter(EPlace::Data);
            break;
        case EPlace::Data:
            Enter(EPlace::Response);
            break;
        case EPlace::Error:
        case EPlace::Response:
            Enter(EPlace::Root);
            break;
        default:
            Reply.IsObject = true;
            Enter(EPlace::Outside);
        }
    }
    bool Scalar(const std::string& text, bool number) {
        if (Place == EPlace::Outside)
            return false;
        if (Skipped > 0 || !Fresh)
            return true;
        if (Place == EPlace::Error) {
            Reply.Error = text;
        } else if (Place == EPlace::Element) {
            *Reply.Values += text;
            *Reply.Values += "; ";
        } else if (Place == EPlace::Response && number) {
            if (const auto* member = std::ranges::find(members, Key, &TMember::Name); member != members.end())
                Reply.*member->Field = TDeviceReply::TNumber{text};
        }
        return true;
    }

    EPlace Place = EPlace::Outside;
    std::size_t Skipped = 0; // depth inside what is of no interest
    std::string Key;         // of the value that comes next
    bool Fresh = true;       // that value is of interest
    bool ValueSeen = false;
    std::set<std::pair<EPlace, std::string>> Seen;
};

} // namespace

std::string QueryUrl(std::string_view device, std::string_view request, std::string_view data) {
    std::string url = "nabto://";
    url.append(device).append("/").append(request).append("?json=").append(data);
    return url;
}

std::string PingRequest() {
    constexpr std::int64_t pingWord = 1885957735; // the letters of "ping"
    return TRequest().Digits("ping", pingWord).Close();
}

std::string UserAccountRequest(std::string_view usernumber, std::string_view user) {
    return TRequest().Text("usernumber", usernumber).Text("user", user).Close();
}

std::string ValueToJson(std::string_view address, std::string_view length, std::string_view obj) {
    return TRequest().Text("address", address).Text("length", length).Text("obj", obj).Close();
}

std::string FormatSaveSetpoint(std::int32_t obj, std::int32_t address, std::int32_t savevalue) {
    TRequest setpoint;
    setpoint.Digits("obj", obj);
    setpoint.Digits("address", address);
    setpoint.Digits("value", static_cast<std::uint16_t>(savevalue));
    return TRequest().Raw("list", "[{" + setpoint.Members() + "}]").Close();
}

std::string FormatRWData(std::uint32_t address, std::uint32_t length) {
    return TRequest().Digits("address", address).Digits("length", length).Close();
}

std::string GetCMD(std::int32_t cmd) {
    return TRequest().Digits("cmd", cmd).Close();
}

std::string prepareUpdateData(std::uint32_t fileid, std::uint32_t filesize, std::uint32_t crc32) {
    return TRequest().Digits("fileid", fileid).Digits("filesize", filesize).Digits("crc32", crc32).Close();
}

std::string prepareFlashWriteNostream(std::uint32_t state, std::uint32_t blocknumber,
                                      std::span<const std::uint8_t> payload) {
    return TRequest()
        .Number("nostreamstate", state)
        .Number("blocknumber", blocknumber)
        .Payload(payload)
        .Close();
}

std::string V2prepareFlashWriteNostream(std::uint32_t state, std::uint32_t blocknumber,
                                        std::uint32_t blockcrc, std::span<const std::uint8_t> payload) {
    return TRequest()
        .Number("nostreamstate", state)
        .Number("blocknumber", blocknumber)
        .Number("blockCRC", blockcrc)
        .Payload(payload)
        .Close();
}

std::string prepareSystemIdentify(std::int32_t systemId) {
    return TRequest().Number("SystemIdentify", systemId).Close();
}

std::optional<std::uint32_t> TDeviceReply::TNumber::Bits() const {
    const auto value = TryToFloat(Text);
    if (!value || *value != std::trunc(*value) || *value < std::numeric_limits<std::int32_t>::min() ||
        *value > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(*value));
}

TDeviceReply ParseReply(std::string_view json) {
    TReplyReader reader;
    if (!nlohmann::json::sax_parse(json, &reader))
        return {};
    return std::move(reader.Reply);
}

} // namespace tidewell
