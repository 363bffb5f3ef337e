#include "graph/SLScopeAxis.h"

#include <algorithm>
#include <cmath>

namespace tidewell {

TSLScopeAxis::TSLScopeAxis(TSLRedraw& redraw, double min, double max)
    : Min(redraw, min), Max(redraw, max), Redraw(redraw) {
    ToolBar.Buttons.ZoomIn.OnClick = [this] {
        const TSLRange shown = Shown();
        const double quarter = (shown.Upper - shown.Lower) / 4;
        SetZoom({shown.Lower + quarter, shown.Upper - quarter});
    };
    ToolBar.Buttons.ZoomOut.OnClick = [this] { ZoomOutByTwo(); };
    ToolBar.Buttons.ZoomOff.OnClick = [this] { ZoomOff(); };
    ToolBar.Buttons.ZoomOneDir.OnClick = [this] {
        ZoomOneDir = !ZoomOneDir;
        Redraw.Touch();
    };
}

TSLRange TSLScopeAxis::Shown() const {
    return Zoom.value_or(TSLRange{Min.Value(), Max.Value()});
}

void TSLScopeAxis::SetZoom(const TSLRange& range) {
    if (!std::isfinite(range.Lower) || !std::isfinite(range.Upper) || !(range.Lower < range.Upper) ||
        range == Shown())
        return;
    Zoom = range;
    Redraw.Touch();
}

void TSLScopeAxis::ZoomOff() {
    if (!Zoom)
        return;
    Zoom.reset();
    Redraw.Touch();
}

void TSLScopeAxis::ZoomOutByTwo() {
    if (!Zoom)
        return;
    const double half = (Zoom->Upper - Zoom->Lower) / 2;
    const TSLRange wider{std::max(Zoom->Lower - half, Min.Value()),
                         std::min(Zoom->Upper + half, Max.Value())};
    if (wider.Lower <= Min.Value() && wider.Upper >= Max.Value())
        ZoomOff();
    else
        SetZoom(wider);
}

} // namespace tidewell
