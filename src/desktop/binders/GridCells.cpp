#include "desktop/binders/GridCells.h"

#include "desktop/QtText.h"
#include "widgets/Colors.h"
#include "widgets/SimpleViews.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <exception>
#include <memory>

namespace tidewell {

namespace {

constexpr qsizetype longestLine = 100; // characters of a tool tip; a longer one is broken
const QColor stripeTint(98, 149, 204); // of an inactive window's caption
constexpr double stripeShare = 0.26;
const QColor selectedOnLight(0, 0, 255);
const QColor selectedOnDark(150, 190, 255);

QRect TextRect(const QRect& cell) {
    return cell.adjusted(TCellTexts::Margin, 0, -TCellTexts::Margin, 0);
}

} // namespace

QVariant TGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole)
        return ToQt(Look(index).Text);
    if (role == Qt::CheckStateRole) {
        if (const auto box = Look(index).Box)
            return *box ? Qt::Checked : Qt::Unchecked;
    }
    return {};
}

QVariant TGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? Headings.value(section) : QVariant();
}

TCellLook TGridModel::Look(const QModelIndex& index) const {
    const int row = index.row() + 1;
    TCellLook look;
    if (!Grid.OnDrawCell) {
        look.Text = Grid.Cells.Cell(static_cast<std::size_t>(index.column()), static_cast<std::size_t>(row));
        look.Selected = row == Grid.SelectedRow();
        look.Stripe = row % 2 == 0;
        return look;
    }
    try {
        return Grid.OnDrawCell(index.column(), row);
    } catch (const std::exception& error) {
        look.Text = error.what();
    }
    return look;
}

QString TGridModel::Heading(int column) const {
    const std::string& text = Grid.Cells.Cell(static_cast<std::size_t>(column), 0);
    return ToQt(text.empty() && Grid.OnDrawCell ? Grid.OnDrawCell(column, 0).Text : text);
}

TGridModel::EChange TGridModel::Sync() {
    const int rows = std::max(0, static_cast<int>(Grid.Cells.RowCount()) - 1);
    const int columns = static_cast<int>(Grid.Cells.ColCount());
    EChange change = EChange::Texts;
    if (rows != Rows || columns != Columns) {
        change = columns != Columns ? EChange::Columns : EChange::Rows;
        beginResetModel();
        Rows = rows;
        Columns = columns;
        endResetModel();
    } else if (Rows > 0 && Columns > 0) {
        emit dataChanged(index(0, 0), index(Rows - 1, Columns - 1), {Qt::DisplayRole});
    }
    SyncHeadings();
    return change;
}

void TGridModel::SyncHeadings() {
    QStringList headings;
    for (int column = 0; column < Columns; ++column)
        headings.append(Heading(column));
    if (headings == Headings)
        return;
    Headings = std::move(headings);
    if (Columns > 0)
        emit headerDataChanged(Qt::Horizontal, 0, Columns - 1);
}

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

void TCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    const TCellLook look = Model.Look(index);
    const QColor base = option.palette.color(QPalette::Base);
    // Over what marks the selected row elsewhere.
    painter->fillRect(option.rect, look.Stripe ? Mixed(stripeTint, base, stripeShare) : base);
    if (look.Box)
        PaintBox(*painter, option, *look.Box);
    if (look.Text.empty())
        return;
    const QString text = ToQt(look.Text);
    if (!look.Selected) {
        painter->setPen(option.palette.color(QPalette::Text));
        Texts.Paint(*painter, option.rect, text);
        return;
    }
    const QFont before = painter->font();
    painter->setFont(Bold(before));
    painter->setPen(HasDarkBase(option.palette) ? selectedOnDark : selectedOnLight);
    SelectedTexts.Paint(*painter, option.rect, text);
    painter->setFont(before);
}

void TCellDelegate::PaintBox(QPainter& painter, const QStyleOptionViewItem& option, bool checked) const {
    const QRect& cell = option.rect;
    const TCellRect within{cell.left(), cell.top(), cell.left() + cell.width(), cell.top() + cell.height()};
    const auto& boxOf = Model.Control().BoxRect;
    const TCellRect box = boxOf ? boxOf(within) : within;
    const QRectF frame(box.Left + 0.5, box.Top + 0.5, box.Right - box.Left - 1, box.Bottom - box.Top - 1);
    const QColor line = option.palette.color(QPalette::Text);
    painter.save();
    painter.setClipRect(cell);
    painter.setBrush(option.palette.color(QPalette::Base));
    painter.setPen(Faded(line, 0.6F));
    painter.drawRect(frame);
    if (checked) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(line, frame.width() / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const auto at = [&frame](double x, double y) {
            return QPointF(frame.x() + x * frame.width(), frame.y() + y * frame.height());
        };
        painter.drawPolyline(QPolygonF({at(0.22, 0.52), at(0.42, 0.74), at(0.8, 0.26)}));
    }
    painter.restore();
}

QSize TCellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QFontMetrics metrics(Bold(option.font));
    return {metrics.horizontalAdvance(ToQt(Model.Look(index).Text)) + 2 * TCellTexts::Margin + 1,
            metrics.height()};
}

bool TCellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                              const QModelIndex& index) {
    if (event == nullptr || view == nullptr || event->type() != QEvent::ToolTip)
        return false;
    const TCellLook look = Model.Look(index);
    const QFontMetrics metrics(look.Selected ? Bold(option.font) : option.font);
    return ShowWholeText(*event, *view, option.rect, metrics, ToQt(look.Text));
}

bool ShowWholeText(const QHelpEvent& event, QWidget& widget, const QRect& cell, const QFontMetrics& metrics,
                   const QString& text) {
    if (metrics.horizontalAdvance(text) <= TextRect(cell).width())
        return false;
    const QString form = text.size() > longestLine ? QStringLiteral("<qt>%1</qt>")
                                                   : QStringLiteral("<p style='white-space:pre'>%1</p>");
    QToolTip::showText(event.globalPos(), form.arg(text.toHtmlEscaped()), &widget, cell);
    return true;
}

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
