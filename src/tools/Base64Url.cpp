#include "tools/Base64Url.h"

namespace tidewell {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
constexpr unsigned digitBits = 6;
constexpr unsigned byteBits = 8;

} // namespace

std::string ToBase64Url(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    std::uint32_t pending = 0;
    unsigned bits = 0;
    for (const std::uint8_t byte : bytes) {
        pending = (pending << byteBits | byte) & 0xFFFF;
        for (bits += byteBits; bits >= digitBits; bits -= digitBits)
            text += alphabet[pending >> (bits - digitBits) & 0x3F];
    }
    if (bits > 0)
        text += alphabet[pending << (digitBits - bits) & 0x3F];
    return text;
}

std::optional<std::vector<std::uint8_t>> FromBase64Url(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() * digitBits / byteBits);
    std::uint32_t pending = 0;
    unsigned bits = 0;
    for (const char character : text) {
        const auto digit = alphabet.find(character);
        if (digit == std::string_view::npos)
            return std::nullopt;
        pending = (pending << digitBits | static_cast<std::uint32_t>(digit)) & 0xFFFF;
        bits += digitBits;
        if (bits >= byteBits) {
            bits -= byteBits;
            bytes.push_back(static_cast<std::uint8_t>(pending >> bits));
        }
    }
    // What is left over is the filling of the last digit.
    if (bits == digitBits || (pending & ((1U << bits) - 1)) != 0)
        return std::nullopt;
    return bytes;
}

} // namespace tidewell
