#include "rig/UpdateClaim.h"

#include "core/DeviceId.h"
#include "rig/World.h"
#include "sim/controller/Firmware.h"

namespace tidewell::test {

std::string FalseUpdateClaim(TWorld& world) {
    const TNabtoDevice& driver = world.Program->NabtoDevice;
    const TUpdateStatus& status = driver.UpdateStatus;
    const bool claimed = status.LabUpdatePhase.Caption() == std::string(status.Texts.Succeeded);
    if (status.Running() || !claimed || !world.Files.FileExists(driver.CurrentUpdateSWFile))
        return {};
    const auto package = ReadFirmwarePackage(world.Files, driver.CurrentUpdateSWFile);
    const auto& controller = *world.Nabto.FindController(DeviceIdOf(driver.device));
    for (std::size_t i = 0; i < package.Files.size(); ++i) {
        const TUpdateFile& file = package.Files[i];
        const bool tested = package.Verified(i) || world.Program->Extensions.ServiceStrict;
        if (!package.Sent(i) || !tested || FirstRoad(file) == ERoad::None)
            continue;
        const auto held = controller.Service.Firmware().Bytes(static_cast<std::int32_t>(i + 1));
        if (held.size() != file.filesize || Crc32(held) != file.crc)
            return file.filename + " was told as sent, and is not held";
    }
    return {};
}

} // namespace tidewell::test
