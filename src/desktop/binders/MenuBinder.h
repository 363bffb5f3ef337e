#pragma once

#include "core/controls/Menu.h"
#include "desktop/binders/Binding.h"

class QMenu;
class QMenuBar;

namespace tidewell {

// Each entry becomes an action that bears its name; one with entries below it becomes a menu, shown while any
// of them is. A caption "-" is a separator. The keys are shown only.
void BindMainMenu(QMenuBar& view, TMainMenu& menu, IDialogs& dialogs);
void BindPopupMenu(QMenu& view, TPopupMenu& menu, IDialogs& dialogs);

} // namespace tidewell
