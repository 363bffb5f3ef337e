#pragma once

#include "InstallationDirectory.h"
#include "core/DiskFiles.h"
#include "core/IniFile.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tidewell::test {

// Fields as the program splits them, behind the last ";" too.
inline std::vector<std::string> Fields(const std::string& row) {
    const std::vector<std::string_view> pieces = SplitStrictly(row);
    return {pieces.begin(), pieces.end()};
}

// The example installation as the program finds it, copied into memory so that no test changes it.
struct TInstallation {
    TInstallation() {
        const std::filesystem::path source = InstallationDirectory;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(source))
            if (entry.is_regular_file())
                Files.Put(Directory / entry.path().lexically_relative(source),
                          TDiskFiles().Read(entry.path()));
    }
    TIniFile Ini(const std::string& name) const { return TIniFile(Files, Directory / name); }

    TMemoryFiles Files;
    const std::filesystem::path Directory = "/tidewell";
};

// One list row of a profile, with the read question that it belongs to.
struct TListRow {
    std::vector<std::string> Fields; // field 0 is the row's number
    bool IsSetpoint;                 // one that setpoint files hold

    std::string Name() const { return Fields.at(1); }
    std::int32_t Integer(std::size_t field) const { return ToInteger(Fields.at(field)); }
    // From a cycle's values, which have no head in front.
    const std::string& ValueIn(const std::vector<std::string>& cycle) const {
        return cycle.at(static_cast<std::size_t>(Integer(8) - 3));
    }
};

// A profile of the installation, opened by the classes that the program opens it with.
struct TInstalledProfile {
    // The name has no directory.
    TInstalledProfile(TInstallation& installation, const std::string& name)
        : Profile(installation.Files), Panel(installation.Files, Time),
          Path(installation.Directory / "profile" / name) {
        Profile.Open(Path);
        Panel.SetMpanelWorkingpath(installation.Directory);
        Panel.SetMpanelPLSpath(Path);
        Panel.InitQuestionStringlistStructures();
        for (const TMDevice& device : Panel.DeviceList)
            for (std::size_t question = 0; question < device.ReadList.size(); ++question)
                for (std::size_t row = 0; row < device.ReadListText.at(question).RowCount(); ++row)
                    Rows.push_back({device.ReadListText.at(question).Row(row),
                                    GetRowField(device.ReadList[question], 1) == "3"});
    }

    TVirtualTime Time;
    TProfile Profile;
    TModbusPanel Panel;
    std::filesystem::path Path;
    std::vector<TListRow> Rows; // of all devices
};

} // namespace tidewell::test
