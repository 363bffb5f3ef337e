#include "model/ValueCodec.h"

#include "rig/Test.h"

namespace tidewell::test {

namespace {

using testing::ElementsAre;

// A list row of 17 fields and its key, with the fields that the codec reads; of a limit it is the one shown.
std::string ListRow(const std::string& min, const std::string& decimal, const std::string& offset,
                    const std::string& code = "1", const std::string& bits = "",
                    const std::string& structnumber = "3") {
    return "0;Pump;40;" + min + ";100;" + decimal + ";" + offset + ";7;" + structnumber + ";" + code + ";" +
           bits + ";;;;;Flow;;";
}

} // namespace

// Minimum, decimals, offset and value: 16 bits of an integer, or, with a minimum below 0, a number with its
// fraction. No value, or no number, counts as 0.
TEST(ValueCodec, FormatsListValues) {
    const auto formatted = [](std::string_view input) {
        std::vector<std::string> target{"stale"};
        FormatListValues("1;d;t;" + Piece(input, 3) + ";", target,
                         {ParseListRow(ListRow(Piece(input, 0), Piece(input, 1), Piece(input, 2)))});
        return Join(target, " and ");
    };
    ExpectRows(formatted,
               {"0|x|0| -> 'x' is not a valid integer value (field 5 of row \"Pump\")",
                "0|0|1.5| -> '1.5' is not a valid integer value (field 6 of row \"Pump\")",
                " a |0|0| -> 'a' is not a valid floating point value (shown minimum of row \"Pump\")"});
    ExpectRows(formatted, {"0|0|0| -> 0", "0|0|5|null -> 5", "0|0|0|1.5 -> 0", " 0 | 1 | -5 | 10 -> 0.5",
                           "0|-1|0|12 -> 120", "0|-9|0|3 -> 3E9", "0|9|0|1234 -> 0.000001234",
                           "1.2345679E8|0|0|4 -> 4"});
    ExpectRows(formatted, {"0|0|0|-1 -> 65535", "0|1|0|-5 -> 6553.1", "0|0|0|65535 -> 65535",
                           "0|0|0|65536 -> 0", "0|0|0|4294967295 -> 65535", "0|1|0|8589934599 -> 0.7"});
    ExpectRows(formatted, {"-1|0|5| -> 5", "-1|1|0|null -> 0.0", "-1|0|1|12.25 -> 13", "-1|1|0|-5 -> -0.5",
                           "-0.5|0|0|70000 -> 70000", "-1|9|0|-1234567891 -> -1.234567900",
                           "-1|0|2147483647|2147483647 -> 4.2949673E9"});
    std::vector<std::string> target;
    std::vector<TListRow> rows;
    for (const char* structnumber : {"4", "3", "8", "-1", "2147483647", "three"})
        rows.push_back(ParseListRow(ListRow("0", "1", "0", "1", "", structnumber)));
    EXPECT_ANY_THROW(FormatListValues("1;d;t;10;20;", target, rows));
    EXPECT_THAT(target, ElementsAre("2.0", "1.0", "0.0", "0.0", "0.0")); // of the rows before the bad one
}

// Minimum and value, as what is written to the device counts.
TEST(ValueCodec, ReadsRawListValues) {
    ExpectRows(
        [](std::string_view input) {
            const auto raw =
                RawListValue(ParseListRow(ListRow(Piece(input, 0), "1", "5")), "1;d;t;" + Piece(input, 1));
            return raw ? std::to_string(*raw) : "none";
        },
        {"0|x -> 0", "0|65535 -> 65535", "0|65536 -> 0", "0|-1 -> 65535", "-1|x -> none", "-1|1.5 -> none",
         "-1|2147483647 -> 2147483647", "-1|2147483648 -> none", "-1|-2147483649 -> none"});
}

// Offset, decimals, type and value; as shown and raw.
TEST(ValueCodec, CalculatesGraphValues) {
    const auto calculated = [](std::string_view input) {
        const TDatapointValue value = CalculateDatapointValue(
            " Fan ;1;clRed;3;" + Piece(input, 0) + ";" + Piece(input, 1) + ";" + Piece(input, 2) + ";;;;;;1;",
            "1;d;t;" + Piece(input, 3) + ";");
        std::array<char, 32> text{}; // with a point, whatever the locale
        char* const end = std::to_chars(text.data(), text.data() + text.size(), value.Value).ptr;
        return std::string(text.data(), end) + " " + std::to_string(value.Raw);
    };
    ExpectRows(calculated, {"0|two|1|5 -> 'two' is not a valid integer value (field 5 of row \"Fan\")",
                            "0|0||5 -> '' is not a valid integer value (field 6 of row \"Fan\")"});
    ExpectRows(calculated, {"0|0|150|-1 -> -1 -1", "0|0|199|65537 -> 65537 65537", "0|0|200|65537 -> 1 1",
                            "0|0|250|-1 -> 65535 65535", "0|0|199|2147483647 -> 2147483647 2147483647",
                            "0|0|199|2147483648 -> 0 0", "5|1|1|10 -> 1.5 10", " 0 | -2 | 100 | 3 -> 300 3",
                            "0|3|1|1 -> 0.001 1", "0|0|1| -> 0 0", "4|0|1|1.5 -> 4 0",
                            "2147483647|0|1|2147483647 -> 4294967294 2147483647"});
    for (const auto& [enabled, isChannel] :
         {std::pair{"1", true}, {" 1 ", true}, {"01", false}, {"0", false}, {"", false}})
        EXPECT_EQ(ParseGraphPoint(std::string("Fan;1;clRed;3;0;two;1;;;;;;") + enabled).IsChannel, isChannel)
            << enabled;
}

TEST(ValueCodec, FormatsLimits) {
    std::vector<std::string> paraIds;
    ExpectRows(
        [&](std::string_view row) { return FormatRowLimits(row, paraIds); },
        {" -> '' is not a valid integer value (field 3 of row \"\")",
         "0;P;40;;3;0;0; -> '' is not a valid integer value (field 3 of row \"P\")",
         "0;P;40;-2147483649;3;0;0; -> '-2147483649' is not a valid integer value (field 3 of row \"P\")",
         "0;P;40;0;3;a;0; -> 'a' is not a valid integer value (field 5 of row \"P\")",
         "0;P;40;0;3;0;1e1; -> '1e1' is not a valid integer value (field 6 of row \"P\")",
         "0;Pump;40;-100;250;1;0;7;3;1; -> 0;Pump;40;-10.0;25.0;1;0;7;3;1;",
         "0;Pump;40; 0 ;3;-2;5;7;3;1 -> 0;Pump;40;500;800;-2;5;7;3;1",
         "0;P;40;-2147483648;2147483647;-9;1; -> 0;P;40;-2.1474836E18;2.1474836E18;-9;1;"});
    for (const char* end : {"", ";4711", ";4712;key"})
        FormatRowLimits(std::string("0;P;40;0;3;0;0;7;3;1;;;;;;G;;x") + end, paraIds);
    EXPECT_THAT(paraIds, ElementsAre("4711", "4712"));
}

// Type code, names of bits and formatted value. A point makes it no integer; what does not fit 16 digits
// stays.
TEST(ValueCodec, ShowsTypeCodes) {
    const auto shown = [](std::string_view input) {
        return CellText(ParseListRow(ListRow("0", "0", "0", Piece(input, 0), Piece(input, 1))),
                        Piece(input, 2));
    };
    ExpectRows(shown, {"100|a| -> ", "101|a| -> ", "102|a| -> ", "103|a| -> ", "1|a| -> ", "||x -> x",
                       "7||3 -> 3", "101||-1 -> 131070", "101||40000 -> 80000", "101||70000 -> 8928",
                       "102||0 -> 0", "102||16961 -> AB", "102||16869 -> \u00E5A", "102||127 -> \x7F",
                       "102||128 -> \u0080", "103||65 -> A", "103||16706 -> AB"});
    ExpectRows(shown, {"100| |5 -> 5", "0100|a|3 -> 3", "100|a|70000 -> 70000", "100|a|65536 -> 65536",
                       "100|a|-65537 -> -65537", "100|a|-65536 -> 00000000  00000000",
                       "100|a|-1 -> 11111111  11111111", " 100 |a|65535 -> 11111111  11111111",
                       "100|a,b|5 -> 00000000  00000101", "100|a|1.5 -> 00000000  00000000"});
}

} // namespace tidewell::test
