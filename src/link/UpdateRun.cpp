#include "link/UpdateRun.h"

#include "core/Extensions.h"
#include "core/ports/IWait.h"
#include "link/Nabto.h"
#include "link/UpdateStatus.h"

#include <algorithm>
#include <utility>

namespace tidewell {

namespace {
constexpr int slice = 500; // ms; the elapsed time goes on during a long wait
} // namespace

TUpdateRun::TUpdateRun(IWait& wait, TUNabto& nabto, TUpdateStatus& status, const std::string& device,
                       std::function<bool()> programOpen, const TExtensions& extensions)
    : Wait(wait), Nabto(nabto), Screen(status), Device(device), IsOpen(std::move(programOpen)),
      Extensions(extensions) {}

void TUpdateRun::Check() const {
    if (!IsOpen())
        throw EProgramClosed();
    if (IsStopped)
        throw EUpdateEnded(Screen.Texts.StoppedByUser);
}

// The text of a refusal then tells of this exchange alone.
void TUpdateRun::Ask() {
    Check();
    if (Extensions.ServiceStrict)
        Nabto.errormessage.clear();
}

void TUpdateRun::Sleep(int milliseconds) {
    Check();
    for (int left = std::max(milliseconds, 0); left > 0; left -= slice) {
        Wait.Sleep(std::min(left, slice));
        Screen.Tick();
    }
}

void TUpdateRun::ProcessMessages() {
    Wait.ProcessMessages();
    Screen.Tick();
    Check();
}

std::string TUpdateRun::SendQuery(const std::string& request, const std::string& data) {
    Ask();
    std::string reply = Nabto.SendQuery(Device, request, data);
    Check();
    return reply;
}

std::int32_t TUpdateRun::Status(const std::string& request, const std::string& data) {
    return Nabto.getResponseStatus(SendQuery(request, data));
}

bool TUpdateRun::Ping() {
    Ask();
    const bool answered = Nabto.ping(Device);
    Check();
    return answered;
}

} // namespace tidewell
