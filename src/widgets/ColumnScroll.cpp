#include "widgets/ColumnScroll.h"

#include <QEvent>
#include <QScrollBar>

namespace tidewell {

namespace {

constexpr int lowest = 60; // pixels

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
    return {sizeHint().width(), lowest};
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
