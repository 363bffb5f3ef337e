#include "widgets/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace tidewell {

namespace {

constexpr double smallest = 0.8; // of the font's size

}

TElidedLabel::TElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

void TElidedLabel::SetElideMode(Qt::TextElideMode mode) {
    Mode = mode;
    update();
}

QSize TElidedLabel::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

void TElidedLabel::paintEvent(QPaintEvent*) {
    QFont shrunk = font();
    const int needed = fontMetrics().horizontalAdvance(text());
    if (needed > width())
        shrunk.setPointSizeF(shrunk.pointSizeF() * std::max(smallest, static_cast<double>(width()) / needed));
    const QString shown = QFontMetrics(shrunk, this).elidedText(text(), Mode, width());
    QPainter painter(this);
    painter.setFont(shrunk);
    style()->drawItemText(&painter, rect(), static_cast<int>(alignment()), palette(), isEnabled(), shown,
                          foregroundRole());
}

bool TElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() &&
        fontMetrics().horizontalAdvance(text()) * smallest > width()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text().toHtmlEscaped(), this);
        return true;
    }
    return QLabel::event(event);
}

} // namespace tidewell
