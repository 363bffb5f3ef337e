#pragma once

#include "core/controls/ControlLock.h"

#include <utility>
#include <vector>

namespace tidewell {

// Who has what only one action at a time may have. The event loop can run within an action, so that another
// one can be asked for: it has to hold the use first, and to do nothing if it cannot. The controls that ask
// for such actions are disabled meanwhile.
class TExclusiveUse {
  public:
    // The controls must live as long as anyone holds the use.
    void AddControls(const std::vector<TControl*>& controls) {
        Controls.insert(Controls.end(), controls.begin(), controls.end());
    }
    bool Taken() const { return IsTaken; }

    class THold {
      public:
        explicit THold(TExclusiveUse& use) : Use(use), Mine(!std::exchange(use.IsTaken, true)) {
            if (Mine)
                Use.Lock.Lock(Use.Controls);
        }
        ~THold() {
            if (!Mine)
                return;
            Use.IsTaken = false;
            Use.Lock.Release();
        }
        THold(const THold&) = delete;
        THold& operator=(const THold&) = delete;
        explicit operator bool() const { return Mine; }

      private:
        TExclusiveUse& Use;
        const bool Mine;
    };

  private:
    std::vector<TControl*> Controls;
    TControlLock Lock;
    bool IsTaken = false;
};

} // namespace tidewell
