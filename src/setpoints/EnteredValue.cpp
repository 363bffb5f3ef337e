#include "setpoints/EnteredValue.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <system_error>

namespace tidewell {

namespace {

constexpr std::size_t bitCount = 16;
constexpr std::size_t longestBitCaption = 9; // characters
constexpr std::int64_t mostS = 1'000'000'000'000'000'000;
constexpr std::int32_t mostDivisorDigits = 18;

std::size_t SkipDigits(std::string_view text, std::size_t at) {
    return std::min(text.find_first_not_of("0123456789", at), text.size());
}

std::size_t SkipSign(std::string_view text, std::size_t at) {
    return at < text.size() && (text[at] == '-' || text[at] == '+') ? at + 1 : at;
}

// Where the text, from 0, stops being a number with "." for its point.
struct TNumberEnd {
    std::size_t At = 0;
    bool IsNumber = false; // all of the text is one
};

TNumberEnd NumberEnd(std::string_view text) {
    const std::size_t begin = SkipSign(text, std::min(text.find_first_not_of(' '), text.size()));
    std::size_t at = SkipDigits(text, begin);
    std::size_t digits = at - begin;
    if (at < text.size() && text[at] == '.') {
        const std::size_t fraction = SkipDigits(text, at + 1);
        digits += fraction - at - 1;
        at = fraction;
    }
    if (digits == 0)
        return {at, false};
    if (at < text.size() && LowerCase(text[at]) == 'e') {
        const std::size_t exponent = SkipSign(text, at + 1);
        at = SkipDigits(text, exponent);
        if (at == exponent)
            return {at, false};
    }
    return {at, at == text.size()};
}

std::optional<long double> Convert(std::string_view number) {
    number.remove_prefix(std::min(number.find_first_not_of(" +"), number.size()));
    long double value = 0;
    const char* const end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, value);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

std::string Replaced(std::string_view text, char what, char with) {
    std::string result(text);
    std::replace(result.begin(), result.end(), what, with);
    return result;
}

std::int64_t Bounded(long double s) {
    constexpr auto most = static_cast<long double>(mostS);
    return static_cast<std::int64_t>(std::clamp(std::round(s), -most, most));
}

// With the point moved back: a shown value to s.
long double Unscaled(long double shown, std::int32_t decimals) {
    return Scaled(shown, -std::clamp(decimals, -290, 290));
}

// A code point; takes it off the front of the text.
char32_t TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    std::size_t length = 1;
    char32_t code = lead;
    if (lead >= 0xC0) {
        length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        code = lead & (0xFFU >> (length + 1));
    }
    length = std::min(length, text.size());
    for (std::size_t i = 1; i < length; ++i)
        code = (code << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    text.remove_prefix(length);
    return code;
}

void AppendCharacter(std::string& text, std::uint32_t code) {
    if (code >= 0x80) {
        text += static_cast<char>(0xC0U | (code >> 6U));
        code = 0x80U | (code & 0x3FU);
    }
    if (code != 0)
        text += static_cast<char>(code);
}

} // namespace

std::size_t ParseEntry(std::string_view text, long double& value) {
    value = 0;
    const std::string number = Replaced(text, ',', '.');
    if (NumberEnd(number).IsNumber) {
        if (const auto converted = Convert(number)) {
            value = *converted;
            return 0;
        }
    }
    return NumberEnd(Replaced(text, '.', ',')).At + 1;
}

std::int64_t EntryDivisor(std::int32_t decimals) {
    std::int64_t divisor = 1;
    for (std::int32_t i = std::max(decimals, -mostDivisorDigits); i < 0; ++i)
        divisor *= 10;
    return divisor;
}

std::int64_t EnteredToS(long double value, std::int32_t decimals) {
    if (decimals < 1)
        return Bounded(std::trunc(value / static_cast<long double>(EntryDivisor(decimals))));
    const std::string text = FixedText(value, decimals);
    const std::string digits = DigitsOnly(text);
    std::int64_t s = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), s);
    // The digits of a number with an exponent are not its own; taken for s they could pass for a small value.
    if (error != std::errc() || text.find('E') != std::string::npos)
        return Bounded(Unscaled(value, decimals));
    return std::clamp(s, -mostS, mostS);
}

long double ShownToRaw(std::string_view shown, std::int32_t decimals, std::int32_t offset) {
    long double value = 0;
    if (ParseEntry(shown, value) != 0)
        throw EConvertError("'" + std::string(shown) + "' is not a valid floating point value");
    // 0.15 is not quite 15 hundredths; the limit itself has to pass.
    long double s = Unscaled(value, decimals);
    const long double whole = std::round(s);
    if (std::fabs(s - whole) <= 1e-12L * std::max(1.0L, std::fabs(s)))
        s = whole;
    return s - static_cast<long double>(offset);
}

std::uint16_t WordOfCharacters(std::string_view text, bool firstIsLow) {
    if (text.empty())
        return 0;
    const char32_t first = TakeCharacter(text);
    const bool counts = (first >= 32 && first <= 126) || (first >= 129 && first <= 255);
    if (!counts)
        return 0;
    const char32_t second = text.empty() ? 0 : TakeCharacter(text) & 0xFFU;
    return static_cast<std::uint16_t>(firstIsLow ? second << 8U | first : first << 8U | second);
}

std::string CharactersOfWord(std::uint16_t word, bool firstIsLow) {
    const std::uint32_t low = word & 0xFFU;
    const std::uint32_t high = static_cast<std::uint32_t>(word) >> 8U;
    std::string text;
    AppendCharacter(text, firstIsLow ? low : high);
    AppendCharacter(text, firstIsLow ? high : low);
    return text;
}

std::vector<std::string> BitCaptions(std::string_view names) {
    std::vector<std::string> captions;
    for (std::string_view name : SplitStrictly(names, ',')) {
        std::string_view rest = name;
        for (std::size_t i = 0; i < longestBitCaption && !rest.empty(); ++i)
            TakeCharacter(rest);
        captions.emplace_back(name.substr(0, name.size() - rest.size()));
    }
    captions.resize(std::max(captions.size(), bitCount), "Nu");
    captions.resize(bitCount);
    return captions;
}

std::string GeneralText(long double value) {
    if (value == 0)
        return "0";
    constexpr int digits = 15;
    std::array<char, 64> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::general, digits);
    std::string text(buffer.data(), written.ptr);
    if (const auto mark = text.find('e'); mark != std::string::npos) {
        const int exponent = ToIntegerOr(std::string_view(text).substr(mark + 1), 0);
        text.replace(mark, std::string::npos, "E" + std::to_string(exponent));
    }
    return text;
}

} // namespace tidewell
