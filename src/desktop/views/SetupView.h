#pragma once

#include "desktop/binders/FormBinder.h"

class QLineEdit;

namespace tidewell {

class TSetupForm;

class TSetupView : public TDialogView {
  public:
    TSetupView(TSetupForm& form, const TViewContext& context);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QLineEdit& Remote;
};

} // namespace tidewell
