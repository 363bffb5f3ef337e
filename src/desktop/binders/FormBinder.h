#pragma once

#include "core/controls/Form.h"
#include "core/ports/IFiles.h"
#include "desktop/QtApplication.h"
#include "desktop/QtTime.h"
#include "desktop/binders/Bind.h"

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
void Bind(QWidget& view, TForm& form, const TViewContext& context);

// Runs the handler, guarded, when the widget comes up and at each new size of it.
void OnNewSize(QWidget& widget, const TViewContext& context, std::function<void()> handler);

// A dialog window. Esc, unless the form takes it, closes it as its frame does. It comes up in the middle of
// the screen, its title bar on the screen.
class TDialogView : public QDialog {
  public:
    using QDialog::QDialog;
    void reject() override { close(); }
    void setVisible(bool visible) override;
    // In the middle of the screen, wherever the user has moved it.
    void Centre();

    // It has come up.
    TEvent<> OnShown;
    // A key that its widgets have left, before what dialogs do at it; set the flag to leave that out.
    TEvent<const QKeyEvent&, bool&> OnKeyPress;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
};

// One without the buttons of the frame, which only its own buttons end.
constexpr Qt::WindowFlags plainDialog = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;

} // namespace tidewell
