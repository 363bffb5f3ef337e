#pragma once

#include "model/DataLine.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The rules between raw values (as in the device), s = raw + offset, and shown values (s with its point moved
// by the row's decimals). Row fields that are no integers throw EConvertError, naming row and field.
namespace tidewell {

// What a graph row says about its values. A row with a bad field is parsed too: Error tells what is wrong,
// and using the point throws it.
struct TGraphPoint {
    bool IsChannel = false;        // field 12 is "1"
    std::int32_t Structnumber = 0; // field of the data line
    std::int32_t Offset = 0;
    std::int32_t Decimal = 0;
    std::int32_t Type = 0;
    std::string Error; // empty: the four numbers are good
    bool Unsigned() const { return Type >= 200; }
};
TGraphPoint ParseGraphPoint(std::string_view graphRow);

struct TDatapointValue {
    double Value = 0;
    std::int32_t Raw = 0;
};
// The low 16 bits of an unsigned value, however wide; a signed one as it stands, 0 if it does not fit 32
// bits.
std::int32_t RawGraphValue(std::int64_t value, bool isUnsigned);
// A value that is missing or no integer counts as raw 0.
TDatapointValue CalculateDatapointValue(const TGraphPoint& point, const TSplitLine& line);
TDatapointValue CalculateDatapointValue(std::string_view graphRow, std::string_view line);

// A list row that bears its shown limits (see FormatRowLimits), its fields read once. A row with a bad field
// is parsed too: Error tells what is wrong, and formatting a value of it throws that.
struct TListRow {
    std::string Text; // the whole row
    std::string Name; // trimmed, as all fields here
    std::string Min;
    std::string Max;
    std::string ModbusAdr;
    std::string Code; // of unit or type
    std::string BitNames;
    std::int32_t Structnumber = 0; // field of the data line
    std::int32_t Offset = 0;
    std::int32_t Decimal = 0;
    bool Signed = false; // the shown minimum is below 0
    std::string Error;   // empty: the numbers are good
};
TListRow ParseListRow(std::string text);

// Refills the target with the shown text of each row's value in the data line. An unsigned row takes the
// value's low 16 bits, 0 if it is no integer; a signed one takes it as a floating-point number, and one that
// is none throws EConvertError. After a throw the target holds the texts of the rows before.
void FormatListValues(std::string_view line, std::vector<std::string>& target,
                      const std::vector<TListRow>& rows);

// The integer that the row takes from the data line, before any scaling; nothing where it is a fraction.
std::optional<std::int64_t> RawListValue(const TListRow& row, std::string_view line);

// The list row with Min and Max in their shown form. A row of more than 18 fields adds field 18, its help
// number, to the list.
std::string FormatRowLimits(std::string_view row, std::vector<std::string>& paraIds);

// What the grid shows for the formatted value of a list row: the type codes "100" to "103" have a form of
// their own, and fall back to the formatted value where that form is empty.
std::string CellText(const TListRow& row, const std::string& formattedValue);

} // namespace tidewell
