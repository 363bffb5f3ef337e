#pragma once

#include "core/Guard.h"
#include "core/controls/Control.h"
#include "core/ports/IDialogs.h"

#include <QWidget>

#include <utility>

namespace tidewell {

// A binder shows a control in a widget: at once, then at each change, for as long as the widget lives. What
// the user does goes to the control's events, guarded by the general handler, which shows its messages by the
// dialogs given. Control and dialogs must outlive the widget.

// Keeps the connection for as long as the object lives.
void Keep(QObject& view, TConnection connection);

// Name, visibility, hint, focus requests. For a widget that has its parent already.
void BindControl(QWidget& view, TControl& control);

// Runs sync now and at each change of the control.
template <class TSync>
void KeepInStep(QObject& view, TControl& control, TSync sync) {
    sync();
    Keep(view, control.Changed.Connect(std::move(sync)));
}

} // namespace tidewell
