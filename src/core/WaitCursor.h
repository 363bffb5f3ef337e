#pragma once

#include "core/ports/IDialogs.h"

namespace tidewell {

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
