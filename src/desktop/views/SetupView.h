#pragma once

#include "desktop/binders/FormBinder.h"

class QLineEdit;
class QListWidget;

namespace tidewell {

class TListBox;
class TSetupForm;

class TSetupView : public TDialogView {
  public:
    TSetupView(TSetupForm& form, const TViewContext& context);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void BindPicking(QListWidget& view, TListBox& list, const TViewContext& context);

    QLineEdit& Remote;
};

} // namespace tidewell
