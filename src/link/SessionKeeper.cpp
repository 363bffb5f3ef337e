#include "link/SessionKeeper.h"

#include "link/Nabto.h"

#include <utility>

namespace tidewell {

namespace {

constexpr int atOnce = 1; // ms, behind the request that told of the loss
constexpr int again = 10000;

} // namespace

TSessionKeeper::TSessionKeeper(TParts parts)
    : Parts(std::move(parts)), timerReopen(Parts.Timers.CreateTimer()) {
    timerReopen->SetHandler([this] { timerReopenTimer(); });
}

TSessionKeeper::~TSessionKeeper() {
    Parts.Nabto.OnSessionGone = nullptr;
}

void TSessionKeeper::Keep(const TCredentials& credentials) {
    Credentials = credentials;
    timerReopen->SetEnabled(false);
    Parts.Nabto.OnSessionGone = [this](TNabtoStatus status) { SessionGone(status); };
}

void TSessionKeeper::SessionGone(TNabtoStatus status) {
    GoneAgain = true;
    if (timerReopen->Enabled() || !Parts.FormOpen())
        return;
    Told = false;
    Parts.Tell(Parts.Texts.SessionLost + ": " + Parts.Nabto.StatusText(status));
    timerReopen->SetInterval(atOnce);
    timerReopen->SetEnabled(true);
}

void TSessionKeeper::timerReopenTimer() {
    timerReopen->SetEnabled(false);
    if (!Parts.FormOpen())
        return;
    timerReopen->SetInterval(again); // until it stands
    timerReopen->SetEnabled(true);
    TNabtoStatus status = Parts.Nabto.Reopen(Credentials.Username, Credentials.Password);
    const std::string device = Parts.Device;
    bool answered = false;
    if (status == NABTO_OK) {
        GoneAgain = false;
        answered = Parts.Nabto.ping(device);
        if (GoneAgain)
            status = NABTO_INVALID_SESSION;
    }
    if (status != NABTO_OK) {
        if (!std::exchange(Told, true))
            Parts.Tell(Parts.Texts.SessionNotBack + ": " + Parts.Nabto.StatusText(status));
        return;
    }
    timerReopen->SetEnabled(false);
    if (Parts.FormOpen())
        Parts.Tell(Parts.Texts.SessionBack + (answered ? "" : ": " + Parts.Texts.NoAnswer + ", " + device));
}

} // namespace tidewell
