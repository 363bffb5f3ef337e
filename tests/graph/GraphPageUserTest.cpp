#include "core/Errors.h"
#include "graph/GraphPageRig.h"

#include <gmock/gmock.h>

namespace tidewell::test {

using testing::ElementsAre;

TEST(GraphPage, ADragShowsItsTimeAndMovesTheViewAtItsEnd) {
    TPage rig(OneChannel);
    rig.Page.GraphInit(true);
    rig.Extend(41);
    EXPECT_THAT(rig.Labels(), ElementsAre("t31@31", "d31@31", "t33@33", "d33@33", "t35@35", "d35@35",
                                          "t37@37", "d37@37", "t39@39", "d39@39"));
    TScrollBar& bar = rig.Page.GraphScroll;
    ASSERT_EQ(bar.Max(), 3);
    bar.Scroll(EScrollCode::Track, 2);
    bar.Scroll(EScrollCode::Track, 1);
    EXPECT_THAT(rig.Labels(), ElementsAre("t10@31", "d10@31"));
    EXPECT_EQ(rig.View(), std::pair(30.0, 41.0));
    rig.Extend(43); // the log goes on meanwhile
    EXPECT_THAT(rig.Labels(), ElementsAre("t10@31", "d10@31"));
    bar.Scroll(EScrollCode::Other, 1);
    EXPECT_EQ(rig.View(), std::pair(30.0, 41.0));

    bar.Scroll(EScrollCode::End, 1);
    EXPECT_EQ(rig.View(), std::pair(10.0, 21.0));
    EXPECT_EQ(rig.DrawnX(), Range(10, 21));
    EXPECT_THAT(rig.Labels(), ElementsAre("t11@11", "d11@11", "t13@13", "d13@13", "t15@15", "d15@15",
                                          "t17@17", "d17@17", "t19@19", "d19@19"));
    EXPECT_THROW(bar.Scroll(EScrollCode::Track, 5), EListError);
    // A profile opened in the middle of a drag ends it.
    rig.Page.GraphInit(true);
    rig.Extend(5);
    EXPECT_THAT(rig.Labels(), ElementsAre("t1@1", "d1@1", "t3@3", "d3@3"));
}

TEST(GraphPage, ZoomButtonsChangeTheSpanAndRedraw) {
    TPage rig(OneChannel);
    rig.Page.GraphInit(true);
    rig.Extend(100);
    rig.Page.GraphZoomMinusButton.Click();
    EXPECT_EQ(rig.Page.GraphZoomLevelLabel.Caption(), "Zoom: 1");
    struct TCase {
        bool Plus;
        const char* Caption;
        int Max;
        std::pair<double, double> View;
        std::vector<double> Drawn;
    };
    const std::vector<TCase> cases{
        {true, "Zoom: 2", 4, {80, 102}, Range(80, 99, 2)},  {true, "Zoom: 3", 3, {90, 123}, Range(90, 99, 3)},
        {false, "Zoom: 2", 4, {80, 102}, Range(80, 99, 2)}, {false, "Zoom: 1", 9, {90, 101}, Range(90, 99)},
        {false, "Zoom: 1", 9, {90, 101}, Range(90, 99)},
    };
    for (const auto& step : cases) {
        rig.Page.graph.UserZooms(rig.Page.graph.XAxis, {20, 25}); // is dropped
        rig.Page.graph.Channels[0].Data.Clear();
        (step.Plus ? rig.Page.GraphZoomPlusButton : rig.Page.GraphZoomMinusButton).Click();
        EXPECT_EQ(rig.Page.GraphZoomLevelLabel.Caption(), step.Caption);
        EXPECT_EQ(rig.Page.GraphScroll.Max(), step.Max);
        EXPECT_EQ(rig.View(), step.View);
        EXPECT_EQ(rig.Page.graph.XAxis.Shown(), (TSLRange{step.View.first, step.View.second}));
        EXPECT_EQ(rig.DrawnX(), step.Drawn);
    }
    rig.Page.GraphZoomPlusButton.Click();
    rig.Page.ClearGraphPage();
    EXPECT_EQ(rig.View(), std::pair(0.0, 22.0)) << "the zoom outlives a clearing";
    for (int zoom = 2; zoom < 200; ++zoom)
        rig.Page.GraphZoomPlusButton.Click();
    EXPECT_EQ(rig.Page.GraphZoomLevelLabel.Caption(), "Zoom: 200");
}

TEST(GraphPage, AZoomKeepsUpToFiveLabelPairs) {
    struct TCase {
        TSLRange Zoom;
        std::vector<std::string> Expected;
    };
    const std::vector<TCase> cases{
        {{200, 700}, {"t330@330", "d330@330", "t550@550", "d550@550", "t770@770", "d770@770"}},
        {{300, 308}, {"t330@330", "d330@330"}}, // a range of 10 or less has one threshold
        {{0, 110}, {"t110@110", "d110@110"}},
        {{980, 1100}, {}},
        {{980, 985}, {"t990@990", "d990@990"}},
    };
    TPage rig(OneChannel, 1000);
    rig.Page.GraphInit(true);
    rig.Extend(1101);
    TSLScope& graph = rig.Page.graph;
    for (const auto& sample : cases) {
        graph.UserZooms(graph.XAxis, sample.Zoom);
        EXPECT_EQ(rig.Labels(), sample.Expected) << sample.Zoom.Lower;
    }
    graph.UserZoomsOff();
    EXPECT_THAT(rig.Labels(), ElementsAre("t330@330", "d330@330", "t550@550", "d550@550", "t770@770",
                                          "d770@770", "t990@990", "d990@990"));

    // A drag that is over has left nothing of its own.
    rig.Page.GraphScroll.Scroll(EScrollCode::Track, 0);
    rig.Page.GraphScroll.Scroll(EScrollCode::End, 0);
    graph.UserZooms(graph.XAxis, {50, 90});
    EXPECT_THAT(rig.Labels(), ElementsAre("t110@110", "d110@110"));

    // The axis of the labels never zooms.
    TSLScopeAxis& third = graph.YAxis.AdditionalAxes[1].Axis;
    graph.UserZooms(third, {0.5, 1});
    EXPECT_FALSE(third.Zoomed());
    graph.UserZooms(graph.YAxis, {0, 10});
    EXPECT_TRUE(graph.YAxis.Zoomed());
}

TEST(GraphPage, ClicksOnABitFieldShowItsBits) {
    TPage rig(BitChannels);
    rig.Page.GraphInit(true);
    TSLScope& graph = rig.Page.graph;
    const auto clickLegend = [&graph](std::size_t index) {
        bool handled = false;
        graph.Legend.Channels.OnItemClick(index, handled);
        EXPECT_TRUE(handled);
    };
    const auto click = [&graph](std::size_t index, double y) {
        bool handled = false;
        graph.Channels.OnClick(index, handled, {0, y});
        EXPECT_TRUE(handled);
    };
    const auto hint = [&graph](std::size_t index, double y) {
        std::string text = "as it was";
        graph.OnOverChannel(index, {0, y});
        graph.OnCustomMouseHitLabel(text, y);
        return text;
    };
    graph.Channels[1].SetName("Flags"); // as before the first sample
    EXPECT_EQ(hint(1, 258.9), "00000001  00000010");
    rig.Page.AddGraphSample("0;d;t;70;5; ", 0);
    clickLegend(1); // one point is none
    rig.Page.AddGraphSample("1;d;t;80;16389; ", 1);
    clickLegend(0);
    clickLegend(2); // has no names
    click(0, 5);
    EXPECT_TRUE(rig.Dialogs.Shown.empty());

    rig.Dialogs.ExpectPopup("GraphBinaryPopup");
    clickLegend(1);
    EXPECT_THAT(rig.Page.NamedBits.BinaryGraphList, ElementsAre("0   Run", "1    Alarm", "0   1st"));
    EXPECT_EQ(rig.MemoEventLog.Lines().back(), "Binary value 0100000000000101");
    EXPECT_EQ(rig.Page.NamedBits.Height(), 60);
    EXPECT_EQ(rig.Page.NamedBits.Width(), 6 * 10);
    rig.Dialogs.ExpectPopup("GraphBinaryPopup");
    click(1, -1.5);
    EXPECT_EQ(rig.MemoEventLog.Lines().back(), "Binary value 1111111111111111");

    EXPECT_EQ(hint(1, 32768), "10000000  00000000");
    EXPECT_EQ(hint(0, 32768), "as it was");
    EXPECT_EQ(hint(2, 32768), "as it was");
    EXPECT_EQ(hint(9, 1), "as it was");
    rig.Page.AddGraphSample("2;d;t;80;-1; ", 2); // -1 counts as no value
    clickLegend(1);
    EXPECT_TRUE(rig.Dialogs.AllAnswered());

    // Names beyond the bits stay bare.
    rig.Page.NamedBits.BinaryCommastring = "0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,more";
    rig.Page.NamedBits.PrepareBinaryView(1);
    EXPECT_EQ(rig.Page.NamedBits.BinaryGraphList.at(15), "1   15");
    EXPECT_EQ(rig.Page.NamedBits.BinaryGraphList.at(16), "more");
}

TEST(GraphPage, TheCursorPutsItsValuesIntoTheLegend) {
    TPage rig(BitChannels);
    rig.Page.GraphInit(true);
    auto& channels = rig.Page.graph.Channels;
    for (int i = 0; i < 40; ++i) {
        rig.Page.GraphDataLabelsTimeText.Add("t");
        rig.Page.GraphDataLabelsDateText.Add("d");
        rig.Page.ExtendGraph("0;d;t;" + std::to_string(i * 10) + ";" + std::to_string(i - 31) + "; ");
    }
    ASSERT_EQ(rig.View(), std::pair(30.0, 41.0));
    channels[2].SetVisible(false);
    struct TCase {
        double X;
        const char* Temp;
        const char* Flags;
    };
    const std::vector<TCase> cases{
        {2.9, "Temp:[32.00]", "Flags:[1.00]"}, // a place among the points drawn, so of sample 32
        {0, "Temp:[30.00]", "Flags:[1.00]"},   // -1 counts as none
        {-0.5, "Temp:[30.00]", "Flags:[1.00]"},
        {-1, "Temp:[30.00]", "Flags:[1.00]"},
        {9, "Temp:[39.00]", "Flags:[8.00]"},
        {10, "Temp:[39.00]", "Flags:[8.00]"}, // as many as there are points
        {1e300, "Temp:[39.00]", "Flags:[8.00]"},
        {std::nan(""), "Temp:[39.00]", "Flags:[8.00]"},
    };
    for (const auto& step : cases) {
        rig.Page.graph.UserMovesCursor(0, {step.X, 0});
        EXPECT_EQ(channels[0].Name(), step.Temp) << step.X;
        EXPECT_EQ(channels[1].Name(), step.Flags) << step.X;
        EXPECT_EQ(channels[2].Name(), "Plain:[00000000 00001000]") << step.X;
    }
    rig.Page.graph.UserMovesCursor(0, {1, 0});
    EXPECT_THAT(rig.MemoEventLog.Lines(), testing::IsSupersetOf({"Get Y-value", "XPoint 1 YPoint 31.00"}));
}

TEST(GraphPage, TheMenuHoldsUnzoomsAndClears) {
    TPage rig(OneChannel);
    rig.Page.GraphInit(true);
    rig.Extend(20);
    TGraphPage& page = rig.Page;
    TSLScope& graph = page.graph;
    rig.Dialogs.ExpectPopup("PopupMenu", [](TPopupMenu& menu) { menu.Items[1].get().Click(); });
    graph.OnContextPopup(3, 4);
    EXPECT_TRUE(graph.Hold());
    EXPECT_TRUE(page.Hold1.Checked());
    rig.Extend(21); // goes on being taken in
    EXPECT_EQ(page.GraphSampleCount(), 21U);

    graph.UserZooms(graph.XAxis, {11, 13});
    graph.UserZooms(graph.YAxis.AdditionalAxes[0].Axis, {1, 2});
    page.zoomall1.Click();
    EXPECT_FALSE(graph.XAxis.Zoomed());
    EXPECT_FALSE(graph.YAxis.AdditionalAxes[0].Axis.Zoomed());
    EXPECT_FALSE(graph.Hold());
    EXPECT_TRUE(page.Hold1.Checked()); // is left as it was
    page.Hold1.Click();
    EXPECT_FALSE(page.Hold1.Checked());

    page.Graphitems1.Click();
    EXPECT_TRUE(graph.ToolBar.Visible() && page.Graphitems1.Checked());
    page.Graphitems1.Click();
    EXPECT_FALSE(graph.ToolBar.Visible() || page.Graphitems1.Checked());

    graph.UserZooms(graph.YAxis, {1, 2});
    page.Cleargraph1.Click();
    EXPECT_EQ(page.GraphSampleCount(), 0U);
    EXPECT_FALSE(graph.YAxis.Zoomed());
    EXPECT_TRUE(rig.Labels().empty());
}

} // namespace tidewell::test
