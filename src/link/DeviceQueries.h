#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// The device's wire format: JSON requests and replies. Members that go as JSON strings of decimal digits and
// members that go as numbers are part of the format. Nothing here throws on what a device sends.
namespace tidewell {

// nabto://<device>/<request>?json=<data>, raw.
std::string QueryUrl(std::string_view device, std::string_view request, std::string_view data);

// Request texts, without white space.
std::string PingRequest();
std::string UserAccountRequest(std::string_view usernumber, std::string_view user);
std::string ValueToJson(std::string_view address, std::string_view length, std::string_view obj);
// The low 16 bits of savevalue go out, unsigned.
std::string FormatSaveSetpoint(std::int32_t obj, std::int32_t address, std::int32_t savevalue);
std::string FormatRWData(std::uint32_t address, std::uint32_t length);
std::string GetCMD(std::int32_t cmd);
std::string prepareUpdateData(std::uint32_t fileid, std::uint32_t filesize, std::uint32_t crc32);
std::string prepareFlashWriteNostream(std::uint32_t state, std::uint32_t blocknumber,
                                      std::span<const std::uint8_t> payload);
std::string V2prepareFlashWriteNostream(std::uint32_t state, std::uint32_t blocknumber,
                                        std::uint32_t blockcrc, std::span<const std::uint8_t> payload);
std::string prepareSystemIdentify(std::int32_t systemId);

// What the program uses of a reply. Numbers keep the text they came in.
struct TDeviceReply {
    struct TNumber {
        std::string Text;
        // Whole numbers of 32 bits, signed or not, as their 32 bits; nothing for any other number.
        std::optional<std::uint32_t> Bits() const;
    };

    bool IsObject = false;            // the text is one JSON object
    std::optional<std::string> Error; // there is an object "error": its "body"
    bool HasResponse = false;         // there is an object "response"
    // There is an array "data": the text of each element's "value", each followed by "; ". An element without
    // a value that has a text adds nothing, so that the count tells.
    std::optional<std::string> Values;
    // Members of "response", if they are numbers.
    std::optional<TNumber> Status, Pong;
    std::optional<TNumber> Devicenumber, Model, VersionHP, VersionNP, VersionHBDE;
    std::optional<TNumber> SlaveDevicenumber, SlaveModel, Version;
};
TDeviceReply ParseReply(std::string_view json);

// The word "pong" as a number, which a device answers to a ping.
constexpr std::uint32_t PongWord = 1886350951;

} // namespace tidewell
