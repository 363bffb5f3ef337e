#pragma once

namespace tidewell {

// Whether the program goes on. Handlers run inside waits of other handlers, so whoever has waited asks before
// the next step.
class IProgramState {
  public:
    virtual ~IProgramState() = default;
    // False once the main form is closed or the program has been asked to end: then nothing is asked or begun
    // any more.
    virtual bool IsOpen() const = 0;
};

// Starts and stops the log.
class ILogControl {
  public:
    virtual ~ILogControl() = default;
    // With questionEnable asks whether to clear the old log; without, clearData says so, and also whether the
    // start is reported.
    virtual void StartLog(bool questionEnable, bool clearData) = 0;
    virtual void StopLog() = 0;
};

} // namespace tidewell
