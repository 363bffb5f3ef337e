#pragma once

#include "core/Errors.h"

#include <cstdint>
#include <functional>
#include <string>

namespace tidewell {

class IWait;
class TUNabto;
class TUpdateStatus;

// The program was closed in the middle of an update.
class EProgramClosed : public TError {
  public:
    EProgramClosed() : TError("The program was closed during the update") {}
};

// The waits and the requests of an update. They keep the elapsed time on the screen, and every one of them
// throws EProgramClosed as soon as the program is closed, which so ends any loop of an update.
class TUpdateRun {
  public:
    // programOpen: false once the program is closed. device: its address, read at each request.
    TUpdateRun(IWait& wait, TUNabto& nabto, TUpdateStatus& status, const std::string& device,
               std::function<bool()> programOpen);

    bool ProgramOpen() const { return IsOpen(); }
    void Check() const; // throws EProgramClosed
    void Sleep(int milliseconds);
    void ProcessMessages();
    std::string SendQuery(const std::string& request, const std::string& data);
    std::int32_t Status(const std::string& request, const std::string& data); // of the reply
    bool Ping();

  private:
    IWait& Wait;
    TUNabto& Nabto;
    TUpdateStatus& Screen;
    const std::string& Device;
    std::function<bool()> IsOpen;
};

} // namespace tidewell
