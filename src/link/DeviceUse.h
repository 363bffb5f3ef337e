#pragma once

#include "core/controls/ControlLock.h"

#include <utility>
#include <vector>

namespace tidewell {

// Who has the device for an action of more than one exchange. The device has one stream, and the event loop
// runs between the exchanges, so that another action can be asked for: it has to hold the use first, and to
// do nothing if it cannot. The controls that ask for such actions are disabled meanwhile.
class TDeviceUse {
  public:
    // The controls must live as long as anyone holds the use.
    void AddControls(const std::vector<TControl*>& controls) {
        Controls.insert(Controls.end(), controls.begin(), controls.end());
    }
    bool Taken() const { return IsTaken; }

    class THold {
      public:
        explicit THold(TDeviceUse& use) : Use(use), Mine(!std::exchange(use.IsTaken, true)) {
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
        TDeviceUse& Use;
        const bool Mine;
    };

  private:
    std::vector<TControl*> Controls;
    TControlLock Lock;
    bool IsTaken = false;
};

} // namespace tidewell
