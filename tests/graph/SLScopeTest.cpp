#include "graph/SLScope.h"

#include "support/Test.h"

namespace tidewell {

TEST(SLScope, ChannelNamesCarryTheLiveValue) {
    TSLScope scope;
    TSLDisplayChannel& channel = scope.Channels.Add();
    // The name that is set, or "-" to leave it; a value; the name with it, and that of a bit field "F".
    test::ExpectRows(
        [&channel](std::string_view input) {
            const std::string set = test::Piece(input, 0);
            const auto value = static_cast<double>(ToFloat(test::Piece(input, 1)));
            if (set != "-")
                channel.SetName(set);
            EXPECT_TRUE(set == "-" || channel.Name() == set);
            channel.ShowValue(value);
            const std::string named = channel.Name();
            if (set != "-") { // each value takes the place of the last one, and its tail
                channel.ShowValue(3);
                EXPECT_TRUE(channel.Name().ends_with(":[3.00]"));
            }
            channel.ShowBits("F", value);
            return named + " " + channel.Name();
        },
        {"Temp|21.5 -> Temp:[21.50] F:[00000000 00010101]", "|1 -> :[1.00] F:[00000000 00000001]",
         "A:[old]|258.9 -> A:[258.90] F:[00000001 00000010]",
         // More than 20 characters behind the mark: the rest stays in front of the value, and goes in turn.
         "A:[0123456789012345678\u00b0rest|-1 -> A:[rest-1.00] F:[11111111 11111111]",
         "-|65538 -> F:[65538.00] F:[00000000 00000010]", // wider than a register
         "-|123456789 -> F:[1.2345679E8] F:[11001101 00010101]"});
    EXPECT_EQ(WithoutValue("Temp", 20), "Temp");
    EXPECT_EQ(WithoutValue("T:[1.00]x", 7), "Tx");
    EXPECT_EQ(WithoutValue("T:[\u00b0\u00b0]", 3), "T\u00b0]");
    constexpr std::pair<double, int> cases[] = {{-1.9, -1},
                                                {1.9, 1},
                                                {2147483646.5, 2147483646},
                                                {2147483647.0, 2147483647},
                                                {1e300, 2147483647},
                                                {-2147483647.5, -2147483647},
                                                {-1e300, -2147483647 - 1}};
    for (const auto& [value, whole] : cases)
        EXPECT_EQ(Truncated(value), whole) << value;
    EXPECT_EQ(Truncated(std::nan("")), -2147483647 - 1);
}

TEST(SLScope, PointsLieBehindEachOther) {
    TSLScope scope;
    TSLChannelData& data = scope.Channels.Add().Data;
    for (int i = 0; i < 100; ++i)
        data.AddYPoint(i * 2);
    EXPECT_EQ(data.Points()[99].X, 99);
    for (const auto& [from, left] :
         {std::pair(100.0, 100U), {99.5, 100U}, {99, 99U}, {97.5, 98U}, {0, 0U}, {0, 0U}}) {
        scope.Redraw.Begin();
        const std::size_t before = data.GetSize();
        data.DropFrom(from);
        EXPECT_EQ(data.GetSize(), left);
        EXPECT_EQ(scope.Redraw.IsPending(), left < before);
    }
    EXPECT_THROW(scope.Channels[1], EListError);
    EXPECT_THROW(scope.Labels[0], EListError);
}

// What the view is to draw anew, told once however often something is done.
TEST(SLScope, TellsItsViewOnceUntilTheViewHasDrawn) {
    TSLScope scope;
    TSLDisplayChannel& channel = scope.Channels.Add();
    TSLScopeTextLabel& label = scope.Labels.Add();
    const TSLPoint point{3, 4};
    const TSLRange range{1, 2};
    const std::vector<std::pair<std::function<void()>, const char*>> steps{
        {[&] { channel.SetVisible(true); }, ""},
        {[&] { channel.SetVisible(false); }, "picture"},
        {[&] { channel.Data.AddXYPoint(1, 2); }, "picture"},
        {[&] { channel.Data.Clear(); }, "picture"},
        {[&] { channel.SetName("A"); }, "names"},
        {[&] { channel.ShowBits("A", 1); }, "names"},
        {[&] { label.SetName("L"); }, "picture"},
        {[&] { label.SetPosition(point); }, "picture"},
        {[&] { scope.XAxis.Max.SetBoth(4); }, "picture"},
        {[&] { scope.XAxis.Max.SetBoth(4); }, ""},
        {[&] { scope.XAxis.SetZoom(range); }, "picture"},
        {[&] { scope.ZoomOff(); }, "picture"},
        {[&] { scope.UserClicks(scope.XAxis.ToolBar.Buttons.ZoomOneDir); }, "picture"},
        {[&] { scope.SetHold(true); }, "picture"},
        {[&] { scope.ToolBar.SetVisible(true); }, "picture"},
        {[&] { scope.UserMovesCursor(0, point); }, ""}, // nobody sees it
        {[&] { scope.Cursors[0].SetVisible(true); }, "picture"},
        {[&] { scope.UserMovesCursor(0, point); }, "picture"},
        {[&] { scope.Channels.Add(); }, "picture"},
        {[&] { scope.Channels.Clear(); }, "curves picture"},
    };
    int told = 0;
    const auto connection = scope.Redraw.Changed.Connect([&told] { ++told; });
    for (std::size_t i = 0; i < steps.size(); ++i) {
        scope.Redraw.Begin();
        told = 0;
        steps[i].first();
        steps[i].first();
        std::string asked = scope.Redraw.AreCurvesReplaced() ? "curves " : "";
        asked += scope.Redraw.IsPending() ? "picture" : scope.Redraw.AreNamesPending() ? "names" : "";
        EXPECT_EQ(asked, steps[i].second) << i;
        EXPECT_EQ(told, asked.empty() ? 0 : 1) << i;
    }
    scope.XAxis.Max.SetDataValue(5);
    EXPECT_TRUE(scope.XAxis.Max.Value() == 4 && scope.XAxis.Max.DataValue() == 5);
}

TEST(SLScope, AnAxisShowsItsLimitsUnlessItIsZoomed) {
    TSLScope scope;
    TSLScopeAxis& x = scope.XAxis;
    std::vector<std::pair<TSLRange, TSLRange>> told;
    scope.OnZoomChanged = [&told](const TSLZoomRect& before, const TSLZoomRect& after) {
        told.emplace_back(before.X, after.X);
    };
    EXPECT_EQ(x.Shown(), (TSLRange{0, 52}));
    x.Min.SetBoth(100);
    x.Max.SetBoth(200);
    const auto& buttons = x.ToolBar.Buttons;
    struct TStep {
        const TSLAxisToolBarButton* Button; // nullptr: a zoom to Zoom
        TSLRange Zoom;
        TSLRange Shown;
        bool Told;
    };
    const double nan = std::nan("");
    const std::vector<TStep> steps{
        {nullptr, {120, 140}, {120, 140}, true},  {nullptr, {120, 140}, {120, 140}, false},
        {nullptr, {140, 120}, {120, 140}, false}, {nullptr, {130, 130}, {120, 140}, false},
        {nullptr, {nan, 130}, {120, 140}, false}, {nullptr, {0, HUGE_VAL}, {120, 140}, false},
        {&buttons.ZoomIn, {}, {125, 135}, true},  {&buttons.ZoomOut, {}, {120, 140}, true},
        {&buttons.ZoomOut, {}, {110, 150}, true}, {&buttons.ZoomOut, {}, {100, 170}, true},
        {&buttons.ZoomOut, {}, {100, 200}, true}, {&buttons.ZoomOut, {}, {100, 200}, false},
        {&buttons.ZoomIn, {}, {125, 175}, true},  {&buttons.ZoomOneDir, {}, {125, 175}, false},
        {&buttons.ZoomOff, {}, {100, 200}, true}, {&buttons.ZoomOff, {}, {100, 200}, false},
        {nullptr, {-50, 500}, {-50, 500}, true}, // further out than the limits
        {&buttons.ZoomOut, {}, {100, 200}, true},
    };
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const TStep& step = steps[i];
        const TSLRange before = x.Shown();
        told.clear();
        if (step.Button == nullptr)
            scope.UserZooms(x, step.Zoom);
        else
            scope.UserClicks(*step.Button);
        EXPECT_EQ(x.Shown(), step.Shown) << i;
        EXPECT_EQ(x.Zoomed(), step.Shown != (TSLRange{100, 200})) << i;
        ASSERT_EQ(told.size(), step.Told ? 1U : 0U) << i;
        EXPECT_TRUE(told.empty() || told[0] == std::pair(before, step.Shown)) << i;
    }
    EXPECT_TRUE(x.ZoomOneDir);

    // New limits lie below a zoom; what the program does is no zoom by the user.
    scope.UserZooms(x, {120, 140});
    scope.UserZooms(*scope.Axis(1), {1, 2});
    told.clear();
    x.Max.SetBoth(1000);
    EXPECT_EQ(x.Shown(), (TSLRange{120, 140}));
    x.ToolBar.Buttons.ZoomOff.PerformClick();
    EXPECT_EQ(x.Shown(), (TSLRange{100, 1000}));
    x.SetZoom({1, 2});
    scope.ZoomOff();
    EXPECT_FALSE(x.Zoomed() || scope.Axis(1)->Zoomed());
    EXPECT_TRUE(told.empty());
    scope.UserZooms(scope.YAxis, {1, 2});
    scope.UserZoomsOff();
    EXPECT_EQ(told.size(), 2U);
}

TEST(SLScope, AZoomOfAllAxesLeavesThoseThatShowTheirLimits) {
    TSLScope scope;
    int told = 0;
    scope.OnZoomChanged = [&told](const TSLZoomRect&, const TSLZoomRect&) { ++told; };
    const TSLRange a{1, 2};
    const TSLRange b{-5, 5};
    const auto [x, y] = scope.ShownRect();
    for (const TSLZoomRect& rect : {TSLZoomRect{x, y},
                                    {a, {y[0], y[1], b}},
                                    {a, {b, a, b}},
                                    {a, {b, a, b}},
                                    {x, {a, y[1], a}},
                                    {x, y}}) {
        scope.UserZooms(rect);
        EXPECT_EQ(scope.ShownRect(), rect);
        EXPECT_EQ(scope.XAxis.Zoomed(), rect.X != x);
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_EQ(scope.Axis(static_cast<int>(axis))->Zoomed(), rect.Y.at(axis) != y.at(axis));
    }
    EXPECT_EQ(told, 4);
}

// What a view reads of a new surface.
TEST(SLScope, BeginsWithItsSettings) {
    const TSLScope scope;
    EXPECT_FALSE(scope.Title.Visible || scope.ToolBar.Visible() || scope.Hold() ||
                 scope.Cursors[0].Visible() || scope.Axis(-1) || scope.Axis(3));
    for (int index = 0; index < 3; ++index) {
        const TSLScopeAxis& axis = *scope.Axis(index);
        EXPECT_FALSE(axis.AxisLabel.Visible) << index;
        EXPECT_EQ(axis.DataView.Lines.Visible && axis.DataView.ZeroLine.Visible, index == 0) << index;
        EXPECT_FALSE(axis.DataView.Lines.Visible != axis.DataView.ZeroLine.Visible) << index;
        EXPECT_EQ(axis.ToolBar.Buttons.ZoomOneDir.Visible, index != 2) << index;
        EXPECT_EQ(axis.Shown(), index == 2 ? (TSLRange{-100, 10}) : (TSLRange{0, 100})) << index;
    }
}

} // namespace tidewell
