#pragma once

#include "core/controls/Form.h"
#include "core/ports/IFiles.h"
#include "desktop/DeliveryHold.h"
#include "desktop/QtApplication.h"
#include "desktop/binders/Binding.h"

#include <QDialog>

namespace tidewell {

// What views are bound with.
struct TViewContext {
    TQtApplication& Application;
    IDialogs& Dialogs;
    TDeliveryHold& Hold;
    IFiles& Files;
};

// A top-level window: its name, title and size, closing by the frame, and the keys that the form sees first.
void BindForm(QWidget& view, TForm& form, const TViewContext& context);

// A dialog window. Esc, unless the form takes it, closes it as its frame does. It comes up in the middle of
// the screen, its title bar on the screen.
class TDialogView : public QDialog {
  public:
    using QDialog::QDialog;
    void reject() override { close(); }
    void setVisible(bool visible) override;
};

} // namespace tidewell
