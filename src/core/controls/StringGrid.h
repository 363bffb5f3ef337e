#pragma once

#include "core/controls/Control.h"

#include <cstddef>
#include <functional>
#include <optional>
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

// Pixels of a grid's client area; right and bottom lie outside.
struct TCellRect {
    int Left = 0;
    int Top = 0;
    int Right = 0;
    int Bottom = 0;

    bool Contains(int x, int y) const { return x >= Left && x < Right && y >= Top && y < Bottom; }
    TCellRect Grown(int by) const { return {Left - by, Top - by, Right + by, Bottom + by}; }
};

// A click of the left button.
struct TCellClick {
    int Column = -1; // -1: beside the cells
    int Row = -1;    // 0 is the heading
    int X = 0;
    int Y = 0;
    TCellRect Cell;
};

// How a cell is drawn: one line of text, vertically centred, with an end ellipsis when too long.
struct TCellLook {
    std::string Text;
    bool Selected = false;   // bold and blue
    bool Stripe = false;     // on the colour of every other row
    std::optional<bool> Box; // a check box, drawn in BoxRect of the cell
};

class TStringGrid : public TControl {
  public:
    using TControl::TControl;

    TStringTable Cells;
    // Column and row of a data row; called while painting. For row 0 only its text counts, as the heading of
    // a column that has none in Cells. Unset: the text of Cells, and the selected row stands out.
    std::function<TCellLook(int column, int row)> OnDrawCell;
    std::function<TCellRect(const TCellRect& cell)> BoxRect;
    std::vector<int> ColWidths; // pixels; empty: the view's own

    int SelectedRow() const { return CurrentRow; } // -1: none; row 0 is the heading
    void SetSelectedRow(int row) { Assign(CurrentRow, row); }

    TEvent<int> OnDblClick;                // row under the mouse
    TEvent<const std::string&> OnKeyPress; // typed text; "\r" for Enter
    TEvent<int> OnSelectCell;              // row
    TEvent<const TCellClick&> OnClick;

  private:
    int CurrentRow = -1;
};

} // namespace tidewell
