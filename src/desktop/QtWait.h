#pragma once

#include "core/ports/IWait.h"
#include "desktop/DeliveryHold.h"

namespace tidewell {

class TQtWait : public IWait {
  public:
    explicit TQtWait(TDeliveryHold& hold) : Hold(hold) {}
    void Sleep(int milliseconds) override;
    void ProcessMessages() override;

  private:
    TDeliveryHold& Hold;
};

} // namespace tidewell
