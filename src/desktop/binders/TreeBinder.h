#pragma once

#include "core/controls/TreeView.h"
#include "desktop/binders/Binding.h"

class QTreeWidget;

namespace tidewell {

// The right mouse button leaves the selection as it is. The menu key counts as that button.
void BindTree(QTreeWidget& view, TTreeView& tree, IDialogs& dialogs);

} // namespace tidewell
