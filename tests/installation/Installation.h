#pragma once

#include "core/IniFile.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tidewell::test {

// The example installation as the program finds it, copied into memory so that no test changes it.
class TInstallation {
  public:
    TInstallation();

    TIniFile Ini(const std::string& name) const { return TIniFile(Files, Directory / name); }
    std::filesystem::path SystemFile() const;

    TMemoryFiles Files;
    const std::filesystem::path Directory = "/tidewell";
};

// One list row of a profile, with the read question that it belongs to.
struct TListRow {
    std::vector<std::string> Fields; // field 0 is the row's number
    std::string Device;
    std::vector<std::string> QuestionFields;

    std::string Name() const { return Fields.at(1); }
    std::int32_t Integer(std::size_t field) const;
    bool IsSetpoint() const { return QuestionFields.at(1) == "3"; } // one that setpoint files hold
    // From a cycle's values, which have no head in front.
    const std::string& ValueIn(const std::vector<std::string>& cycle) const;
};

struct TPollQuestion {
    std::int32_t Obj = 0;
    std::int32_t Command = 0;
    std::int32_t Address = 0;
    std::int32_t Length = 0;
};

// A profile of the installation, opened by the classes that the program opens it with.
class TInstalledProfile {
  public:
    // The name has no directory.
    TInstalledProfile(TInstallation& installation, const std::string& name);

    TProfile Profile;
    TModbusPanel Panel;
    std::vector<TListRow> Rows; // of all devices
    std::vector<TPollQuestion> Questions;

  private:
    TVirtualTime Time;
};

// Fields as the program splits them, behind the last ";" too.
std::vector<std::string> Fields(const std::string& row);

} // namespace tidewell::test
