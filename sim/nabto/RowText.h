#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The small texts of a simulation file. All functions throw TError with the reason alone; the caller adds
// file, section and key.
namespace tidewell {

// "head; name=value; flag", trimmed; a flag has an empty value.
struct TRowText {
    struct TOption {
        std::string Name;
        std::string Value;
    };
    std::string Head;
    std::vector<TOption> Options;
};
TRowText SplitRowText(std::string_view text);

std::vector<std::string> SplitWords(std::string_view text);
// Comma-separated, trimmed; an empty text has none.
std::vector<std::string> SplitNames(std::string_view text);

std::int32_t ParseInteger(std::string_view text);
std::int32_t ParseIntegerWithin(std::string_view text, std::int32_t least, std::int32_t most);
std::size_t ParseCount(std::string_view text); // 0 or above
double ParseReal(std::string_view text);       // within 16 bits, signed or unsigned
bool ParseYesNo(std::string_view text);        // "true" or "false"
// "250ms", "10s", "2m30s", or a bare number of ms; in ms, 0 or above.
std::int64_t ParseTime(std::string_view text);

} // namespace tidewell
