#include "desktop/binders/GridHeading.h"

#include "desktop/binders/CellDelegate.h"

#include <QAbstractItemModel>
#include <QHelpEvent>
#include <QPainter>
#include <QStyleOption>
#include <QToolTip>

namespace tidewell {

QString TGridHeading::Text(int section) const {
    return model() != nullptr && section >= 0 ? model()->headerData(section, orientation()).toString()
                                              : QString();
}

// Beyond the last section, too.
void TGridHeading::paintEvent(QPaintEvent* event) {
    QHeaderView::paintEvent(event);
    QPainter painter(viewport());
    const QRect rest(length() - offset(), 0, viewport()->width() - length() + offset(), height());
    painter.fillRect(rest, palette().color(QPalette::Base));
}

void TGridHeading::paintSection(QPainter* painter, const QRect& rect, int section) const {
    QStyleOption option;
    option.initFrom(this);
    const auto grid = static_cast<QRgb>(style()->styleHint(QStyle::SH_Table_GridLineColor, &option, this));
    painter->fillRect(rect, palette().color(QPalette::Base));
    painter->setPen(QColor::fromRgb(grid));
    painter->drawLine(rect.topRight(), rect.bottomRight());
    painter->drawLine(rect.bottomLeft(), rect.bottomRight());
    painter->setPen(palette().color(QPalette::Text));
    Texts.Paint(*painter, rect, Text(section));
}

bool TGridHeading::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QHeaderView::viewportEvent(event);
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const int section = logicalIndexAt(help.pos());
    const QRect area(sectionViewportPosition(section), 0, sectionSize(section), height());
    if (!ShowWholeText(help, *viewport(), area, fontMetrics(), Text(section)))
        QToolTip::hideText();
    return true;
}

} // namespace tidewell
