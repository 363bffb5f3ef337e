#pragma once

#include "model/DataLine.h"

#include <cstdint>
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
};
TGraphPoint ParseGraphPoint(std::string_view graphRow);

struct TDatapointValue {
    double Value = 0;
    std::int32_t Raw = 0;
};
// A value that is missing or no integer counts as raw 0.
TDatapointValue CalculateDatapointValue(const TGraphPoint& point, const TSplitLine& line);
TDatapointValue CalculateDatapointValue(std::string_view graphRow, std::string_view line);

// Refills the target with the shown text of each list row's value in the data line. The rows must bear their
// shown limits (see FormatRowLimits): a minimum of 0 or more takes the value's low 16 bits, 0 if it is no
// integer; below 0 it is taken as a floating-point number, and one that is none throws EConvertError.
void FormatListValues(std::string_view line, std::vector<std::string>& target,
                      const std::vector<std::string>& rows);

// The list row with Min and Max in their shown form. A row of more than 18 fields adds field 18, its help
// number, to the list.
std::string FormatRowLimits(std::string_view row, std::vector<std::string>& paraIds);

// What the grid shows for the formatted value of a list row: the type codes "100" to "103" have a form of
// their own, and fall back to the formatted value where that form is empty.
std::string CellText(std::string_view row, const std::string& formattedValue);

} // namespace tidewell
