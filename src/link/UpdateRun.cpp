#include "link/UpdateRun.h"

#include "core/Extensions.h"
#include "core/ProgramState.h"
#include "core/ports/IWait.h"
#include "link/DeviceServices.h"
#include "link/Nabto.h"
#include "link/UpdateStatus.h"

#include <algorithm>

namespace tidewell {

namespace {
constexpr int slice = 500; // ms; the elapsed time goes on during a long wait
} // namespace

void TUpdateRun::Check() const {
    if (!Services.Program.IsOpen())
        throw EProgramClosed();
    if (IsStopped)
        throw EUpdateEnded(UpdateStatus.Texts.StoppedByUser);
}

// The text of a refusal then tells of this exchange alone.
void TUpdateRun::Ask() {
    Check();
    if (Services.Extensions.ServiceStrict)
        Services.Nabto.errormessage.clear();
}

void TUpdateRun::Sleep(int milliseconds) {
    Check();
    for (int left = std::max(milliseconds, 0); left > 0; left -= slice) {
        Services.Wait.Sleep(std::min(left, slice));
        UpdateStatus.Tick();
    }
}

void TUpdateRun::ProcessMessages() {
    Services.Wait.ProcessMessages();
    UpdateStatus.Tick();
    Check();
}

std::string TUpdateRun::SendQuery(const std::string& request, const std::string& data) {
    Ask();
    std::string reply = Services.Nabto.SendQuery(Services.device, request, data);
    Check();
    return reply;
}

std::int32_t TUpdateRun::Status(const std::string& request, const std::string& data) {
    return Services.Nabto.getResponseStatus(SendQuery(request, data));
}

bool TUpdateRun::Ping() {
    Ask();
    const bool answered = Services.Nabto.ping(Services.device);
    Check();
    return answered;
}

} // namespace tidewell
