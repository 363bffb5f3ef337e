#pragma once

#include "desktop/binders/FormBinder.h"

class QGridLayout;
class QLineEdit;

namespace tidewell {

class TEdit;
class TInputDialog;
class TLabel;

// As wide as the form wishes, but never narrower than what is in it, and in the middle of the screen whenever
// it comes up.
class TInputView : public TDialogView {
  public:
    TInputView(TInputDialog& form, const TViewContext& context);

  protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    QLineEdit& AddField(QGridLayout& grid, TLabel& label, TEdit& edit, IDialogs& dialogs);
    void FitWidth(const TInputDialog& form);
    void MakeLimitsReadable();
    void Centre();

    QWidget& Content;
    std::vector<QLineEdit*> Limits; // the fields of Min and Max
};

} // namespace tidewell
