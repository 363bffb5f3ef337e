#pragma once

#include "core/controls/Control.h"
#include "mainform/CommandLine.h"

#include <functional>
#include <string>
#include <utility>

namespace tidewell {

class TApiClient;
class TNabtoDevice;

// The device that was linked to, by the command line or in the setup dialog: its id is that of the command
// line's parameters.
class TLinkedDevice {
  public:
    TLinkedDevice(TCommandLineParameters& parameters, TNabtoDevice& device,
                  std::function<TApiClient&()> client)
        : Parameters(parameters), Device(device), Client(std::move(client)) {}

    const std::string& Id() const { return Parameters.devid; }
    // The driver's init with it.
    int Init();
    // The setup dialog has linked to that device; empty for the one that the driver has.
    void LinkedTo(const std::string& device);

    TEvent<> OnOther; // another device than before was linked to

  private:
    TCommandLineParameters& Parameters;
    TNabtoDevice& Device;
    std::function<TApiClient&()> Client;
    bool IsLocal = false; // it was found on the local network when it was linked to
};

} // namespace tidewell
