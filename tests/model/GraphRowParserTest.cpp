#include "model/GraphRowParser.h"

#include "fuzz/RowProperties.h"
#include "rig/Test.h"

namespace tidewell::test {

TEST(GraphRowParser, ReadsEachFieldAsTheCodecDoes) {
    constexpr std::int32_t highest = 2147483647;
    const std::vector<TGraphPoint> points{{true, 3, 0, 0, 150, {}},   {true, 3, -3, 1, 250, {}},
                                          {true, 4, 7, -2, 100, {}},  {true, 0, 0, 0, 199, {}},
                                          {true, 1, 0, 0, 200, {}},   {true, 2, highest, 0, 0, {}},
                                          {true, -1, 5, 1, 0, {}},    {true, 50, -highest, 300, 200, {}},
                                          {true, 65535, 0, 0, 0, {}}, {true, 65536, 1, 0, 0, {}}};
    TGraphRowParser parser(points);
    const std::string fields =
        "0|7| 12|  12|12 |-1|- 1|--1|+5|+-5|| |x|1x|0012|-0|999999999|1000000000|2147483647|-2147483648|"
        "2147483648|-2147483649|65535|65536|$FF|0x1F|1.5|99999999999999999999|4294967295|$FFFFFFFF|\t1|"
        "1\0012|\"3\"|\"a;4\"|5\"|\"6\"\"7|08-03-2026|\xE6|\r|10:20:30|1/|1:";
    for (const std::string_view text : SplitStrictly(fields, '|')) {
        const std::string field(text);
        CheckRow(points, parser, "1;d;t;" + field + ";" + field + ";");
        CheckRow(points, parser, field + ";" + field + ";" + field + ";" + field);
    }
    parser.Parse("1;d;t" + std::string(65533, ';') + "8;9"); // a field further on is none
    EXPECT_EQ(parser.Value(8), 8);
    EXPECT_EQ(parser.Value(9), 1);
}

TEST(GraphRowParser, TakesChannelsOnlyAndRefusesABadOne) {
    std::vector<TGraphPoint> points{{false, 3, 0, 0, 0, "field 5 is none"}, {true, 4, 0, 0, 0, {}}};
    TGraphRowParser parser(points);
    parser.Parse("1;d;t;10;20");
    ASSERT_EQ(parser.Channels(), 1U);
    EXPECT_EQ(parser.Value(0), 20);
    points[0].IsChannel = true;
    EXPECT_THROW(TGraphRowParser{points}, EConvertError);
}

} // namespace tidewell::test
