#include "sim/controller/Firmware.h"

#include "Installation.h"
#include "link/FirmwarePackage.h"
#include "link/FirmwareUpdateTexts.h"
#include "sim/nabto/SimulationFile.h"

#include <gmock/gmock.h>

#include <set>

namespace tidewell::test {

// The packages are whole, fit the simulated controllers and, together, take every road.
TEST(InstalledFirmware, PackagesAreWholeAndTakeEveryRoad) {
    const TInstallation installation;
    const TSimulation simulation =
        ParseSimulation(installation.Files.Read(installation.Directory / "nabto_config/simulation.ini"), "");
    std::set<ERoad> roads;
    for (const auto& [folder, model, controller] :
         {std::tuple{"aria450", "30021", 0U}, {"aria450_previous", "30021", 0U}, {"hub", "30011", 1U}}) {
        const auto directory = installation.Directory / "firmware" / folder;
        const TFirmwarePackage package = ReadFirmwarePackage(installation.Files, directory / "config.fwc");
        const TImageStore::TSetup& images = simulation.Controllers.at(controller).Service.value().Images;
        ASSERT_EQ(package.Files.size(), images.size()) << folder;
        EXPECT_TRUE(CheckFirmwarePackage(installation.Files, directory / "config.fwc", {}).Mistakes.empty());
        EXPECT_TRUE(FitsModel(package.Files.at(0).filename, model));
        for (std::size_t i = 0; i < package.Files.size(); ++i) {
            const TUpdateFile& file = package.Files[i];
            SCOPED_TRACE(directory / file.filename);
            const std::string bytes = installation.Files.Read(directory / file.filename);
            EXPECT_EQ(bytes.size(), file.filesize);
            EXPECT_EQ(Crc32(bytes), file.crc);
            EXPECT_TRUE(package.Sent(i));
            TImageStore store;
            store.Setup = images;
            const auto number = static_cast<std::int32_t>(i + 1);
            EXPECT_TRUE(store.Announce(number, file.filesize, file.crc));
            store.Append(number, bytes);
            EXPECT_EQ(store.VersionNumber(number), file.swversion);
            EXPECT_EQ(file.fileId, "VersionFName" + std::to_string(number));
            roads.insert(FirstRoad(file));
        }
    }
    EXPECT_THAT(roads, testing::UnorderedElementsAre(ERoad::Stream, ERoad::PreEraseAndStream, ERoad::RpcMain,
                                                     ERoad::RpcDisplay, ERoad::RpcTarget));
}

} // namespace tidewell::test
