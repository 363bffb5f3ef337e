#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class IDialogs;
class TModbusPanel;
struct TSetpointTexts;

// A setpoint file: three lines on its origin, a heading, then a record of ';'-terminated fields per setpoint.
// Decimals and offset stand in the same fields as in a list row.
namespace SetpointColumn {
constexpr std::size_t SetpointName = 0;
constexpr std::size_t FormattedValue = 1;
constexpr std::size_t RawValue = 2;
constexpr std::size_t Decimal = 5;
constexpr std::size_t Offset = 6;
constexpr std::size_t ModbusAdr = 7;
constexpr std::size_t Enhed = 8;
constexpr std::size_t Count = 14;
} // namespace SetpointColumn
constexpr std::size_t SetpointHeadLines = 4;

struct TSetpointRecord {
    std::array<std::string, SetpointColumn::Count> Columns;
    std::string Structnumber; // as in the list row
};

// One for each list row of the device's setpoint questions; FormattedValue and RawValue are empty.
std::vector<TSetpointRecord> DeviceSetpointRecords(const TModbusPanel& panel, int deviceIndex);
// Fills RawValue from the values of a cycle: digits and "-", or what is missing. Throws EConvertError, naming
// the setpoint, for a structnumber that is no integer.
void FillRawValues(std::vector<TSetpointRecord>& records, std::string_view cycle);
// The lines of the records, with FormattedValue filled in. A name of one character or none has no line. Raw
// values that are no number are told. Throws EConvertError, naming the setpoint.
std::vector<std::string> SetpointLines(std::vector<TSetpointRecord> records, const TSetpointTexts& texts,
                                       IDialogs& dialogs);

// The scaled texts of one record after the other. A raw value that is no number is told, and keeps the text
// before it; of a long row of them the first ones are told singly, the others by their number.
class TScaledTexts {
  public:
    explicit TScaledTexts(IDialogs& dialogs) : Dialogs(dialogs) {}
    // The row gives decimals and offset. Throws EConvertError for a row whose fields are no integers.
    const std::string& Next(std::string_view row, std::string_view rawValue);
    void TellRest();

  private:
    static constexpr std::size_t MostTold = 10;
    IDialogs& Dialogs;
    std::string Text;
    std::size_t Bad = 0;
};

} // namespace tidewell
