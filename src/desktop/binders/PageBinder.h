#pragma once

#include "core/controls/Pages.h"
#include "desktop/binders/Binding.h"

class QTabWidget;

namespace tidewell {

// The tabs must stand in the order of the control's pages; each page's widget gets its name.
void BindPages(QTabWidget& view, TPageControl& pages, IDialogs& dialogs);

} // namespace tidewell
