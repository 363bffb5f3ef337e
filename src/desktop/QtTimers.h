#pragma once

#include "core/ports/IDialogs.h"
#include "core/ports/ITimers.h"
#include "desktop/DeliveryHold.h"

namespace tidewell {

// Timers of the event loop. Ticks that fall due while deliveries are held come as one, afterwards.
class TQtTimers : public ITimers {
  public:
    TQtTimers(TDeliveryHold& hold, IDialogs& dialogs) : Hold(hold), Dialogs(dialogs) {}
    std::unique_ptr<ITimer> CreateTimer() override;

  private:
    TDeliveryHold& Hold;
    IDialogs& Dialogs;
};

} // namespace tidewell
