#include "widgets/ScopeDrawing.h"

#include "core/AtExit.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

constexpr double lineWidth = 1.5; // pixels at 100 %, here and below
constexpr double highlightWidth = 3.5;
constexpr double cursorWidth = 1.5;
constexpr int handleSize = 6;
constexpr int textMargin = 3;
constexpr double pointRadius = 4;
constexpr double focusWidth = 2;

// Of the labels, lowest first.
std::vector<const TScopeText*> ShownTexts(const TScopePicture& picture, const TPlotMap& map,
                                          const QRect& plot) {
    std::vector<const TScopeText*> shown;
    for (const TScopeText& text : picture.Texts) {
        const double x = map.X.Pixel(text.Position.X);
        if (text.Visible && !text.Name.empty() && text.YAxisIndex >= 0 && text.YAxisIndex <= 2 &&
            x >= plot.left() && x <= plot.right())
            shown.push_back(&text);
    }
    const auto height = [&map](const TScopeText* text) {
        return map.Y[static_cast<std::size_t>(text->YAxisIndex)].Pixel(text->Position.Y);
    };
    std::stable_sort(shown.begin(), shown.end(),
                     [&](const TScopeText* a, const TScopeText* b) { return height(a) > height(b); });
    return shown;
}

} // namespace

void TScopeDrawing::DrawCurves(QPainter& painter, const QRect& plot, bool vector) {
    Lines.resize(Picture.Curves.size());
    if (vector) {
        DrawVectors(painter, plot);
        return;
    }
    std::vector<std::size_t> channels;
    for (std::size_t i = 0; i < Picture.Curves.size(); ++i)
        channels.push_back(i);
    DrawLines(painter, plot, channels, lineWidth);
}

void TScopeDrawing::DrawLines(QPainter& painter, const QRect& plot, const std::vector<std::size_t>& channels,
                              double width) {
    // Without the painter's scale, so that the lines lie on the pixels of the device.
    const QTransform device = painter.deviceTransform();
    painter.save();
    const TAtExit restore([&painter] { painter.restore(); });
    painter.setWorldTransform(device.inverted() * painter.worldTransform());
    const QRectF exact = device.mapRect(QRectF(plot));
    const QRect area = exact.toAlignedRect();
    // A line at a whole pixel lies on that pixel, as lines of the grid do.
    const QRectF inArea = exact.translated(-area.topLeft()).translated(0.5, 0.5);
    const TPlotMap map = MapOf(Picture.Shown, inArea);
    std::vector<TRasterLine> lines;
    for (const std::size_t channel : channels) {
        const TScopeCurve& curve = Picture.Curves[channel];
        if (!IsDrawn(curve))
            continue;
        TCurveLines& traced = Lines[channel];
        traced.Trace(curve, map, inArea);
        const QRgb color = Readable(curve.Color, Colors.Plot).rgb();
        for (std::size_t i = 0; i < traced.Count(); ++i)
            lines.push_back({traced[i], curve.LeftToRight, color, width * device.m11()});
    }
    Raster.Draw(painter, area, lines);
}

void TScopeDrawing::DrawVectors(QPainter& painter, const QRect& plot) {
    const TPlotMap map = MapOf(Picture.Shown, plot);
    for (std::size_t channel = 0; channel < Picture.Curves.size(); ++channel) {
        const TScopeCurve& curve = Picture.Curves[channel];
        if (!IsDrawn(curve))
            continue;
        TCurveLines& traced = Lines[channel];
        traced.Trace(curve, map, plot);
        painter.setPen(
            QPen(Readable(curve.Color, Colors.Plot), lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (std::size_t i = 0; i < traced.Count(); ++i)
            if (traced[i].size() == 1)
                painter.drawPoint(traced[i][0]);
            else
                painter.drawPolyline(traced[i].data(), static_cast<int>(traced[i].size()));
    }
}

void TScopeDrawing::DrawTexts(QPainter& painter, const QRect& plot) const {
    const TPlotMap map = MapOf(Picture.Shown, plot);
    const QFontMetrics metrics = painter.fontMetrics();
    const QColor back = Faded(Colors.Plot, 0.85F);
    std::vector<QRectF> taken;
    for (const TScopeText* text : ShownTexts(Picture, map, plot)) {
        const QString name = QString::fromStdString(text->Name);
        const double x = map.X.Pixel(text->Position.X);
        const double y = map.Y[static_cast<std::size_t>(text->YAxisIndex)].Pixel(text->Position.Y);
        QRectF place(0, 0, metrics.horizontalAdvance(name) + 2 * textMargin, metrics.height());
        place.moveCenter({x, 0});
        place.moveBottom(std::clamp(y, plot.top() + place.height(), plot.bottom() - 1.0));
        place.moveLeft(std::clamp(place.left(), plot.left() + 1.0, plot.right() - place.width()));
        // Above those below it that it would lie on.
        for (const QRectF& other : taken)
            if (place.intersects(other))
                place.moveBottom(other.top());
        if (taken.empty() || !std::any_of(taken.begin(), taken.end(), [&](const QRectF& other) {
                return other.left() < x && x < other.right();
            })) {
            painter.setPen(QPen(Colors.Axis, 1));
            painter.drawLine(QPointF(x, place.bottom()), QPointF(x, plot.bottom()));
        }
        taken.push_back(place);
        painter.fillRect(place, back);
        painter.setPen(Colors.Text);
        painter.drawText(QPointF(place.left() + textMargin, place.top() + metrics.ascent()), name);
    }
}

void TScopeDrawing::DrawOverlay(QPainter& painter, const QRect& plot) {
    Lines.resize(Picture.Curves.size());
    painter.setClipRect(plot);
    if (Overlay.Highlighted && *Overlay.Highlighted < Picture.Curves.size())
        DrawLines(painter, plot, {*Overlay.Highlighted}, highlightWidth);
    painter.setRenderHint(QPainter::Antialiasing);
    if (Overlay.Pointed)
        DrawPoint(painter, plot);
    if (Picture.Cursor.Visible)
        DrawCursor(painter, plot);
    if (!Overlay.Band.isEmpty()) {
        painter.setPen(QPen(Colors.Accent, 1));
        painter.setBrush(Faded(Colors.Accent, 0.2F));
        painter.drawRect(QRectF(Overlay.Band).adjusted(0.5, 0.5, -0.5, -0.5));
    }
    if (Overlay.Held)
        DrawHeld(painter, plot);
    if (Overlay.Focused) {
        constexpr double half = focusWidth / 2;
        painter.setPen(QPen(Colors.Accent, focusWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(plot).adjusted(half, half, -half, -half));
    }
}

void TScopeDrawing::DrawCursor(QPainter& painter, const QRect& plot) const {
    const double x = std::round(MapOf(Picture.Shown, plot).X.Pixel(Picture.Cursor.X)) + 0.5;
    const QColor color = Readable(Picture.Cursor.Color, Colors.Plot);
    painter.setPen(QPen(color, cursorWidth));
    painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom() + 1.0));
    QPainterPath handle(QPointF(x - handleSize, plot.top()));
    handle.lineTo(x + handleSize, plot.top());
    handle.lineTo(x, plot.top() + 1.5 * handleSize);
    painter.fillPath(handle, color);
}

void TScopeDrawing::DrawPoint(QPainter& painter, const QRect& plot) const {
    const TCurveHit& hit = *Overlay.Pointed;
    if (hit.Channel >= Picture.Curves.size() || hit.Point >= Picture.Curves[hit.Channel].Points.size())
        return;
    const TScopeCurve& curve = Picture.Curves[hit.Channel];
    if (!IsDrawn(curve))
        return;
    const TPlotMap map = MapOf(Picture.Shown, plot);
    const TSLPoint& point = curve.Points[hit.Point];
    const QPointF centre(map.X.Pixel(point.X) + 0.5,
                         map.Y[static_cast<std::size_t>(curve.YAxisIndex)].Pixel(point.Y) + 0.5);
    painter.setPen(QPen(Colors.Plot, 1.5));
    painter.setBrush(Readable(curve.Color, Colors.Plot));
    painter.drawEllipse(centre, pointRadius, pointRadius);
}

// Two bars in the corner: the display stands still.
void TScopeDrawing::DrawHeld(QPainter& painter, const QRect& plot) const {
    const QPointF corner = plot.topLeft() + QPointF(10, 10);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors.Accent);
    for (const double x : {0.0, 8.0})
        painter.drawRoundedRect(QRectF(corner + QPointF(x, 0), QSizeF(5, 16)), 1.5, 1.5);
}

} // namespace tidewell
