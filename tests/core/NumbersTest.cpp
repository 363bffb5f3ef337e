#include "core/Numbers.h"

#include "core/Errors.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <tuple>

namespace tidewell {
namespace {

using testing::ThrowsMessage;

TEST(Numbers, Integers) {
    for (const char* text :
         {"",     " ",          "-", "--1", "+-1", "- 1", "1 ",         "1.0",         "1e3",
          "12a",  "\t1",        "$", "0x",  "$G",  "$-1", "2147483648", "-2147483649", "$100000000",
          "0x-1", "-$FFFFFFFF", "١", "+$"})
        EXPECT_EQ(TryToInteger(text), std::nullopt) << text;
    EXPECT_EQ(TryToInteger(std::string_view("1\0", 2)), std::nullopt);
    EXPECT_EQ(ToIntegerOr("x", -7), -7);
    EXPECT_THAT([] { ToInteger("abc"); }, ThrowsMessage<EConvertError>("'abc' is not a valid integer value"));
    constexpr auto least = std::numeric_limits<std::int32_t>::min();
    const std::pair<const char*, std::int32_t> table[] = {
        {"-0", 0},     {"  12", 12},  {"$FFFFFFFF", -1},
        {"0x1f", 31},  {"0X1F", 31},  {"-$80000000", least},
        {"+7", 7},     {"007", 7},    {"-2147483648", least},
        {" -12", -12}, {"-$10", -16}, {"2147483647", 2147483647},
    };
    for (const auto& [text, value] : table)
        EXPECT_EQ(TryToInteger(text), value) << text;
    const std::pair<const char*, std::optional<std::int64_t>> wide[] = {
        {"4294967296", 4294967296},
        {"$FFFFFFFF", 4294967295},
        {"-0x8000000000000000", std::numeric_limits<std::int64_t>::min()},
        {"-$8000000000000001", std::nullopt},
        {"9223372036854775808", std::nullopt},
    };
    for (const auto& [text, value] : wide)
        EXPECT_EQ(TryToInteger64(text), value) << text;
    EXPECT_THAT([] { ToInteger64("1 h"); },
                ThrowsMessage<EConvertError>("'1 h' is not a valid integer value"));
}

TEST(Numbers, Floats) {
    for (const char* text : {"", " ", ".", "-", "+-1", "1,5", "1e", "inf", "-inf", "nan", "0x10", "1.2.3",
                             "1e999", "1.5x", "$10"})
        EXPECT_EQ(TryToFloat(text), std::nullopt) << text;
    for (const auto& [text, value] :
         {std::pair{" 1.5 ", 1.5}, {"-.5", -.5}, {"5.", 5.}, {"+2.25", 2.25}, {"1E-2", .01}, {"-12", -12.}})
        EXPECT_EQ(TryToFloat(text), value) << text;
    EXPECT_THAT([] { ToFloat("1,5"); },
                ThrowsMessage<EConvertError>("'1,5' is not a valid floating point value"));
}

TEST(Numbers, Booleans) {
    for (const char* text : {"", "yes", "tru", "true1", "false ", "$1"})
        EXPECT_THROW(ToBoolean(text), EConvertError) << text;
    for (const char* text : {"true", "TRUE", "1", "-1", "0.5"})
        EXPECT_TRUE(ToBoolean(text)) << text;
    for (const char* text : {"false", "False", "0", "0.0", "-0"})
        EXPECT_FALSE(ToBoolean(text)) << text;
}

TEST(Numbers, FixedNotation) {
    const std::tuple<long double, int, const char*> table[] = {
        {0, 2, "0.00"},     {1e30L, 0, "1E30"},         {99999999.4L, 0, "99999999"},
        {7, -3, "7"},       {0.125L, 2, "0.13"},        {99999999, 3, "99999999.000"},
        {0.5L, 0, "1"},     {2.675L, 2, "2.68"},        {123456789, 0, "1.2345679E8"},
        {2.5L, 0, "3"},     {-0.004L, 2, "0.00"},       {-123456789, 2, "-1.2345679E8"},
        {-0.4L, 0, "0"},    {9.9999L, 2, "10.00"},      {1234567.89L, 3, "1234567.900"},
        {-0.5L, 0, "-1"},   {99999999.5L, 0, "1E8"},    {123456.785L, 4, "123456.7900"},
        {-10, 1, "-10.0"},  {6543.6L, 1, "6543.6"},     {0.000012345L, 8, "0.00001235"},
        {-0.0L, 2, "0.00"}, {0.1L, 10, "0.1000000000"}, {1, 99, "1.000000000000000000"},
    };
    EXPECT_EQ(FixedText(-std::numeric_limits<long double>::infinity(), 1), "-INF");
    EXPECT_EQ(FixedText(std::numeric_limits<long double>::quiet_NaN(), 1), "NAN");
    for (const auto& [value, decimals, text] : table)
        EXPECT_EQ(FixedText(value, decimals), text) << static_cast<double>(value) << " " << decimals;
}

// An integer moved by its decimals comes out with just its own digits.
TEST(Numbers, FixedNotationOfMovedIntegers) {
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const auto number = static_cast<std::int32_t>(random() % (i % 2 == 0 ? 100000000U : 70000U));
        const int decimals = static_cast<int>(random() % 8);
        long double power = 1;
        for (int k = 0; k < decimals; ++k)
            power *= 10;
        std::string expected = std::to_string(number);
        if (expected.size() <= static_cast<std::size_t>(decimals))
            expected.insert(0, static_cast<std::size_t>(decimals) + 1 - expected.size(), '0');
        if (decimals > 0)
            expected.insert(expected.size() - static_cast<std::size_t>(decimals), ".");
        const long double moved = static_cast<long double>(number) / power;
        ASSERT_EQ(FixedText(moved, decimals), expected);
        // Near the half that decides about the last digit.
        const long double nudge = number < 10000000 ? 0.49999999L / power : 0;
        ASSERT_EQ(FixedText(moved + nudge, decimals), expected);
    }
}

TEST(Numbers, TrimmedAndFolded) {
    EXPECT_EQ(Trim(" \t\r\n a b \x01"), "a b");
    EXPECT_EQ(Trim(" \t "), "");
    EXPECT_EQ(Trim("\xC3\xA5 "), "\xC3\xA5");
    EXPECT_TRUE(SameText("PauseTime", "pAUSEtIME"));
    EXPECT_FALSE(SameText("\xC3\x85", "\xC3\xA5"));
    EXPECT_FALSE(SameText("a", "ab"));
    EXPECT_EQ(BooleanText(true), "True");
}

} // namespace
} // namespace tidewell
