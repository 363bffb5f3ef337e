#include "core/Numbers.h"

#include "core/Errors.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>
#include <type_traits>

namespace tidewell {

namespace {

constexpr int significantDigits = 8;
// Digits behind the point that an extended number can fill with sense.
constexpr int mostDecimals = 18;

bool IsBlank(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

template <typename T>
bool ParseWhole(std::string_view text, T& value, int base) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, base);
    return error == std::errc() && stop == end;
}

template <typename TValue>
std::optional<TValue> Hexadecimal(std::string_view digits, bool negative) {
    using TBits = std::make_unsigned_t<TValue>;
    TBits bits = 0;
    if (!ParseWhole(digits, bits, 16))
        return std::nullopt;
    if (!negative)
        return static_cast<TValue>(bits);
    if (bits > TBits{1} << (sizeof(TBits) * 8 - 1))
        return std::nullopt;
    return static_cast<TValue>(TBits{0} - bits);
}

template <typename TValue>
std::optional<TValue> ParseInteger(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    TValue value = 0;
    if (ParseWhole(text, value, 10))
        return value;
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (negative || text.front() == '+'))
        text.remove_prefix(1);
    if (text.empty())
        return std::nullopt;
    if (text.front() == '$')
        return Hexadecimal<TValue>(text.substr(1), negative);
    if (text.size() > 2 && text[0] == '0' && LowerCase(text[1]) == 'x')
        return Hexadecimal<TValue>(text.substr(2), negative);
    // What is left to accept is a number behind "+".
    if (!negative && IsDigit(text.front()) && ParseWhole(text, value, 10))
        return value;
    return std::nullopt;
}

std::string Quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

// The decimal digits of a positive number, 0.d1d2d3... * 10^Exponent, without trailing zeros.
struct TDigits {
    std::string Digits;
    int Exponent = 0;
};

TDigits ShortestDigits(long double value) {
    std::array<char, 64> buffer{};
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
    const std::string_view text(buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data()));
    const std::size_t mark = text.find('e');
    TDigits result;
    for (const char c : text.substr(0, mark))
        if (IsDigit(c))
            result.Digits += c;
    std::string_view exponent = text.substr(mark + 1);
    if (exponent.front() == '+')
        exponent.remove_prefix(1);
    ParseWhole(exponent, result.Exponent, 10);
    ++result.Exponent;
    return result;
}

// Half rounds away from zero. A count below 0 leaves nothing.
void RoundTo(TDigits& number, int count) {
    if (count >= static_cast<int>(number.Digits.size()))
        return;
    const bool up = count >= 0 && number.Digits[static_cast<std::size_t>(count)] >= '5';
    number.Digits.resize(static_cast<std::size_t>(std::max(count, 0)));
    if (up) {
        while (!number.Digits.empty() && number.Digits.back() == '9')
            number.Digits.pop_back();
        if (number.Digits.empty()) {
            number.Digits = "1";
            ++number.Exponent;
        } else {
            ++number.Digits.back();
        }
    }
    while (!number.Digits.empty() && number.Digits.back() == '0')
        number.Digits.pop_back();
}

std::string ScientificText(const TDigits& number) {
    std::string text(1, number.Digits.front());
    if (number.Digits.size() > 1)
        text.append(1, '.').append(number.Digits, 1);
    return text + "E" + std::to_string(number.Exponent - 1);
}

std::string PlainText(const TDigits& number, int decimals) {
    const auto digit = [&number](int position) {
        return position >= 0 && position < static_cast<int>(number.Digits.size())
                   ? number.Digits[static_cast<std::size_t>(position)]
                   : '0';
    };
    std::string text;
    for (int i = 0; i < number.Exponent; ++i)
        text += digit(i);
    if (text.empty())
        text = "0";
    if (decimals > 0)
        text += '.';
    for (int i = 0; i < decimals; ++i)
        text += digit(number.Exponent + i);
    return text;
}

// The common case: a number that has all its digits within the eight, and is not near a half where the last
// bit would decide. Empty if it is not so.
std::string ShortText(long double value, int decimals) {
    static constexpr std::array<long double, significantDigits + 1> powers = {1.0L, 1e1L, 1e2L, 1e3L, 1e4L,
                                                                              1e5L, 1e6L, 1e7L, 1e8L};
    if (decimals > significantDigits)
        return {};
    const long double moved = value * powers[static_cast<std::size_t>(decimals)];
    if (!(moved < powers[significantDigits] - 1))
        return {};
    auto whole = static_cast<std::uint32_t>(moved);
    const long double rest = moved - static_cast<long double>(whole);
    if (rest > 0.499999L && rest < 0.500001L)
        return {};
    if (rest > 0.5L)
        ++whole;
    std::array<char, 24> buffer{};
    char* const end = buffer.data() + buffer.size();
    char* begin = end;
    for (int i = 0; whole != 0 || i <= decimals; ++i) {
        if (i == decimals && decimals > 0)
            *--begin = '.';
        *--begin = static_cast<char>('0' + whole % 10);
        whole /= 10;
    }
    return {begin, end};
}

} // namespace

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string LowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return LowerCase(c); });
    return result;
}

bool SameText(std::string_view a, std::string_view b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

std::optional<std::int32_t> TryToInteger(std::string_view text) {
    return ParseInteger<std::int32_t>(text);
}

std::optional<std::int64_t> TryToInteger64(std::string_view text) {
    return ParseInteger<std::int64_t>(text);
}

std::int32_t ToIntegerOr(std::string_view text, std::int32_t otherwise) {
    return TryToInteger(text).value_or(otherwise);
}

std::int64_t ToWideIntegerOr(std::string_view text, std::int64_t otherwise) {
    if (const auto value = TryToInteger(text))
        return *value;
    return TryToInteger64(text).value_or(otherwise);
}

std::int32_t ToInteger(std::string_view text) {
    if (const auto value = TryToInteger(text))
        return *value;
    throw EConvertError(Quoted(text) + " is not a valid integer value");
}

std::int64_t ToInteger64(std::string_view text) {
    if (const auto value = TryToInteger64(text))
        return *value;
    throw EConvertError(Quoted(text) + " is not a valid integer value");
}

std::optional<double> TryToFloat(std::string_view text) {
    std::string_view number = Trim(text);
    if (!number.empty() && number.front() == '+') {
        number.remove_prefix(1);
        if (!number.empty() && number.front() == '-')
            return std::nullopt;
    }
    // from_chars would take "inf" and "nan" as well.
    const std::size_t first = number.starts_with('-') ? 1 : 0;
    if (number.size() <= first || (!IsDigit(number[first]) && number[first] != '.'))
        return std::nullopt;
    double value = 0;
    const char* const end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, value);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

double ToFloat(std::string_view text) {
    if (const auto value = TryToFloat(text))
        return *value;
    throw EConvertError(Quoted(text) + " is not a valid floating point value");
}

bool ToBoolean(std::string_view text) {
    if (SameText(text, "true"))
        return true;
    if (SameText(text, "false"))
        return false;
    if (const auto number = TryToFloat(text))
        return *number != 0;
    throw EConvertError(Quoted(text) + " is not a valid boolean value");
}

std::string BooleanText(bool value) {
    return value ? "True" : "False";
}

std::string PaddedText(std::int64_t value, std::size_t digits) {
    std::string text = std::to_string(value);
    return text.insert(0, digits - std::min(digits, text.size()), '0');
}

std::string FixedText(long double value, int decimals) {
    if (std::isnan(value))
        return "NAN";
    const bool negative = value < 0;
    const long double size = std::fabs(value);
    if (std::isinf(size))
        return negative ? "-INF" : "INF";
    decimals = std::clamp(decimals, 0, mostDecimals);
    std::string text = ShortText(size, decimals);
    if (text.empty()) {
        TDigits number = ShortestDigits(size);
        RoundTo(number, std::min(significantDigits, number.Exponent + decimals));
        text = number.Exponent > significantDigits ? ScientificText(number) : PlainText(number, decimals);
    }
    if (negative && text.find_first_of("123456789") != std::string::npos)
        text.insert(text.begin(), '-');
    return text;
}

} // namespace tidewell
