#include "desktop/binders/GridModel.h"

#include "desktop/QtText.h"

#include <algorithm>
#include <exception>

namespace tidewell {

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

} // namespace tidewell
