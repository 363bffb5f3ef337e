#include "widgets/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace tidewell {

namespace {

constexpr int smallest = 80; // percent of the font's size
constexpr int step = 2;

} // namespace

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
    const auto elided = [&] { return QFontMetrics(shrunk, this).elidedText(text(), Mode, width()); };
    QString shown = elided();
    for (int share = 100 - step; share >= smallest && shown != text(); share -= step) {
        shrunk.setPointSizeF(font().pointSizeF() * share / 100);
        shown = elided();
    }
    QPainter painter(this);
    painter.setFont(shrunk);
    style()->drawItemText(&painter, rect(), static_cast<int>(alignment()), palette(), isEnabled(), shown,
                          foregroundRole());
}

bool TElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() &&
        fontMetrics().horizontalAdvance(text()) * smallest / 100 > width()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text().toHtmlEscaped(), this);
        return true;
    }
    return QLabel::event(event);
}

} // namespace tidewell
