#include "desktop/binders/CellDelegate.h"

#include "desktop/QtText.h"
#include "desktop/binders/GridModel.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace tidewell {

namespace {

const QColor stripeTint(98, 149, 204); // of an inactive window's caption
constexpr float stripeShare = 0.26F;
const QColor selectedOnLight(0, 0, 255);
const QColor selectedOnDark(120, 170, 255);

bool IsDark(const QPalette& palette) {
    return palette.color(QPalette::Base).lightness() < 128;
}

// The stripe's colour over that of the window.
QColor StripeColor(const QPalette& palette) {
    const QColor base = palette.color(QPalette::Base);
    const auto mix = [](float over, float under) {
        return over * stripeShare + under * (1 - stripeShare);
    };
    return QColor::fromRgbF(mix(stripeTint.redF(), base.redF()), mix(stripeTint.greenF(), base.greenF()),
                            mix(stripeTint.blueF(), base.blueF()));
}

QFont Bold(QFont font) {
    font.setBold(true);
    return font;
}

QRect TextRect(const QRect& cell) {
    return cell.adjusted(TCellDelegate::Margin, 0, -TCellDelegate::Margin, 0);
}

void PaintText(QPainter& painter, const QRect& room, const QFontMetrics& metrics, const QString& text) {
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     metrics.elidedText(text, Qt::ElideRight, room.width()));
}

} // namespace

void TCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    const TCellLook look = Model.Look(index);
    painter->fillRect(option.rect,
                      look.Stripe ? StripeColor(option.palette) : option.palette.color(QPalette::Base));
    if (look.Box)
        PaintBox(*painter, option, *look.Box);
    if (look.Text.empty())
        return;
    const QRect room = TextRect(option.rect);
    const QString text = ToQt(look.Text);
    if (!look.Selected) {
        painter->setPen(option.palette.color(QPalette::Text));
        PaintText(*painter, room, option.fontMetrics, text);
        return;
    }
    const QFont before = painter->font();
    painter->setFont(Bold(before));
    painter->setPen(IsDark(option.palette) ? selectedOnDark : selectedOnLight);
    PaintText(*painter, room, painter->fontMetrics(), text);
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
    return {metrics.horizontalAdvance(ToQt(Model.Look(index).Text)) + 2 * Margin + 1, metrics.height()};
}

bool TCellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                              const QModelIndex& index) {
    if (event == nullptr || view == nullptr || event->type() != QEvent::ToolTip)
        return false;
    const TCellLook look = Model.Look(index);
    const QString text = ToQt(look.Text);
    const QFontMetrics metrics(look.Selected ? Bold(option.font) : option.font);
    if (metrics.horizontalAdvance(text) <= TextRect(option.rect).width())
        return false;
    ShowWholeText(*event, *view, option.rect, text);
    return true;
}

void ShowWholeText(const QHelpEvent& event, QWidget& widget, const QRect& area, const QString& text) {
    QToolTip::showText(event.globalPos(), QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()), &widget,
                       area);
}

} // namespace tidewell
