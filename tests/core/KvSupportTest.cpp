#include "core/DeviceId.h"
#include "core/Paths.h"
#include "rig/Test.h"

namespace tidewell {
namespace {

using test::ExpectRows;
using test::Piece;

std::size_t Number(std::string_view input, std::size_t index) {
    return static_cast<std::size_t>(ToInteger64(Piece(input, index)));
}

TEST(KvSupport, SplitsAndJoinsRows) {
    const auto split = [](std::string_view text) {
        std::vector<std::string> target{"old"};
        SplitRow(text, target, text.starts_with('1'));
        return std::to_string(target.size()) + ": " + Join(target, ", ");
    };
    ExpectRows(split, {" -> 0: ", "no end -> 0: ", "1;2; -> 0: ", ";a b;\"c;d\";rest -> 4: a b, \"c, d\""});
    EXPECT_THAT(SplitStrictly(""), testing::IsEmpty());
    EXPECT_THAT(SplitStrictly(";a``", '`'), testing::ElementsAre(";a", "", ""));
}

TEST(KvSupport, ReadsAndSetsFields) {
    const auto field = [](std::string_view input) { return GetRowField(Piece(input, 0), Number(input, 1)); };
    ExpectRows(field, {"|0 -> ", "\"|0 -> ", "\"\";c|0 -> ", "a;b;c|-1 -> ", "a;b;c|3 -> ", "a;|1 -> ",
                       "a;b;c|0 -> a", "a;b;c|2 -> c", ";;x|2 -> x", "a; b c ;|1 ->  b c ",
                       "5\" pipe;c|0 -> 5\" pipe"});
    ExpectRows(field, {"\"a;b\";c|0 -> a;b", "\"a;b\";c|1 -> c", "\"a\"b;c|0 -> ab", "\"a\"b;c|1 -> c",
                       "\"\"\"\";c|0 -> \"", "\"\"\"\";c|1 -> c", "\"say \"\"hi\"\"\";c|0 -> say \"hi\"",
                       "\"say \"\"h;i\"\"\";c|1 -> c", "\"never closed;c|1 -> ",
                       "\"never closed;c|0 -> never closed;c"});
    ExpectRows(
        [](std::string_view input) {
            return SetRowField(Piece(input, 0), Number(input, 1), Piece(input, 2));
        },
        {"|0|x -> x", "|2|x -> ;;x", "a;b|1|x -> a;x", "a;b|2|x -> a;b;x", "a;b;|2|x -> a;b;x",
         "a;b|4|x -> a;b;;;x", "\"a;b\";5\" pipe;c|2|x -> \"a;b\";5\" pipe;x",
         "a;b|0|\"q\"; -> \"\"\"q\"\";\";b", "a;b|1|\" -> a;\"\"\"\"", "a;b|1|; -> a;\";\""});
}

TEST(KvSupport, CountsCharacters) {
    ExpectRows([](std::string_view address) { return DeviceIdOf(std::string(address)); },
               {" -> ", "410000000001 -> 410000000001", "410000000001.x -> 410000000001",
                "41000000000\xC3\xA9\xC3\xA9 -> 41000000000\xC3\xA9"});
    EXPECT_EQ(MaxTextLength({"ab", "\xC3\xA9\xC3\xA9\xC3\xA9", "a"}), 3U);
    EXPECT_EQ(DigitsOnly("/0a\xC3\xA9-9:"), "0-9");
    EXPECT_EQ(StampDigits("٢٠٢٦-٠٣-٠٢ 0é8 ۹۰०९"), "2026-03-02089009");
}

TEST(KvSupport, BinaryTexts) {
    ExpectRows(
        [](std::string_view input) { return BinaryString(ToInteger(Piece(input, 0)), Number(input, 1)); },
        {"1|0 -> 1 does not fit 0 binary digits", "16|4 -> 16 does not fit 4 binary digits",
         "65536|16 -> 65536 does not fit 16 binary digits",
         "-65537|16 -> -65537 does not fit 16 binary digits", "0|0 -> ", "1|1 -> 1", "15|4 -> 1111",
         "-65536|4 -> 0000", "5|16 -> 0000000000000101", "65535|16 -> 1111111111111111",
         "-1|16 -> 1111111111111111"});
    EXPECT_EQ(BinaryToInteger("0001x21"), 9U);
    EXPECT_EQ(BinaryToInteger(std::string(40, '0') + std::string(32, '1')), 0xFFFFFFFFU);
    EXPECT_THROW(BinaryToInteger("1" + std::string(32, '0')), ERangeError);
    EXPECT_EQ(DigitMask("1203"), 12U);
}

TEST(KvSupport, ParsesNumbers) {
    const auto parsed = [](std::string_view text) {
        std::size_t position = 99;
        long double value = 99;
        ParseNumber(text, position, value);
        return position == 0 ? FixedText(value, 2) : "stops at " + std::to_string(position);
    };
    ExpectRows(parsed, {" -> stops at 1", "abc -> stops at 1", ". -> stops at 1", "- -> stops at 2",
                        "--1 -> stops at 2", "1-2 -> stops at 2", "1.2.3 -> stops at 2",
                        "1.0,5 -> stops at 2", "12 -> 12.00", "90 -> 90.00", "5. -> 5.00", ".5 -> 0.50",
                        "+3 -> 3.00", "1,25 -> 1.25", "1 000 -> 1000.00", "/0:9 -> 9.00", "x1e3 -> 13.00",
                        "\xE2\x82\xAC 7 -> 7.00", "-12.5 kPa -> -12.50"});
    EXPECT_EQ(parsed(std::string(6000, '9')), "stops at 6001");
}

TEST(KvSupport, ScalesByTheRow) {
    test::TFixedDialogs dialogs;
    ExpectRows(
        [&](std::string_view input) {
            std::string result = "kept";
            FormatWithRow("0;name;1;0;9;" + Piece(input, 0), Piece(input, 1), result, dialogs);
            return result;
        },
        {"1;5;|12- -> kept", ";0;|3 -> '' is not a valid integer value",
         "0|3 -> '' is not a valid integer value",
         " 1 ; 5 ;|1,5 -> 0.7", // (1.5 + 5) / 10 is half way
         "-2;0;|3 -> 300"});
    EXPECT_EQ(Join(dialogs.Boxes, "|"), "Error Data not valid Code= 3");
    EXPECT_EQ(ScaledText(1, 2000000000), "0.000000000000000000");
    EXPECT_EQ(ScaledText(1, -2000000000), "1E290");
    const TIniSection dataUnits({{"3", "kPa"}, {"4", ""}});
    const TIniSection userUnits({{"a", "Off"}, {"b", "Auto"}, {"c", "never reached"}});
    ExpectRows(
        [&](std::string_view input) {
            std::string result = "old";
            UnitText(Piece(input, 0), Piece(input, 1), dataUnits, result, userUnits);
            return result;
        },
        {"1.5|7 -> '1.5' is not a valid integer value", "x|3 -> x kPa", " 5 | -> 5", "5|x -> 5", "5|9 -> 5",
         "5| 3  -> 5 kPa", "5|4 -> 5 ", "-1|7 -> -1", "0|7 -> Off", "1|10 -> Auto", "2|7 -> 2"});
}

TEST(Paths, AreShown) {
    EXPECT_EQ(ShownDirectory("/opt/app/") + ShownDirectory("/a"), "\\opt\\app\\\\a\\");
}

} // namespace
} // namespace tidewell
