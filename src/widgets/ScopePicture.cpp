#include "widgets/ScopePicture.h"

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

// A range that can be drawn.
TSLRange Usable(TSLRange range) {
    if (!std::isfinite(range.Lower) || !std::isfinite(range.Upper))
        return {0, 1};
    // Below the spacing of numbers of that size nothing could be told apart.
    const double least = 1e-9 * std::max({1.0, std::abs(range.Lower), std::abs(range.Upper)});
    if (!(range.Upper - range.Lower >= least))
        range.Upper = range.Lower + std::max(1.0, least);
    return range;
}

TSLZoomRect Usable(const TSLZoomRect& rect) {
    return {Usable(rect.X), {Usable(rect.Y[0]), Usable(rect.Y[1]), Usable(rect.Y[2])}};
}

TSLRange LimitsOf(const TSLScopeAxis& axis) {
    return {axis.Min.Value(), axis.Max.Value()};
}

// Keeps the room of what is there.
void TakePoints(TScopeCurve& curve, const std::vector<TSLPoint>& points) {
    curve.Points.assign(points.begin(), points.end());
    curve.LeftToRight = std::is_sorted(points.begin(), points.end(),
                                       [](const TSLPoint& a, const TSLPoint& b) { return a.X < b.X; }) &&
                        std::none_of(points.begin(), points.end(),
                                     [](const TSLPoint& point) { return !std::isfinite(point.X); });
}

} // namespace

TSLScopeAxis& AxisOf(TSLScope& scope, std::size_t axis) {
    return axis == 0 ? scope.XAxis : *scope.Axis(static_cast<int>(axis) - 1);
}

TSLRange& RangeOf(TSLZoomRect& rect, std::size_t axis) {
    return axis == 0 ? rect.X : rect.Y.at(axis - 1);
}

void TScopePicture::Take(const TSLScope& scope) {
    Curves.resize(scope.Channels.Count());
    for (std::size_t i = 0; i < Curves.size(); ++i)
        TakePoints(Curves[i], scope.Channels[i].Data.Points());
    TakeLooks(scope);
    TakeNames(scope);
    Texts.clear();
    for (const TSLScopeTextLabel& label : scope.Labels)
        Texts.push_back({label.Name(), label.Visible(), label.YAxisIndex(), label.Position()});
    TakeCursor(scope);
    Shown = Usable(scope.ShownRect());
    Limits = Usable({LimitsOf(scope.XAxis),
                     {LimitsOf(scope.YAxis), LimitsOf(scope.YAxis.AdditionalAxes[0].Axis),
                      LimitsOf(scope.YAxis.AdditionalAxes[1].Axis)}});
}

void TScopePicture::TakeNames(const TSLScope& scope) {
    if (Curves.size() != scope.Channels.Count())
        return;
    for (std::size_t i = 0; i < Curves.size(); ++i)
        if (scope.Channels[i].Visible())
            Curves[i].Name = scope.Channels[i].Name();
}

void TScopePicture::TakeLooks(const TSLScope& scope) {
    if (Curves.size() != scope.Channels.Count())
        return;
    for (std::size_t i = 0; i < Curves.size(); ++i) {
        const TSLDisplayChannel& channel = scope.Channels[i];
        Curves[i].Color = channel.Color();
        Curves[i].Visible = channel.Visible();
        Curves[i].YAxisIndex = channel.YAxisIndex();
    }
}

void TScopePicture::FollowZoom(TSLScope& scope, TSLZoomRect was) {
    TSLZoomRect now = scope.ShownRect();
    for (std::size_t axis = 0; axis < scopeAxes; ++axis)
        if (!(RangeOf(was, axis) == RangeOf(now, axis)))
            RangeOf(Shown, axis) =
                AxisOf(scope, axis).Zoomed() ? Usable(RangeOf(now, axis)) : RangeOf(Limits, axis);
    auto text = Texts.begin();
    for (const TSLScopeTextLabel& label : scope.Labels) {
        if (text == Texts.end())
            return;
        if (text->Position.X == label.Position().X)
            text->Visible = label.Visible();
        ++text;
    }
}

void TScopePicture::TakeCursor(const TSLScope& scope) {
    const TSLCursor& cursor = scope.Cursors[0];
    Cursor = {cursor.Visible(), cursor.Color(), cursor.Position().X};
}

bool TScopePicture::UsesAxis(int yAxisIndex) const {
    return std::any_of(
        Curves.begin(), Curves.end(),
        [yAxisIndex](const TScopeCurve& curve) { return curve.Visible && curve.YAxisIndex == yAxisIndex; });
}

} // namespace tidewell
