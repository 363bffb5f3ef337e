#include "link/DeviceInForce.h"

#include "core/AtExit.h"
#include "core/Numbers.h"
#include "core/controls/Simple.h"
#include "core/controls/StatusBar.h"
#include "core/ports/IDialogs.h"
#include "link/Nabto.h"

namespace tidewell {

namespace {
constexpr int noPermission = -3;
constexpr int remoteInOfflineSession = 1030;
constexpr std::size_t devicePanel = 1;
} // namespace

std::string InitFailureText(int result, const std::string& device, const std::string& otherwise) {
    if (result == noPermission)
        return "You do not have permission to access this device \"" + device + "\"";
    if (result == remoteInOfflineSession)
        return "You cannot connect to the remote device \"" + device + "\" during an offline session.";
    return otherwise;
}

std::string TDeviceInForce::AddressOf(const std::string& deviceid) const {
    const bool whole =
        Parts.Domain.empty() || LowerCase(deviceid).find(LowerCase(Parts.Domain)) != std::string::npos;
    return whole ? deviceid : deviceid + "." + Parts.Domain;
}

std::optional<std::string> TDeviceInForce::Take() {
    if (Taking)
        return std::nullopt;
    const std::string linked = Parts.Host.DeviceId();
    if ((linked.empty() || SameText(Parts.device, AddressOf(linked))) &&
        !Parts.Nabto.MayDescribeAnother(Parts.device))
        return Parts.device;
    const TFlagged taking(Taking);
    const int result = Parts.Host.InitLink();
    if (result != 0) {
        Refuse(InitFailureText(result, Parts.device,
                               "An error occurred when initializing communication to the device."));
        return std::nullopt;
    }
    ShowDevice();
    return Ping() ? std::optional(Parts.device) : std::nullopt;
}

bool TDeviceInForce::Identify() {
    if (Taking)
        return false;
    if (!Parts.Nabto.MayDescribeAnother(Parts.device) || SameText(Parts.Nabto.PingedLast(), Parts.device))
        return true;
    const TFlagged taking(Taking);
    return Ping();
}

bool TDeviceInForce::Ping() {
    const std::string asked = Parts.device;
    const bool answered = Parts.Nabto.ping(asked);
    if (!Parts.Host.FormOpen())
        return false;
    if (Parts.device != asked)
        TellLost(asked);
    else if (!answered)
        Refuse(FillText(Texts.NoAnswer, {asked}));
    return answered && Parts.device == asked;
}

void TDeviceInForce::ShowDevice() const {
    Parts.StatusBar.SetText(devicePanel, "Current DeviceID : " + Parts.device);
    if (Parts.initialized) // else the label tells why not
        Parts.LblNabto.SetCaption("ID : " + Parts.device);
}

void TDeviceInForce::Refuse(const std::string& reason) const {
    Parts.Host.AddEventLog(FillText(Texts.NotBegun, {reason}));
    Parts.Dialogs.ShowMessageBox(EMessageKind::Warning, reason, EButtons::Ok);
}

void TDeviceInForce::TellLost(const std::string& lost) const {
    Parts.Host.AddEventLog(FillText(Texts.Lost, {lost}));
}

} // namespace tidewell
