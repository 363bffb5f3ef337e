#include "graph/GraphPage.h"

#include "core/Errors.h"
#include "core/controls/Lists.h"
#include "model/ColorText.h"
#include "model/Profile.h"
#include "support/MemoryFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace tidewell {

using testing::ElementsAre;

namespace {

struct TFakeLog : TGraphPage::ILog {
    void ClearLog() override { ++Cleared; }
    int Cleared = 0;
};

constexpr const char* OneChannel = "[GraphPoints]\r\nA=Temp;1;clBlue;3;0;1;150;;;;;;1;\r\n";

class TPage {
  public:
    explicit TPage(const std::string& profileText, int xAxisJump = 10) {
        Files.Put("/p/a.pls", profileText);
        Profile.Open("/p/a.pls");
        Page.XAxisJump = xAxisJump;
    }
    // Adds live samples until there are that many; each sample's raw value is its number.
    void Extend(std::size_t count) {
        for (std::size_t n = Page.GraphSampleCount(); n < count; ++n)
            Page.ExtendGraph(std::to_string(n) + ";02-03-2026;08:00:00;" + std::to_string(n) + "; ");
    }
    // What is seen: the ends of the X axis, the first, the second and the last sample drawn, and how many.
    std::vector<double> Seen() const {
        const auto& points = Page.graph.Channels[0].Data.Points();
        return {Page.graph.XAxis.Min.Value(),
                Page.graph.XAxis.Max.DataValue(),
                points.at(0).X,
                points.at(1).X,
                points.back().X,
                static_cast<double>(points.size())};
    }

    test::TMemoryFiles Files;
    TProfile Profile{Files};
    TFakeLog Log;
    TMemo MemoEventLog{"MemoEventLog"};
    TGraphPage Page{Profile, Log, MemoEventLog};
};

} // namespace

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

TEST(GraphPage, NamesWhatIsWrongInAProfileAndGoesOn) {
    TPage rig(std::string(OneChannel) + "[VisibleGraph]\r\ngraph 0=maybe\r\n");
    EXPECT_THAT([&] { rig.Page.GraphInit(true); },
                testing::ThrowsMessage<EConvertError>(
                    "/p/a.pls: [VisibleGraph] graph 0: 'maybe' is not a valid boolean value"));
    rig.Extend(2);
    EXPECT_THAT(rig.Seen(), ElementsAre(0, 11, 0, 1, 1, 2));

    TPage bad("[GraphPoints]\r\nA=Good;1;clRed;3;0;1;150;;;;;;1;\r\nB=Bad;1;clRed;x;0;1;150;;;;;;1;\r\n");
    bad.Page.GraphInit(true);
    EXPECT_THROW(bad.Page.ExtendGraph("0;d;t;7; "), EConvertError);
    EXPECT_EQ(bad.Page.DataLogDataValues.At(0, 0), 0.7);

    TPage zero(OneChannel, 0);
    EXPECT_THROW(zero.Page.GraphInit(true), TError);

    TPage none("[NabtoDevice]\r\n");
    none.Page.GraphInit(true);
    none.Extend(0);
    none.Page.ExtendGraph("0;d;t;1; ");
    none.Page.UpdateTestData(0);
    EXPECT_EQ(none.Page.GraphSampleCount(), 0U);
}

TEST(GraphPage, SpanRoundsTiesToEven) {
    TPage rig(OneChannel);
    for (const auto& [jump, zoom, span] :
         {std::tuple{1000, 1, 1100}, {5, 1, 6}, {15, 1, 16}, {1000, 7, 7700}}) {
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
    EXPECT_THAT(rig.Seen(), ElementsAre(0, 1100, 0, 1, 1100, 1101));
    rig.Extend(1102);
    EXPECT_TRUE(rig.Page.GraphScroll.Enabled());
    EXPECT_EQ(rig.Page.GraphScroll.Max() + rig.Page.GraphScroll.Position() + rig.Page.GraphScroll.PageSize(),
              3);
    EXPECT_THAT(rig.Seen(), ElementsAre(1000, 2100, 1000, 1001, 1101, 102));
    EXPECT_THAT(rig.MemoEventLog.Lines(),
                ElementsAre("Clear Graph execute", "extend graph Datavalue->1100Value1100",
                            "extend graph Datavalue->1100Value1100"));
    rig.Extend(5000);
    EXPECT_THAT(rig.Seen(), ElementsAre(4000, 5100, 4000, 4001, 4999, 1000));
    EXPECT_EQ(rig.MemoEventLog.Lines().size(), 1U + 4 * 2);
}

TEST(GraphPage, AScrolledBackViewStaysWhereItIsUntilItIsCleared) {
    TPage rig(OneChannel);
    rig.Page.GraphInit(true);
    rig.Extend(40);
    rig.Page.GraphScroll.SetPosition(1);
    rig.Page.UpdateTestData(1);
    rig.Extend(100);
    EXPECT_THAT(rig.Seen(), ElementsAre(10, 21, 10, 11, 21, 12));
    EXPECT_EQ(rig.Page.GraphScroll.Position(), 1);
    EXPECT_EQ(rig.Page.GraphScroll.Max(), 9);
    // Moved to the end by hand, it follows again.
    rig.Page.GraphScroll.SetPosition(9);
    rig.Page.UpdateTestData(9);
    rig.Extend(140);
    EXPECT_THAT(rig.Seen(), ElementsAre(130, 141, 130, 131, 139, 10));

    rig.Page.GraphDataLabelsTimeText.Add("08:00:00");
    rig.Page.DatalogFileOpen = true;
    const int cleared = rig.Log.Cleared;
    rig.Page.ClearGraphPage();
    EXPECT_EQ(rig.Log.Cleared, cleared + 1);
    EXPECT_EQ(rig.Page.GraphSampleCount() + rig.Page.GraphDataLabelsTimeText.Count(), 0U);
    EXPECT_FALSE(rig.Page.DatalogFileOpen || rig.Page.GraphScroll.Enabled());
    EXPECT_EQ(rig.Page.graph.YAxis.Min.Value(), -40);
    EXPECT_EQ(rig.Page.graph.AdditionalAxes[0].Axis.Max.Value(), 4096);
    rig.Extend(2);
    EXPECT_THAT(rig.Seen(), ElementsAre(0, 11, 0, 1, 1, 2));
}

TEST(GraphPage, DrawsEveryNthSampleAtZoomN) {
    TPage rig(OneChannel, 100);
    rig.Page.GraphInit(true);
    rig.Page.GraphZoomFactor = 3;
    rig.Page.GraphInit(false);
    rig.Extend(300);
    EXPECT_THAT(rig.Seen(), ElementsAre(0, 330, 0, 3, 297, 100));
    rig.Page.UpdateTestData(0);
    EXPECT_THAT(rig.Seen(), ElementsAre(0, 330, 0, 3, 297, 100));
    EXPECT_EQ(rig.Page.graph.Channels[0].Data.Points()[5].Y, 1.5);
}

} // namespace tidewell
