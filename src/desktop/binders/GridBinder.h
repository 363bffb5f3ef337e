#pragma once

#include "core/controls/StringGrid.h"
#include "desktop/binders/Binding.h"

class QTableView;

namespace tidewell {

// Row 0 of the grid is shown as the heading, with the text of OnDrawCell where its cells are empty; row 1 as
// the first row of the view. Cells are read while painting, so Repaint shows what has changed in them. Clicks
// are told for cells below the heading, in pixels of the view's viewport.
void BindGrid(QTableView& view, TStringGrid& grid, IDialogs& dialogs);

} // namespace tidewell
