#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// From what a user enters for a setpoint to s, which is the device's raw value + the row's offset. The raw
// value is s - offset; shown and entered is s with its point moved by the row's decimals.
namespace tidewell {

// A decimal number with "," or "." and perhaps an exponent. 0 for success; else the position, from 1, where
// it stops being a number with "," for its point, and a value of 0.
std::size_t ParseEntry(std::string_view text, long double& value);

// Decimals below 0 ask for entries in steps of this: 10 to their absolute value; 1 for decimals of 0.
std::int64_t EntryDivisor(std::int32_t decimals);
// s of an entered value, rounded to the row's decimals and to 8 digits, or, for decimals below 1, with what
// is less than one step dropped. Stays within 1e18.
std::int64_t EnteredToS(long double value, std::int32_t decimals);
// The raw value of a shown limit. Throws EConvertError for a text that is no number.
long double ShownToRaw(std::string_view shown, std::int32_t decimals, std::int32_t offset);

// The word of two entered characters. The first counts only if its code is 32 to 126 or 129 to 255, and
// without it the second does not count either; of a second one beyond 255 the low byte counts.
std::uint16_t WordOfCharacters(std::string_view text, bool firstIsLow);
// The characters of a word's two bytes; a byte of 0 has none.
std::string CharactersOfWord(std::uint16_t word, bool firstIsLow);

// The captions of 16 bits, most significant first: the names between ',', cut to 9 characters, and "Nu" for
// those that are missing.
std::vector<std::string> BitCaptions(std::string_view names);

// As few digits as tell the value, 15 at most; "1E20" for a very large or small one.
std::string GeneralText(long double value);

} // namespace tidewell
