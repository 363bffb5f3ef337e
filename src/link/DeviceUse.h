#pragma once

#include "core/controls/ExclusiveUse.h"

#include <cstddef>
#include <optional>
#include <string>

namespace tidewell {

// Whom actions on the user's behalf go to, and who of them has the device for itself. Whatever writes to the
// device, or reads it outside the poll cycle, does so below a TAction: its making brings the driver to the
// device in force.
class TDeviceUse : public TExclusiveUse {
  public:
    // Whether an action that has the device for itself is under way, so that the driver must not get another.
    bool Fixed() const { return IsFixed; }
    // The driver has got another device, with which all actions that are under way have lost theirs.
    void DeviceChanged() { ++Changes; }

    // To bring the driver to the device in force, and to set its address; nothing when it cannot be had, of
    // which the user has been told.
    TEvent<std::optional<std::string>&> OnTake;
    // An action has lost this device, of which the user is to be told. Must not throw.
    TEvent<const std::string&> OnLost;

    class THold;

    // An action on the user's behalf, to be made before its first step, which is left out if it is false.
    // Actions may stand below one another; only the outermost has anything to take.
    class TAction {
      public:
        explicit TAction(TDeviceUse& use) : TAction(use, true) {}
        ~TAction() {
            if (Begun && --Use.Depth == 0 && Address && !Kept())
                Use.OnLost(*Address);
        }
        TAction(const TAction&) = delete;
        TAction& operator=(const TAction&) = delete;
        explicit operator bool() const { return Address.has_value(); }
        // What the action goes to.
        const std::string& Device() const { return Address.value(); }
        // False once the driver has got another device, which ends the action.
        bool Kept() const { return Address && Changes == Use.Changes; }

      private:
        friend THold;
        // One that is not begun is false and counts for nothing.
        TAction(TDeviceUse& use, bool begun) : Use(use), Begun(begun) {
            if (!Begun)
                return;
            Address.emplace();
            Use.OnTake(Address);
            Changes = Use.Changes;
            ++Use.Depth;
        }

        TDeviceUse& Use;
        const bool Begun;
        std::optional<std::string> Address;
        std::size_t Changes = 0;
    };

    // An action that has the device for itself: the device has one stream.
    class THold {
      public:
        explicit THold(TDeviceUse& use) : Use(use), Lock(use), Action(use, static_cast<bool>(Lock)) {
            if (Lock)
                Use.IsFixed = static_cast<bool>(Action);
        }
        ~THold() {
            if (Lock)
                Use.IsFixed = false;
        }
        THold(const THold&) = delete;
        THold& operator=(const THold&) = delete;
        explicit operator bool() const { return static_cast<bool>(Action); }

      private:
        TDeviceUse& Use;
        TExclusiveUse::THold Lock;
        TAction Action;
    };

  private:
    bool IsFixed = false;
    std::size_t Changes = 0; // of the driver's device
    std::size_t Depth = 0;   // actions below one another
};

} // namespace tidewell
