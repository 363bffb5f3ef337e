#include "setpoints/ReadBack.h"

#include "link/NabtoDevice.h"

namespace tidewell {

TReadBack::EResult TReadBack::Run() {
    Host.StopLog();
    return EResult::Ended;
}
std::string TReadBack::Progress() const {
    return {};
}
const TReadBackSnapshot& TReadBack::Snapshot() const {
    return Device.ReadBack;
}

} // namespace tidewell
