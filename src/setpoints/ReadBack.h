#pragma once

#include "core/controls/Signal.h"
#include "core/ports/IWait.h"

#include <string>

namespace tidewell {

class TNabtoDevice;
struct TReadBackSnapshot;

// Orders a read-back snapshot of all values and waits for it: starts the log, serves events until two whole
// cycles of the same length are there, and stops the log. There is no time-out: with a dead link it waits
// until Cancel, or until the main form is closed.
class TReadBack {
  public:
    // What it needs of the main form.
    class IHost {
      public:
        virtual ~IHost() = default;
        virtual void StartLog(bool questionEnable, bool clearData) = 0;
        virtual void StopLog() = 0;
        virtual bool FormOpen() const = 0; // false once the main form is closed
    };
    enum class EResult {
        Done,   // row 0 and row 1 of SetDatapointList are the snapshot
        Failed, // the cycles differed three times or more
        Ended,  // by Cancel, or by the close of the main form
    };

    // The device may be made later.
    TReadBack(IHost& host, IWait& wait, TNabtoDevice& device) : Host(host), Wait(wait), Device(device) {}
    TReadBack(const TReadBack&) = delete;
    TReadBack& operator=(const TReadBack&) = delete;

    // Must not be called while Running. Throws what the start of the log throws.
    EResult Run();
    // Ends a wait; does nothing else.
    void Cancel() { Cancelled = true; }
    bool Running() const { return IsRunning; }
    // What is going on, for the user: "waiting for a cycle to end, ..."; changes with each cycle.
    std::string Progress() const;

    const TReadBackSnapshot& Snapshot() const;

    TSignal<> Changed; // Running or Progress

  private:
    IHost& Host;
    IWait& Wait;
    TNabtoDevice& Device;
    bool IsRunning = false;
    bool Cancelled = false;
};

} // namespace tidewell
