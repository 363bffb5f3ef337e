#include "widgets/ScopeIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>
#include <array>
#include <cmath>

namespace tidewell {

namespace {

constexpr int side = 16; // pixels at 100 %; all coordinates below lie in 0 to 16

void Line(QPainter& painter, double x1, double y1, double x2, double y2) {
    painter.drawLine(QPointF(x1, y1), QPointF(x2, y2));
}

// A line with an arrow head at its second end.
void Arrow(QPainter& painter, QPointF from, QPointF to) {
    painter.drawLine(from, to);
    const QPointF along = (to - from) / std::max(std::abs(to.x() - from.x()), std::abs(to.y() - from.y()));
    const QPointF across(-along.y(), along.x());
    painter.drawLine(to, to - 2.2 * along + 2.2 * across);
    painter.drawLine(to, to - 2.2 * along - 2.2 * across);
}

void Glass(QPainter& painter, bool in) {
    painter.drawEllipse(QPointF(6.5, 6.5), 5, 5);
    Line(painter, 10.3, 10.3, 14.5, 14.5);
    Line(painter, 4, 6.5, 9, 6.5);
    if (in)
        Line(painter, 6.5, 4, 6.5, 9);
}

void WholeFrame(QPainter& painter) {
    for (const int turn : {0, 90, 180, 270}) {
        painter.save();
        painter.translate(8, 8);
        painter.rotate(turn);
        Arrow(painter, {1.8, 1.8}, {6, 6});
        painter.restore();
    }
}

void OneDirection(QPainter& painter, bool x) {
    painter.save();
    painter.translate(8, 8);
    if (!x)
        painter.rotate(90);
    Arrow(painter, {0, 0}, {-5, 0});
    Arrow(painter, {0, 0}, {5, 0});
    Line(painter, -7, -5, -7, 5);
    Line(painter, 7, -5, 7, 5);
    painter.restore();
}

void Cross(QPainter& painter) {
    for (const QPointF tip : {QPointF(8, 1.5), QPointF(8, 14.5), QPointF(1.5, 8), QPointF(14.5, 8)})
        Arrow(painter, {8, 8}, tip);
}

void Sliders(QPainter& painter) {
    const std::array<QPointF, 3> knobs{QPointF(5, 3.5), QPointF(11, 8), QPointF(6.5, 12.5)};
    for (const QPointF& knob : knobs) {
        Line(painter, 1.5, knob.y(), 14.5, knob.y());
        painter.setBrush(painter.pen().color());
        painter.drawEllipse(knob, 1.7, 1.7);
        painter.setBrush(Qt::NoBrush);
    }
}

void Cursor(QPainter& painter) {
    Line(painter, 8, 1.5, 8, 14.5);
    QPainterPath curve(QPointF(1.5, 11));
    curve.cubicTo(5, 2, 10, 14, 14.5, 5);
    painter.drawPath(curve);
}

void Copy(QPainter& painter) {
    painter.drawRect(QRectF(5.5, 5.5, 8.5, 9));
    QPainterPath behind(QPointF(3, 10.5));
    behind.lineTo(2, 10.5);
    behind.lineTo(2, 1.5);
    behind.lineTo(10.5, 1.5);
    behind.lineTo(10.5, 3);
    painter.drawPath(behind);
}

void Save(QPainter& painter) {
    Arrow(painter, {8, 1.5}, {8, 9.5});
    QPainterPath tray(QPointF(2, 9.5));
    tray.lineTo(2, 14);
    tray.lineTo(14, 14);
    tray.lineTo(14, 9.5);
    painter.drawPath(tray);
}

void Draw(QPainter& painter, EScopeIcon icon) {
    switch (icon) {
    case EScopeIcon::ZoomIn:
    case EScopeIcon::ZoomOut:
        return Glass(painter, icon == EScopeIcon::ZoomIn);
    case EScopeIcon::ZoomOff:
        return WholeFrame(painter);
    case EScopeIcon::ZoomOneDirX:
    case EScopeIcon::ZoomOneDirY:
        return OneDirection(painter, icon == EScopeIcon::ZoomOneDirX);
    case EScopeIcon::Pan:
        return Cross(painter);
    case EScopeIcon::Cursor:
        return Cursor(painter);
    case EScopeIcon::Channels:
        return Sliders(painter);
    case EScopeIcon::Copy:
        return Copy(painter);
    case EScopeIcon::Save:
        return Save(painter);
    }
}

} // namespace

QIcon ScopeIcon(EScopeIcon icon, const QColor& color) {
    QIcon result;
    for (const int scale : {1, 2}) {
        QPixmap pixmap(side * scale, side * scale);
        pixmap.setDevicePixelRatio(scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        Draw(painter, icon);
        painter.end();
        result.addPixmap(pixmap);
    }
    return result;
}

} // namespace tidewell
