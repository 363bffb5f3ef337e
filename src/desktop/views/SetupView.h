#pragma once

#include "desktop/binders/FormBinder.h"

namespace tidewell {

class TSetupForm;

class TSetupView : public TDialogView {
  public:
    TSetupView(TSetupForm& form, const TViewContext& context);
};

} // namespace tidewell
