#include "Installation.h"
#include "link/FirmwarePackage.h"
#include "link/FirmwareUpdateTexts.h"
#include "sim/controller/Firmware.h"
#include "sim/nabto/SimulationFile.h"

namespace tidewell::test {

TEST(InstalledConfiguration, LanguageFilesHoldTheSameTextsInTheSameOrder) {
    const TIniFile english = InstalledIni("cfg/english.lng");
    const TIniFile german = InstalledIni("cfg/deutsch.lng");
    ASSERT_EQ(english.SectionNames(), german.SectionNames());
    for (const std::string& section : english.SectionNames()) {
        const TIniSection a = english.ReadSection(section);
        const TIniSection b = german.ReadSection(section);
        ASSERT_EQ(a.Count(), b.Count()) << section;
        for (std::size_t row = 0; row < a.Count(); ++row) {
            EXPECT_EQ(a.Rows()[row].Name, b.Rows()[row].Name) << section;
            EXPECT_EQ(a.Rows()[row].Value.empty(), b.Rows()[row].Value.empty()) << a.Rows()[row].Name;
        }
    }
}

// Every unit code of a profile has its text, and every mode number a name that is reached.
TEST(InstalledConfiguration, UnitTextsCoverTheProfiles) {
    for (const std::string language : {"english", "deutsch"}) {
        const TIniFile texts = InstalledIni("cfg/" + language + ".lng");
        const TIniSection dataUnits = texts.ReadSection("DataUnits");
        for (const std::string profile : {"Aria450_", "Loft120_"})
            for (const TListRow& row : TInstalledProfile(profile + language + ".pls").Rows) {
                const std::string& code = row.Fields.at(9);
                EXPECT_TRUE(code == "0" || !dataUnits.Value(code).empty()) << row.Name() << " code " << code;
                std::string text;
                UnitText(row.Fields.at(4), code, dataUnits, text, texts.ReadSection("UserUnits"));
                EXPECT_TRUE((code != "7" && code != "10") || text != row.Fields.at(4))
                    << row.Name() << " has no text for its largest value";
            }
    }
}

// The packages are whole, fit the simulated controllers and, together, take every road.
TEST(InstalledFirmware, PackagesAreWholeAndTakeEveryRoad) {
    const TSimulation simulation = ParseSimulation(Installation().Read(TWorld::Simulation), "");
    std::set<ERoad> roads;
    for (const auto& [folder, model, controller] :
         {std::tuple{"aria450", "30021", 0U}, {"aria450_previous", "30021", 0U}, {"hub", "30011", 1U}}) {
        const auto directory = std::filesystem::path("/t/firmware") / folder;
        const auto [package, mistakes] = CheckFirmwarePackage(Installation(), directory / "config.fwc", {});
        TImageStore store;
        store.Setup = simulation.Controllers.at(controller).Service.value().Images;
        EXPECT_THAT(mistakes, testing::IsEmpty());
        ASSERT_EQ(package.Files.size(), store.Setup.size()) << folder;
        EXPECT_TRUE(FitsModel(package.Files.at(0).filename, model));
        for (std::int32_t number = 1; number <= static_cast<std::int32_t>(package.Files.size()); ++number) {
            const TUpdateFile& file = package.Files[static_cast<std::size_t>(number) - 1];
            EXPECT_TRUE(store.Announce(number, file.filesize, file.crc)) << file.filename;
            store.Append(number, Installation().Read(directory / file.filename));
            EXPECT_TRUE(store.Whole(number)) << file.filename;
            EXPECT_EQ(store.VersionNumber(number), file.swversion);
            EXPECT_EQ(file.fileId, "VersionFName" + std::to_string(number));
            roads.insert(FirstRoad(file));
        }
    }
    EXPECT_EQ(roads.size(), 5U);
}

} // namespace tidewell::test
