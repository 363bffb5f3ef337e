#include "core/TextFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>

namespace tidewell {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view littleEndianMark = "\xFF\xFE";
constexpr std::string_view bigEndianMark = "\xFE\xFF";

// Code points of the bytes 0x80 to 0x9F. The five that have no character stand for themselves, so that any
// byte string survives reading and writing.
constexpr std::array<char16_t, 32> windows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::uint8_t Byte(char c) {
    return static_cast<std::uint8_t>(c);
}

// The character at the front of the text, and how many bytes it takes; length 0 if the bytes are no UTF-8.
struct TCharacter {
    char32_t Code = 0;
    std::size_t Length = 0;
};

TCharacter FirstCharacter(std::string_view text) {
    const std::uint8_t lead = Byte(text.front());
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return {};
    char32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((Byte(text[i]) & 0xC0U) != 0x80)
            return {};
        code = (code << 6U) | (Byte(text[i]) & 0x3FU);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (overlong || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return {};
    return {code, length};
}

void AppendUtf8(std::string& text, char32_t code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
        return;
    }
    if (code < 0x800) {
        text += static_cast<char>(0xC0U | (code >> 6U));
    } else {
        if (code < 0x10000) {
            text += static_cast<char>(0xE0U | (code >> 12U));
        } else {
            text += static_cast<char>(0xF0U | (code >> 18U));
            text += static_cast<char>(0x80U | ((code >> 12U) & 0x3FU));
        }
        text += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
    }
    text += static_cast<char>(0x80U | (code & 0x3FU));
}

// What stands behind the mark; nothing if it is no UTF-16.
std::optional<std::string> FromUtf16(std::string_view bytes, bool littleEndian) {
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    const auto unit = [&](std::size_t at) {
        return static_cast<char32_t>(Byte(bytes[at + (littleEndian ? 1 : 0)]) << 8U |
                                     Byte(bytes[at + (littleEndian ? 0 : 1)]));
    };
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        char32_t code = unit(at);
        if (code >= 0xD800 && code <= 0xDFFF) {
            at += 2;
            const char32_t low = code < 0xDC00 && at < bytes.size() ? unit(at) : 0;
            if (low < 0xDC00 || low > 0xDFFF)
                return std::nullopt;
            code = 0x10000 + ((code - 0xD800) << 10U) + (low - 0xDC00);
        }
        AppendUtf8(text, code);
    }
    return text;
}

// With its mark. The text is valid UTF-8.
std::string ToUtf16(std::string_view utf8, bool littleEndian) {
    std::string bytes(littleEndian ? littleEndianMark : bigEndianMark);
    const auto append = [&](char32_t unit) {
        const auto high = static_cast<char>(unit >> 8U);
        const auto low = static_cast<char>(unit & 0xFFU);
        bytes += littleEndian ? low : high;
        bytes += littleEndian ? high : low;
    };
    while (!utf8.empty()) {
        const auto [code, length] = FirstCharacter(utf8);
        if (code < 0x10000) {
            append(code);
        } else {
            append(0xD800 + ((code - 0x10000) >> 10U));
            append(0xDC00 + ((code - 0x10000) & 0x3FFU));
        }
        utf8.remove_prefix(length);
    }
    return bytes;
}

// Nothing if the text holds a character that has no byte.
std::optional<std::string> Windows1252Bytes(std::string_view utf8) {
    std::string bytes;
    bytes.reserve(utf8.size());
    while (!utf8.empty()) {
        const auto [code, length] = FirstCharacter(utf8);
        if (length == 0)
            return std::nullopt;
        if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
            bytes += static_cast<char>(code);
        } else {
            const auto* const found = std::find(windows1252.begin(), windows1252.end(), code);
            if (found == windows1252.end())
                return std::nullopt;
            bytes += static_cast<char>(0x80 + (found - windows1252.begin()));
        }
        utf8.remove_prefix(length);
    }
    return bytes;
}

} // namespace

bool IsValidUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = FirstCharacter(bytes).Length;
        if (length == 0)
            return false;
        bytes.remove_prefix(length);
    }
    return true;
}

std::string DecodeText(std::string_view bytes, EEncoding& encoding) {
    if (IsValidUtf8(bytes)) {
        const bool marked = bytes.starts_with(byteOrderMark);
        encoding = marked ? EEncoding::Utf8WithMark : EEncoding::Utf8;
        return std::string(marked ? bytes.substr(byteOrderMark.size()) : bytes);
    }
    const bool littleEndian = bytes.starts_with(littleEndianMark);
    if (littleEndian || bytes.starts_with(bigEndianMark)) {
        if (auto text = FromUtf16(bytes.substr(littleEndianMark.size()), littleEndian)) {
            encoding = littleEndian ? EEncoding::Utf16LittleEndian : EEncoding::Utf16BigEndian;
            return *std::move(text);
        }
    }
    encoding = EEncoding::Windows1252;
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const std::uint8_t byte = Byte(c);
        AppendUtf8(text, byte >= 0x80 && byte < 0xA0 ? windows1252[byte - 0x80U] : char32_t{byte});
    }
    return text;
}

std::string EncodeText(std::string_view utf8, EEncoding encoding) {
    if (encoding == EEncoding::Utf8WithMark)
        return std::string(byteOrderMark).append(utf8);
    if ((encoding == EEncoding::Utf16LittleEndian || encoding == EEncoding::Utf16BigEndian) &&
        IsValidUtf8(utf8))
        return ToUtf16(utf8, encoding == EEncoding::Utf16LittleEndian);
    if (encoding == EEncoding::Windows1252) {
        // Bytes that happen to be Unicode would be read as another text.
        auto bytes = Windows1252Bytes(utf8);
        EEncoding read{};
        if (bytes && DecodeText(*bytes, read) == utf8)
            return *std::move(bytes);
    }
    return std::string(utf8);
}

std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        lines.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(text.substr(end).starts_with("\r\n") ? end + 2 : end + 1);
    }
    return lines;
}

std::vector<std::string> ReadLines(const IFiles& files, const std::filesystem::path& path) {
    EEncoding encoding = EEncoding::Utf8;
    return SplitLines(DecodeText(files.Read(path), encoding));
}

std::filesystem::path WriteLines(IFileWriter& file, const std::vector<std::string>& lines) {
    std::string bytes;
    for (const auto& line : lines)
        bytes.append(line).append("\r\n");
    file.Write(bytes);
    return file.Commit();
}

} // namespace tidewell
