#pragma once

#include <QStyledItemDelegate>

namespace tidewell {

// Rows of an item view with some air.
class TRoomyRows : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 4);
    }
};

} // namespace tidewell
