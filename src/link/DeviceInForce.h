#pragma once

#include "core/LanguageTexts.h"

#include <functional>
#include <optional>
#include <string>

namespace tidewell {

class IDialogs;
class TLabel;
class TStatusBar;
class TUNabto;

// Words for a device that cannot be had. A text that is missing keeps the English one.
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
    // What it needs of the main form.
    class IHost {
      public:
        virtual ~IHost() = default;
        // Id or address that was linked to; empty if none was: then the driver's own device is in force.
        virtual std::string DeviceId() const = 0;
        virtual int InitLink() = 0; // the driver's init with that id
        virtual void AddEventLog(const std::string& line) = 0;
        virtual bool FormOpen() const = 0; // false once the main form is closed
    };
    struct TParts {
        IHost& Host;
        IDialogs& Dialogs;
        TUNabto& Nabto;
        TLabel& LblNabto;
        TStatusBar& StatusBar;
        const std::string& device; // of the driver
        const std::string& Domain;
        const bool& initialized;
    };
    explicit TDeviceInForce(const TParts& parts) : Parts(parts) {}

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

    const TParts Parts;
    bool Taking = false;
};

} // namespace tidewell
