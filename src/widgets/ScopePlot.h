#pragma once

#include "widgets/CurveShape.h"
#include "widgets/ScopeDrawing.h"
#include "widgets/ScopeLegend.h"
#include "widgets/ScopePicture.h"

#include <QRect>
#include <QSize>

#include <cstddef>
#include <memory>
#include <optional>

class QPaintDevice;
class QWidget;

namespace tidewell {

// Lays out and draws a picture of a surface: scales, grid, curves, texts, legend, overlay. The legend and the
// overlay have buffers of their own, so that live values and the mouse leave the curves alone.
class TScopePlot {
  public:
    // Fills the owner, which gets the mouse.
    TScopePlot(QWidget& owner, const TScopePicture& picture);
    ~TScopePlot();
    TScopePlot(const TScopePlot&) = delete;
    TScopePlot& operator=(const TScopePlot&) = delete;

    void Resize(QSize size);
    void ApplyColors(); // of the owner's palette, and its font
    // What the picture does not hold: grid, zero line and form of the scales.
    void ApplySettings(const TSLScope& scope);

    void Draw();       // everything, at once
    void DrawSoon();   // everything, once for all that is asked for until the event loop turns
    void DrawLegend(); // everything if it has become wider
    void DrawOverlay();
    // On a device of that many pixels at 100 %, of the overlay only the cursor; vector as in TScopeDrawing.
    void Print(QPaintDevice& device, QSize size, bool vector);

    // Where things are, as last drawn.
    QRect PlotRect() const;
    TPlotMap Map() const; // by what the picture shows now
    // The axis whose scale lies there.
    std::optional<std::size_t> ScaleAt(QPoint place) const;
    std::optional<std::size_t> LegendEntryAt(QPoint place) const;
    QRect LegendEntryRect(std::size_t channel) const;

    TScopeOverlay Overlay;

  private:
    class TImpl;
    std::unique_ptr<TImpl> Impl;
};

} // namespace tidewell
