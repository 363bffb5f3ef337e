#include "widgets/ScopeGestures.h"

#include "core/Numbers.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tidewell {

namespace {

constexpr double curveTolerance = 6; // pixels, here and below
constexpr double cursorTolerance = 5;
constexpr int leastBand = 4;
constexpr double zoomPerNotch = 0.8;
constexpr int notch = 120;          // of a wheel, in eighths of a degree
constexpr double leastSamples = 4;  // that X can show
constexpr double mostLengths = 100; // of Min to Max that a Y axis can show
constexpr double leastLength = 1e-6;
constexpr std::size_t valueCharacters = 30; // of a live value behind a name, at most

// Where the curves end, if they do in that range; else its end.
double LastX(const TScopePicture& picture, const TSLRange& shown) {
    double last = shown.Lower;
    for (const TScopeCurve& curve : picture.Curves)
        if (IsDrawn(curve) && !curve.Points.empty())
            last = std::max(last, curve.Points.back().X);
    return last > shown.Lower ? std::min(last, shown.Upper) : shown.Upper;
}

bool Has(const QMouseEvent& event, Qt::MouseButton button) {
    return event.button() == button;
}

} // namespace

TScopeGestures::TScopeGestures(TSLScope& scope, TScopePicture& picture, TScopePlot& plot, QWidget& widget)
    : Scope(scope), Picture(picture), Plot(plot), Widget(widget) {}

template <class TAction>
void TScopeGestures::RunZoom(TAction action) {
    const TSLZoomRect was = Scope.ShownRect();
    action();
    Picture.FollowZoom(Scope, was);
    Plot.DrawSoon();
}

template <class TChange>
void TScopeGestures::Change(const TAxes& axes, TChange change) {
    TSLZoomRect rect = Scope.ShownRect();
    TSLZoomRect all = Picture.Limits;
    for (const std::size_t axis : axes) {
        const TSLRange range = Limited(axis, change(axis));
        const bool whole = range == RangeOf(all, axis);
        const TSLScopeAxis& scale = AxisOf(Scope, axis);
        // The whole of a held picture is no zoom, though the axis may have gone on to other samples.
        RangeOf(rect, axis) = whole ? TSLRange{scale.Min.Value(), scale.Max.Value()} : range;
        if (whole)
            RangeOf(Picture.Shown, axis) = range;
    }
    RunZoom([&] { Scope.UserZooms(rect); });
}

// X stays where there are samples; a Y axis may leave Min to Max, so that curves beyond can be seen.
TSLRange TScopeGestures::Limited(std::size_t axis, TSLRange range) const {
    TSLZoomRect all = Picture.Limits;
    const TSLRange limits = RangeOf(all, axis);
    const double whole = limits.Upper - limits.Lower;
    const double least = axis == 0 ? std::min(leastSamples, whole) : whole * leastLength;
    const double most = axis == 0 ? whole : whole * mostLengths;
    const double length = std::clamp(range.Upper - range.Lower, least, most);
    const double middle = (range.Lower + range.Upper) / 2;
    range = {middle - length / 2, middle + length / 2};
    if (axis > 0)
        return range;
    if (length >= whole * (1 - 1e-9)) // a shift may have cost the last digit
        return limits;
    const double shift =
        std::max(limits.Lower - range.Lower, 0.0) + std::min(limits.Upper - range.Upper, 0.0);
    return {range.Lower + shift, range.Upper + shift};
}

TScopeGestures::TAxes TScopeGestures::ZoomAxes() const {
    TAxes axes;
    for (std::size_t axis = 0; axis < scopeAxes; ++axis)
        if (AxisOf(Scope, axis).ZoomOneDir && (axis <= 1 || Picture.UsesAxis(static_cast<int>(axis) - 1)))
            axes.push_back(axis);
    if (!axes.empty())
        return axes;
    switch (Scope.Zooming.Mode) {
    case EZoomMode::zmXAxis:
        return {0};
    case EZoomMode::zmYAxis:
        return {1, 2, 3};
    case EZoomMode::zmBoth:
        break;
    }
    return {0, 1, 2, 3};
}

void TScopeGestures::Press(const QMouseEvent& event) {
    const bool left = Has(event, Qt::LeftButton);
    if (Drag != EDrag::None || (!left && !Has(event, Qt::MiddleButton)))
        return;
    PressedAt = event.position().toPoint();
    PressedShown = Picture.Shown;
    PressedEntry = left ? Plot.LegendEntryAt(PressedAt) : std::nullopt;
    DragAxes.clear();
    if (left && OnCursor(PressedAt)) {
        Drag = EDrag::Cursor;
        Widget.setCursor(Qt::ClosedHandCursor);
        return;
    }
    if (const auto scale = Plot.ScaleAt(PressedAt)) {
        DragAxes = {*scale};
        PansOnDrag = true;
    } else if (Plot.PlotRect().contains(PressedAt)) {
        PansOnDrag = PanMode || !left || event.modifiers().testFlag(Qt::ShiftModifier);
        DragAxes = PansOnDrag ? TAxes{0, 1, 2, 3} : ZoomAxes();
    }
    Drag = EDrag::Click;
}

void TScopeGestures::StartDrag() {
    SetHighlight(std::nullopt, std::nullopt);
    QToolTip::hideText();
    if (DragAxes.empty()) {
        Drag = EDrag::None; // neither on the plot nor on a scale
        return;
    }
    Drag = PansOnDrag ? EDrag::Pan : EDrag::Band;
    if (Drag == EDrag::Pan) {
        HeldBefore = Scope.Hold();
        Scope.SetHold(HeldBefore || Scope.Zooming.HoldOnPan);
        Widget.setCursor(Qt::ClosedHandCursor);
    }
}

void TScopeGestures::Move(const QMouseEvent& event) {
    const QPoint place = event.position().toPoint();
    if (Drag == EDrag::Click && (place - PressedAt).manhattanLength() >= QApplication::startDragDistance())
        StartDrag();
    switch (Drag) {
    case EDrag::None:
        Hover(place);
        break;
    case EDrag::Click:
        break;
    case EDrag::Band:
        DragBand(place);
        break;
    case EDrag::Pan:
        DragPan(place);
        break;
    case EDrag::Cursor:
        DragCursor(place);
        break;
    }
}

void TScopeGestures::Release(const QMouseEvent& event) {
    const QPoint place = event.position().toPoint();
    if (Has(event, Qt::RightButton)) {
        QToolTip::hideText();
        if (!Widget.rect().contains(place))
            return;
        Scope.OnContextPopup(place.x(), place.y());
        return;
    }
    if (!Has(event, Qt::LeftButton) && !Has(event, Qt::MiddleButton))
        return;
    const EDrag ended = Drag;
    if (ended == EDrag::Band)
        ZoomToBand();
    Cancel();
    Hover(place);
    if (ended == EDrag::Click && Has(event, Qt::LeftButton))
        ClickAt(place);
}

void TScopeGestures::Cancel() {
    const EDrag ended = std::exchange(Drag, EDrag::None);
    if (ended == EDrag::Pan)
        Scope.SetHold(HeldBefore);
    if (!Plot.Overlay.Band.isNull()) {
        Plot.Overlay.Band = {};
        Plot.DrawOverlay();
    }
    if (ended != EDrag::None)
        Widget.unsetCursor();
}

void TScopeGestures::DoubleClick(const QMouseEvent& event) {
    if (!Has(event, Qt::LeftButton))
        return;
    const QPoint place = event.position().toPoint();
    if (const auto scale = Plot.ScaleAt(place))
        Click(AxisOf(Scope, *scale).ToolBar.Buttons.ZoomOff);
    else if (Plot.PlotRect().contains(place))
        ZoomOff();
}

void TScopeGestures::Wheel(const QWheelEvent& event) {
    const QPointF place = event.position();
    const auto scale = Plot.ScaleAt(place.toPoint());
    if (Drag != EDrag::None || (!scale && !Plot.PlotRect().contains(place.toPoint())))
        return;
    const QPoint delta = event.angleDelta();
    const double notches = static_cast<double>(delta.y() != 0 ? delta.y() : delta.x()) / notch;
    const bool alongX = event.modifiers().testFlag(Qt::ControlModifier);
    const TAxes axes = scale ? TAxes{*scale} : alongX ? TAxes{0} : ZoomAxes();
    const double factor = std::pow(zoomPerNotch, notches);
    const TPlotMap map = Plot.Map();
    Change(axes, [&](std::size_t axis) {
        const TSLRange range = RangeOf(Picture.Shown, axis);
        const double fixed = axis == 0 ? map.X.Value(place.x()) : map.Y.at(axis - 1).Value(place.y());
        return TSLRange{fixed + (range.Lower - fixed) * factor, fixed + (range.Upper - fixed) * factor};
    });
}

void TScopeGestures::PanBy(double x, double y) {
    Change(
        {0, 1, 2, 3},
        [&](std::size_t axis) {
            const TSLRange range = RangeOf(Picture.Shown, axis);
            const double shift = (axis == 0 ? x : y) * (range.Upper - range.Lower);
            return TSLRange{range.Lower + shift, range.Upper + shift};
        });
}

void TScopeGestures::ZoomBy(double factor, bool alongX) {
    Change(
        alongX ? TAxes{0} : ZoomAxes(),
        [&](std::size_t axis) {
            const TSLRange range = RangeOf(Picture.Shown, axis);
            const double middle = (range.Lower + range.Upper) / 2;
            const double half = (range.Upper - range.Lower) / 2 * factor;
            return TSLRange{middle - half, middle + half};
        });
}

void TScopeGestures::ZoomOff() {
    Picture.Shown = Picture.Limits; // of a held picture, too, whose axes are no longer zoomed
    RunZoom([this] { Scope.UserZoomsOff(); });
}

void TScopeGestures::Click(const TSLAxisToolBarButton& button) {
    RunZoom([&] { Scope.UserClicks(button); });
}

void TScopeGestures::DragPan(QPoint place) {
    const QRect plot = Plot.PlotRect();
    const QPoint moved = place - PressedAt;
    Change(DragAxes, [&](std::size_t axis) {
        const TSLRange range = RangeOf(PressedShown, axis);
        const double length = range.Upper - range.Lower;
        const double shift =
            axis == 0 ? -length * moved.x() / plot.width() : length * moved.y() / plot.height();
        return TSLRange{range.Lower + shift, range.Upper + shift};
    });
}

// Over the whole plot along the axes that are not zoomed.
void TScopeGestures::DragBand(QPoint place) {
    const QRect plot = Plot.PlotRect();
    QRect band = QRect(PressedAt, place).normalized() & plot;
    const bool x = DragAxes.front() == 0;
    const bool y = DragAxes.back() != 0;
    if (!x)
        band.setLeft(plot.left()), band.setRight(plot.right());
    if (!y)
        band.setTop(plot.top()), band.setBottom(plot.bottom());
    Plot.Overlay.Band = band;
    Plot.DrawOverlay();
}

void TScopeGestures::ZoomToBand() {
    const QRectF band(Plot.Overlay.Band);
    const bool x = DragAxes.front() == 0;
    const bool y = DragAxes.back() != 0;
    if ((x && band.width() < leastBand) || (y && band.height() < leastBand))
        return;
    const TPlotMap map = Plot.Map();
    Change(DragAxes, [&](std::size_t axis) {
        return axis == 0
                   ? TSLRange{map.X.Value(band.left()), map.X.Value(band.right())}
                   : TSLRange{map.Y.at(axis - 1).Value(band.bottom()), map.Y.at(axis - 1).Value(band.top())};
    });
}

bool TScopeGestures::OnCursor(QPoint place) const {
    return Picture.Cursor.Visible && Plot.PlotRect().contains(place) &&
           std::abs(Plot.Map().X.Pixel(Picture.Cursor.X) - place.x()) <= cursorTolerance;
}

void TScopeGestures::DragCursor(QPoint place) {
    const TPlotMap map = Plot.Map();
    MoveCursorTo(map.X.Value(place.x()), map.Y[0].Value(place.y()));
}

void TScopeGestures::MoveCursorTo(double x, double y) {
    x = std::clamp(x, Picture.Shown.X.Lower, Picture.Shown.X.Upper);
    if (Scope.YAxis.AdditionalAxes[1].Axis.CursorSettings.SnapToSample)
        x = std::round(x);
    if (x == Scope.Cursors[0].Position().X && Picture.Cursor.X == x)
        return;
    Scope.UserMovesCursor(0, {x, y});
    Picture.TakeCursor(Scope);
    Picture.TakeNames(Scope); // which now tell the values at the cursor
    Plot.DrawLegend();
    Plot.DrawOverlay();
}

void TScopeGestures::MoveCursorBy(double samples) {
    const TSLPoint position = Scope.Cursors[0].Position();
    MoveCursorTo(position.X + samples, position.Y);
}

void TScopeGestures::ShowCursor(bool show) {
    TSLCursor& cursor = Scope.Cursors[0];
    cursor.SetVisible(show);
    Picture.TakeCursor(Scope);
    const TSLRange shown = Picture.Shown.X;
    if (show && !(cursor.Position().X > shown.Lower && cursor.Position().X < shown.Upper))
        MoveCursorTo((shown.Lower + LastX(Picture, shown)) / 2, cursor.Position().Y);
    Plot.DrawOverlay();
}

void TScopeGestures::FollowPicture() {
    TScopeOverlay& overlay = Plot.Overlay;
    if (!overlay.Pointed)
        return;
    overlay.Pointed = CurveAt(Picture, Plot.Map(), HoverAt, curveTolerance);
    overlay.Highlighted.reset();
    if (overlay.Pointed && Scope.Highlighting.Channels.HiglightFromMouse)
        overlay.Highlighted = overlay.Pointed->Channel;
}

void TScopeGestures::Hover(QPoint place) {
    HoverAt = place;
    const auto entry = Plot.LegendEntryAt(place);
    const auto scale = Plot.ScaleAt(place);
    const bool inPlot = Plot.PlotRect().contains(place);
    if (entry)
        Widget.setCursor(Qt::PointingHandCursor);
    else if (OnCursor(place))
        Widget.setCursor(Qt::OpenHandCursor);
    else if (scale)
        Widget.setCursor(*scale == 0 ? Qt::SizeHorCursor : Qt::SizeVerCursor);
    else if (inPlot)
        Widget.setCursor(PanMode ? Qt::OpenHandCursor : Qt::CrossCursor);
    else
        Widget.unsetCursor();

    if (entry) {
        QToolTip::hideText();
        SetHighlight(entry, std::nullopt);
        return;
    }
    std::optional<TCurveHit> hit;
    if (inPlot)
        hit = CurveAt(Picture, Plot.Map(), place, curveTolerance);
    if (hit && hit->Channel >= Scope.Channels.Count())
        hit.reset(); // the curves are others by now, and will soon be drawn
    PointAt(hit, place);
}

void TScopeGestures::PointAt(const std::optional<TCurveHit>& hit, QPoint place) {
    if (!hit) {
        SetHighlight(std::nullopt, std::nullopt);
        QToolTip::hideText();
        return;
    }
    SetHighlight(hit->Channel, hit);
    Scope.OnOverChannel(hit->Channel, Picture.Curves[hit->Channel].Points[hit->Point]);
    ShowHint(*hit, place);
}

void TScopeGestures::ShowHint(const TCurveHit& hit, QPoint place) {
    const double value = Picture.Curves[hit.Channel].Points[hit.Point].Y;
    std::string text = FixedText(value, 2);
    Scope.OnCustomMouseHitLabel(text, value);
    const std::string name = WithoutValue(Picture.Curves[hit.Channel].Name, valueCharacters);
    QString hint = QString::fromStdString(name + ": " + text);
    if (Qt::mightBeRichText(hint))
        hint = hint.toHtmlEscaped();
    QToolTip::showText(Widget.mapToGlobal(place), hint, &Widget);
}

void TScopeGestures::SetHighlight(std::optional<std::size_t> channel, const std::optional<TCurveHit>& hit) {
    if (!Scope.Highlighting.Channels.HiglightFromMouse)
        channel.reset();
    TScopeOverlay& overlay = Plot.Overlay;
    const bool samePoint =
        overlay.Pointed.has_value() == hit.has_value() &&
        (!hit || (hit->Channel == overlay.Pointed->Channel && hit->Point == overlay.Pointed->Point));
    if (overlay.Highlighted == channel && samePoint)
        return;
    const bool legend = overlay.Highlighted != channel;
    overlay.Highlighted = channel;
    overlay.Pointed = hit;
    if (legend)
        Plot.DrawLegend();
    Plot.DrawOverlay();
}

void TScopeGestures::StepHighlight(int step) {
    const auto count = static_cast<int>(Picture.Curves.size());
    int channel = Plot.Overlay.Highlighted ? static_cast<int>(*Plot.Overlay.Highlighted)
                  : step > 0               ? -1
                                           : count;
    for (channel += step; channel >= 0 && channel < count; channel += step)
        if (IsDrawn(Picture.Curves[static_cast<std::size_t>(channel)])) {
            SetHighlight(static_cast<std::size_t>(channel), std::nullopt);
            return;
        }
    SetHighlight(std::nullopt, std::nullopt);
}

void TScopeGestures::ClickAt(QPoint place) {
    bool handled = false;
    if (PressedEntry) {
        if (Plot.LegendEntryAt(place) == PressedEntry && *PressedEntry < Scope.Channels.Count())
            Scope.Legend.Channels.OnItemClick(*PressedEntry, handled);
        return;
    }
    const auto hit =
        Plot.PlotRect().contains(place) ? CurveAt(Picture, Plot.Map(), place, curveTolerance) : std::nullopt;
    if (hit && hit->Channel < Scope.Channels.Count())
        Scope.Channels.OnClick(hit->Channel, handled, Picture.Curves[hit->Channel].Points[hit->Point]);
}

void TScopeGestures::Leave() {
    if (Drag == EDrag::None)
        SetHighlight(std::nullopt, std::nullopt);
}

} // namespace tidewell
