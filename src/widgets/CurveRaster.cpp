#include "widgets/CurveRaster.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tidewell {

namespace {

constexpr int stripWidth = 64;
// Pixels from one row of a strip to the next; an odd number of cache lines, so that the rows use all of them.
constexpr int stripStride = stripWidth + 16;
constexpr double farOff = 1e9;   // pixels; what lies further off counts as this far
constexpr int fractionBits = 16; // of a position across the line
constexpr double one = 1 << fractionBits;
constexpr int weightShift = fractionBits - 8;

std::uint32_t Share(std::uint32_t color, std::uint32_t weight) {
    const std::uint32_t even = ((color & 0x00FF00FFU) * weight >> 8U) & 0x00FF00FFU;
    const std::uint32_t odd = ((color >> 8U & 0x00FF00FFU) * weight) & 0xFF00FF00U;
    return even | odd;
}

} // namespace

void TCurveRaster::Draw(QPainter& painter, const QRect& area, std::span<const TRasterLine> lines) {
    if (area.isEmpty())
        return;
    Height = area.height();
    Pixels.resize(static_cast<std::size_t>(Height) * stripStride);
    std::vector<std::size_t> next(lines.size(), 1);
    for (int left = 0; left < area.width(); left += stripWidth) {
        Width = std::min(stripWidth, area.width() - left);
        std::fill(Pixels.begin(), Pixels.end(), 0);
        for (std::size_t i = 0; i < lines.size(); ++i)
            DrawInStrip(lines[i], next[i], left);
        const QImage strip(reinterpret_cast<const uchar*>(Pixels.data()), static_cast<int>(Width),
                           area.height(), stripStride * 4, QImage::Format_ARGB32_Premultiplied);
        painter.drawImage(area.left() + left, area.top(), strip);
    }
}

void TCurveRaster::DrawInStrip(const TRasterLine& line, std::size_t& next, double left) {
    if (line.Points.empty())
        return;
    SetPen(line.Color, line.Width);
    const QPointF origin(left, 0);
    const QPointF half(PenWidth / 2, 0);
    if (line.Points.size() == 1) {
        DrawSegment(line.Points[0] - origin - half, line.Points[0] - origin + half);
        return;
    }
    const double begin = left - PenWidth;
    const double end = left + static_cast<double>(Width) + PenWidth;
    // In a line from left to right, what ended before this strip is behind it for good.
    if (line.LeftToRight)
        while (next < line.Points.size() && line.Points[next].x() < begin)
            ++next;
    for (std::size_t i = next; i < line.Points.size(); ++i) {
        if (line.LeftToRight && line.Points[i - 1].x() > end)
            return;
        DrawSegment(line.Points[i - 1] - origin, line.Points[i] - origin);
    }
}

void TCurveRaster::DrawSegment(QPointF from, QPointF to) {
    const auto limit = [](QPointF point) {
        return QPointF(std::clamp(point.x(), -farOff, farOff), std::clamp(point.y(), -farOff, farOff));
    };
    from = limit(from);
    to = limit(to);
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    // Each row of a steep line, or column of a flat one, is covered over the pen's width across it.
    if (std::abs(dy) > std::abs(dx)) {
        if (dy < 0)
            std::swap(from, to);
        DrawAlong<true>(from.y(), to.y(), from.x(), dx / dy);
    } else if (dx != 0) {
        if (dx < 0)
            std::swap(from, to);
        DrawAlong<false>(from.x(), to.x(), from.y(), dy / dx);
    }
}

template <bool steep>
void TCurveRaster::DrawAlong(double from, double to, double across, double slope) {
    // Wide lines reach beyond their ends, so that no corner gapes.
    const double reach = (PenWidth - 1) / 2;
    const double rows = static_cast<double>(steep ? Height : Width);
    const double first = std::clamp(std::ceil(from - reach - 0.5), 0.0, rows);
    const double last = std::clamp(std::ceil(to + reach - 0.5), 0.0, rows);
    const double spread = PenWidth * std::sqrt(1 + slope * slope);
    const double start = across + (first + 0.5 - from) * slope - spread / 2;
    auto begin = static_cast<std::int64_t>(start * one);
    const auto step = static_cast<std::int64_t>(slope * one);
    const auto length = static_cast<std::int64_t>(spread * one);
    for (auto row = static_cast<std::int64_t>(first); row < static_cast<std::int64_t>(last); ++row) {
        DrawRow<steep>(row, begin, begin + length);
        begin += step;
    }
}

template <bool steep>
void TCurveRaster::DrawRow(std::int64_t row, std::int64_t begin, std::int64_t end) {
    const std::int64_t stride = steep ? 1 : stripStride;
    std::uint32_t* const pixels = Pixels.data() + (steep ? row * stripStride : row);
    const std::int64_t limit = steep ? Width : Height;
    begin = std::max<std::int64_t>(begin, 0);
    end = std::min(end, limit << fractionBits);
    if (begin >= end)
        return;
    const std::int64_t first = begin >> fractionBits;
    const std::int64_t last = end >> fractionBits;
    if (first == last) {
        Blend(pixels[first * stride], static_cast<TWeight>((end - begin) >> weightShift));
        return;
    }
    const std::int64_t mask = (std::int64_t{1} << fractionBits) - 1;
    Blend(pixels[first * stride], static_cast<TWeight>(((mask + 1) - (begin & mask)) >> weightShift));
    for (std::int64_t i = first + 1; i < last; ++i)
        pixels[i * stride] = Solid;
    if (const auto rest = static_cast<TWeight>((end & mask) >> weightShift); rest > 0)
        Blend(pixels[last * stride], rest);
}

void TCurveRaster::SetPen(QRgb color, double width) {
    PenWidth = std::max(width, 1.0);
    if (Solid == (color | 0xFF000000U))
        return;
    Solid = color | 0xFF000000U;
    for (std::uint32_t weight = 0; weight < Shares.size(); ++weight)
        Shares[weight] = Share(Solid, weight);
}

void TCurveRaster::Blend(std::uint32_t& pixel, TWeight weight) const {
    pixel = Shares[weight] + Share(pixel, 256 - weight);
}

} // namespace tidewell
