#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
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

// What becomes of the text behind a name, a key of a section or an option of a row.
struct TNamedPlace {
    std::string_view Name;
    std::function<void(const std::string&)> Take;
};
template <typename T, typename TParse>
auto Into(T& place, TParse parse) {
    return [&place, parse](const std::string& text) { place = parse(text); };
}
// False if none has that name, which for a key is the same in upper and lower case.
bool TakeKey(const std::string& name, const std::string& text, std::initializer_list<TNamedPlace> places);
bool TakeOption(const TRowText::TOption& option, std::initializer_list<TNamedPlace> places);

std::vector<std::string> SplitWords(std::string_view text);
// Comma-separated, trimmed; an empty text has none.
std::vector<std::string> SplitNames(std::string_view text);

inline std::string AsItIs(const std::string& text) {
    return text;
}
std::int32_t ParseInteger(std::string_view text);
std::int32_t ParseIntegerWithin(std::string_view text, std::int32_t least, std::int32_t most);
std::size_t ParseCount(std::string_view text); // 0 or above
double ParseReal(std::string_view text);       // within 16 bits, signed or unsigned
bool ParseYesNo(std::string_view text);        // "true" or "false"
// "250ms", "10s", "2m30s", or a bare number of ms; in ms, 0 or above.
std::int64_t ParseTime(std::string_view text);

} // namespace tidewell
