#include "core/KvSupport.h"

#include "core/Errors.h"
#include "core/Guard.h"
#include "core/IniFile.h"
#include "core/Numbers.h"
#include "core/TextFile.h"
#include "core/ports/IDialogs.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

namespace tidewell {

namespace {

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

// Bytes of the character at the front: its lead byte and what continues it.
std::size_t CharacterLength(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && IsContinuation(text[length]))
        ++length;
    return length;
}

std::size_t CharacterCount(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return !IsContinuation(c); }));
}

// Where the field that begins here ends: at its ';' or at the end of the row.
std::size_t FieldEnd(std::string_view row, std::size_t begin) {
    if (begin < row.size() && row[begin] == '"') {
        std::size_t quote = begin;
        do {
            quote = row.find('"', quote + 1);
            if (quote == std::string_view::npos)
                return row.size();
            ++quote;
        } while (quote < row.size() && row[quote] == '"');
        begin = quote;
    }
    return std::min(row.find(';', begin), row.size());
}

// The field as it stands in the row; nothing beyond the last field.
std::optional<std::pair<std::size_t, std::size_t>> FieldRange(std::string_view row, std::size_t index) {
    if (row.empty())
        return std::nullopt;
    std::size_t begin = 0;
    for (;; --index) {
        const std::size_t end = FieldEnd(row, begin);
        if (index == 0)
            return std::pair(begin, end);
        if (end == row.size())
            return std::nullopt;
        begin = end + 1;
    }
}

// Text behind a closing quote stays part of the field, and a quote that is never closed runs to the end.
std::string UnquotedField(std::string_view field) {
    if (!field.starts_with('"'))
        return std::string(field);
    field.remove_prefix(1);
    std::string result;
    for (;;) {
        const std::size_t quote = field.find('"');
        result.append(field.substr(0, quote));
        if (quote == std::string_view::npos)
            return result;
        field.remove_prefix(quote + 1);
        if (!field.starts_with('"'))
            return result.append(field);
        result += '"';
        field.remove_prefix(1);
    }
}

std::size_t FieldCount(std::string_view row) {
    if (row.empty())
        return 0;
    std::size_t count = 1;
    for (std::size_t end = FieldEnd(row, 0); end != row.size(); end = FieldEnd(row, end + 1))
        ++count;
    return count;
}

std::string WrittenField(std::string_view value) {
    if (value.find(';') == std::string_view::npos && !value.starts_with('"'))
        return std::string(value);
    std::string result = "\"";
    for (const char c : value)
        result.append(c == '"' ? 2 : 1, c);
    return result + '"';
}

std::uint32_t MaskOf(std::string_view text, std::string_view set) {
    std::uint32_t mask = 0;
    std::size_t position = 0;
    for (auto c = text.rbegin(); c != text.rend(); ++c) {
        if (IsContinuation(*c))
            continue;
        if (set.find(*c) != std::string_view::npos) {
            if (position >= 32)
                throw ERangeError("'" + std::string(text) + "' has more than 32 binary digits");
            mask |= 1U << position;
        }
        ++position;
    }
    return mask;
}

// Position, from 0, of the first character at which the text stops being "-", digits, "." and digits; the
// length if the number is whole.
std::size_t NumberEnd(std::string_view text, bool& isNumber) {
    std::size_t i = text.starts_with('-') ? 1 : 0;
    std::size_t digits = 0;
    bool point = false;
    for (; i < text.size(); ++i)
        if (text[i] >= '0' && text[i] <= '9')
            ++digits;
        else if (text[i] == '.' && !point)
            point = true;
        else
            break;
    isNumber = i == text.size() && digits > 0;
    return i;
}

} // namespace

void SplitRow(std::string_view text, std::vector<std::string>& target, bool digitsOnly) {
    target.clear();
    if (digitsOnly)
        return;
    for (std::size_t end = text.find(';'); end != std::string_view::npos; end = text.find(';')) {
        target.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
}

std::vector<std::string_view> SplitStrictly(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    if (text.empty())
        return pieces;
    for (std::size_t end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
        pieces.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    pieces.push_back(text);
    return pieces;
}

std::string Join(std::span<const std::string> texts, std::string_view separator) {
    std::string joined;
    for (const std::string& text : texts)
        joined.append(joined.empty() ? "" : separator).append(text);
    return joined;
}

std::string GetRowField(std::string_view row, std::size_t index) {
    const auto range = FieldRange(row, index);
    return range ? UnquotedField(row.substr(range->first, range->second - range->first)) : std::string();
}

std::string SetRowField(std::string_view row, std::size_t index, std::string_view value) {
    std::string result(row);
    const auto range = FieldRange(row, index);
    if (range)
        return result.replace(range->first, range->second - range->first, WrittenField(value));
    const std::size_t count = FieldCount(row);
    result.append(index - count + (count == 0 ? 0 : 1), ';');
    return result + WrittenField(value);
}

std::string KeepCharacters(std::string_view text, std::string_view set) {
    std::string result;
    while (!text.empty()) {
        const std::string_view character = text.substr(0, CharacterLength(text));
        const auto lead = static_cast<unsigned char>(character.front());
        const bool upTo255 = lead < 0x80 || lead == 0xC2 || lead == 0xC3;
        if (upTo255 && set.find(character) != std::string_view::npos)
            result += character;
        text.remove_prefix(character.size());
    }
    return result;
}

std::string DigitsOnly(std::string_view text) {
    std::string result;
    std::copy_if(text.begin(), text.end(), std::back_inserter(result),
                 [](char c) { return (c >= '0' && c <= '9') || c == '-'; });
    return result;
}

std::string StampDigits(std::string_view text) {
    // The zeros of the scripts whose digits a locale writes; one to nine follow each.
    constexpr std::array<std::uint32_t, 17> zeros{0x660, 0x6F0, 0x7C0,  0x966,  0x9E6, 0xA66,
                                                  0xAE6, 0xB66, 0xBE6,  0xC66,  0xCE6, 0xD66,
                                                  0xE50, 0xED0, 0x0F20, 0x1040, 0x17E0};
    std::string latin;
    while (!text.empty()) {
        const std::string_view character = text.substr(0, CharacterLength(text));
        text.remove_prefix(character.size());
        const auto lead = static_cast<unsigned char>(character.front());
        std::uint32_t code = character.size() == 2 ? lead & 0x1FU : lead & 0x0FU;
        for (const char byte : character.substr(1))
            code = code << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
        const auto zero = std::find_if(zeros.begin(), zeros.end(),
                                       [code](std::uint32_t first) { return code - first < 10; });
        if (character.size() == 1 || zero == zeros.end())
            latin += character;
        else
            latin += static_cast<char>('0' + (code - *zero));
    }
    return DigitsOnly(latin);
}

std::string NowStamp(const IClock& clock) {
    const TTime now = clock.Now();
    return StampDigits(clock.ShortDate(now) + " " + clock.ShortTime(now));
}

std::string DateTimeStamp(const IClock& clock) {
    const TTime now = clock.Now();
    return StampDigits(clock.ShortDate(now) + " " + clock.LongTime(now));
}

std::string BinaryString(std::int32_t value, std::size_t digits) {
    std::int64_t rest = value < 0 ? std::int64_t{value} + 65536 : value;
    std::string text(digits, '0');
    for (auto digit = text.rbegin(); digit != text.rend() && rest > 0; ++digit, rest /= 2)
        *digit = static_cast<char>('0' + rest % 2);
    if (rest != 0)
        throw ERangeError(std::to_string(value) + " does not fit " + std::to_string(digits) +
                          " binary digits");
    return text;
}

std::uint32_t BinaryToInteger(std::string_view text) {
    return MaskOf(text, "1");
}

std::uint32_t DigitMask(std::string_view text) {
    return MaskOf(text, "12");
}

void ParseNumber(std::string_view text, std::size_t& errorPosition, long double& value) {
    std::string number = KeepCharacters(text, "0123456789,-.");
    std::replace(number.begin(), number.end(), ',', '.');
    bool isNumber = false;
    value = 0;
    errorPosition = 0;
    NumberEnd(number, isNumber);
    if (isNumber && std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc())
        return;
    // The second try, with "," for ".", is the one that reports.
    std::replace(number.begin(), number.end(), '.', ',');
    value = 0;
    errorPosition = NumberEnd(number, isNumber) + 1;
}

void FormatWithRow(std::string_view row, std::string_view text, std::string& result, IDialogs& dialogs) {
    std::size_t errorPosition = 0;
    long double value = 0;
    ParseNumber(text, errorPosition, value);
    if (errorPosition != 0) {
        dialogs.ShowMessage("Error Data not valid Code= " + std::to_string(errorPosition));
        return;
    }
    const std::int32_t decimals = ToInteger(Trim(GetRowField(row, 5)));
    const std::int32_t offset = ToInteger(Trim(GetRowField(row, 6)));
    result = ScaledText(value + static_cast<long double>(offset), decimals);
}

long double Scaled(long double s, std::int32_t decimals) {
    const std::int32_t steps = std::abs(std::clamp(decimals, -290, 290));
    long double power = 1;
    for (std::int32_t i = 0; i < steps; ++i)
        power *= 10;
    return decimals > 0 ? s / power : s * power;
}

std::string ScaledText(long double s, std::int32_t decimals) {
    return FixedText(Scaled(s, decimals), decimals);
}

void UnitText(std::string_view value, std::string_view code, const TIniSection& dataUnits,
              std::string& result, const TIniSection& userUnits) {
    const std::string shown(Trim(value));
    const std::string_view unit = Trim(code);
    const std::int32_t number = ToIntegerOr(unit, 0);
    result = shown;
    if (number == 7 || number == 10) {
        // The last row is never reached; a negative value has no row.
        const std::int64_t index = ToInteger(shown);
        if (index >= 0 && index < static_cast<std::int64_t>(userUnits.Count()) - 1)
            result = userUnits.ValueAt(static_cast<std::size_t>(index));
    } else if (number != 0) {
        if (const auto text = dataUnits.Find(unit))
            result = shown + " " + *text;
    }
}

bool FileIsLocked(const IFiles& files, const std::filesystem::path& path) {
    return files.IsLocked(path);
}

std::filesystem::path FindSystemFile(const IFiles& files, const std::filesystem::path& directory) {
    const auto names = files.List(directory / "cfg", "system_*.inn");
    return names.size() == 1 ? directory / "cfg" / names.front() : std::filesystem::path();
}

std::filesystem::path GetLanguageFile(const IFiles& files, const std::filesystem::path& systemFile,
                                      const std::filesystem::path& directory) {
    const std::filesystem::path name = TIniFile(files, systemFile).ReadText("System", "LanguageFile_Current");
    const std::filesystem::path path = directory / "cfg" / name.relative_path();
    if (!files.FileExists(path))
        for (const std::string& real : files.List(path.parent_path(), "*.*"))
            if (SameText(real, path.filename().string()))
                return path.parent_path() / real;
    return path;
}

std::string VersionText(const Tsysteminfo& version) {
    return "Version : " + version.Text();
}

void FillGridFromRows(std::vector<std::string> rows, TStringTable& grid) {
    std::vector<std::pair<std::string, std::string>> sorted; // lower-cased, as it stands
    sorted.reserve(rows.size());
    for (auto& row : rows)
        sorted.emplace_back(LowerCase(row), std::move(row));
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    grid.SetRowCount(sorted.size());
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        std::vector<std::string> cells{std::to_string(i)};
        for (const auto field : SplitStrictly(sorted[i].second))
            cells.emplace_back(field);
        grid.SetRow(i, std::move(cells));
    }
}

void ClearGrid(TStringTable& grid, bool clearRows) {
    if (clearRows)
        for (std::size_t row = 1; row < grid.RowCount(); ++row)
            grid.ClearRow(row);
    if (grid.RowCount() >= 3)
        grid.SetRowCount(1);
}

std::size_t MaxTextLength(const std::vector<std::string>& rows) {
    std::size_t length = 0;
    for (const auto& row : rows)
        length = std::max(length, CharacterCount(row));
    return length;
}

void SaveGridToFile(const TStringTable& grid, const std::filesystem::path& path, IFiles& files,
                    IDialogs& dialogs) {
    const TWaitCursor wait(dialogs);
    std::vector<std::string> lines(grid.RowCount());
    for (std::size_t row = 0; row < grid.RowCount(); ++row)
        for (std::size_t column = 0; column < grid.ColCount(); ++column)
            lines[row].append(column == 0 ? "" : ";").append(grid.Cell(column, row));
    WriteLines(*files.Replace(path), lines);
}

void DrawAngledText(ICanvas& canvas, double degrees, int x, const std::string& text, int y) {
    const double before = canvas.FontAngle();
    canvas.SetFontAngle(degrees);
    canvas.TextOut(x, y, text);
    canvas.SetFontAngle(before);
}

} // namespace tidewell
