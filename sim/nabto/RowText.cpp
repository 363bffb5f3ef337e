#include "sim/nabto/RowText.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <sstream>

namespace tidewell {

namespace {

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

} // namespace

TRowText SplitRowText(std::string_view text) {
    TRowText row;
    const std::vector<std::string_view> pieces = SplitStrictly(text);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const std::string_view piece = Trim(pieces[i]);
        if (i == 0) {
            row.Head = std::string(piece);
        } else if (!piece.empty()) {
            const std::size_t equals = piece.find('=');
            const bool flag = equals == std::string_view::npos;
            row.Options.push_back({std::string(Trim(piece.substr(0, equals))),
                                   flag ? std::string() : std::string(Trim(piece.substr(equals + 1)))});
        }
    }
    return row;
}

bool TakeKey(const std::string& name, const std::string& text, std::initializer_list<TNamedPlace> places) {
    const auto* const found = std::find_if(
        places.begin(), places.end(), [&](const TNamedPlace& place) { return SameText(name, place.Name); });
    if (found != places.end())
        found->Take(text);
    return found != places.end();
}

bool TakeOption(const TRowText::TOption& option, std::initializer_list<TNamedPlace> places) {
    const bool known = std::any_of(places.begin(), places.end(),
                                   [&](const TNamedPlace& place) { return option.Name == place.Name; });
    return known && TakeKey(option.Name, option.Value, places);
}

std::vector<std::string> SplitWords(std::string_view text) {
    std::istringstream words{std::string(text)};
    return {std::istream_iterator<std::string>(words), {}};
}

std::vector<std::string> SplitNames(std::string_view text) {
    std::vector<std::string> names;
    for (const std::string_view piece : SplitStrictly(text, ','))
        if (const std::string_view name = Trim(piece); !name.empty())
            names.emplace_back(name);
    return names;
}

std::int32_t ParseInteger(std::string_view text) {
    const std::optional<std::int32_t> value = TryToInteger(text);
    if (!value)
        throw TError(Quoted(text) + " is no integer");
    return *value;
}

std::int32_t ParseIntegerWithin(std::string_view text, std::int32_t least, std::int32_t most) {
    const std::int32_t value = ParseInteger(text);
    if (value < least || value > most) {
        throw TError(Quoted(text) + " is not within " + std::to_string(least) + " and " +
                     std::to_string(most));
    }
    return value;
}

std::size_t ParseCount(std::string_view text) {
    return static_cast<std::size_t>(ParseIntegerWithin(text, 0, std::numeric_limits<std::int32_t>::max()));
}

double ParseReal(std::string_view text) {
    if (const std::optional<std::int32_t> whole = TryToInteger(text))
        return ParseIntegerWithin(text, -32768, 65535);
    const std::optional<double> value = TryToFloat(text);
    if (!value || !(*value >= -32768 && *value <= 65535))
        throw TError(Quoted(text) + " is no number of 16 bits");
    return *value;
}

bool ParseYesNo(std::string_view text) {
    if (SameText(text, "true"))
        return true;
    if (SameText(text, "false"))
        return false;
    throw TError(Quoted(text) + " is neither true nor false");
}

std::int64_t ParseTime(std::string_view text) {
    constexpr double Most = 1e12;
    std::string_view rest = text;
    double total = 0;
    do {
        const std::size_t digits = std::min(rest.find_first_not_of("0123456789."), rest.size());
        const std::optional<double> number = TryToFloat(rest.substr(0, digits));
        rest.remove_prefix(digits);
        const std::string_view unit = rest.substr(0, rest.find_first_of("0123456789."));
        rest.remove_prefix(unit.size());
        const double factor = unit == "m" ? 60000 : unit == "s" ? 1000 : 1;
        const bool known = factor > 1 || unit == "ms" || unit.empty();
        if (!number || !known || *number * factor > Most)
            throw TError(Quoted(text) + " is no time such as 250ms, 10s or 2m30s");
        total += *number * factor;
    } while (!rest.empty());
    return std::llround(std::min(total, Most));
}

} // namespace tidewell
