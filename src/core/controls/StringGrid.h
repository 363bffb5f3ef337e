#pragma once

#include "core/controls/Control.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tidewell {

// Cells of text by column and row. Reading a cell that was never set gives an empty text; setting one widens
// the table.
class TStringTable {
  public:
    std::size_t ColCount() const { return Columns; }
    std::size_t RowCount() const { return Rows.size(); }
    void SetColCount(std::size_t count) { Columns = count; }
    void SetRowCount(std::size_t count) { Rows.resize(count); }
    const std::string& Cell(std::size_t column, std::size_t row) const;
    void SetCell(std::size_t column, std::size_t row, const std::string& text);
    const std::vector<std::string>& Row(std::size_t row) const;
    void SetRow(std::size_t row, std::vector<std::string> cells);
    void ClearRow(std::size_t row);

  private:
    std::size_t Columns = 0;
    std::vector<std::vector<std::string>> Rows;
};

class TStringGrid : public TControl {
  public:
    using TControl::TControl;

    TStringTable Cells;
    std::vector<int> ColWidths; // pixels; empty: the view's own

    int SelectedRow() const { return CurrentRow; } // -1: none; row 0 is the heading
    void SetSelectedRow(int row) { Assign(CurrentRow, row); }

    TEvent<int> OnDblClick;                // row under the mouse
    TEvent<const std::string&> OnKeyPress; // typed text; "\r" for Enter
    TEvent<int> OnSelectCell;              // row

  private:
    int CurrentRow = -1;
};

} // namespace tidewell
