#pragma once

#include "core/controls/StringGrid.h"

#include <QAbstractTableModel>
#include <QStringList>

namespace tidewell {

// The cells of a grid as an item view reads them. Row 0 of the grid is the heading, row 1 the first row.
class TGridModel : public QAbstractTableModel {
  public:
    TGridModel(const TStringGrid& grid, QObject* parent) : QAbstractTableModel(parent), Grid(grid) {}

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : Rows; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : Columns; }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // A cell that cannot be drawn shows why.
    TCellLook Look(const QModelIndex& index) const;
    const TStringGrid& Control() const { return Grid; }

    enum class EChange { Texts, Rows, Columns };
    // Tells the views what has come since the last time.
    EChange Sync();

  private:
    QString Heading(int column) const;
    void SyncHeadings();

    const TStringGrid& Grid;
    int Rows = 0;
    int Columns = 0;
    QStringList Headings;
};

} // namespace tidewell
