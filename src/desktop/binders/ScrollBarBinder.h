#pragma once

#include "core/controls/ScrollBar.h"
#include "desktop/binders/Binding.h"

class QScrollBar;

namespace tidewell {

// While the thumb is dragged the control hears of each position as Track; of its release, and of any other
// move by the user, as End.
void BindScrollBar(QScrollBar& view, TScrollBar& bar, IDialogs& dialogs);

} // namespace tidewell
