#pragma once

#include "core/controls/Signal.h"
#include "core/ports/IWait.h"
#include "link/DeviceUse.h"

#include <cstddef>
#include <string>

namespace tidewell {

class ILogControl;
class IProgramState;
class TNabtoDevice;

// Orders a read-back snapshot of all values and waits for it: starts the log, serves events until two whole
// cycles of the same length are there, and stops the log. There is no time-out: with a dead link, or while
// the user has stopped the log, it waits until Cancel, or until the main form is closed.
class TReadBack {
  public:
    enum class EResult {
        Done,       // rows 0 and 1 are the snapshot
        Failed,     // the cycles differed three times or more
        NotStarted, // no link or no profile, of which the start of the log has told what there is to tell
        Ended,      // by Cancel, by the close of the main form, or because another device was chosen
    };
    // Of the three cycles, question by question.
    struct TProgress {
        int Position = 0;
        int Max = 0;
    };

    TReadBack(ILogControl& log, const IProgramState& program, IWait& wait, TNabtoDevice& device)
        : Log(log), Program(program), Wait(wait), Device(device) {}
    TReadBack(const TReadBack&) = delete;
    TReadBack& operator=(const TReadBack&) = delete;

    // Throws TError while Running, and what the start of the log throws.
    EResult Run();
    // For whoever has to take the device before a step of its own.
    TDeviceUse& Use() const;
    // Ends a wait; does nothing else.
    void Cancel() { Cancelled = true; }
    bool Running() const { return IsRunning; }
    // What is going on, for the user; empty while nothing is.
    std::string ProgressText() const;
    TProgress Progress() const;

    // Values of a cycle, each followed by "; ". Empty for a row that a failed or ended wait has not got.
    std::string SnapshotRow(std::size_t row) const;

    TSignal<> Changed; // Running, or the progress

  private:
    EResult WaitForSnapshot(const TDeviceUse::TAction& action);

    ILogControl& Log;
    const IProgramState& Program;
    IWait& Wait;
    TNabtoDevice& Device;
    bool IsRunning = false;
    bool IsWaiting = false; // the log has been started
    bool Cancelled = false;
};

} // namespace tidewell
