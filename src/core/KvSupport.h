#pragma once

#include "core/Systeminfo.h"
#include "core/controls/StringGrid.h"
#include "core/ports/ICanvas.h"
#include "core/ports/IClock.h"
#include "core/ports/IFiles.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Helpers without state. A row is a text of ';'-terminated fields.
namespace tidewell {

class IDialogs;
class TIniSection;

// Every piece that ends in ';', in order; text behind the last ';' is dropped. With digitsOnly the splitting
// runs on a copy with all but digits and '-' removed, which leaves no ';' and so gives nothing.
void SplitRow(std::string_view text, std::vector<std::string>& target, bool digitsOnly);
// The pieces between ';', strictly: a text that ends in ';' has one further empty piece. An empty text has
// none.
std::vector<std::string_view> SplitStrictly(std::string_view text, char separator = ';');
std::string Join(std::span<const std::string> texts, std::string_view separator);

// Field at the index from 0, splitting at ';' only; a field that starts with '"' runs to the closing quote,
// with "" standing for one quote. Empty beyond the last field.
std::string GetRowField(std::string_view row, std::size_t index);
// The row with that field replaced, joined again with ';'. Missing fields before it are added empty.
std::string SetRowField(std::string_view row, std::size_t index, std::string_view value);

// Copy with only the characters of the set; characters above 255 are always dropped.
std::string KeepCharacters(std::string_view text, std::string_view set);
std::string DigitsOnly(std::string_view text); // digits and '-'
// The same, with the digits of other scripts as Latin ones: dates and times as a locale writes them.
std::string StampDigits(std::string_view text);
// Short date, a blank, short time, reduced to digits and '-': part of a file name.
std::string NowStamp(const IClock& clock);
// The same of short date and long time.
std::string DateTimeStamp(const IClock& clock);

// That many binary digits, from the right; 65536 is added to a negative value. Throws ERangeError when bits
// lie beyond the digits.
std::string BinaryString(std::int32_t value, std::size_t digits);
std::uint32_t BinaryToInteger(std::string_view text); // each "1" counts, any other character is 0
std::uint32_t DigitMask(std::string_view text);       // "1" and "2" both set the bit

// Keeps digits, ',', '-' and '.', takes ',' as '.' and converts. On failure the value is 0 and errorPosition,
// from 1, tells where the number stopped being one; 0 means success.
void ParseNumber(std::string_view text, std::size_t& errorPosition, long double& value);

// Parses the text and scales it with the list row's fields 5 (decimals) and 6 (offset). A text that is no
// number shows "Error Data not valid Code= " and the position, and leaves the result alone. Throws
// EConvertError for a row whose fields are no integers.
void FormatWithRow(std::string_view row, std::string_view text, std::string& result, IDialogs& dialogs);

// s, which is raw + offset, with its point moved left by that many digits, or to the right for decimals below
// 0. More than 290 digits count as 290, so that a register's value fits a double.
long double Scaled(long double s, std::int32_t decimals);
// The same as text (see FixedText): with all the digits moved behind the point, or whole.
std::string ScaledText(long double s, std::int32_t decimals);

// A value with its unit, for setpoint files. userUnits are the rows of that section, by position; dataUnits
// by name.
void UnitText(std::string_view value, std::string_view code, const TIniSection& dataUnits,
              std::string& result, const TIniSection& userUnits);

bool FileIsLocked(const IFiles& files, const std::filesystem::path& path);
// "cfg/system_*.inn" below the directory if exactly one such file is there; otherwise empty.
std::filesystem::path FindSystemFile(const IFiles& files, const std::filesystem::path& directory);
// The language file that the system file names, in "cfg" below the directory: the one of just that spelling,
// or else one that differs in case only. It may not exist.
std::filesystem::path GetLanguageFile(const IFiles& files, const std::filesystem::path& systemFile,
                                      const std::filesystem::path& directory);
std::string VersionText(const Tsysteminfo& version); // "Version : ..."

// Sorts the rows by text and fills the table: column 0 is the row's position, then the row's fields, split
// strictly.
void FillGridFromRows(std::vector<std::string> rows, TStringTable& grid);
// Part of the contract, like SaveGridToFile; nothing here calls them.
// With the flag set clears every row but the first. A grid of 3 or more rows is cut to 1.
void ClearGrid(TStringTable& grid, bool clearRows);
std::size_t MaxTextLength(const std::vector<std::string>& rows); // characters of the longest row
// Each grid row joined with ';' as one line, under a wait cursor. Throws EInOutError.
void SaveGridToFile(const TStringTable& grid, const std::filesystem::path& path, IFiles& files,
                    IDialogs& dialogs);

// Draws the text with the font turned by the angle; the canvas gets its angle back.
void DrawAngledText(ICanvas& canvas, double degrees, int x, const std::string& text, int y);

} // namespace tidewell
