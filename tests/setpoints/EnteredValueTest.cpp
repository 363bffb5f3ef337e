#include "setpoints/EnteredValue.h"

#include "rig/Test.h"

namespace tidewell::test {
namespace {

std::int32_t Integer(std::string_view input, std::size_t piece) {
    return ToInteger(Piece(input, piece));
}

// The value, or where it stops being a number: at a point at the latest.
TEST(EnteredValue, ParsesEntriesAndTellsTheirValue) {
    ExpectRows(
        [](std::string_view text) {
            long double value = 7;
            const std::size_t position = ParseEntry(text, value);
            EXPECT_TRUE(position == 0 || value == 0);
            return position == 0 ? GeneralText(value) : "at " + std::to_string(position);
        },
        {" -> at 1",     "abc -> at 1",        "--3 -> at 2",   "5.5x -> at 2",
         "5,5x -> at 2", "55x -> at 3",        "1,2,3 -> at 2", ". -> at 1",
         ", -> at 1",    "  -> at 2",          "5e -> at 3",    "5e+ -> at 4",
         "5  -> at 2",   "1e9999 -> at 7",     "5,5 -> 5.5",    "5. -> 5",
         " +.5 -> 0.5",  "-,5 -> -0.5",        "1E2 -> 100",    "1e-2 -> 0.01",
         "1e20 -> 1E20", "-2,5e-7 -> -2.5E-7", "0 -> 0",        "0.1234567890123456 -> 0.123456789012346"});
}

TEST(EnteredValue, MovesThePointBack) {
    ExpectRows(
        [](std::string_view input) { // value and decimals
            long double value = 0;
            ParseEntry(Piece(input, 0), value);
            return std::to_string(EnteredToS(value, Integer(input, 1)));
        },
        {"10|1 -> 100", "-0,1|1 -> -1", "1,005|2 -> 101", "1,004|2 -> 100", "-100,9|0 -> -100",
         "125|-1 -> 12", "129,9|-1 -> 12", "3999999999|-9 -> 3", "0,00005|9 -> 50000",
         "1e10|1 -> 100000000000", "12345678|9 -> 12345678000000000", "1e300|0 -> 1000000000000000000",
         "-1e300|0 -> -1000000000000000000", "1e300|1 -> 1000000000000000000",
         "1e300|-1000 -> 1000000000000000000", "1e18|-18 -> 1", "1e18|-19 -> 1", "0|400 -> 0"});
    ExpectRows([](std::string_view decimals) { return std::to_string(EntryDivisor(ToInteger(decimals))); },
               {"1 -> 1", "0 -> 1", "-1 -> 10", "-3 -> 1000", "-18 -> 1000000000000000000",
                "-19 -> 1000000000000000000"});
}

TEST(EnteredValue, TakesShownLimitsForWhatTheyStandFor) {
    ExpectRows(
        [](std::string_view input) { // shown, decimals and offset
            return GeneralText(ShownToRaw(Piece(input, 0), Integer(input, 1), Integer(input, 2)));
        },
        {"none|0|0 -> 'none' is not a valid floating point value", "0.15|2|0 -> 15", "1.16|2|0 -> 116",
         "0.5|0|0 -> 0.5", "-10|1|5 -> -105", "1000|-1|0 -> 100", "6.5535E13|-9|0 -> 65535",
         "0.000065535|9|0 -> 65535", "4.2949673E9|0|2147483647 -> 2147483653", "0|400|1 -> -1"});
    EXPECT_EQ(ShownToRaw("0.15", 2, 0), 15); // whatever its binary fraction
}

// The word with the low byte first, and with the high byte first.
TEST(EnteredValue, PutsTwoCharactersIntoAWord) {
    ExpectRows(
        [](std::string_view text) {
            return std::to_string(WordOfCharacters(text, true)) + " " +
                   std::to_string(WordOfCharacters(text, false));
        },
        {" -> 0 0", "\u001FA -> 0 0", "\u007FA -> 0 0", "\u0080A -> 0 0", "\u0100A -> 0 0", "\u20ACA -> 0 0",
         "\U0001F600A -> 0 0", "AB -> 16961 16706", "A -> 65 16640", "ABC -> 16961 16706", " ~ -> 32288 8318",
         "~ -> 126 32256", "\u0081A -> 16769 33089", "\u00FFA -> 16895 65345",
         "\u00E9\u007F -> 32745 59775", // only the first one is looked at
         "A\u20AC -> 44097 16812", "A\U0001F641 -> 16705 16705"});
    ExpectRows(
        [](std::string_view word) {
            const auto number = static_cast<std::uint16_t>(ToInteger(word));
            return CharactersOfWord(number, true) + " " + CharactersOfWord(number, false);
        },
        {"0 ->  ", "$4241 -> AB BA", "$41 -> A A", "$7F80 -> \u0080\u007F \u007F\u0080",
         "$FFC0 -> \u00C0\u00FF \u00FF\u00C0", "$BF00 -> \u00BF \u00BF"});
}

TEST(EnteredValue, NamesSixteenBits) {
    ExpectRows([](std::string_view names) { return Join(BitCaptions(names), "|"); },
               {"Frost,,\u00C4bcdefghijk,a -> Frost||\u00C4bcdefghi|a|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu",
                "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17 -> 1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|16",
                "123456789,1234567890,\U0001F600345678901,\u20AC\u00e9 -> "
                "123456789|123456789|\U0001F60034567890|\u20AC\u00e9|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu|Nu"});
}

} // namespace
} // namespace tidewell::test
