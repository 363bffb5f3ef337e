#pragma once

#include "core/controls/Control.h"

#include <span>
#include <vector>

namespace tidewell {

// Disables controls for a while. What was disabled before stays so at the release.
class TControlLock {
  public:
    // Adds to what is locked. The controls must outlive the lock.
    void Lock(std::span<TControl* const> controls) {
        for (TControl* control : controls)
            if (control->Enabled()) {
                control->SetEnabled(false);
                Locked.push_back(control);
            }
    }
    void Release() {
        for (TControl* control : Locked)
            control->SetEnabled(true);
        Locked.clear();
    }

  private:
    std::vector<TControl*> Locked;
};

} // namespace tidewell
