#pragma once

#include "core/controls/MaskEdit.h"
#include "core/controls/TrackBar2.h"
#include "desktop/binders/Binding.h"

class QLineEdit;

namespace tidewell {

class TTwoThumbTrackBar;

void BindTrackBar2(TTwoThumbTrackBar& view, TTrackBar2& bar, IDialogs& dialogs);
// A click by the left mouse button is the control's click; losing the keyboard to another widget is its exit.
void BindMaskEdit(QLineEdit& view, TMaskEdit& edit, IDialogs& dialogs);

} // namespace tidewell
