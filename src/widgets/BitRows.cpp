#include "widgets/BitRows.h"

#include <QPainter>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int textLeft = 5; // pixels, here and below
constexpr int textTop = 4;
constexpr QColor lime(0, 255, 0);

} // namespace

TBitRows::TBitRows(std::vector<std::string> rows, int rowHeight, int width, QWidget* parent)
    : QWidget(parent), Rows(std::move(rows)), RowHeight(rowHeight), LeastWidth(width) {
    // Between two rows' texts there must be some air.
    QFont small = font();
    for (int size = fontMetrics().height(); size > RowHeight - textTop; --size) {
        small.setPixelSize(std::max(size - textTop, 1));
        if (QFontMetrics(small, this).height() <= RowHeight - textTop)
            break;
    }
    setFont(small);
}

QSize TBitRows::sizeHint() const {
    int width = LeastWidth;
    for (const std::string& row : Rows)
        width = std::max(width, fontMetrics().horizontalAdvance(QString::fromStdString(row)) + 2 * textLeft);
    return {width, RowHeight * static_cast<int>(Rows.size())};
}

void TBitRows::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    QRect row(0, 0, width(), RowHeight);
    for (const std::string& text : Rows) {
        const bool set = text.starts_with('1');
        if (set)
            painter.fillRect(row, lime);
        // Black, but for a dark window.
        painter.setPen(set ? QColor(Qt::black) : palette().color(QPalette::Text));
        painter.drawText(QPoint(textLeft, row.top() + textTop + fontMetrics().ascent()),
                         QString::fromStdString(text));
        row.translate(0, RowHeight);
    }
}

void TBitRows::mouseReleaseEvent(QMouseEvent*) {
    window()->close();
}

} // namespace tidewell
