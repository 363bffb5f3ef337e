#include "link/DeviceInForce.h"

#include "core/AtExit.h"
#include "core/Numbers.h"
#include "core/ProgramState.h"
#include "core/controls/Lists.h"
#include "core/ports/IDialogs.h"
#include "link/DeviceServices.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"

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
        Device.Domain.empty() || LowerCase(deviceid).find(LowerCase(Device.Domain)) != std::string::npos;
    return whole ? deviceid : deviceid + "." + Device.Domain;
}

const std::string& TDeviceInForce::Linked() const {
    return Services.devid;
}

int TDeviceInForce::Init() {
    if (!Linked().empty())
        Device.IsLocalDevice = IsLocal; // and not what the setup dialog has found of another one
    return Device.init(Linked(), Services.ApiClient);
}

void TDeviceInForce::LinkedTo(const std::string& address) {
    const std::string linked = address.empty() ? Services.device : address;
    const bool other = !SameText(AddressOf(Linked()), AddressOf(linked));
    if (other || !address.empty())
        Services.devid = linked;
    IsLocal = Device.IsLocalDevice;
    if (other)
        OnOther();
}

std::optional<std::string> TDeviceInForce::Take() {
    if (Taking)
        return std::nullopt;
    const std::string& linked = Linked();
    if ((linked.empty() || SameText(Services.device, AddressOf(linked))) &&
        !Services.Nabto.MayDescribeAnother(Services.device))
        return Services.device;
    const TFlagged taking(Taking);
    const int result = Init();
    if (result != 0) {
        Refuse(InitFailureText(result, Services.device,
                               "An error occurred when initializing communication to the device."));
        return std::nullopt;
    }
    ShowDevice();
    return Ping() ? std::optional(Services.device) : std::nullopt;
}

bool TDeviceInForce::Identify() {
    if (Taking)
        return false;
    if (!Services.Nabto.MayDescribeAnother(Services.device) ||
        SameText(Services.Nabto.PingedLast(), Services.device))
        return true;
    const TFlagged taking(Taking);
    return Ping();
}

bool TDeviceInForce::Ping() {
    const std::string asked = Services.device;
    const bool answered = Services.Nabto.ping(asked);
    if (!Services.Program.IsOpen())
        return false;
    if (Services.device != asked)
        TellLost(asked);
    else if (!answered)
        Refuse(FillText(Texts.NoAnswer, {asked}));
    return answered && Services.device == asked;
}

void TDeviceInForce::ShowDevice() const {
    Services.StatusBar.SetText(devicePanel, "Current DeviceID : " + Services.device);
    if (Device.initialized) // else the label tells why not
        Device.LblNabto.SetCaption("ID : " + Services.device);
}

void TDeviceInForce::Refuse(const std::string& reason) const {
    Services.MemoEventLog.Add(FillText(Texts.NotBegun, {reason}));
    Services.Dialogs.ShowMessageBox(EMessageKind::Warning, reason, EButtons::Ok);
}

void TDeviceInForce::TellLost(const std::string& lost) const {
    Services.MemoEventLog.Add(FillText(Texts.Lost, {lost}));
}

} // namespace tidewell
