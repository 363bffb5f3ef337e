#include "model/ValueCodec.h"

#include "core/Errors.h"
#include "core/KvSupport.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::ThrowsMessage;

// A list row of 17 fields and its key, with the fields that the codec reads.
std::string ListRow(const std::string& min, const std::string& decimal, const std::string& offset,
                    const std::string& code = "1", const std::string& bits = "",
                    const std::string& structnumber = "3") {
    return "0;Pump;40;" + min + ";100;" + decimal + ";" + offset + ";7;" + structnumber + ";" + code + ";" +
           bits + ";;;;;Flow;;";
}

std::string Formatted(const std::string& line, const std::string& row) {
    std::vector<std::string> target{"stale"};
    FormatListValues(line, target, {ParseListRow(row)});
    return target.size() == 1 ? target.front() : "no single text";
}

} // namespace

TEST(SplitLine, ReadsEveryFieldAsGetRowFieldDoes) {
    for (const std::string text :
         {"", ";", "a", "a;", ";;", "a;b;c", " 1; 2; ", "\"a;b\";c", "\"a\"\"b\";c;", "\"open;c", "\"a\"x;y",
          "a\"b;c", "\"\";\"\"", "\"a\";", "\"", "x;\"", "\"\"\"\";1", "\"a\"\"\"\"b;c\";d"}) {
        const TSplitLine whole(text);
        const TSplitLine two(text, 2);
        for (std::size_t i = 0; i < 6; ++i) {
            EXPECT_EQ(whole.Field(static_cast<std::int64_t>(i)), GetRowField(text, i)) << text << " at " << i;
            EXPECT_EQ(two.Field(static_cast<std::int64_t>(i)), i < 2 ? GetRowField(text, i) : "") << text;
        }
        EXPECT_EQ(whole.Field(-1), "");
        EXPECT_LE(two.Count(), 2U);
    }
    EXPECT_EQ(TSplitLine("a;b;").Count(), 3U);
    EXPECT_EQ(TSplitLine("").Count(), 0U);
}

// A minimum of 0 takes the low 16 bits of an integer; below 0 nothing extends a sign, and fractions count.
TEST(ValueCodec, FormatsListValues) {
    struct {
        std::string Min, Decimal, Offset, Value, Shown;
    } const cases[] = {
        {"0", "0", "0", "", "0"},
        {"0", "0", "7", "garbage", "7"},
        {"0", "0", "5", "10", "15"},
        {"-1", "0", "1", "12.25", "13"},
        {"0", "0", "0", "1.5", "0"},
        {"0", "0", "0", "70000", "4464"},
        {"0", "0", "0", "2147483648", "0"},
        {"0", "0", "0", "4294967295", "65535"},
        {"0", "1", "0", "8589934599", "0.7"},
        {"0", "-2", "0", "3", "300"},
        {"1.2345679E8", "0", "0", "4", "4"},
        {"0", "-1", "0", "12", "120"},
        {" 0 ", " 1 ", " -5 ", " 10", "0.5"},
        {"0", "0", "0", "-1", "65535"},
        {"-0.5", "0", "0", "70000", "70000"},
        {"-1", "1", "0", "-5", "-0.5"},
        {"0", "-4", "0", "65535", "6.5535E8"},
        {"0", "1", "0", "-5", "6553.1"},
        {"-10.0", "1", "0", "65436", "6543.6"},
        {"0", "-9", "0", "3", "3E9"},
        {"0", "9", "0", "1234", "0.000001234"},
        {"-1", "9", "0", "-1234567891", "-1.234567900"},
        {"-1", "0", "2147483647", "2147483647", "4.2949673E9"},
        {"-1", "0", "5", "", "5"}, // no value, or no number, counts as 0
        {"-1", "1", "0", "null", "0.0"},
        {"0", "0", "5", "null", "5"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Formatted("1;d;t;" + c.Value + ";", ListRow(c.Min, c.Decimal, c.Offset)), c.Shown)
            << c.Min << " " << c.Decimal << " " << c.Offset << " " << c.Value;

    std::vector<std::string> target;
    std::vector<TListRow> rows;
    for (const char* structnumber : {"4", "3", "8", "-1", "2147483647"})
        rows.push_back(ParseListRow(ListRow("0", "1", "0", "1", "", structnumber)));
    FormatListValues("1;d;t;10;20;", target, rows);
    EXPECT_THAT(target, ElementsAre("2.0", "1.0", "0.0", "0.0", "0.0"));
}

TEST(ValueCodec, NamesTheRowOfABadField) {
    const std::string line = "1;d;t;;";
    // The rows before it have their texts.
    std::vector<std::string> target;
    EXPECT_THROW(
        FormatListValues(line, target,
                         {ParseListRow(ListRow("0", "0", "7")), ParseListRow(ListRow("0", "0", "?"))}),
        EConvertError);
    EXPECT_THAT(target, ElementsAre("7"));
    EXPECT_THAT([&] { Formatted(line, ListRow("0", "x", "0")); },
                ThrowsMessage<EConvertError>("'x' is not a valid integer value (field 5 of row \"Pump\")"));
    for (const auto& row : {ListRow("0", "0", "1.5"), ListRow("", "0", "0"), ListRow("a", "0", "0"),
                            ListRow("0", "0", "0", "1", "", "three"), std::string("0;short;")})
        EXPECT_THROW(Formatted(line, row), EConvertError) << row;
}

TEST(ValueCodec, CalculatesGraphValues) {
    struct {
        std::string Offset, Decimal, Type, Value;
        double Shown;
        int Raw;
    } const cases[] = {
        {"0", "0", "150", "-1", -1, -1},
        {"0", "0", "250", "-1", 65535, 65535},
        {"0", "0", "200", "65537", 1, 1},
        {"0", "0", "199", "65537", 65537, 65537},
        {"5", "1", "1", "10", 1.5, 10},
        {" 0 ", " -2 ", " 100 ", " 3", 300, 3},
        {"0", "3", "1", "1", 0.001, 1},
        {"0", "0", "1", "", 0, 0},
        {"4", "0", "1", "1.5", 4, 0},
        {"2147483647", "0", "1", "2147483647", 4294967294.0, 2147483647},
        {"0", "1", "1", "junk", 0.0, 0},
        {"0", "0", "200", "4294967295", 65535, 65535},
        {"0", "0", "199", "3000000000", 0, 0},
    };
    for (const auto& c : cases) {
        const std::string row = "Name;1;clRed;3;" + c.Offset + ";" + c.Decimal + ";" + c.Type + ";;;;;;1;";
        const TDatapointValue value = CalculateDatapointValue(row, "1;d;t;" + c.Value + ";");
        EXPECT_DOUBLE_EQ(value.Value, c.Shown) << row << c.Value;
        EXPECT_EQ(value.Raw, c.Raw) << row << c.Value;
    }
    for (const char* row : {"N;1;clRed;9;2;0;1;", "N;1;clRed;-1;2;0;1;"}) // beyond the line
        EXPECT_EQ(CalculateDatapointValue(row, "1;d;t;5;").Value, 2);
}

TEST(ValueCodec, KeepsABadGraphRowUntilItIsUsed) {
    const TGraphPoint bad = ParseGraphPoint(" Fan ;1;clRed;3;0;two;1;;;;;;1;");
    EXPECT_TRUE(bad.IsChannel);
    EXPECT_THAT([&] { CalculateDatapointValue(bad, TSplitLine("1;d;t;5;")); },
                ThrowsMessage<EConvertError>("'two' is not a valid integer value (field 5 of row \"Fan\")"));
    EXPECT_FALSE(ParseGraphPoint("Fan;1;clRed;3;0;0;1;;;;;;01;").IsChannel);
    EXPECT_TRUE(ParseGraphPoint("Fan;1;clRed;3;0;0;1;;;;;; 1 ").IsChannel);
    EXPECT_FALSE(ParseGraphPoint("").IsChannel);
}

TEST(ValueCodec, FormatsLimits) {
    std::vector<std::string> paraIds;
    EXPECT_EQ(FormatRowLimits("0;Pump;40;-100;250;1;0;7;3;1;", paraIds), "0;Pump;40;-10.0;25.0;1;0;7;3;1;");
    EXPECT_EQ(FormatRowLimits("0;Pump;40; 0 ;3;-2;5;7;3;1", paraIds), "0;Pump;40;500;800;-2;5;7;3;1");
    EXPECT_EQ(FormatRowLimits("0;P;40;-2147483648;2147483647;-9;1;", paraIds),
              "0;P;40;-2.1474836E18;2.1474836E18;-9;1;");
    for (const char* end : {"", ";4711;key"})
        FormatRowLimits(std::string("0;P;40;0;3;0;0;7;3;1;;;;;;G;;x") + end, paraIds);
    EXPECT_THAT(paraIds, ElementsAre("4711"));
    for (const std::string row :
         {"0;P;40;;3;0;0;", "0;P;40;0;3.5;0;0;", "0;P;40;0;3;a;0;", "0;P;40;0;3;0;",
          "0;P;40;0;4294967296;0;0;", "0;P;40;-2147483649;3;0;0;", "0;P;40;0;3;0;1e1;", ""})
        EXPECT_THROW(FormatRowLimits(row, paraIds), EConvertError) << row;
}

// A point makes a formatted value no integer; what does not fit 16 digits stays as it is.
TEST(ValueCodec, ShowsTypeCodes) {
    struct {
        std::string Code, Bits, Formatted, Shown;
    } const cases[] = {
        {"", "", "x", "x"},          {"101", "", "70000", "8928"},
        {"7", "", "3", "3"},         {"101", "", "40000", "80000"},
        {"102", "", "0", "0"},       {"100", "a", "70000", "70000"},
        {"100", " ", "5", "5"},      {"102", "", "16869", "\u00E5A"},
        {"103", "", "65", "A"},      {"100", "a", "-70000", "-70000"},
        {"0100", "a", "3", "3"},     {"100", "a", "-1", "11111111  11111111"},
        {"102", "", "16961", "AB"},  {"100", "a,b", "5", "00000000  00000101"},
        {"103", "", "16706", "AB"},  {"100", "a", "1.5", "00000000  00000000"},
        {"101", "", "-1", "131070"}, {" 100 ", "a", "65535", "11111111  11111111"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CellText(ParseListRow(ListRow("0", "0", "0", c.Code, c.Bits)), c.Formatted), c.Shown)
            << c.Code << " " << c.Formatted;
    for (const std::string code : {"100", "101", "102", "103", "1"})
        EXPECT_EQ(CellText(ParseListRow(ListRow("0", "0", "0", code, "a")), ""), "") << code;
}

} // namespace tidewell::test
