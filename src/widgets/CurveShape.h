#pragma once

#include "widgets/ScopePicture.h"

#include <QPointF>
#include <QRectF>

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace tidewell {

// From data to pixels along one direction.
struct TAxisMap {
    double Scale = 1; // pixels per unit; below 0 where values grow upwards
    double Shift = 0;
    double Pixel(double value) const { return value * Scale + Shift; }
    double Value(double pixel) const { return (pixel - Shift) / Scale; }
};

struct TPlotMap {
    TAxisMap X;
    std::array<TAxisMap, 3> Y;
};

TPlotMap MapOf(const TSLZoomRect& shown, const QRectF& plot);

// Whether a curve is drawn at all.
inline bool IsDrawn(const TScopeCurve& curve) {
    return curve.Visible && curve.YAxisIndex >= 0 && curve.YAxisIndex <= 2;
}

// The curve's lines in pixels; where a value is no number it has a gap. Where many points share a column of
// pixels, only those remain that the column shows: the first, the least, the greatest and the last.
class TCurveLines {
  public:
    void Trace(const TScopeCurve& curve, const TPlotMap& map, const QRectF& plot);
    std::size_t Count() const { return Ends.size(); }
    std::span<const QPointF> operator[](std::size_t line) const;

  private:
    void EndLine();

    std::vector<QPointF> Pixels;
    std::vector<std::size_t> Ends; // of each line in Pixels
};

// A point of a curve near a place on the screen.
struct TCurveHit {
    std::size_t Channel = 0;
    std::size_t Point = 0;
};

// The curve that passes closest, within the tolerance, and its point closest to the place. Of curves equally
// close it is the one on top.
std::optional<TCurveHit> CurveAt(const TScopePicture& picture, const TPlotMap& map, QPointF place,
                                 double tolerance);

} // namespace tidewell
