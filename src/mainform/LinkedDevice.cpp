#include "mainform/LinkedDevice.h"

#include "core/Numbers.h"
#include "link/NabtoDevice.h"

namespace tidewell {

int TLinkedDevice::Init() {
    if (!Id().empty())
        Device.IsLocalDevice = IsLocal; // and not what the setup dialog has found of another one
    return Device.init(Id(), Client());
}

void TLinkedDevice::LinkedTo(const std::string& device) {
    const std::string& linked = device.empty() ? Device.device : device;
    const bool other = !SameText(Device.InForce.AddressOf(Id()), Device.InForce.AddressOf(linked));
    if (other || !device.empty())
        Parameters.devid = linked;
    IsLocal = Device.IsLocalDevice;
    if (other)
        OnOther();
}

} // namespace tidewell
