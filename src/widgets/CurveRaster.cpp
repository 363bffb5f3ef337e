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

double Limited(double pixel) {
    return std::clamp(pixel, -farOff, farOff);
}

// The first row whose centre lies at that place or behind it, within 0 to rows.
int RowFrom(double place, int rows) {
    const double shifted = place - 0.5;
    if (!(shifted > 0))
        return 0;
    if (shifted >= rows)
        return rows;
    const int whole = static_cast<int>(shifted);
    return whole < shifted ? whole + 1 : whole;
}

// The premultiplied colour at that weight, 0 to 256.
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
        const QImage strip(reinterpret_cast<const uchar*>(Pixels.data()), Width, area.height(),
                           stripStride * 4, QImage::Format_ARGB32_Premultiplied);
        painter.drawImage(area.left() + left, area.top(), strip);
    }
}

void TCurveRaster::DrawInStrip(const TRasterLine& line, std::size_t& next, double left) {
    const auto& points = line.Points;
    if (points.empty())
        return;
    const bool dot = points.size() == 1;
    SetPen(line.Color, dot ? 2 * line.Width : line.Width);
    const auto inStrip = [&](std::size_t i) {
        return QPointF(Limited(points[i].x() - left), Limited(points[i].y()));
    };
    if (dot) {
        const QPointF half(PenWidth / 2, 0);
        DrawSegment({inStrip(0) - half, inStrip(0) + half, EHeading::Right}, 0, 0);
        return;
    }
    const double begin = left - PenWidth;
    const double end = left + Width + PenWidth;
    // In a line from left to right, what ended before this strip is behind it for good.
    if (line.LeftToRight)
        while (next + 1 < points.size() && points[next].x() < begin)
            ++next;
    // A wide line reaches beyond its corners, so that they do not gape, but not where it goes straight on,
    // where its smooth edge would be drawn twice.
    const double reach = (PenWidth - 1) / 2;
    double reachBack = 0;
    TSegment segment = SegmentOf(inStrip(next - 1), inStrip(next));
    for (std::size_t i = next; i < points.size(); ++i) {
        if (line.LeftToRight && points[i - 1].x() > end)
            return;
        const bool last = i + 1 == points.size();
        const TSegment follower = last ? segment : SegmentOf(segment.To, inStrip(i + 1));
        const double reachOn = follower.Heading == segment.Heading ? 0 : reach;
        DrawSegment(segment, reachBack, reachOn);
        segment = follower;
        reachBack = reachOn;
    }
}

TCurveRaster::TSegment TCurveRaster::SegmentOf(QPointF from, QPointF to) {
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    if (std::abs(dy) > std::abs(dx))
        return {from, to, dy > 0 ? EHeading::Down : EHeading::Up};
    return {from, to, dx > 0 ? EHeading::Right : dx < 0 ? EHeading::Left : EHeading::Nowhere};
}

void TCurveRaster::DrawSegment(const TSegment& segment, double reachBack, double reachOn) {
    const auto& [from, to, heading] = segment;
    const QPointF along = to - from;
    switch (heading) {
    case EHeading::Down:
        return DrawAlong<true>(from.y(), from.y() - reachBack, to.y() + reachOn, from.x(),
                               along.x() / along.y());
    case EHeading::Up:
        return DrawAlong<true>(to.y(), to.y() - reachOn, from.y() + reachBack, to.x(), along.x() / along.y());
    case EHeading::Right:
        return DrawAlong<false>(from.x(), from.x() - reachBack, to.x() + reachOn, from.y(),
                                along.y() / along.x());
    case EHeading::Left:
        return DrawAlong<false>(to.x(), to.x() - reachOn, from.x() + reachBack, to.y(),
                                along.y() / along.x());
    case EHeading::Nowhere:
        return;
    }
}

// Each row of a steep line, or column of a flat one, is covered over the pen's width across it.
template <bool steep>
void TCurveRaster::DrawAlong(double origin, double from, double to, double across, double slope) {
    const int rows = steep ? Height : Width;
    const int first = RowFrom(from, rows);
    const int last = RowFrom(to, rows);
    if (first >= last)
        return;
    const double spread = PenWidth * std::sqrt(1 + slope * slope);
    auto begin = static_cast<TFixed>((across + (first + 0.5 - origin) * slope - spread / 2) * one);
    const auto step = static_cast<TFixed>(slope * one);
    const auto length = static_cast<TFixed>(spread * one);
    for (int row = first; row < last; ++row) {
        DrawRow<steep>(row, begin, begin + length);
        begin += step;
    }
}

template <bool steep>
inline void TCurveRaster::DrawRow(int row, TFixed begin, TFixed end) {
    constexpr int stride = steep ? 1 : stripStride;
    std::uint32_t* const pixels = Pixels.data() + (steep ? row * stripStride : row);
    begin = std::max<TFixed>(begin, 0);
    end = std::min(end, TFixed{steep ? Width : Height} << fractionBits);
    if (begin >= end)
        return;
    const TFixed first = begin >> fractionBits;
    const TFixed last = end >> fractionBits;
    const auto blend = [this](std::uint32_t& pixel, TFixed covered) {
        const auto weight = static_cast<std::uint32_t>(covered >> (fractionBits - 8));
        pixel = Shares[weight] + Share(pixel, 256 - weight);
    };
    if (first == last) {
        blend(pixels[first * stride], end - begin);
        return;
    }
    blend(pixels[first * stride], ((first + 1) << fractionBits) - begin);
    for (TFixed i = first + 1; i < last; ++i)
        pixels[i * stride] = Shares.back();
    if (const TFixed rest = end - (last << fractionBits); rest > 0)
        blend(pixels[last * stride], rest);
}

void TCurveRaster::SetPen(QRgb color, double width) {
    PenWidth = std::max(width, 1.0);
    const std::uint32_t solid = color | 0xFF000000U;
    if (Shares.back() == solid)
        return;
    for (std::uint32_t weight = 0; weight < Shares.size(); ++weight)
        Shares[weight] = Share(solid, weight);
}

} // namespace tidewell
