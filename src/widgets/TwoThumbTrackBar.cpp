#include "widgets/TwoThumbTrackBar.h"

#include "widgets/Colors.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

// Device-independent pixels.
constexpr qreal thumbWidth = 12;
constexpr qreal thumbHeight = 20;
constexpr qreal grooveHeight = 5;
constexpr qreal tickGap = 4; // between thumbs and ticks
constexpr qreal tickLength = 4;
constexpr qreal longTickLength = 7; // each fifth
constexpr int longTicks = 5;
constexpr qreal frame = 3; // around a thumb with the keyboard

} // namespace

TTwoThumbTrackBar::TTwoThumbTrackBar(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    Describe();
}

void TTwoThumbTrackBar::SetRange(int min, int max) {
    Min = min;
    Max = std::max(min, max);
    SetPositions(Lower, Upper);
    update();
}

void TTwoThumbTrackBar::SetPositions(int lower, int upper) {
    Lower = std::clamp(lower, Min, Max);
    Upper = std::clamp(upper, Lower, Max);
    Describe();
    update();
}

void TTwoThumbTrackBar::SetTickFrequency(int positions) {
    TickFrequency = positions;
    update();
}

void TTwoThumbTrackBar::SetPageSize(int positions) {
    PageSize = std::max(positions, 1);
}

void TTwoThumbTrackBar::SetThumbColor(const QColor& color) {
    ThumbColor = color;
    update();
}

void TTwoThumbTrackBar::Describe() {
    setAccessibleDescription(QStringLiteral("%1 to %2 of %3").arg(Lower).arg(Upper).arg(Max));
}

QSize TTwoThumbTrackBar::sizeHint() const {
    return {320, minimumSizeHint().height()};
}

QSize TTwoThumbTrackBar::minimumSizeHint() const {
    return {120, static_cast<int>(thumbHeight + tickGap + longTickLength + 2 * frame)};
}

QRectF TTwoThumbTrackBar::Groove() const {
    const qreal side = thumbWidth / 2 + frame;
    return {side, frame + (thumbHeight - grooveHeight) / 2, std::max<qreal>(width() - 2 * side, 1),
            grooveHeight};
}

qreal TTwoThumbTrackBar::XOf(int position) const {
    const QRectF groove = Groove();
    const qreal part = Max > Min ? qreal(position - Min) / (Max - Min) : 0;
    return layoutDirection() == Qt::RightToLeft ? groove.right() - part * groove.width()
                                                : groove.left() + part * groove.width();
}

int TTwoThumbTrackBar::PositionAt(qreal x) const {
    const QRectF groove = Groove();
    qreal part = (x - groove.left()) / groove.width();
    if (layoutDirection() == Qt::RightToLeft)
        part = 1 - part;
    return Min + static_cast<int>(std::lround(std::clamp<qreal>(part, 0, 1) * (Max - Min)));
}

// The nearer one; where they lie on each other, the one that can go there.
TTwoThumbTrackBar::EThumb TTwoThumbTrackBar::ThumbAt(qreal x) const {
    const qreal lower = std::abs(x - XOf(Lower));
    const qreal upper = std::abs(x - XOf(Upper));
    if (lower == upper)
        return Upper >= Max || PositionAt(x) < Lower ? EThumb::Lower : EThumb::Upper;
    return lower < upper ? EThumb::Lower : EThumb::Upper;
}

QRectF TTwoThumbTrackBar::ThumbRect(EThumb thumb) const {
    return {XOf(thumb == EThumb::Lower ? Lower : Upper) - thumbWidth / 2, frame, thumbWidth, thumbHeight};
}

void TTwoThumbTrackBar::Move(EThumb thumb, int position) {
    position = thumb == EThumb::Lower ? std::clamp(position, Min, Upper) : std::clamp(position, Lower, Max);
    if (PositionOf(thumb) == position)
        return;
    PositionOf(thumb) = position;
    Describe();
    update();
    (thumb == EThumb::Lower ? OnLowerMoved : OnUpperMoved)(position);
}

void TTwoThumbTrackBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF groove = Groove();
    const QColor text = palette().color(QPalette::WindowText);
    const QColor line = Faded(text, 0.35F);
    painter.setPen(QPen(line, 1));
    painter.setBrush(Faded(text, 0.12F));
    painter.drawRoundedRect(groove, grooveHeight / 2, grooveHeight / 2);
    QRectF range = groove;
    range.setLeft(std::min(XOf(Lower), XOf(Upper)));
    range.setRight(std::max(XOf(Lower), XOf(Upper)));
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled() ? ThumbColor.lighter(140) : line);
    painter.drawRect(range);
    PaintTicks(painter);
    // The one with the keyboard lies above.
    PaintThumb(painter, Current == EThumb::Lower ? EThumb::Upper : EThumb::Lower);
    PaintThumb(painter, Current);
}

void TTwoThumbTrackBar::PaintTicks(QPainter& painter) const {
    if (TickFrequency <= 0)
        return;
    painter.setPen(QPen(Faded(palette().color(QPalette::WindowText), 0.6F), 1));
    const qreal top = frame + thumbHeight + tickGap;
    int number = 0;
    for (int position = Min; position <= Max; position += TickFrequency, ++number) {
        const qreal x = std::floor(XOf(position)) + 0.5; // sharp
        painter.drawLine(QPointF(x, top),
                         QPointF(x, top + (number % longTicks == 0 ? longTickLength : tickLength)));
    }
}

void TTwoThumbTrackBar::PaintThumb(QPainter& painter, EThumb thumb) const {
    const QRectF body = ThumbRect(thumb);
    QColor colour = isEnabled() ? ThumbColor : palette().color(QPalette::Mid);
    if (isEnabled() && Hovered == thumb)
        colour = colour.lighter(120);
    if (hasFocus() && Current == thumb) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(body.adjusted(-1.5, -1.5, 1.5, 1.5), 4, 4);
    }
    painter.setPen(QPen(palette().color(QPalette::Base), 1));
    painter.setBrush(colour);
    painter.drawRoundedRect(body, 3, 3);
    // A grip.
    painter.setPen(QPen(QColor(255, 255, 255, 170), 1));
    const QPointF middle = body.center();
    painter.drawLine(middle - QPointF(0, 4), middle + QPointF(0, 4));
}

void TTwoThumbTrackBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const qreal x = event->position().x();
    Current = ThumbAt(x);
    Dragged = Current;
    // A thumb that is grabbed stays where it is; a click beside it fetches it.
    const QRectF body = ThumbRect(Current);
    GrabOffset = x >= body.left() && x <= body.right() ? x - body.center().x() : 0;
    Move(Current, PositionAt(x - GrabOffset));
    update();
}

void TTwoThumbTrackBar::mouseMoveEvent(QMouseEvent* event) {
    const qreal x = event->position().x();
    if (!event->buttons().testFlag(Qt::LeftButton))
        Dragged.reset(); // hidden or disabled in the middle of a drag
    if (Dragged) {
        Move(*Dragged, PositionAt(x - GrabOffset));
        return;
    }
    const auto over = ThumbAt(x);
    const QRectF body = ThumbRect(over);
    const auto hovered = body.contains(event->position()) ? std::optional(over) : std::nullopt;
    if (hovered != Hovered) {
        Hovered = hovered;
        update();
    }
}

void TTwoThumbTrackBar::mouseReleaseEvent(QMouseEvent*) {
    Dragged.reset();
    update();
}

void TTwoThumbTrackBar::leaveEvent(QEvent* event) {
    Hovered.reset();
    update();
    QWidget::leaveEvent(event);
}

void TTwoThumbTrackBar::keyPressEvent(QKeyEvent* event) {
    const int position = PositionOf(Current);
    const int forward = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    switch (event->key()) {
    case Qt::Key_Left:
        return Move(Current, position - forward);
    case Qt::Key_Right:
        return Move(Current, position + forward);
    case Qt::Key_Down:
        return Move(Current, position - 1);
    case Qt::Key_Up:
        return Move(Current, position + 1);
    case Qt::Key_PageDown:
        return Move(Current, position - PageSize);
    case Qt::Key_PageUp:
        return Move(Current, position + PageSize);
    case Qt::Key_Home:
        return Move(Current, Min);
    case Qt::Key_End:
        return Move(Current, Max);
    default:
        QWidget::keyPressEvent(event);
    }
}

void TTwoThumbTrackBar::focusInEvent(QFocusEvent* event) {
    if (event->reason() == Qt::TabFocusReason)
        Current = EThumb::Lower;
    else if (event->reason() == Qt::BacktabFocusReason)
        Current = EThumb::Upper;
    QWidget::focusInEvent(event);
    update();
}

bool TTwoThumbTrackBar::focusNextPrevChild(bool next) {
    const EThumb wanted = next ? EThumb::Upper : EThumb::Lower;
    const bool leaving = testAttribute(Qt::WA_ForceDisabled); // it is being disabled
    if (hasFocus() && !leaving && Current != wanted) {
        Current = wanted;
        update();
        return true;
    }
    return QWidget::focusNextPrevChild(next);
}

} // namespace tidewell
