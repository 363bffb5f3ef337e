#include "logging/DatalogRig.h"
#include "model/ColorText.h"

// What only the mouse on the plot does; rows, buttons and menus are told in tests/journeys/graph.txt.
namespace tidewell::test {
namespace {

using testing::ElementsAre;

// Live samples, each of its number in tenths and of flags so much less.
class TMouse : public TDatalogRig {
  public:
    TMouse(int samples, int less, int xAxisJump)
        : TDatalogRig("[GraphPoints]\r\nA=Off;1;clRed;3;0;0;150;;;;;;0;\r\n"
                      "B=Temp;1;clBlue;3;0;1;150;;;;;;1;\r\n"
                      "C=Flags;1;none;4;0;0; 100 ;Run, Alarm,1st;;;;;1;\r\n"
                      "D=Plain;1;none;4;0;0;100; ;;;;;1;\r\n") {
        Page.XAxisJump = xAxisJump;
        Page.GraphInit(false);
        for (int i = 0; i < samples; ++i)
            Sample(i * 10, i - less);
    }
    void Sample(int temp, int flags) {
        const std::string number = std::to_string(Page.GraphSampleCount());
        Page.GraphDataLabelsTimeText.Add("t" + number);
        Page.GraphDataLabelsDateText.Add("d" + number);
        Page.ExtendGraph("0;d;t;" + std::to_string(temp) + ";" + std::to_string(flags) + "; ");
    }
    // Those that are shown, "text@X"; fails the test for one that is off its place.
    std::string Labels() const {
        std::string shown;
        for (std::size_t i = 0; i < graph.Labels.Count(); ++i) {
            const TSLScopeTextLabel& label = graph.Labels[i];
            if (!label.Visible())
                continue;
            EXPECT_EQ(label.YAxisIndex(), 2);
            EXPECT_EQ(label.Position().Y, i % 2 == 0 ? 0.05 : 0.02);
            shown += label.Name() + '@' + std::to_string(std::lround(label.Position().X)) + ' ';
        }
        return shown;
    }
    // On the legend, or at that height of the curve. All of them are taken.
    void Click(std::size_t index, std::optional<double> y = std::nullopt) {
        bool handled = false;
        if (y)
            graph.Channels.OnClick(index, handled, {0, *y});
        else
            graph.Legend.Channels.OnItemClick(index, handled);
        EXPECT_TRUE(handled);
    }
    std::string Hint(std::size_t index, double y) {
        std::string text = "as it was";
        graph.OnOverChannel(index, {0, y});
        graph.OnCustomMouseHitLabel(text, y);
        return text;
    }
    TSLScope& graph = Page.graph;
};

TEST(GraphPageMouse, AZoomKeepsUpToFiveLabelPairsAndIsDropped) {
    TMouse mouse(1101, 0, 1000);
    TSLScope& graph = mouse.graph;
    const std::vector<std::pair<TSLRange, const char*>> cases{
        {{200, 700}, "t330@330 d330@330 t550@550 d550@550 t770@770 d770@770 "},
        {{322, 332}, "t330@330 d330@330 "}, // a range of 10 or less has one threshold
        {{322, 332.5}, "t330@330 d330@330 t550@550 d550@550 "},
        {{0, 110}, "t110@110 d110@110 "},
        {{980, 1100}, ""},
        {{980, 985}, "t990@990 d990@990 "},
    };
    for (const auto& [zoom, expected] : cases) {
        graph.UserZooms(graph.XAxis, zoom);
        EXPECT_EQ(mouse.Labels(), expected) << zoom.Lower;
    }
    graph.UserZoomsOff();
    EXPECT_EQ(mouse.Labels(), "t330@330 d330@330 t550@550 d550@550 t770@770 d770@770 t990@990 d990@990 ");
    // A drag that is over has left nothing of its own.
    mouse.Page.GraphScroll.Scroll(EScrollCode::Track, 0);
    mouse.Page.GraphScroll.Scroll(EScrollCode::Other, 0);
    EXPECT_EQ(mouse.Labels(), "t0@110 d0@110 ");
    mouse.Page.GraphScroll.Scroll(EScrollCode::End, 0);
    graph.UserZooms(graph.XAxis, {50, 90});
    EXPECT_EQ(mouse.Labels(), "t110@110 d110@110 ");
    mouse.Page.GraphZoomPlusButton.Click();
    EXPECT_EQ(graph.XAxis.Shown(), (TSLRange{0, 2200}));

    // The axis of the labels never zooms; the menu is that of the right button.
    TSLScopeAxis& labelAxis = graph.YAxis.AdditionalAxes[1].Axis;
    graph.UserZooms(labelAxis, {0.5, 1});
    EXPECT_FALSE(labelAxis.Zoomed());
    mouse.Dialogs.OnPopup = [](TPopupMenu& menu) { menu.Items[2].get().Click(); };
    for (const auto& off : {std::function([&] { graph.OnContextPopup(3, 4); }),
                            std::function([&] { mouse.Page.Cleargraph1.Click(); })}) {
        graph.UserZooms(graph.YAxis, {0, 10});
        EXPECT_TRUE(graph.YAxis.Zoomed());
        off();
        EXPECT_FALSE(graph.YAxis.Zoomed());
    }
}

TEST(GraphPageMouse, ClicksOnABitFieldShowItsBits) {
    TMouse mouse(1, -5, 10);
    int popups = 0;
    mouse.Dialogs.OnPopup = [&popups](TPopupMenu& menu) {
        popups += menu.Name() == "GraphBinaryPopup" ? 1 : 9;
    };
    mouse.Click(1); // one point is none
    mouse.Sample(80, 16389);
    mouse.Click(0);
    mouse.Click(2); // has no names
    mouse.Click(0, 5);
    EXPECT_EQ(popups, 0);
    TNamedBits& bits = mouse.Page.NamedBits;
    mouse.Click(1);
    EXPECT_THAT(bits.BinaryGraphList, ElementsAre("0   Run", "1    Alarm", "0   1st"));
    EXPECT_EQ(std::pair(bits.Width(), bits.Height()), std::pair(60, 60));
    mouse.Click(1, -1.5);
    EXPECT_EQ(mouse.MemoEventLog.Lines().back(), "Binary value 1111111111111111");
    EXPECT_EQ(mouse.Hint(1, 32768), "10000000  00000000");
    for (const std::size_t other : {0U, 2U, 3U})
        EXPECT_EQ(mouse.Hint(other, 32768), "as it was");
    mouse.Sample(80, -1); // -1 counts as no value
    mouse.Click(1);
    EXPECT_EQ(popups, 2);

    bits.BinaryCommastring = "0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,beyond the bits";
    bits.PrepareBinaryView(1);
    EXPECT_EQ(bits.BinaryGraphList.at(15), "1   15");
    EXPECT_EQ(bits.BinaryGraphList.at(16), "beyond the bits");
}

TEST(GraphPageMouse, TheCursorPutsItsValuesIntoTheLegend) {
    TMouse mouse(40, 31, 10);
    auto& channels = mouse.graph.Channels;
    channels[2].SetVisible(false);
    // A place among the points drawn, which are the samples from 30 on; flags of -1 count as none.
    const std::vector<std::pair<double, const char*>> cases{
        {2.9, "Temp:[32.00] Flags:[1.00]"}, {0, "Temp:[30.00] Flags:[1.00]"},
        {-1, "Temp:[30.00] Flags:[1.00]"},  {9, "Temp:[39.00] Flags:[8.00]"},
        {10, "Temp:[39.00] Flags:[8.00]"},  {std::nan(""), "Temp:[39.00] Flags:[8.00]"}};
    for (const auto& [x, names] : cases) {
        mouse.graph.UserMovesCursor(0, {x, 0});
        EXPECT_EQ(channels[0].Name() + " " + channels[1].Name(), names) << x;
        EXPECT_EQ(channels[2].Name(), "Plain:[00000000 00001000]") << x;
    }
    EXPECT_THAT(mouse.MemoEventLog.Lines(), testing::IsSupersetOf({"Get Y-value", "XPoint 2 YPoint 32.00"}));
}

// A colour of the user's own replaces even a text that named none.
TEST(GraphPageMouse, ColoursChosenAreKept) {
    TMouse mouse(0, 0, 10);
    mouse.graph.Channels[2].SetColor(TColor{0x123456});
    EXPECT_EQ(mouse.Page.ChannelSettings()[1].Color, UnknownColor);
    EXPECT_EQ(mouse.Page.ChannelSettings()[2].Color, TColor{0x123456});
}

} // namespace
} // namespace tidewell::test
