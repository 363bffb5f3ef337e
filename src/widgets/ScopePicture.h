#pragma once

#include "graph/SLScope.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace tidewell {

// The axes of a surface by number: X, then the Y axes.
constexpr std::size_t scopeAxes = 4;
TSLScopeAxis& AxisOf(TSLScope& scope, std::size_t axis);
TSLRange& RangeOf(TSLZoomRect& rect, std::size_t axis);

// A curve as it is drawn.
struct TScopeCurve {
    std::string Name;
    TColor Color;
    bool Visible = false;
    int YAxisIndex = 0;
    std::vector<TSLPoint> Points;
    bool LeftToRight = true; // no point lies left of the one before
};

struct TScopeText {
    std::string Name;
    bool Visible = false;
    int YAxisIndex = 0;
    TSLPoint Position;
};

struct TScopeCursor {
    bool Visible = false;
    TColor Color;
    double X = 0;
};

// The surface as it stands on the screen. What the user does to the view shows in it at once; data, names and
// limits change in it only when it is taken anew, so that a held display stands still and what lies under the
// mouse is what the user sees there.
class TScopePicture {
  public:
    void Take(const TSLScope& scope);
    // What the legend shows, if the curves are still the same.
    void TakeNames(const TSLScope& scope);
    // What the user can change of a curve.
    void TakeLooks(const TSLScope& scope);
    // The user has changed what the axes show; was is what they showed until then.
    void FollowZoom(TSLScope& scope, TSLZoomRect was);
    void TakeCursor(const TSLScope& scope);
    bool UsesAxis(int yAxisIndex) const; // some visible curve does

    std::vector<TScopeCurve> Curves; // one per channel
    std::vector<TScopeText> Texts;
    TScopeCursor Cursor;
    TSLZoomRect Shown;  // every range is finite and longer than nothing
    TSLZoomRect Limits; // what would be shown without zoom
};

} // namespace tidewell
