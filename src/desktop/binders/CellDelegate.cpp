#include "desktop/binders/CellDelegate.h"

#include "desktop/QtText.h"
#include "desktop/binders/GridModel.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace tidewell {

namespace {

constexpr qsizetype longestLine = 100; // characters of a tool tip; a longer one is broken
const QColor stripeTint(98, 149, 204); // of an inactive window's caption
constexpr float stripeShare = 0.26F;
const QColor selectedOnLight(0, 0, 255);
const QColor selectedOnDark(150, 190, 255);

bool IsDark(const QPalette& palette) {
    return palette.color(QPalette::Base).lightness() < 128;
}

// The stripe's colour over that of the window.
QColor StripeColor(const QPalette& palette) {
    const QColor base = palette.color(QPalette::Base);
    const auto mix = [](float over, float under) { return over * stripeShare + under * (1 - stripeShare); };
    return QColor::fromRgbF(mix(stripeTint.redF(), base.redF()), mix(stripeTint.greenF(), base.greenF()),
                            mix(stripeTint.blueF(), base.blueF()));
}

QFont Bold(QFont font) {
    font.setBold(true);
    return font;
}

QRect TextRect(const QRect& cell) {
    return cell.adjusted(TCellTexts::Margin, 0, -TCellTexts::Margin, 0);
}

} // namespace

void TCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    const TCellLook look = Model.Look(index);
    // Over what marks the selected row elsewhere.
    painter->fillRect(option.rect,
                      look.Stripe ? StripeColor(option.palette) : option.palette.color(QPalette::Base));
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
    painter->setPen(IsDark(option.palette) ? selectedOnDark : selectedOnLight);
    SelectedTexts.Paint(*painter, option.rect, text);
    painter->setFont(before);
}

void TCellDelegate::PaintBox(QPainter& painter, const QStyleOptionViewItem& option, bool checked) const {
    const QRect& cell = option.rect;
    const TCellRect within{cell.left(), cell.top(), cell.left() + cell.width(), cell.top() + cell.height()};
    const auto& boxOf = Model.Control().BoxRect;
    const TCellRect box = boxOf ? boxOf(within) : within;
    const QRectF frame(box.Left + 0.5, box.Top + 0.5, box.Right - box.Left - 1, box.Bottom - box.Top - 1);
    QColor line = option.palette.color(QPalette::Text);
    painter.save();
    painter.setClipRect(cell);
    painter.setBrush(option.palette.color(QPalette::Base));
    line.setAlphaF(0.6F);
    painter.setPen(line);
    painter.drawRect(frame);
    if (checked) {
        line.setAlphaF(1);
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

} // namespace tidewell
