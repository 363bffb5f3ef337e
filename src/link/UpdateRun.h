#pragma once

#include "core/Errors.h"

#include <cstdint>
#include <string>

namespace tidewell {

class TUpdateStatus;
struct TDeviceServices;

// Ends an update from any depth; its text is the last line of the log.
class EUpdateEnded : public TError {
  public:
    using TError::TError;
};

// The program was closed in the middle of an update.
class EProgramClosed : public EUpdateEnded {
  public:
    EProgramClosed() : EUpdateEnded("The program was closed during the update") {}
};

// The waits and the requests of an update. They keep the elapsed time on the screen, and every one of them
// throws EUpdateEnded as soon as the program is closed or the user has stopped the run, which so ends any
// loop of an update.
class TUpdateRun {
  public:
    TUpdateRun(const TDeviceServices& services, TUpdateStatus& status)
        : Services(services), UpdateStatus(status) {}

    void Stop() { IsStopped = true; } // of the run under way
    void Reset() { IsStopped = false; }
    bool Stopped() const { return IsStopped; }
    void Check() const; // throws EUpdateEnded
    void Sleep(int milliseconds);
    void ProcessMessages();
    std::string SendQuery(const std::string& request, const std::string& data);
    std::int32_t Status(const std::string& request, const std::string& data); // of the reply
    bool Ping();

  private:
    void Ask(); // before each exchange

    const TDeviceServices& Services;
    TUpdateStatus& UpdateStatus;
    bool IsStopped = false;
};

} // namespace tidewell
