#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Conversions between numbers and texts. The decimal separator is always ".", whatever the locale.
namespace tidewell {

// Copy without the blanks and control characters at both ends.
std::string_view Trim(std::string_view text);
// ASCII letters only.
constexpr char LowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string LowerCase(std::string_view text);
bool SameText(std::string_view a, std::string_view b); // ASCII letters compare without case

// A whole decimal number with optional sign and leading blanks, nothing behind it; also "$" or "0x" and
// hexadecimal digits. Nothing if it is none or does not fit 32 bits.
std::optional<std::int32_t> TryToInteger(std::string_view text);
std::int32_t ToIntegerOr(std::string_view text, std::int32_t otherwise);
// Throws EConvertError: "'abc' is not a valid integer value".
std::int32_t ToInteger(std::string_view text);
// The same with 64 bits.
std::optional<std::int64_t> TryToInteger64(std::string_view text);
std::int64_t ToInteger64(std::string_view text);
// A value of a device or a log: as TryToInteger, but a number of more than 32 bits keeps them.
std::int64_t ToWideIntegerOr(std::string_view text, std::int64_t otherwise);

// A decimal number with optional fraction and exponent, blanks at both ends allowed.
std::optional<double> TryToFloat(std::string_view text);
// Throws EConvertError: "'abc' is not a valid floating point value".
double ToFloat(std::string_view text);

// "true" and "false" in any case, or a number with 0 as false. Throws EConvertError: "'abc' is not a valid
// boolean value".
bool ToBoolean(std::string_view text);
std::string BooleanText(bool value); // "True" or "False"

// With zeros before it, up to that many digits.
std::string PaddedText(std::int64_t value, std::size_t digits);

// Fixed notation with 8 significant digits: the value is rounded to 8 significant digits, then shown with
// that many decimals. A value that needs more than 8 digits before the point comes out in scientific
// notation, "1.2345679E8".
std::string FixedText(long double value, int decimals);

} // namespace tidewell
