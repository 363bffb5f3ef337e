#include "widgets/SimpleViews.h"

#include "widgets/Child.h"

#include <QFontDatabase>
#include <QHelpEvent>
#include <QPainter>
#include <QRadialGradient>
#include <QScrollBar>
#include <QStyle>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int smallestShare = 80; // percent of the font's size
constexpr int shareStep = 2;
constexpr int lowestColumn = 60; // pixels

} // namespace

QFont Bold(QFont font) {
    font.setBold(true);
    return font;
}

QFont FixedFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (!QFontInfo(font).fixedPitch()) // a platform theme may name any font
        font.setFamily(QStringLiteral("monospace"));
    return font;
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
    const auto elided = [&] { return QFontMetrics(shrunk, this).elidedText(text(), Mode, width()); };
    QString shown = elided();
    for (int share = 100 - shareStep; share >= smallestShare && shown != text(); share -= shareStep) {
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
        fontMetrics().horizontalAdvance(text()) * smallestShare / 100 > width()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text().toHtmlEscaped(), this);
        return true;
    }
    return QLabel::event(event);
}

TCaptionPanel::TCaptionPanel(QWidget* parent)
    : QFrame(parent), Title(NewChild<QLabel>(*this)), Column(NewChild<QVBoxLayout>(*this)) {
    Title.setTextFormat(Qt::PlainText);
    Title.setContentsMargins(6, 4, 6, 4);
    Title.setFont(Bold(Title.font()));
    Column.setContentsMargins(0, 0, 0, 0);
    Column.setSpacing(0);
    Column.addWidget(&Title);
}

void TCaptionPanel::SetContent(QWidget& content) {
    Column.addWidget(&content, 1);
}

void TPictureView::SetPicture(const QPixmap& picture) {
    Shown = picture;
    update();
}

void TPictureView::paintEvent(QPaintEvent*) {
    if (Shown.isNull())
        return;
    const QSizeF size = QSizeF(Shown.size()).scaled(QSizeF(this->size()), Qt::KeepAspectRatio);
    QRectF place(QPointF(), size);
    place.moveCenter(QRectF(rect()).center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, Shown, QRectF(Shown.rect()));
}

TLedView::TLedView(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

void TLedView::Show(bool on, const QColor& color) {
    if (on == On && color == Color)
        return;
    On = on;
    Color = color;
    setAccessibleDescription((On ? QStringLiteral("on, ") : QStringLiteral("off, ")) + Color.name());
    update();
}

void TLedView::paintEvent(QPaintEvent*) {
    const qreal diameter = std::min({qreal(width()), qreal(height()), qreal(16)}) - 3;
    if (diameter <= 0)
        return;
    const QPointF centre = QRectF(rect()).center();
    const qreal radius = diameter / 2;
    const QColor body = isEnabled() ? Color : palette().color(QPalette::Mid);
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

TColumnScroll::TColumnScroll(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

QSize TColumnScroll::sizeHint() const {
    if (widget() == nullptr)
        return QScrollArea::sizeHint();
    const QSize column = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
    const bool scrolls = column.height() > height();
    return {column.width() + (scrolls ? verticalScrollBar()->sizeHint().width() : 0), column.height()};
}

QSize TColumnScroll::minimumSizeHint() const {
    return {sizeHint().width(), lowestColumn};
}

bool TColumnScroll::eventFilter(QObject* watched, QEvent* event) {
    const bool taken = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return taken;
}

void TColumnScroll::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    updateGeometry();
}

} // namespace tidewell
