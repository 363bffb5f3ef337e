#pragma once

#include "core/LanguageTexts.h"
#include "core/controls/Control.h"

#include <optional>
#include <string>

namespace tidewell {

class TNabtoDevice;
struct TDeviceServices;

// Words for a device that cannot be had.
struct TDeviceInForceTexts : TOwnTexts {
    TDeviceInForceTexts() : TOwnTexts("DeviceInForce") {}
    TOwnText NoAnswer{*this, "NoAnswer", "The device %1 does not answer. Nothing was sent to it."}; // address
    TOwnText NotBegun{*this, "NotBegun", "Nothing was sent: %1"};                                   // reason
    // Address.
    TOwnText Lost{*this, "Lost", "The device %1 was left in the middle of an action, which has ended"};
};

// What is shown when the driver's init fails with that result; otherwise is the text for any other failure.
std::string InitFailureText(int result, const std::string& device, const std::string& otherwise);

// The device in force is the one that the user has linked to. The setup dialog can leave the driver with
// another one, and with the facts and the interface definition of another one.
class TDeviceInForce {
  public:
    TDeviceInForce(TNabtoDevice& device, const TDeviceServices& services)
        : Device(device), Services(services) {}

    // Id or address that was linked to; empty if none was: then the driver's own device is in force.
    const std::string& Linked() const;
    // The driver's init with it.
    int Init();
    // The setup dialog has linked to that device; empty for the one that the driver has.
    void LinkedTo(const std::string& address);
    TEvent<> OnOther; // another device than before was linked to

    // The driver's address for an id or address.
    std::string AddressOf(const std::string& deviceid) const;
    // Brings driver, label, facts and interface definition to the device in force, with an init and a ping
    // if it has to; gives its address. Nothing for a device that cannot be had, of which the user has been
    // told, and while this runs already: the event loop runs during the ping.
    std::optional<std::string> Take();
    // For a log that starts, whose init has been: the ping alone, if another device was pinged last.
    bool Identify();
    void TellLost(const std::string& lost) const;

    TDeviceInForceTexts Texts;

  private:
    bool Ping();
    void Refuse(const std::string& reason) const;
    void ShowDevice() const;

    TNabtoDevice& Device;
    const TDeviceServices& Services;
    bool IsLocal = false; // it was found on the local network when it was linked to
    bool Taking = false;
};

} // namespace tidewell
