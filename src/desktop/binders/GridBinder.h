#pragma once

#include "core/controls/StringGrid.h"
#include "desktop/binders/Binding.h"

class QTableView;

namespace tidewell {

// Row 0 of the grid is shown as the heading, row 1 as the first row of the view. Cells are read while
// painting, so Repaint shows what has changed in them.
void BindGrid(QTableView& view, TStringGrid& grid, IDialogs& dialogs);

} // namespace tidewell
