#pragma once

#include "widgets/Colors.h"
#include "widgets/CurveRaster.h"
#include "widgets/CurveShape.h"
#include "widgets/ScopePicture.h"

#include <QRect>

#include <cstddef>
#include <optional>
#include <vector>

class QPainter;

namespace tidewell {

// What lies over the picture while the user works with it.
struct TScopeOverlay {
    std::optional<TCurveHit> Pointed;       // the data point under the mouse
    std::optional<std::size_t> Highlighted; // a channel
    QRect Band;                             // being dragged, in pixels of the surface
    bool Held = false;
    bool Focused = false; // by the keyboard
};

// Draws what lies on the plot area: curves, texts, cursor. Pixels are those of the painter.
class TScopeDrawing {
  public:
    TScopeDrawing(const TScopePicture& picture, const TScopeOverlay& overlay)
        : Picture(picture), Overlay(overlay) {}

    // Vector: as lines, for a device without pixels.
    void DrawCurves(QPainter& painter, const QRect& plot, bool vector);
    void DrawTexts(QPainter& painter, const QRect& plot) const;
    void DrawOverlay(QPainter& painter, const QRect& plot);

    TScopeColors Colors;

  private:
    void DrawLines(QPainter& painter, const QRect& plot, const std::vector<std::size_t>& channels,
                   double width);
    void DrawVectors(QPainter& painter, const QRect& plot);
    void DrawCursor(QPainter& painter, const QRect& plot) const;
    void DrawPoint(QPainter& painter, const QRect& plot) const;
    void DrawHeld(QPainter& painter, const QRect& plot) const;

    const TScopePicture& Picture;
    const TScopeOverlay& Overlay;
    TCurveRaster Raster;
    std::vector<TCurveLines> Lines; // by channel; keeps its room
};

} // namespace tidewell
