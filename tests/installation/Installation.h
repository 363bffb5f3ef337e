#pragma once

#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "rig/World.h"

namespace tidewell::test {

// Fields as the program splits them, behind the last ";" too.
inline std::vector<std::string> Fields(const std::string& row) {
    const std::vector<std::string_view> pieces = SplitStrictly(row);
    return {pieces.begin(), pieces.end()};
}

inline TIniFile InstalledIni(const std::string& name) {
    return TIniFile(Installation(), "/t/" + name);
}

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
    explicit TInstalledProfile(const std::string& name) : Path("/t/profile/" + name) {
        Profile.Open(Path);
        Panel.SetMpanelWorkingpath("/t");
        Panel.SetMpanelPLSpath(Path);
        Panel.InitQuestionStringlistStructures();
        for (const TMDevice& device : Panel.DeviceList)
            for (std::size_t question = 0; question < device.ReadList.size(); ++question)
                for (std::size_t row = 0; row < device.ReadListText.at(question).RowCount(); ++row)
                    Rows.push_back({device.ReadListText.at(question).Row(row),
                                    GetRowField(device.ReadList[question], 1) == "3"});
    }

    TMemoryFiles Files = Installation();
    TVirtualTime Time;
    TProfile Profile{Files};
    TModbusPanel Panel{Files, Time};
    std::filesystem::path Path;
    std::vector<TListRow> Rows; // of all devices
};

} // namespace tidewell::test
