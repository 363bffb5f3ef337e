#include "graph/SLScope.h"

#include "rig/Test.h"

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
    test::ExpectRows(
        [](std::string_view value) {
            return std::to_string(Truncated(value == "none" ? NAN : static_cast<double>(ToFloat(value))));
        },
        {"-1.9 -> -1", "1.9 -> 1", "2147483646.5 -> 2147483646", "2147483647 -> 2147483647",
         "1e300 -> 2147483647", "-2147483647.5 -> -2147483647", "-1e300 -> -2147483648",
         "none -> -2147483648"});
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
        {[&] {
             scope.XAxis.SetZoom(TSLRange{1, 2});
         },
         "picture"},
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
    TSLRange before;
    int told = 0;
    scope.OnZoomChanged = [&](const TSLZoomRect& was, const TSLZoomRect& is) {
        EXPECT_TRUE(was.X == before && is.X == x.Shown());
        ++told;
    };
    x.Min.SetBoth(100);
    x.Max.SetBoth(200);
    const auto& buttons = x.ToolBar.Buttons;
    // A button, or nullptr: a zoom to the first range; and the range shown then.
    const std::vector<std::tuple<const TSLAxisToolBarButton*, TSLRange, TSLRange>> steps{
        {nullptr, {120, 140}, {120, 140}},  {nullptr, {120, 140}, {120, 140}},
        {nullptr, {140, 120}, {120, 140}},  {nullptr, {130, 130}, {120, 140}},
        {nullptr, {NAN, 130}, {120, 140}},  {nullptr, {0, HUGE_VAL}, {120, 140}},
        {&buttons.ZoomIn, {}, {125, 135}},  {&buttons.ZoomOut, {}, {120, 140}},
        {&buttons.ZoomOut, {}, {110, 150}}, {&buttons.ZoomOut, {}, {100, 170}},
        {&buttons.ZoomOut, {}, {100, 200}}, {&buttons.ZoomOut, {}, {100, 200}},
        {&buttons.ZoomIn, {}, {125, 175}},  {&buttons.ZoomOneDir, {}, {125, 175}},
        {&buttons.ZoomOff, {}, {100, 200}}, {&buttons.ZoomOff, {}, {100, 200}},
        {nullptr, {-50, 500}, {-50, 500}},  {&buttons.ZoomOut, {}, {100, 200}},
        {nullptr, {120, 140}, {120, 140}},
    };
    for (const auto& [button, zoom, shown] : steps) {
        before = x.Shown();
        told = 0;
        if (button == nullptr)
            scope.UserZooms(x, zoom);
        else
            scope.UserClicks(*button);
        EXPECT_EQ(x.Shown(), shown) << zoom.Lower;
        EXPECT_EQ(x.Zoomed(), shown != (TSLRange{100, 200})) << shown.Lower;
        EXPECT_EQ(told, shown == before ? 0 : 1) << shown.Lower;
    }
    EXPECT_TRUE(x.ZoomOneDir);
    // New limits lie below a zoom; what the program does is no zoom by the user.
    x.Max.SetBoth(1000);
    before = x.Shown();
    EXPECT_EQ(before, (TSLRange{120, 140}));
    scope.UserZooms(*scope.Axis(1), {1, 2});
    scope.ZoomOff();
    EXPECT_FALSE(x.Zoomed() || scope.Axis(1)->Zoomed());
    EXPECT_EQ(told, 2);
}

TEST(SLScope, AZoomOfAllAxesLeavesThoseThatShowTheirLimits) {
    TSLScope scope;
    int told = 0;
    scope.OnZoomChanged = [&told](const TSLZoomRect&, const TSLZoomRect&) { ++told; };
    const TSLRange a{1, 2}, b{-5, 5};
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
    EXPECT_FALSE(scope.ToolBar.Visible() || scope.Hold() || scope.Cursors[0].Visible());
    EXPECT_THROW(scope.Cursors[1], EListError);
    for (int index = 0; index < 3; ++index) {
        const TSLScopeAxis& axis = *scope.Axis(index);
        EXPECT_FALSE(axis.AxisLabel.Visible) << index;
        EXPECT_EQ(axis.DataView.Lines.Visible, index == 0) << index;
        EXPECT_EQ(axis.DataView.ZeroLine.Visible, index == 0) << index;
        EXPECT_EQ(axis.ToolBar.Buttons.ZoomOneDir.Visible, index != 2) << index;
        EXPECT_EQ(axis.Shown(), index == 2 ? (TSLRange{-100, 10}) : (TSLRange{0, 100})) << index;
    }
    EXPECT_TRUE(scope.Axis(-1) == nullptr && scope.Axis(3) == nullptr);
    EXPECT_TRUE(scope.YAxis.Format.FixedPrecision);
}

} // namespace tidewell
