#pragma once

#include "desktop/binders/FormBinder.h"

namespace tidewell {

class TNabtoLogOn;

class TLogOnView : public TDialogView {
  public:
    TLogOnView(TNabtoLogOn& form, const TViewContext& context);
};

} // namespace tidewell
