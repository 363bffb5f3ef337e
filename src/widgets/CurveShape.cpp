#include "widgets/CurveShape.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tidewell {

namespace {

constexpr double pointsPerPixel = 2; // from which on points are left out

struct TSlice {
    std::size_t Begin = 0;
    std::size_t End = 0;
};

// The points between two pixels of X, and one more to each side.
TSlice SliceOf(const TScopeCurve& curve, const TAxisMap& x, double left, double right) {
    const auto& points = curve.Points;
    if (!curve.LeftToRight)
        return {0, points.size()};
    const auto begin = std::lower_bound(
        points.begin(), points.end(), x.Value(left),
        [](const TSLPoint& point, double value) { return point.X < value; });
    const auto end = std::upper_bound(begin, points.end(), x.Value(right),
                                      [](double value, const TSLPoint& point) { return value < point.X; });
    return {static_cast<std::size_t>(begin - points.begin()) - (begin != points.begin() ? 1U : 0U),
            static_cast<std::size_t>(end - points.begin()) + (end != points.end() ? 1U : 0U)};
}

double SquareLength(QPointF vector) {
    return QPointF::dotProduct(vector, vector);
}

double SquareDistance(QPointF place, QPointF from, QPointF to) {
    const QPointF along = to - from;
    const double square = SquareLength(along);
    const double share =
        square > 0 ? std::clamp(QPointF::dotProduct(place - from, along) / square, 0.0, 1.0) : 0.0;
    return SquareLength(place - (from + share * along));
}

bool IsFinite(QPointF pixel) {
    return std::isfinite(pixel.x()) && std::isfinite(pixel.y());
}

// What a column of pixels shows of the points in it.
struct TColumn {
    explicit TColumn(QPointF pixel) : First(pixel), Least(pixel), Greatest(pixel), Last(pixel) {}
    void Add(QPointF pixel) {
        if (pixel.y() < Least.y())
            Least = pixel;
        if (pixel.y() > Greatest.y())
            Greatest = pixel;
        Last = pixel;
    }
    void MoveTo(std::vector<QPointF>& pixels) const {
        pixels.insert(pixels.end(), {First, Least, Greatest, Last});
    }
    QPointF First, Least, Greatest, Last;
};

} // namespace

TPlotMap MapOf(const TSLZoomRect& shown, const QRectF& plot) {
    TPlotMap map;
    map.X.Scale = plot.width() / (shown.X.Upper - shown.X.Lower);
    map.X.Shift = plot.left() - shown.X.Lower * map.X.Scale;
    for (std::size_t i = 0; i < map.Y.size(); ++i) {
        map.Y[i].Scale = -plot.height() / (shown.Y[i].Upper - shown.Y[i].Lower);
        map.Y[i].Shift = plot.top() - shown.Y[i].Upper * map.Y[i].Scale;
    }
    return map;
}

void TCurveLines::Trace(const TScopeCurve& curve, const TPlotMap& map, const QRectF& plot) {
    Pixels.clear();
    Ends.clear();
    const TAxisMap x = map.X;
    const TAxisMap y = map.Y.at(static_cast<std::size_t>(curve.YAxisIndex));
    const TSlice slice = SliceOf(curve, x, plot.left(), plot.right());
    const auto count = static_cast<double>(slice.End - slice.Begin);
    const bool thin = curve.LeftToRight && count > pointsPerPixel * plot.width();
    std::optional<TColumn> column;
    for (std::size_t i = slice.Begin; i < slice.End; ++i) {
        const QPointF pixel(x.Pixel(curve.Points[i].X), y.Pixel(curve.Points[i].Y));
        if (!IsFinite(pixel)) {
            if (column)
                column->MoveTo(Pixels);
            column.reset();
            EndLine();
        } else if (!thin) {
            Pixels.push_back(pixel);
        } else if (column && std::floor(column->First.x()) == std::floor(pixel.x())) {
            column->Add(pixel);
        } else {
            if (column)
                column->MoveTo(Pixels);
            column.emplace(pixel);
        }
    }
    if (column)
        column->MoveTo(Pixels);
    EndLine();
}

void TCurveLines::EndLine() {
    if (Pixels.size() > (Ends.empty() ? 0 : Ends.back()))
        Ends.push_back(Pixels.size());
}

std::span<const QPointF> TCurveLines::operator[](std::size_t line) const {
    const std::size_t begin = line == 0 ? 0 : Ends[line - 1];
    return std::span(Pixels).subspan(begin, Ends[line] - begin);
}

std::optional<TCurveHit> CurveAt(const TScopePicture& picture, const TPlotMap& map, QPointF place,
                                 double tolerance) {
    std::optional<TCurveHit> hit;
    double least = tolerance * tolerance;
    for (std::size_t channel = 0; channel < picture.Curves.size(); ++channel) {
        const TScopeCurve& curve = picture.Curves[channel];
        if (!IsDrawn(curve))
            continue;
        const TAxisMap y = map.Y[static_cast<std::size_t>(curve.YAxisIndex)];
        const auto pixelOf = [&](std::size_t point) {
            return QPointF(map.X.Pixel(curve.Points[point].X), y.Pixel(curve.Points[point].Y));
        };
        const TSlice slice = SliceOf(curve, map.X, place.x() - tolerance, place.x() + tolerance);
        for (std::size_t i = slice.Begin; i < slice.End; ++i) {
            const QPointF here = pixelOf(i);
            const bool joined = i > slice.Begin && IsFinite(pixelOf(i - 1));
            const QPointF before = joined ? pixelOf(i - 1) : here;
            if (!IsFinite(here))
                continue;
            const double distance = SquareDistance(place, before, here);
            if (!(distance <= least))
                continue;
            least = distance;
            const bool nearer = joined && SquareLength(place - before) < SquareLength(place - here);
            hit = TCurveHit{channel, nearer ? i - 1 : i};
        }
    }
    return hit;
}

} // namespace tidewell
