#pragma once

#include "core/ports/IDialogs.h"

#include <exception>

namespace tidewell {

// The general handler: runs the action, shows the text of any exception that leaves it, and goes on. False if
// one did.
template <class TAction>
bool RunGuarded(IDialogs& dialogs, TAction&& action) {
    try {
        action();
        return true;
    } catch (const std::exception& error) {
        dialogs.ShowMessageBox(EMessageKind::Error, error.what(), EButtons::Ok);
    }
    return false;
}

// Shows the wait cursor for as long as it lives.
class TWaitCursor {
  public:
    explicit TWaitCursor(IDialogs& dialogs) : Dialogs(dialogs) { Dialogs.SetWaitCursor(true); }
    TWaitCursor(const TWaitCursor&) = delete;
    TWaitCursor& operator=(const TWaitCursor&) = delete;
    ~TWaitCursor() { Dialogs.SetWaitCursor(false); }

  private:
    IDialogs& Dialogs;
};

} // namespace tidewell
