#include "setpoints/EnteredValue.h"

#include "core/Errors.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace tidewell {
namespace {

// The value, or where it stops being a number: at a point at the latest.
const std::vector<std::pair<std::string, std::string>> Entries{
    {"", "at 1"},     {"abc", "at 1"},        {"--3", "at 2"},   {"5.5x", "at 2"},
    {"5,5x", "at 2"}, {"55x", "at 3"},        {"1,2,3", "at 2"}, {".", "at 1"},
    {",", "at 1"},    {" ", "at 2"},          {"5e", "at 3"},    {"5e+", "at 4"},
    {"5 ", "at 2"},   {"1e9999", "at 7"},     {"5,5", "5.5"},    {"5.", "5"},
    {" +.5", "0.5"},  {"-,5", "-0.5"},        {"1E2", "100"},    {"1e-2", "0.01"},
    {"1e20", "1E20"}, {"-2,5e-7", "-2.5E-7"}, {"0", "0"},        {"0.1234567890123456", "0.123456789012346"}};

TEST(EnteredValue, ParsesEntriesAndTellsTheirValue) {
    for (const auto& [text, outcome] : Entries) {
        long double value = 7;
        const std::size_t position = ParseEntry(text, value);
        EXPECT_EQ(position == 0 ? GeneralText(value) : "at " + std::to_string(position), outcome) << text;
        EXPECT_TRUE(position == 0 || value == 0);
    }
}

TEST(EnteredValue, MovesThePointBack) {
    constexpr std::int64_t most = 1'000'000'000'000'000'000;
    struct {
        long double Value;
        std::int32_t Decimals;
        std::int64_t S;
    } const cases[] = {{10, 1, 100},
                       {-0.1L, 1, -1},
                       {1.005L, 2, 101},
                       {1.004L, 2, 100},
                       {-100.9L, 0, -100},
                       {125, -1, 12},
                       {129.9L, -1, 12},
                       {3999999999, -9, 3},
                       {0.00005L, 9, 50000},
                       {1e10L, 1, 100'000'000'000},
                       {12345678, 9, 12'345'678'000'000'000},
                       {1e300L, 0, most},
                       {-1e300L, 0, -most},
                       {1e300L, 1, most},
                       {1e300L, -1000, most},
                       {1e18L, -18, 1},
                       {1e18L, -19, 1},
                       {0, 400, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(EnteredToS(c.Value, c.Decimals), c.S) << static_cast<double>(c.Value) << " " << c.Decimals;
    for (const auto& [decimals, divisor] :
         {std::pair(1, std::int64_t{1}), {0, 1}, {-1, 10}, {-3, 1000}, {-18, most}, {-19, most}})
        EXPECT_EQ(EntryDivisor(decimals), divisor);
}

TEST(EnteredValue, TakesShownLimitsForWhatTheyStandFor) {
    struct {
        const char* Shown;
        std::int32_t Decimals, Offset;
        long double Raw;
    } const cases[] = {
        {"0.15", 2, 0, 15}, // whatever its binary fraction
        {"1.16", 2, 0, 116},
        {"0.5", 0, 0, 0.5L},
        {"-10", 1, 5, -105},
        {"1000", -1, 0, 100},
        {"6.5535E13", -9, 0, 65535},
        {"0.000065535", 9, 0, 65535},
        {"4.2949673E9", 0, 2147483647, 2147483653.0L},
        {"0", 400, 1, -1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ShownToRaw(c.Shown, c.Decimals, c.Offset), c.Raw) << c.Shown;
    EXPECT_THROW(ShownToRaw("none", 0, 0), EConvertError);
}

TEST(EnteredValue, PutsTwoCharactersIntoAWord) {
    struct {
        const char* Text;
        std::uint16_t LowFirst, HighFirst;
    } const entered[] = {{"", 0, 0},
                         {"AB", 0x4241, 0x4142},
                         {"A", 0x41, 0x4100},
                         {"ABC", 0x4241, 0x4142},
                         {" ~", 0x7E20, 0x207E},
                         {"~", 0x7E, 0x7E00},
                         {"\u001FA", 0, 0},
                         {"\u007FA", 0, 0},
                         {"\u0080A", 0, 0},
                         {"\u0081A", 0x4181, 0x8141},
                         {"\u00FFA", 0x41FF, 0xFF41},
                         {"\u0100A", 0, 0},
                         {"\u20ACA", 0, 0},
                         {"\U0001F600A", 0, 0},
                         {"\u00E9\u007F", 0x7FE9, 0xE97F}, // only the first one is looked at

                         {"A\u20AC", 0xAC41, 0x41AC},
                         {"A\U0001F641", 0x4141, 0x4141}};
    for (const auto& c : entered) {
        EXPECT_EQ(WordOfCharacters(c.Text, true), c.LowFirst) << c.Text;
        EXPECT_EQ(WordOfCharacters(c.Text, false), c.HighFirst) << c.Text;
    }
    struct {
        std::uint16_t Word;
        const char *LowFirst, *HighFirst;
    } const shown[] = {{0, "", ""},
                       {0x4241, "AB", "BA"},
                       {0x41, "A", "A"},
                       {0x7F80, "\u0080\u007F", "\u007F\u0080"},
                       {0xFFC0, "\u00C0\u00FF", "\u00FF\u00C0"},
                       {0xBF00, "\u00BF", "\u00BF"}};
    for (const auto& c : shown) {
        EXPECT_EQ(CharactersOfWord(c.Word, true), c.LowFirst);
        EXPECT_EQ(CharactersOfWord(c.Word, false), c.HighFirst);
    }
}

TEST(EnteredValue, NamesSixteenBits) {
    const auto captions = [](const std::string& names) {
        std::string text;
        for (const std::string& caption : BitCaptions(names))
            text += caption + '|';
        return text;
    };
    EXPECT_EQ(captions("Frost,,\u00C4bcdefghijk,a"),
              "Frost||\u00C4bcdefghi|a|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|");
    EXPECT_EQ(captions("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17"),
              "1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|16|");
    EXPECT_EQ(captions("123456789,1234567890,\U0001F600345678901,\u20AC\u00e9"),
              "123456789|123456789|\U0001F60034567890|\u20AC\u00e9|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|");
}

} // namespace
} // namespace tidewell
