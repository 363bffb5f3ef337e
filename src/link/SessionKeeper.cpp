#include "link/SessionKeeper.h"

#include "core/ProgramState.h"
#include "core/controls/Lists.h"
#include "link/DeviceServices.h"
#include "link/Nabto.h"

#include <utility>

namespace tidewell {

namespace {

constexpr int atOnce = 1; // ms, behind the request that told of the loss
constexpr int again = 10000;

} // namespace

TSessionKeeper::TSessionKeeper(const TDeviceServices& services, const TLinkTexts& texts)
    : Services(services), Texts(texts), timerReopen(services.Timers.CreateTimer()) {
    timerReopen->SetHandler([this] { timerReopenTimer(); });
}

TSessionKeeper::~TSessionKeeper() {
    Services.Nabto.OnSessionGone = nullptr;
}

void TSessionKeeper::Keep(const TCredentials& credentials) {
    Credentials = credentials;
    timerReopen->SetEnabled(false);
    Services.Nabto.OnSessionGone = [this](TNabtoStatus status) { SessionGone(status); };
}

void TSessionKeeper::SessionGone(TNabtoStatus status) {
    GoneAgain = true;
    if (timerReopen->Enabled() || !Services.Program.IsOpen())
        return;
    Told = false;
    Services.MemoEventLog.Add(Texts.SessionLost + ": " + Services.Nabto.StatusText(status));
    timerReopen->SetInterval(atOnce);
    timerReopen->SetEnabled(true);
}

void TSessionKeeper::timerReopenTimer() {
    timerReopen->SetEnabled(false);
    if (!Services.Program.IsOpen())
        return;
    timerReopen->SetInterval(again); // until it stands
    timerReopen->SetEnabled(true);
    TNabtoStatus status = Services.Nabto.Reopen(Credentials.Username, Credentials.Password);
    const std::string device = Services.device;
    bool answered = false;
    if (status == NABTO_OK) {
        GoneAgain = false;
        answered = Services.Nabto.ping(device);
        if (GoneAgain)
            status = NABTO_INVALID_SESSION;
    }
    if (status != NABTO_OK) {
        if (!std::exchange(Told, true))
            Services.MemoEventLog.Add(Texts.SessionNotBack + ": " + Services.Nabto.StatusText(status));
        return;
    }
    timerReopen->SetEnabled(false);
    if (Services.Program.IsOpen())
        Services.MemoEventLog.Add(Texts.SessionBack +
                                  (answered ? "" : ": " + Texts.NoAnswer + ", " + device));
}

} // namespace tidewell
