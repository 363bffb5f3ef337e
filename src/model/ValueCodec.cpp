#include "model/ValueCodec.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "model/ListField.h"

#include <utility>

namespace tidewell {

namespace {

constexpr std::size_t graphChannelField = 12;

std::int32_t Low16(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(value) & 0xFFFFU);
}

[[noreturn]] void ThrowConversion(std::string_view text, const std::string& kind, const std::string& what,
                                  std::string_view rowName) {
    throw EConvertError("'" + std::string(Trim(text)) + "' is not a valid " + kind + " value (" + what +
                        " of row \"" + std::string(Trim(rowName)) + "\")");
}

std::int32_t FieldInteger(std::string_view text, std::string_view rowName, std::size_t field) {
    const auto value = TryToInteger(Trim(text));
    if (!value)
        ThrowConversion(text, "integer", "field " + std::to_string(field), rowName);
    return *value;
}

// An 8-bit character; 0 is none.
std::string CharacterText(std::uint32_t code) {
    if (code == 0)
        return {};
    if (code < 0x80)
        return {static_cast<char>(code)};
    return {static_cast<char>(0xC0U | (code >> 6U)), static_cast<char>(0x80U | (code & 0x3FU))};
}

// The binary digits in two bytes; empty for a value that does not fit them.
std::string BitFieldText(std::int32_t value) {
    if (value < -0x10000 || value > 0xFFFF)
        return {};
    return BinaryString(value, 16).insert(8, "  ");
}

} // namespace

TGraphPoint ParseGraphPoint(std::string_view graphRow) {
    const TSplitLine row(graphRow, graphChannelField + 1);
    TGraphPoint point;
    point.IsChannel = Trim(row.Field(graphChannelField)) == "1";
    try {
        point.Structnumber = FieldInteger(row.Field(3), row.Field(0), 3);
        point.Offset = FieldInteger(row.Field(4), row.Field(0), 4);
        point.Decimal = FieldInteger(row.Field(5), row.Field(0), 5);
        point.Type = FieldInteger(row.Field(6), row.Field(0), 6);
    } catch (const EConvertError& error) {
        point.Error = error.what();
    }
    return point;
}

std::int32_t RawGraphValue(std::int64_t value, bool isUnsigned) {
    if (isUnsigned)
        return Low16(value);
    return std::in_range<std::int32_t>(value) ? static_cast<std::int32_t>(value) : 0;
}

TDatapointValue CalculateDatapointValue(const TGraphPoint& point, const TSplitLine& line) {
    if (!point.Error.empty())
        throw EConvertError(point.Error);
    const std::int32_t raw =
        RawGraphValue(ToWideIntegerOr(line.Field(point.Structnumber), 0), point.Unsigned());
    const long double s = static_cast<long double>(raw) + static_cast<long double>(point.Offset);
    return {static_cast<double>(Scaled(s, point.Decimal)), raw};
}

TDatapointValue CalculateDatapointValue(std::string_view graphRow, std::string_view line) {
    return CalculateDatapointValue(ParseGraphPoint(graphRow), TSplitLine(line));
}

TListRow ParseListRow(std::string text) {
    TListRow row;
    row.Text = std::move(text);
    const TSplitLine fields(row.Text, ListField::User1 + 1);
    row.Name = Trim(fields.Field(ListField::SetpointName));
    row.Min = Trim(fields.Field(ListField::Min));
    row.Max = Trim(fields.Field(ListField::Max));
    row.ModbusAdr = Trim(fields.Field(ListField::ModbusAdr));
    row.Code = Trim(fields.Field(ListField::Enhed));
    row.BitNames = Trim(fields.Field(ListField::User1));
    try {
        row.Structnumber =
            FieldInteger(fields.Field(ListField::Structnumber), row.Name, ListField::Structnumber);
        row.Offset = FieldInteger(fields.Field(ListField::Offset), row.Name, ListField::Offset);
        row.Decimal = FieldInteger(fields.Field(ListField::Decimal), row.Name, ListField::Decimal);
        const auto minimum = TryToFloat(row.Min);
        if (!minimum)
            ThrowConversion(row.Min, "floating point", "shown minimum", row.Name);
        row.Signed = *minimum < 0;
    } catch (const EConvertError& error) {
        row.Error = error.what();
    }
    return row;
}

void FormatListValues(std::string_view line, std::vector<std::string>& target,
                      const std::vector<TListRow>& rows) {
    target.clear();
    target.reserve(rows.size());
    const TSplitLine data(line);
    for (const TListRow& row : rows) {
        if (!row.Error.empty())
            throw EConvertError(row.Error);
        const std::string_view value = data.Field(row.Structnumber);
        long double s = row.Offset;
        if (row.Signed)
            s += TryToFloat(value).value_or(0);
        else
            s += Low16(ToWideIntegerOr(value, 0));
        target.push_back(ScaledText(s, row.Decimal));
    }
}

std::optional<std::int64_t> RawListValue(const TListRow& row, std::string_view line) {
    const TSplitLine data(line);
    const std::string_view value = data.Field(row.Structnumber);
    if (!row.Signed)
        return Low16(ToWideIntegerOr(value, 0));
    const auto raw = TryToInteger64(Trim(value));
    return raw && std::in_range<std::int32_t>(*raw) ? raw : std::nullopt;
}

std::string FormatRowLimits(std::string_view row, std::vector<std::string>& paraIds) {
    const std::vector<std::string_view> fields = SplitStrictly(row);
    const auto field = [&](std::size_t index) {
        return index < fields.size() ? fields[index] : std::string_view();
    };
    const std::string_view name = field(ListField::SetpointName);
    const auto minimum = FieldInteger(field(ListField::Min), name, ListField::Min);
    const auto maximum = FieldInteger(field(ListField::Max), name, ListField::Max);
    const auto offset = FieldInteger(field(ListField::Offset), name, ListField::Offset);
    const auto decimals = FieldInteger(field(ListField::Decimal), name, ListField::Decimal);
    const auto shown = [&](std::int32_t raw) {
        return ScaledText(static_cast<long double>(raw) + static_cast<long double>(offset), decimals);
    };
    if (fields.size() > ListField::HelpNumber)
        paraIds.emplace_back(fields[ListField::HelpNumber]);

    std::string result;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0)
            result += ';';
        if (i == ListField::Min)
            result += shown(minimum);
        else if (i == ListField::Max)
            result += shown(maximum);
        else
            result += fields[i];
    }
    return result;
}

std::string CellText(const TListRow& row, const std::string& formattedValue) {
    if (formattedValue.empty())
        return {};
    const std::int32_t value = ToIntegerOr(formattedValue, 0);
    const auto low = static_cast<std::uint32_t>(value) & 0xFFU;
    const auto high = (static_cast<std::uint32_t>(value) >> 8U) & 0xFFU;
    std::string text;
    if (row.Code == "100" && !row.BitNames.empty())
        text = BitFieldText(value);
    else if (row.Code == "101")
        text = std::to_string(Low16(value) * 2);
    else if (row.Code == "102")
        text = CharacterText(low) + CharacterText(high);
    else if (row.Code == "103")
        text = CharacterText(high) + CharacterText(low);
    return text.empty() ? formattedValue : text;
}

} // namespace tidewell
