#pragma once

#include "core/controls/StatusBar.h"
#include "desktop/binders/Binding.h"

namespace tidewell {

class TPanelBar;

void BindStatusBar(TPanelBar& view, TStatusBar& bar);

} // namespace tidewell
