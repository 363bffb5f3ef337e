#include "desktop/binders/CellTexts.h"

#include <QPainter>

#include <memory>

namespace tidewell {

void TCellTexts::Paint(QPainter& painter, const QRect& cell, const QString& text) {
    if (painter.font() != Font) {
        Kept.clear();
        Font = painter.font();
    }
    const int width = cell.width() - 2 * Margin;
    const QFontMetrics metrics = painter.fontMetrics();
    const TKey key{text, width};
    const QStaticText* line = Kept.object(key);
    if (line == nullptr) {
        auto made = std::make_unique<QStaticText>(
            metrics.elidedText(text, Qt::ElideRight, width, Qt::TextSingleLine));
        made->setTextFormat(Qt::PlainText);
        made->setPerformanceHint(QStaticText::AggressiveCaching);
        line = made.get();
        Kept.insert(key, made.release());
    }
    painter.drawStaticText(cell.x() + Margin, cell.y() + (cell.height() - metrics.height()) / 2, *line);
}

} // namespace tidewell
