#pragma once

#include <QImage>
#include <QPointF>
#include <QRect>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class QPainter;

namespace tidewell {

// A line through finite points, which may lie anywhere; one point gives a dot. Coordinates are pixels of the
// area drawn to, whose centres lie at one half.
struct TRasterLine {
    std::span<const QPointF> Points;
    bool LeftToRight = false; // no point lies left of the one before
    QRgb Color = 0;           // opaque
    double Width = 1;         // pixels, at least 1
};

// Draws smooth lines in time that grows with the pixels covered and with nothing else: a wide line through
// noise, which a general stroker unites with itself for seconds, costs little more than a thin one. It draws
// one upright strip of the picture at a time, so that steep lines too stay within the processor's cache.
class TCurveRaster {
  public:
    // Over what is there, within an area of the painter's device; later lines over earlier ones. The painter
    // must not be scaled against its device.
    void Draw(QPainter& painter, const QRect& area, std::span<const TRasterLine> lines);

  private:
    using TWeight = std::uint32_t; // 0 to 256, how much of a pixel is covered

    void DrawInStrip(const TRasterLine& line, std::size_t& next, double left);
    void DrawSegment(QPointF from, QPointF to);
    template <bool steep>
    void DrawAlong(double from, double to, double across, double slope);
    template <bool steep>
    void DrawRow(std::int64_t row, std::int64_t begin, std::int64_t end);
    void SetPen(QRgb color, double width);
    void Blend(std::uint32_t& pixel, TWeight weight) const;

    std::vector<std::uint32_t> Pixels; // of the strip
    std::int64_t Width = 0;            // of the strip
    std::int64_t Height = 0;
    double PenWidth = 1;
    std::uint32_t Solid = 0;
    std::array<std::uint32_t, 257> Shares{}; // of the colour, by weight
};

} // namespace tidewell
