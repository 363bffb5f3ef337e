#include "setpoints/SetpointRecords.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/ports/IDialogs.h"
#include "model/ListField.h"
#include "model/ModbusPanel.h"
#include "setpoints/SetpointTexts.h"

#include <cstdint>
#include <utility>

namespace tidewell {

namespace {

namespace Column = SetpointColumn;

constexpr std::int32_t firstStructnumber = 3;
constexpr std::string_view tenBlanks = "          ";

// Column of a record, field of a list row.
constexpr std::array<std::pair<std::size_t, std::size_t>, 12> columnFields{
    {{Column::SetpointName, ListField::SetpointName},
     {3, ListField::Min},
     {4, ListField::Max},
     {Column::Decimal, ListField::Decimal},
     {Column::Offset, ListField::Offset},
     {Column::ModbusAdr, ListField::ModbusAdr},
     {Column::Enhed, ListField::Enhed},
     {9, ListField::User1},
     {10, ListField::User2},
     {11, ListField::User3},
     {12, ListField::User4},
     {13, ListField::User5}}};

std::string RawValue(const TSetpointRecord& record, const std::vector<std::string>& values) {
    const std::string digits = DigitsOnly(record.Structnumber);
    if (digits.empty())
        return "Error strucnumber";
    const auto structnumber = TryToInteger(digits);
    if (!structnumber)
        throw EConvertError("Setpoint " + record.Columns[Column::SetpointName] + ": structnumber '" +
                            record.Structnumber + "' is not a valid integer value");
    if (*structnumber < firstStructnumber)
        return "Error structnumber";
    const auto index = static_cast<std::size_t>(*structnumber - firstStructnumber);
    if (index >= values.size() || values[index].empty())
        return "Error no value";
    return DigitsOnly(values[index]);
}

} // namespace

std::vector<TSetpointRecord> DeviceSetpointRecords(const TModbusPanel& panel, int deviceIndex) {
    std::vector<std::string> questions;
    panel.GetSelectedDeviceSetpointReadlist(deviceIndex, questions);
    const TMDevice& device = panel.DeviceList.GetDevice(static_cast<std::size_t>(deviceIndex));
    std::vector<TSetpointRecord> records;
    for (const std::string& text : questions) {
        const auto question = static_cast<std::size_t>(ToInteger(text));
        if (question >= device.ReadListText.size())
            break; // a profile load that failed half-way
        const TStringTable& grid = device.ReadListText[question];
        for (std::size_t row = 0; row < grid.RowCount(); ++row) {
            TSetpointRecord& record = records.emplace_back();
            for (const auto& [column, field] : columnFields)
                record.Columns[column] = grid.Cell(field, row);
            record.Structnumber = grid.Cell(ListField::Structnumber, row);
        }
    }
    return records;
}

void FillRawValues(std::vector<TSetpointRecord>& records, std::string_view cycle) {
    std::vector<std::string> values;
    SplitRow(cycle, values, false);
    for (TSetpointRecord& record : records)
        record.Columns[Column::RawValue] = RawValue(record, values);
}

std::vector<std::string> SetpointLines(std::vector<TSetpointRecord> records, const TSetpointTexts& texts,
                                       IDialogs& dialogs) {
    std::vector<std::string> lines;
    TScaledTexts scaled(dialogs);
    for (TSetpointRecord& record : records) {
        auto& columns = record.Columns;
        if (MaxTextLength({columns[Column::SetpointName]}) <= 1)
            continue;
        std::string formatted;
        try {
            const std::string row = ";;;;;" + columns[Column::Decimal] + ";" + columns[Column::Offset] + ";";
            UnitText(scaled.Next(row, columns[Column::RawValue]), columns[Column::Enhed], texts.DataUnits,
                     formatted, texts.UserUnits);
        } catch (const EConvertError& error) {
            throw EConvertError("Setpoint " + columns[Column::SetpointName] + ": " + error.what());
        }
        columns[Column::FormattedValue].append(tenBlanks).append(formatted).append(tenBlanks);
        std::string& line = lines.emplace_back();
        for (const std::string& column : columns)
            line.append(column).append(";");
    }
    scaled.TellRest();
    return lines;
}

const std::string& TScaledTexts::Next(std::string_view row, std::string_view rawValue) {
    std::size_t errorPosition = 0;
    long double value = 0;
    ParseNumber(rawValue, errorPosition, value);
    if (errorPosition == 0 || ++Bad <= MostTold)
        FormatWithRow(row, rawValue, Text, Dialogs);
    return Text;
}

void TScaledTexts::TellRest() {
    if (Bad > MostTold)
        Dialogs.ShowMessage("Error Data not valid in " + std::to_string(Bad - MostTold) +
                            " further setpoints");
}

} // namespace tidewell
