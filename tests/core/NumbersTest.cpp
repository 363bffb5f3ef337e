#include "rig/Test.h"

namespace tidewell {
namespace {

using test::ExpectRows;

TEST(Numbers, Integers) {
    for (const char* text :
         {"",    " ",    "-",          "+",          "--1",        "+-1",        "- 1",         "1 ",  "1.0",
          "1e3", "12a",  "\t1",        "$",          "+$",         "0x",         "$G",          "$-1", "0x-1",
          "0y1", "1$10", "-$FFFFFFFF", "-$80000001", "$100000000", "2147483648", "-2147483649", "١"})
        EXPECT_EQ(TryToInteger(text), std::nullopt) << text;
    EXPECT_EQ(TryToInteger(std::string_view("1\0", 2)), std::nullopt);
    ExpectRows([](std::string_view text) { return std::to_string(ToInteger(text)); },
               {"abc -> 'abc' is not a valid integer value", "-0 -> 0", "+0 -> 0", "+9 -> 9", "007 -> 7",
                "  12 -> 12", " -12 -> -12", "0x1f -> 31", "0X1F -> 31", "+0x1 -> 1", "-$10 -> -16",
                "$FFFFFFFF -> -1", "2147483647 -> 2147483647", "-2147483648 -> -2147483648",
                "$80000000 -> -2147483648", "-$80000000 -> -2147483648"});
    ExpectRows([](std::string_view text) { return std::to_string(ToInteger64(text)); },
               {"1 h -> '1 h' is not a valid integer value", "4294967296 -> 4294967296",
                "$FFFFFFFF -> 4294967295", "-0x8000000000000000 -> -9223372036854775808",
                "-$8000000000000001 -> '-$8000000000000001' is not a valid integer value",
                "9223372036854775808 -> '9223372036854775808' is not a valid integer value"});
    ExpectRows([](std::string_view text) { return std::to_string(ToWideIntegerOr(text, -7)); },
               {"x -> -7", "$FFFFFFFF -> -1", "4294967295 -> 4294967295"});
}

TEST(Numbers, FloatsAndBooleans) {
    for (const char* text : {"", " ", ".", "-", "+", "+-1", "-+1", "++1", "- 1", "1,5", "1e", "inf", "-inf",
                             "nan", "0x10", "1.2.3", "1e999", "1.5x", "$10"})
        EXPECT_EQ(TryToFloat(text), std::nullopt) << text;
    ExpectRows([](std::string_view text) { return std::to_string(static_cast<int>(ToFloat(text) * 100)); },
               {"1,5 -> '1,5' is not a valid floating point value", " 1.5  -> 150", "-.5 -> -50", "5. -> 500",
                "+2.25 -> 225", "1E-2 -> 1", "-12 -> -1200"});
    ExpectRows([](std::string_view text) { return BooleanText(ToBoolean(text)); },
               {" -> '' is not a valid boolean value", "tru -> 'tru' is not a valid boolean value",
                "false  -> 'false ' is not a valid boolean value", "$1 -> '$1' is not a valid boolean value",
                "true -> True", "TRUE -> True", "1 -> True", "-1 -> True", "0.5 -> True", "false -> False",
                "False -> False", "0 -> False", "0.0 -> False", "-0 -> False"});
}

TEST(Numbers, FixedNotation) {
    const auto shown = [](std::string_view row) {
        long double value = 0;
        const char* const blank = std::from_chars(row.data(), row.data() + row.size(), value).ptr;
        return FixedText(value, ToInteger(row.substr(static_cast<std::size_t>(blank - row.data()))));
    };
    ExpectRows(shown, {"0 2 -> 0.00", "-0.0 2 -> 0.00", "-0.004 2 -> 0.00", "-0.4 0 -> 0", "-0.5 0 -> -1",
                       "0.5 0 -> 1", "0.49 0 -> 0", "0.51 0 -> 1", "2.5 0 -> 3", "0.125 2 -> 0.13",
                       "2.675 2 -> 2.68", "0.05 2 -> 0.05", "9.9999 2 -> 10.00"});
    ExpectRows(shown, {"-10 1 -> -10.0", "6543.6 1 -> 6543.6", "123456.785 4 -> 123456.7900",
                       "1234567.89 3 -> 1234567.900", "12345.6785 3 -> 12345.679",
                       "0.000012345 8 -> 0.00001235", "0.1 10 -> 0.1000000000", "4e-10 9 -> 0.000000000",
                       "5e-10 9 -> 0.000000001", "5e-11 9 -> 0.000000000", "9.5e-9 9 -> 0.000000010"});
    ExpectRows(shown, {"1 8 -> 1.00000000", "1 99 -> 1.000000000000000000", "7 -3 -> 7",
                       "12345678.9 2 -> 12345679.00", "99999998.6 0 -> 99999999",
                       "99999999 3 -> 99999999.000", "99999999.4 0 -> 99999999", "99999999.5 0 -> 1E8",
                       "100000000 0 -> 1E8", "123456789 0 -> 1.2345679E8", "-123456789 2 -> -1.2345679E8",
                       "1e30 0 -> 1E30", "inf 1 -> INF", "-inf 1 -> -INF", "nan 1 -> NAN"});
    EXPECT_EQ(PaddedText(5, 2) + PaddedText(12, 2) + PaddedText(123, 2) + PaddedText(0, 0), "05121230");
}

// An integer moved by its decimals comes out with just its own digits, also near the half that decides about
// the last one.
TEST(Numbers, FixedNotationOfMovedIntegers) {
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const auto number = static_cast<std::int32_t>(random() % (i % 2 == 0 ? 100000000U : 70000U));
        const auto decimals = random() % 7 + 1;
        const long double power = std::pow(10.0L, decimals);
        std::string expected = PaddedText(number, decimals + 1);
        expected.insert(expected.size() - decimals, ".");
        const long double nudge = number < 10000000 ? 0.49999999L : 0;
        for (const long double moved : {number / power, (number + nudge) / power})
            ASSERT_EQ(FixedText(moved, static_cast<int>(decimals)), expected);
    }
}

TEST(Numbers, TrimmedAndFolded) {
    ExpectRows([](std::string_view text) { return std::string(Trim(text)); },
               {" \t\r\n a b \x01 -> a b", " \t  -> ", "\xC3\xA5  -> \xC3\xA5", " !  -> !"});
    EXPECT_TRUE(SameText("PauseTimeAZ", "pAUSEtIMEaz"));
    for (const auto& [a, b] : {std::pair{"\xC3\x85", "\xC3\xA5"}, {"a", "ab"}, {"@", "`"}, {"[", "{"}})
        EXPECT_FALSE(SameText(a, b)) << a;
}

} // namespace
} // namespace tidewell
