#include "core/Errors.h"
#include "graph/GraphPageRig.h"
#include "model/ColorText.h"

#include <gmock/gmock.h>

#include <limits>
#include <tuple>

namespace tidewell::test {

using testing::ElementsAre;

TEST(GraphPage, MakesChannelsFromTheProfile) {
    TPage rig("[GraphPoints]\r\n"
              "A= Supply ;1;clLime;3;0;1;150;;;;;;1;\r\n"
              "B=Hidden row;1;clLime;4;0;1;150;;;;;;0;\r\n"
              "C=Flags;axis 3;no colour;5;0;0;100;a,b;;;;; 1 ;\r\n"
              "D=Last;;$000000FF;4;5;0;250;;;;;;1;\r\n"
              "[VisibleGraph]\r\ngraph 0=False\r\ngraph 9=1\r\n");
    rig.Page.GraphInit(true);
    auto& channels = rig.Page.graph.Channels;
    ASSERT_EQ(channels.Count(), 3U);
    const TColor chosen = channels[1].Color();
    EXPECT_NE(chosen, UnknownColor);
    const auto told = [](const TGraphChannelSettings& channel) {
        return channel.Name + '|' + std::to_string(channel.Color.Value) + '|' +
               std::to_string(channel.YAxisIndex) + '|' + (channel.Visible ? "shown" : "hidden");
    };
    std::vector<std::string> all;
    for (const auto& channel : rig.Page.ChannelSettings())
        all.push_back(told(channel));
    EXPECT_THAT(all, ElementsAre("Supply|65280|0|hidden", "Flags|16777216|2|shown", "Last|255|-1|shown"));

    // A colour of the user's own replaces even a text that named none.
    channels[1].SetColor(TColor{0x123456});
    EXPECT_EQ(rig.Page.ChannelSettings()[1].Color, TColor{0x123456});

    rig.Page.AddGraphSample("0;d;t;-15; 65535; 3; ", 0);
    EXPECT_EQ(channels[0].Name(), "Supply:[-1.50]");
    EXPECT_EQ(channels[1].Name(), "Flags:[00000000 00000011]");
    EXPECT_EQ(channels[2].Name(), "Last:[65540.00]");
    EXPECT_EQ(rig.Page.DataLogDataValues.At(2, 0), 65540);
}

TEST(GraphPage, KeepsOddAxesAndColoursOfAProfile) {
    struct TCase {
        const char* Axis;
        const char* Color;
        int AxisIndex;
        const char* Written; // axis and colour
    };
    const std::vector<TCase> cases{
        {"0", "clBlue", -1, "0;clBlue"},
        {"9", "$00ff00", 8, "9;$00ff00"},
        {"", "", -1, "0;"},
        {"-2", "pink-ish", -3, "-2;pink-ish"},
        {"-2147483648", "cLRed", std::numeric_limits<int>::min(), "-2147483647;cLRed"},
        {"99999999999", "$1234567890", -1, "0;$1234567890"},
        {"no 2!", " clLime ", 1, "2; clLime "},
    };
    for (const auto& sample : cases) {
        const std::string rest = ";50;0;1;150;;;;;;1;\r\n"; // no line has a field 50
        TPage rig("[GraphPoints]\r\nA=T;" + std::string(sample.Axis) + ";" + sample.Color + rest);
        rig.Page.GraphInit(true);
        rig.Extend(3);
        EXPECT_EQ(rig.Page.graph.Channels[0].YAxisIndex(), sample.AxisIndex);
        EXPECT_EQ(rig.Page.DataLogDataValues.At(0, 2), 0);
        rig.Profile.WriteGraphSettings(rig.Page.ChannelSettings());
        EXPECT_THAT(rig.Files.Read("/p/a.pls"),
                    testing::HasSubstr("\r\nA=T;" + std::string(sample.Written) + rest));
    }
}

TEST(GraphPage, NamesWhatIsWrongInAProfileAndGoesOn) {
    TPage rig(std::string(OneChannel) + "[VisibleGraph]\r\ngraph 0=maybe\r\n");
    try {
        rig.Page.GraphInit(true);
        FAIL() << "no error";
    } catch (const EConvertError& error) {
        EXPECT_STREQ(error.what(), "/p/a.pls: [VisibleGraph] graph 0: 'maybe' is not a valid boolean value");
    }
    rig.Extend(2);
    EXPECT_THAT(rig.DrawnX(), ElementsAre(0, 1));

    TPage bad("[GraphPoints]\r\nA=Good;1;clRed;3;0;1;150;;;;;;1;\r\nB=Bad;1;clRed;x;0;1;150;;;;;;1;\r\n");
    bad.Page.GraphInit(true);
    EXPECT_THROW(bad.Page.ExtendGraph("0;d;t;7; "), EConvertError);
    EXPECT_EQ(bad.Page.DataLogDataValues.At(0, 0), 0.7);

    TPage zero(OneChannel, 0);
    EXPECT_THROW(zero.Page.GraphInit(true), TError);
}

TEST(GraphPage, SpanRoundsTiesToEven) {
    TPage rig(OneChannel);
    const std::vector<std::tuple<int, int, std::int64_t>> cases{{1000, 1, 1100}, {5, 1, 6},       {15, 1, 16},
                                                                {5, 3, 16},      {1000, 7, 7700}, {3, 1, 3}};
    for (const auto& [jump, zoom, span] : cases) {
        rig.Page.XAxisJump = jump;
        rig.Page.GraphZoomFactor = zoom;
        EXPECT_EQ(rig.Page.GraphSpan(), span) << jump << " " << zoom;
    }
}

TEST(GraphPage, TheViewJumpsWhenTheDataLeavesIt) {
    TPage rig(OneChannel, 1000);
    rig.Page.GraphInit(true);
    rig.Extend(1101);
    EXPECT_FALSE(rig.Page.GraphScroll.Enabled());
    EXPECT_EQ(rig.DrawnX(), Range(0, 1100));
    EXPECT_EQ(rig.View(), std::pair(0.0, 1100.0));

    rig.Extend(1102);
    EXPECT_TRUE(rig.Page.GraphScroll.Enabled());
    EXPECT_EQ(rig.Page.GraphScroll.Max(), 1);
    EXPECT_EQ(rig.Page.GraphScroll.Position(), 1);
    EXPECT_EQ(rig.Page.GraphScroll.PageSize(), 1);
    EXPECT_EQ(rig.View(), std::pair(1000.0, 2100.0));
    EXPECT_EQ(rig.DrawnX(), Range(1000, 1101));
    EXPECT_THAT(rig.MemoEventLog.Lines(),
                ElementsAre("Clear Graph execute", "extend graph Datavalue->1100Value1100",
                            "extend graph Datavalue->1100Value1100"));
    rig.Extend(5000);
    EXPECT_EQ(rig.View(), std::pair(4000.0, 5100.0));
    EXPECT_EQ(rig.DrawnX(), Range(4000, 4999));
    EXPECT_EQ(rig.MemoEventLog.Lines().size(), 1U + 4 * 2);
}

TEST(GraphPage, AScrolledBackViewStaysWhereItIs) {
    TPage rig(OneChannel);
    rig.Page.GraphInit(true);
    rig.Extend(40);
    EXPECT_EQ(rig.View(), std::pair(30.0, 41.0));
    rig.Page.GraphScroll.SetPosition(1);
    rig.Page.UpdateTestData(1);
    rig.Extend(100);
    EXPECT_EQ(rig.View(), std::pair(10.0, 21.0));
    EXPECT_EQ(rig.DrawnX(), Range(10, 21));
    EXPECT_EQ(rig.Page.GraphScroll.Position(), 1);
    EXPECT_EQ(rig.Page.GraphScroll.Max(), 9);

    // Moved to the end by hand, it follows again.
    rig.Page.GraphScroll.SetPosition(9);
    rig.Page.UpdateTestData(9);
    rig.Extend(140);
    EXPECT_EQ(rig.View(), std::pair(130.0, 141.0));
}

TEST(GraphPage, DrawsEveryNthSampleAtZoomN) {
    TPage rig(OneChannel, 100);
    rig.Page.GraphInit(true);
    rig.Page.GraphZoomFactor = 3;
    rig.Page.GraphInit(false);
    EXPECT_EQ(rig.View(), std::pair(0.0, 330.0));
    rig.Extend(300);
    EXPECT_EQ(rig.DrawnX(), Range(0, 299, 3));
    rig.Page.UpdateTestData(0);
    EXPECT_EQ(rig.DrawnX(), Range(0, 299, 3));
    EXPECT_EQ(rig.Page.graph.Channels[0].Data.Points()[5].Y, 1.5);
}

TEST(GraphPage, ClearingBeginsAnew) {
    TPage rig(OneChannel);
    rig.Page.GraphInit(true);
    rig.Extend(40);
    rig.Page.GraphDataLabelsTimeText.Add("08:00:00");
    rig.Page.DatalogFileOpen = true;
    const int cleared = rig.Log.Cleared;
    rig.Page.ClearGraphPage();
    EXPECT_EQ(rig.Log.Cleared, cleared + 1);
    EXPECT_EQ(rig.Page.GraphSampleCount(), 0U);
    EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.Count(), 0U);
    EXPECT_FALSE(rig.Page.DatalogFileOpen);
    EXPECT_EQ(rig.View(), std::pair(0.0, 11.0));
    EXPECT_FALSE(rig.Page.GraphScroll.Enabled());
    EXPECT_EQ(rig.Page.GraphScroll.Max(), 0);
    EXPECT_TRUE(rig.DrawnX().empty());
    EXPECT_EQ(rig.Page.graph.YAxis.Min.Value(), -40);
    EXPECT_EQ(rig.Page.graph.YAxis.AdditionalAxes[0].Axis.Max.Value(), 4096);
}

TEST(GraphPage, LabelsStandAtFixedPartsOfTheView) {
    struct TCase {
        std::size_t Samples;
        int Zoom;
        std::vector<std::string> Expected;
    };
    const std::vector<TCase> cases{
        {0, 1, {}},
        {111, 1, {}}, // the first stands at 110, and the last sample does not count
        {112, 1, {"t110@110", "d110@110"}},
        {900,
         1,
         {"t110@110", "d110@110", "t330@330", "d330@330", "t550@550", "d550@550", "t770@770", "d770@770"}},
        {1102, 1, {}}, // the view has jumped
        {1112, 1, {"t1110@1110", "d1110@1110"}},
        {333, 3, {}},
        {334, 3, {"t330@330", "d330@330"}},
    };
    for (const auto& sample : cases) {
        TPage rig(OneChannel, 1000);
        rig.Page.GraphInit(true);
        for (int zoom = 1; zoom < sample.Zoom; ++zoom)
            rig.Page.GraphZoomPlusButton.Click();
        rig.Extend(sample.Samples);
        EXPECT_EQ(rig.Labels(), sample.Expected) << sample.Samples << " samples at zoom " << sample.Zoom;
    }
    TPage untimed(OneChannel, 10);
    untimed.Page.GraphInit(true);
    untimed.Page.AddGraphSample("0;d;t;1; ", 8); // samples that no time belongs to
    EXPECT_THROW(untimed.Page.GraphZoomMinusButtonClick(), EListError);
}

TEST(GraphPage, DrawsAllLinesOfAListButTheLast) {
    TPage rig(OneChannel, 1000);
    rig.Page.GraphInit(true);
    std::vector<std::string> lines;
    for (int i = 0; i < 2500; ++i)
        lines.push_back(std::to_string(i + 1) + ";02-03-2026;t" + std::to_string(i) + ";" +
                        std::to_string(i) + ";");
    lines[0] = "1;2. M\xE4rz;\xC3\xA9;x;"; // Windows-1252, UTF-8, no number
    lines[1] = "";
    lines[2] = "3;d";
    TListedLines list(lines);
    rig.Page.DrawGraphDatafromList(list);
    EXPECT_EQ(rig.Page.GraphSampleCount(), 2499U);
    EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.Count(), 2499U);
    EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.At(0), "\u00e9");
    EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.At(2), "");
    EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.At(2498), "t2498");
    EXPECT_EQ(rig.Page.GraphDataLabelsDateText.At(0), "2. M\u00e4rz");
    EXPECT_EQ(rig.Page.CurrentLogStartDate, "2. M\u00e4rz");
    EXPECT_EQ(rig.Page.DatalogLastLineSetpoint, lines[2498]);
    for (const auto& [sample, value] : {std::pair(0U, 0.0), {1U, 0.0}, {2U, 0.0}, {3U, 0.3}, {2498U, 249.8}})
        EXPECT_EQ(rig.Page.DataLogDataValues.At(0, sample), value);
    EXPECT_EQ(rig.Page.graph.Channels[0].Name(), "Temp:[249.80]");
    // It is shown from its end; the rest is for the scroll bar.
    EXPECT_EQ(rig.Page.GraphScroll.Max(), 2);
    EXPECT_EQ(rig.View(), std::pair(2000.0, 3100.0));
    EXPECT_EQ(rig.DrawnX(), Range(2000, 2498));
    EXPECT_THAT(rig.Labels(), ElementsAre("t2110@2110", "02-03-2026@2110", "t2330@2330", "02-03-2026@2330"));
    rig.Page.GraphScroll.Scroll(EScrollCode::End, 0);
    EXPECT_EQ(rig.DrawnX(), Range(0, 1100));
    EXPECT_EQ(rig.FileProgressBar.Max(), 2750);
    EXPECT_FALSE(rig.FileProgressBar.Visible());

    for (const int count : {0, 1}) {
        rig.Page.ClearGraphPage();
        TListedLines few(std::vector<std::string>(static_cast<std::size_t>(count), "1;d;t;5;"));
        try {
            rig.Page.DrawGraphDatafromList(few);
            FAIL() << count;
        } catch (const EListError& error) {
            EXPECT_EQ(error.what(), "List index out of bounds (" + std::to_string(count - 2) + ")");
        }
        EXPECT_EQ(rig.Page.GraphSampleCount(), 0U);
        EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.Count(), 0U);
    }
}

TEST(GraphPage, WorksWithoutChannels) {
    TPage rig("[NabtoDevice]\r\n");
    rig.Page.GraphInit(true);
    for (int i = 0; i < 30; ++i)
        rig.Page.ExtendGraph("0;d;t;1; ");
    EXPECT_EQ(rig.Page.GraphSampleCount(), 0U);
    rig.Page.UpdateTestData(0);
    rig.Page.ClearGraphPage();
    TListedLines lines(std::vector<std::string>(30, "1;d;t;1;"));
    rig.Page.DrawGraphDatafromList(lines);
    EXPECT_EQ(rig.Page.GraphSampleCount(), 0U);
    EXPECT_FALSE(rig.Page.GraphScroll.Enabled());
    EXPECT_TRUE(rig.Labels().empty());
    rig.Page.graph.UserMovesCursor(0, {1, 0});
    rig.Page.GraphZoomPlusButton.Click();
}

} // namespace tidewell::test
