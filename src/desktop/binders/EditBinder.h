#pragma once

#include "core/controls/Simple.h"
#include "desktop/binders/Binding.h"

class QLineEdit;

namespace tidewell {

// The Enter key goes to OnReturn if the form has set it, and no further.
void BindEdit(QLineEdit& view, TEdit& edit, IDialogs& dialogs);

} // namespace tidewell
