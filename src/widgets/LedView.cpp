#include "widgets/LedView.h"

#include <QPainter>
#include <QRadialGradient>

#include <algorithm>

namespace tidewell {

TLedView::TLedView(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    Describe();
}

void TLedView::SetOn(bool on) {
    if (on == On)
        return;
    On = on;
    Describe();
    update();
}

void TLedView::SetColor(const QColor& color) {
    if (color == LampColor)
        return;
    LampColor = color;
    Describe();
    update();
}

void TLedView::Describe() {
    setAccessibleDescription((On ? QStringLiteral("on, ") : QStringLiteral("off, ")) + LampColor.name());
}

void TLedView::paintEvent(QPaintEvent*) {
    const qreal diameter = std::min({qreal(width()), qreal(height()), qreal(16)}) - 3;
    if (diameter <= 0)
        return;
    const QPointF centre = QRectF(rect()).center();
    const qreal radius = diameter / 2;
    const QColor body = isEnabled() ? LampColor : palette().color(QPalette::Mid);
    const QColor lamp = On ? body : body.darker(320);

    QRadialGradient glass(centre - QPointF(radius, radius) * 0.3, diameter * 0.8);
    glass.setColorAt(0, On ? lamp.lighter(165) : lamp.lighter(150));
    glass.setColorAt(0.45, lamp);
    glass.setColorAt(1, lamp.darker(150));

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Dark), 1));
    painter.setBrush(glass);
    painter.drawEllipse(centre, radius, radius);
}

} // namespace tidewell
