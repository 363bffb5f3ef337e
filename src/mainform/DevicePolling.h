#pragma once

#include "link/NabtoDevice.h"
#include "logging/LiveLog.h"

namespace tidewell {

// The poll cycle of the driver, as the live log is given it.
class TDevicePolling : public TLiveLog::IPolling {
  public:
    explicit TDevicePolling(TNabtoDevice& device) : Device(device) {}
    bool Link() override {
        return !Device.isEnabled() || (Device.InForce.Init() == 0 && Device.InForce.Identify());
    }
    void Start() override { Device.startLog(); }
    void Stop() override { Device.stopLog(); }
    bool Running() const override { return Device.Cycle.Dologging; }

  private:
    TNabtoDevice& Device;
};

} // namespace tidewell
