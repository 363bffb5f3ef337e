#pragma once

namespace tidewell {

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
