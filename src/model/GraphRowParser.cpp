#include "model/GraphRowParser.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "model/DataLine.h"

#include <algorithm>
#include <cstring>

namespace tidewell {

namespace {

constexpr std::size_t firstValue = 3;
constexpr std::int32_t lastField = 65535; // of any line that is no mistake
constexpr std::uint32_t safeDigits = 9;   // any number of that many digits fits 32 bits

// What the field up to the next ';' or the end reads as; at is then behind it.
std::int64_t TakeInteger(const char*& at, const char* end) {
    const char* const begin = at;
    if (at != end && *at == ' ')
        ++at;
    const bool negative = at != end && *at == '-';
    if (negative)
        ++at;
    const char* const digits = at;
    std::uint32_t value = 0;
    for (; at != end; ++at) {
        const auto digit = static_cast<std::uint32_t>(static_cast<unsigned char>(*at)) - '0';
        if (digit > 9)
            break;
        value = value * 10 + digit;
    }
    const auto count = at - digits;
    if (count > 0 && count <= static_cast<std::ptrdiff_t>(safeDigits) && (at == end || *at == ';'))
        return negative ? -static_cast<std::int32_t>(value) : static_cast<std::int32_t>(value);
    const auto* const separator =
        static_cast<const char*>(std::memchr(at, ';', static_cast<std::size_t>(end - at)));
    at = separator == nullptr ? end : separator;
    return ToWideIntegerOr(std::string_view(begin, static_cast<std::size_t>(at - begin)), 0);
}

std::string_view TakeField(const char*& at, const char* end) {
    const char* const begin = at;
    const auto* const separator =
        static_cast<const char*>(std::memchr(at, ';', static_cast<std::size_t>(end - at)));
    at = separator == nullptr ? end : separator;
    return {begin, static_cast<std::size_t>(at - begin)};
}

} // namespace

TGraphRowParser::TGraphRowParser(std::span<const TGraphPoint> points) {
    std::size_t fields = firstValue;
    for (const TGraphPoint& point : points) {
        if (!point.IsChannel)
            continue;
        if (!point.Error.empty())
            throw EConvertError(point.Error);
        TWanted wanted;
        wanted.IsMissing = point.Structnumber < 0 || point.Structnumber > lastField;
        wanted.Field = wanted.IsMissing ? 0 : static_cast<std::size_t>(point.Structnumber);
        wanted.Unsigned16 = point.Unsigned();
        wanted.Offset = point.Offset;
        wanted.Divide = point.Decimal > 0;
        wanted.Power = Scaled(1, -std::abs(std::clamp(point.Decimal, -290, 290)));
        HeadWanted = HeadWanted || wanted.Field == 1 || wanted.Field == 2;
        fields = std::max(fields, wanted.Field + 1);
        Wanted.push_back(wanted);
    }
    Raw.resize(fields);
}

void TGraphRowParser::Parse(std::string_view line) {
    DateText = {};
    TimeText = {};
    std::size_t field = 0;
    if (line.find('"') != std::string_view::npos) {
        ParseQuoted(line);
        return;
    }
    const char* at = line.data();
    const char* const end = at + line.size();
    while (field < Raw.size() && at != end) {
        if (field == 1)
            DateText = TakeField(at, end);
        else if (field == 2)
            TimeText = TakeField(at, end);
        else
            Raw[field] = TakeInteger(at, end);
        ++field;
        if (at != end)
            ++at;
    }
    std::fill(Raw.begin() + static_cast<std::ptrdiff_t>(field), Raw.end(), 0);
    if (HeadWanted) {
        Raw[1] = ToWideIntegerOr(DateText, 0);
        Raw[2] = ToWideIntegerOr(TimeText, 0);
    }
}

void TGraphRowParser::ParseQuoted(std::string_view line) {
    const TSplitLine fields(line, Raw.size());
    for (std::size_t field = 0; field < Raw.size(); ++field)
        Raw[field] = ToWideIntegerOr(fields.Field(static_cast<std::int64_t>(field)), 0);
    Unquoted = {std::string(fields.Field(1)), std::string(fields.Field(2))};
    DateText = Unquoted[0];
    TimeText = Unquoted[1];
}

double TGraphRowParser::Value(std::size_t channel) const {
    const TWanted& wanted = Wanted[channel];
    const std::int64_t raw = wanted.IsMissing ? 0 : RawGraphValue(Raw[wanted.Field], wanted.Unsigned16);
    const auto s = static_cast<long double>(raw + wanted.Offset);
    return static_cast<double>(wanted.Divide ? s / wanted.Power : s * wanted.Power);
}

} // namespace tidewell
