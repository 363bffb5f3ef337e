#pragma once

#include "desktop/binders/CellTexts.h"

#include <QStyledItemDelegate>

namespace tidewell {

class TGridModel;
struct TCellLook;

// Draws the cells of a grid: one line of text on its stripe, with an end ellipsis when too long, or a flat
// check box. The selected row stands out by its font alone.
class TCellDelegate : public QStyledItemDelegate {
  public:
    TCellDelegate(const TGridModel& model, QObject* parent) : QStyledItemDelegate(parent), Model(model) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // The whole text of a cell that shows an ellipsis.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

  private:
    void PaintBox(QPainter& painter, const QStyleOptionViewItem& option, bool checked) const;

    const TGridModel& Model;
    mutable TCellTexts Texts;
    mutable TCellTexts SelectedTexts;
};

// Shows the whole of a text that does not fit its cell of the widget while the mouse stays there; false for
// one that fits.
bool ShowWholeText(const QHelpEvent& event, QWidget& widget, const QRect& cell, const QFontMetrics& metrics,
                   const QString& text);

} // namespace tidewell
