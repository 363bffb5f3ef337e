#include "graph/SLScope.h"

#include "core/Errors.h"

namespace tidewell {

namespace {

constexpr TColor Yellow{0x0000FFFF};
constexpr TColor Green{0x00008000};

using TRange = TSLBasicRangedAxisValue::TRange;

} // namespace

void TSLCursor::SetVisible(bool visible) {
    if (IsVisible != visible) {
        IsVisible = visible;
        Redraw.Touch();
    }
}

void TSLCursor::SetPosition(const TSLPoint& point) {
    Point = point;
    if (IsVisible)
        Redraw.Touch();
}

TSLCursor& TSLCursors::operator[](std::size_t index) {
    if (index >= Content.size())
        throw EListError("List index out of bounds (" + std::to_string(index) + ")");
    return Content[index];
}

const TSLCursor& TSLCursors::operator[](std::size_t index) const {
    if (index >= Content.size())
        throw EListError("List index out of bounds (" + std::to_string(index) + ")");
    return Content[index];
}

void TSLScope::TToolBar::SetVisible(bool visible) {
    if (IsVisible != visible) {
        IsVisible = visible;
        Redraw.Touch();
    }
}

TSLScopeYAxis::TSLScopeYAxis(TSLRedraw& redraw) : TSLScopeAxis(redraw, 0, 100) {
    AdditionalAxes.emplace_back(redraw, 0, 100);
    AdditionalAxes.emplace_back(redraw, -100, 10);
}

TSLScope::TSLScope() {
    YAxis.ViewSize.Size = 1000;
    YAxis.Format.Precision = 1;
    YAxis.Format.FixedPrecision = true;
    YAxis.Zooming.Range = TRange{{100}, {0}};
    YAxis.AxisLabel.Visible = false;
    YAxis.AutoScaling.EnabledMin = false;
    YAxis.DataView.ZeroLine.Color = Green;
    for (auto& additional : YAxis.AdditionalAxes) {
        additional.Axis.AxisLabel.Visible = false;
        additional.Axis.AutoScaling.EnabledMin = false;
        additional.Axis.DataView.Lines.Visible = false;
        additional.Axis.DataView.ZeroLine.Visible = false;
    }
    TSLScopeAxis& third = YAxis.AdditionalAxes[1].Axis;
    third.ToolBar.Buttons.ZoomOneDir.Visible = false;
    third.Min.Range = TRange{{100}, {-100}};
    third.Max.Range = TRange{{2}, {0}};
    third.Zooming.Range.High.Value = 100;
    third.CursorSettings.SnapToSample = true;
    XAxis.ViewSize.Size = 200000;
    XAxis.MinorTicks.Count = 1;
    XAxis.MajorTicks.Step = 100;
    XAxis.AxisLabel.Visible = false;
    Cursors.Add("CursorValue", Yellow);
}

TSLScopeAxis* TSLScope::Axis(int yAxisIndex) {
    if (yAxisIndex == 0)
        return &YAxis;
    return yAxisIndex == 1 || yAxisIndex == 2
               ? &YAxis.AdditionalAxes[static_cast<std::size_t>(yAxisIndex - 1)].Axis
               : nullptr;
}

const TSLScopeAxis* TSLScope::Axis(int yAxisIndex) const {
    if (yAxisIndex == 0)
        return &YAxis;
    return yAxisIndex == 1 || yAxisIndex == 2
               ? &YAxis.AdditionalAxes[static_cast<std::size_t>(yAxisIndex - 1)].Axis
               : nullptr;
}

void TSLScope::ZoomOff() {
    XAxis.ZoomOff();
    YAxis.ZoomOff();
    for (auto& additional : YAxis.AdditionalAxes)
        additional.Axis.ZoomOff();
}

void TSLScope::SetHold(bool hold) {
    if (IsHeld == hold)
        return;
    IsHeld = hold;
    Redraw.Touch();
}

TSLZoomRect TSLScope::ShownRect() const {
    return {XAxis.Shown(),
            {YAxis.Shown(), YAxis.AdditionalAxes[0].Axis.Shown(), YAxis.AdditionalAxes[1].Axis.Shown()}};
}

void TSLScope::UserZooms(TSLScopeAxis& axis, const TSLRange& range) {
    const TSLZoomRect before = ShownRect();
    axis.SetZoom(range);
    TellZoom(before);
}

void TSLScope::UserZooms(const TSLZoomRect& rect) {
    const TSLZoomRect before = ShownRect();
    const auto zoom = [](TSLScopeAxis& axis, const TSLRange& range) {
        if (range == TSLRange{axis.Min.Value(), axis.Max.Value()})
            axis.ZoomOff();
        else
            axis.SetZoom(range);
    };
    zoom(XAxis, rect.X);
    zoom(YAxis, rect.Y[0]);
    for (std::size_t i = 0; i < YAxis.AdditionalAxes.size(); ++i)
        zoom(YAxis.AdditionalAxes[i].Axis, rect.Y.at(i + 1));
    TellZoom(before);
}

void TSLScope::UserClicks(const TSLAxisToolBarButton& button) {
    const TSLZoomRect before = ShownRect();
    button.PerformClick();
    TellZoom(before);
}

void TSLScope::UserZoomsOff() {
    const TSLZoomRect before = ShownRect();
    ZoomOff();
    TellZoom(before);
}

void TSLScope::UserMovesCursor(std::size_t cursor, const TSLPoint& position) {
    Cursors[cursor].SetPosition(position);
    Cursors.OnPositionChange(cursor, position);
}

void TSLScope::TellZoom(const TSLZoomRect& before) {
    const TSLZoomRect now = ShownRect();
    if (!(now == before))
        OnZoomChanged(before, now);
}

} // namespace tidewell
