#include "model/GraphRowParser.h"

#include "core/Errors.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace tidewell {

namespace {

TGraphPoint Point(std::int32_t structnumber, std::int32_t offset, std::int32_t decimal, std::int32_t type) {
    return {true, structnumber, offset, decimal, type, {}};
}

// Parses the lines one behind the other and compares each channel with the value read by itself.
void ExpectSameValues(const std::vector<TGraphPoint>& points, const std::vector<std::string>& lines) {
    TGraphRowParser parser(points);
    ASSERT_EQ(parser.Channels(), points.size());
    for (const std::string& line : lines) {
        parser.Parse(line);
        const TSplitLine fields(line);
        EXPECT_EQ(parser.Date(), fields.Field(1)) << line;
        EXPECT_EQ(parser.Time(), fields.Field(2)) << line;
        for (std::size_t i = 0; i < points.size(); ++i)
            EXPECT_EQ(parser.Value(i), CalculateDatapointValue(points[i], fields).Value)
                << line << " field " << points[i].Structnumber << " decimals " << points[i].Decimal;
    }
}

const std::vector<std::string> Fields{"0",          "7",           " 12",        "  12",
                                      "12 ",        "-1",          "- 1",        "--1",
                                      "+5",         "+-5",         "",           " ",
                                      "x",          "1x",          "0012",       "-0",
                                      "999999999",  "1000000000",  "2147483647", "-2147483648",
                                      "2147483648", "-2147483649", "65535",      "65536",
                                      "$FF",        "0x1F",        "1.5",        "99999999999999999999",
                                      "4294967295", "$FFFFFFFF",   "\t1",        "1\0012",
                                      "\"3\"",      "\"a;4\"",     "5\"",        "\"6\"\"7",
                                      "08-03-2026", "\xE6",        "\r",         "10:20:30"};

} // namespace

TEST(GraphRowParser, ReadsEachFieldAsTheCodecDoes) {
    const std::vector<TGraphPoint> points{Point(3, 0, 0, 150),  Point(3, -3, 1, 250),
                                          Point(4, 7, -2, 100), Point(0, 0, 0, 199),
                                          Point(1, 0, 0, 200),  Point(2, 2147483647, 0, 0),
                                          Point(-1, 5, 1, 0),   Point(50, -2147483647, 300, 200)};
    std::vector<std::string> lines{"",       ";",       "1;",           "1;d",   "1;d;t",
                                   "1;d;t;", "1;d;t;5", "1;d;t;5;6;7;", ";;;;;;"};
    for (const std::string& field : Fields) {
        lines.push_back("1;d;t;" + field + ";" + field + ";");
        lines.push_back(field + ";" + field + ";" + field + ";" + field);
    }
    ExpectSameValues(points, lines);
}

TEST(GraphRowParser, AgreesOnLinesOfChance) {
    std::mt19937 random(7);
    const auto below = [&random](std::size_t end) { return static_cast<std::size_t>(random() % end); };
    for (int round = 0; round < 200; ++round) {
        std::vector<TGraphPoint> points;
        for (std::size_t i = below(6); i > 0; --i)
            points.push_back(
                Point(static_cast<std::int32_t>(below(12)) - 1, static_cast<std::int32_t>(random()),
                      static_cast<std::int32_t>(below(30)) - 15, static_cast<std::int32_t>(below(300))));
        std::vector<std::string> lines(20);
        for (std::string& line : lines)
            for (std::size_t i = below(12); i > 0; --i)
                line += (below(3) > 0 ? std::to_string(static_cast<std::int32_t>(random()) >> below(31))
                                      : Fields[below(Fields.size())]) +
                        (below(20) > 0 ? ";" : "");
        ExpectSameValues(points, lines);
    }
}

TEST(GraphRowParser, TakesChannelsOnlyAndRefusesABadOne) {
    std::vector<TGraphPoint> points{Point(3, 0, 0, 0), Point(4, 0, 0, 0)};
    points[0].IsChannel = false;
    points[0].Error = "field 5 is none";
    TGraphRowParser parser(points);
    parser.Parse("1;d;t;10;20");
    ASSERT_EQ(parser.Channels(), 1U);
    EXPECT_EQ(parser.Value(0), 20);
    points[0].IsChannel = true;
    EXPECT_THROW(TGraphRowParser{points}, EConvertError);
}

} // namespace tidewell
