#pragma once

#include "desktop/binders/FormBinder.h"

class QGroupBox;

namespace tidewell {

class Tlanguagedialog;

class TLanguageView : public TDialogView {
  public:
    TLanguageView(Tlanguagedialog& form, const TViewContext& context);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QGroupBox& Group;
};

} // namespace tidewell
