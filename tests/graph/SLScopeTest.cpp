#include "graph/SLScope.h"

#include "core/Errors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

TEST(SLScope, ChannelNameCarriesTheLiveValue) {
    TSLScope scope;
    TSLDisplayChannel& channel = scope.Channels.Add();
    struct TStep {
        const char* Set; // nullptr: show the value on the name as it is
        double Value;
        const char* Expected;
    };
    const std::vector<TStep> steps{
        {"Temp", 21.5, "Temp:[21.50]"},
        {nullptr, -3, "Temp:[-3.00]"},
        {nullptr, 123456789, "Temp:[1.2345679E8]"},
        {"", 1, ":[1.00]"},
        {"A:[old]", 2, "A:[2.00]"},
        // More than 20 characters behind the mark: the rest stays in front of the value, and goes in turn.
        {"A:[0123456789012345678\u00b0rest", 2, "A:[rest2.00]"},
        {nullptr, 3, "A:[3.00]"},
    };
    for (const auto& step : steps) {
        if (step.Set != nullptr) {
            channel.SetName(step.Set);
            EXPECT_EQ(channel.Name(), step.Set);
        }
        channel.ShowValue(step.Value);
        EXPECT_EQ(channel.Name(), step.Expected);
    }
}

TEST(SLScope, ChannelNameCarriesBits) {
    TSLScope scope;
    TSLDisplayChannel& channel = scope.Channels.Add();
    for (const auto& [value, bits] :
         {std::pair{258.9, "00000001 00000010"},
          {-1, "11111111 11111111"},
          {65538, "00000000 00000010"}}) { // wider than a register: its low 16 bits
        channel.ShowBits("Flags", value);
        EXPECT_EQ(channel.Name(), std::string("Flags:[") + bits + "]");
    }
    channel.ShowValue(7); // the cursor shows a number on any channel
    EXPECT_EQ(channel.Name(), "Flags:[7.00]");
}

TEST(SLScope, TellsItsViewOnceUntilTheViewHasDrawn) {
    TSLScope scope;
    int told = 0;
    const auto connection = scope.Redraw.Changed.Connect([&told] { ++told; });
    TSLDisplayChannel& channel = scope.Channels.Add();
    for (int i = 0; i < 100; ++i)
        channel.Data.AddYPoint(i * 2);
    EXPECT_EQ(told, 1);
    scope.Redraw.Begin();
    channel.SetVisible(true);
    EXPECT_FALSE(scope.Redraw.IsPending());
    channel.SetVisible(false);
    scope.XAxis.Max.SetBoth(7);
    EXPECT_EQ(told, 2);
    std::vector<double> values(channel.Data.GetSize());
    channel.Data.GetDrawYData(values.data());
    EXPECT_EQ(values.back(), 198);
    EXPECT_EQ(channel.Data.Points()[99].X, 99);
    EXPECT_THROW(scope.Channels[1], EListError);
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

TEST(SLScope, LimitsReadAsTheyWereSet) {
    TSLScope scope;
    auto& max = scope.XAxis.Max;
    max.SetValue(3);
    max.SetDataValue(4);
    EXPECT_EQ(max.Value(), 3);
    EXPECT_EQ(max.DataValue(), 4);
    scope.Redraw.Begin();
    max.SetBoth(4);
    EXPECT_TRUE(scope.Redraw.IsPending());
    scope.Redraw.Begin();
    max.SetBoth(4);
    max.SetAutoScale(false);
    EXPECT_FALSE(scope.Redraw.IsPending());
}

// What a view, the graph page or the user reads of a new surface.
TEST(SLScope, BeginsWithItsSettings) {
    const TSLScope scope;
    EXPECT_EQ(scope.RefreshInterval, 200);
    EXPECT_EQ(scope.Zooming.Mode, EZoomMode::zmYAxis);
    EXPECT_TRUE(scope.Zooming.HoldOnPan && scope.Highlighting.Channels.HiglightFromMouse);
    EXPECT_FALSE(scope.Title.Visible || scope.ToolBar.Visible() || scope.Hold());
    EXPECT_FALSE(scope.Legend.Cursors.Visible || scope.Legend.CursorLinks.Visible ||
                 scope.Legend.Labels.Visible || scope.Legend.Channels.Caption.Visible ||
                 scope.Legend.Labels.Caption.Visible);
    ASSERT_EQ(scope.Cursors.Count(), 1U);
    EXPECT_EQ(scope.Cursors[0].Name(), "CursorValue");
    EXPECT_EQ(scope.Cursors[0].Color(), TColor{0x0000FFFF});
    EXPECT_FALSE(scope.Cursors[0].Visible());
    EXPECT_EQ(scope.Channels.Count() + scope.Labels.Count(), 0U);

    ASSERT_EQ(scope.YAxis.AdditionalAxes.size(), 2U);
    for (int index = 0; index < 3; ++index) {
        const TSLScopeAxis* const axis = scope.Axis(index);
        ASSERT_NE(axis, nullptr);
        EXPECT_FALSE(axis->AxisLabel.Visible || axis->AutoScaling.EnabledMin);
        EXPECT_EQ(axis->DataView.Lines.Visible && axis->DataView.ZeroLine.Visible, index == 0) << index;
        EXPECT_EQ(axis->ToolBar.Buttons.ZoomOneDir.Visible, index != 2) << index;
        EXPECT_EQ(axis->CursorSettings.SnapToSample, index == 2) << index;
    }
    EXPECT_EQ(scope.Axis(-1), nullptr);
    EXPECT_EQ(scope.Axis(3), nullptr);
    EXPECT_TRUE(scope.YAxis.Format.FixedPrecision);
    EXPECT_EQ(scope.YAxis.DataView.ZeroLine.Color, TColor{0x00008000});
    EXPECT_EQ(scope.Axis(2)->Shown(), (TSLRange{-100, 10}));
    EXPECT_FALSE(scope.XAxis.Min.AutoScale() || scope.XAxis.Max.AutoScale() || scope.XAxis.AxisLabel.Visible);
    EXPECT_EQ(scope.XAxis.MaxSample.Value, 0);
}

TEST(SLScope, TellsWhereTheCursorWasMoved) {
    TSLScope scope;
    std::vector<double> told;
    scope.Cursors.OnPositionChange = [&told](std::size_t cursor, const TSLPoint& position) {
        EXPECT_EQ(cursor, 0U);
        told.push_back(position.X);
    };
    scope.UserMovesCursor(0, {3, 4});
    EXPECT_EQ(told, std::vector<double>{3});
    EXPECT_EQ(scope.Cursors[0].Position().Y, 4);
    EXPECT_FALSE(scope.Redraw.IsPending()); // nobody sees it
    scope.Cursors[0].SetVisible(true);
    scope.Redraw.Begin();
    scope.UserMovesCursor(0, {5, 6});
    EXPECT_TRUE(scope.Redraw.IsPending());
    EXPECT_THROW(scope.UserMovesCursor(1, {0, 0}), EListError);
    EXPECT_THROW(scope.Labels[0], EListError);
}

} // namespace tidewell
