#pragma once

#include "desktop/binders/FormBinder.h"

namespace tidewell {

class Tlanguagedialog;

class TLanguageView : public TDialogView {
  public:
    TLanguageView(Tlanguagedialog& form, const TViewContext& context);
};

} // namespace tidewell
