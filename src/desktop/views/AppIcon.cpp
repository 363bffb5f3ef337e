#include "desktop/views/AppIcon.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tidewell {

namespace {

QPainterPath Wave(qreal level, qreal lift) {
    QPainterPath wave(QPointF(0, level));
    wave.cubicTo({0.25, level - lift}, {0.35, level - lift}, {0.5, level});
    wave.cubicTo({0.65, level + lift}, {0.75, level + lift}, {1, level});
    wave.lineTo(1, 1);
    wave.lineTo(0, 1);
    wave.closeSubpath();
    return wave;
}

QPixmap Draw(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size, size);
    QPainterPath tile;
    tile.addRoundedRect(QRectF(0.03, 0.03, 0.94, 0.94), 0.2, 0.2);
    painter.setClipPath(tile);
    QLinearGradient sky(0, 0, 1, 1);
    sky.setColorAt(0, QColor(7, 36, 64));
    sky.setColorAt(1, QColor(20, 110, 130));
    painter.fillRect(QRectF(0, 0, 1, 1), sky);
    painter.fillPath(Wave(0.46, 0.2), QColor(27, 138, 153));
    painter.fillPath(Wave(0.6, 0.16), QColor(120, 205, 210));
    painter.fillPath(Wave(0.76, 0.12), QColor(242, 248, 252));
    return pixmap;
}

} // namespace

QIcon AppIcon() {
    QIcon icon;
    for (const int size : {16, 22, 32, 48, 64, 128, 256})
        icon.addPixmap(Draw(size));
    return icon;
}

} // namespace tidewell
