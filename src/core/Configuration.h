#pragma once

#include "core/IniFile.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// What the system file settles. Booleans are read in three manners: "true" and nothing else is true; all but
// "false" is true; or strictly "true", "false" or a number.
namespace tidewell {

struct TEventLogTexts;

// A number that the program cannot work with, and the one that it takes instead.
struct TReplacedNumber {
    std::string Where; // "file: [section] key: "
    std::string Text;
    std::int32_t Used = 0;
};
using TReplacedNumbers = std::vector<TReplacedNumber>;
// The line of the event log on it.
std::string LineOn(const TReplacedNumber& number, const TEventLogTexts& texts);

struct TPortScan {
    bool doPortScan = false;
};

struct TAutoLoadProfile {
    bool doAutoloadProfile = false;
    TIniSection ItemNumber; // device number = free text; says which device numbers are known
    TIniSection Model;      // model = base name of its profile
};

struct TErrorLogSettings {
    bool doGetErrorlog = true;
    bool doIncludeValuesInFile = false;
    TIniSection Qestion; // name = question
};

struct TLogAutoStart {
    bool doLogAutoStart = false;
};

struct TUpdateTimerSettings {
    std::int32_t Time = 1000; // ms
    std::int32_t XAxisJump = 1000;
    std::int32_t DatalogCount = 50000; // rows; 0 is taken as it stands
};

// What the main form reads at start-up.
struct TConfiguration {
    TPortScan PortScan;
    TAutoLoadProfile AutoLoadProfile;
    TErrorLogSettings ErrorLog;
    TLogAutoStart LogAutoStart;
    bool DebugEnable = false;
    TUpdateTimerSettings UpdateTimer;
    std::int32_t JournalSyncTime = 5000; // ms
    TReplacedNumbers Replaced;
};

// Throws EConvertError when `DebugEnable` is missing or no boolean. Bad numbers, and those below 1, give
// their default; but a DatalogCount of 0 is taken as it stands.
TConfiguration ReadConfiguration(const TIniFile& systemFile);

struct TCloudSettings {
    std::string ApiHost;
    std::uint16_t ApiPort = 4161;
    std::filesystem::path CaFile; // absolute; empty: the system's trust store
    TReplacedNumbers Replaced;
};

// A port that is no number from 1 to 65535 gives the default. CaFile is relative to the directory.
TCloudSettings ReadCloudSettings(const TIniFile& systemFile, const std::filesystem::path& directory);

// What the polling driver reads at its creation.
struct TNabtoConfiguration {
    std::string Name;
    int DelayBetweenQuestions = 50; // ms
    int PauseTime = 2000;           // ms
    bool Enabled = false;
    std::string LastLoginUser;
    std::string LastLoginPW;
    std::string Domain;
    TReplacedNumbers Replaced;
};

// Throws EConvertError for an interval that is no number, and for an `Enabled` that is no boolean. Fractions
// of a millisecond are rounded; an interval below 1 ms, or one that is too long, gives the nearest that can
// be.
TNabtoConfiguration ReadNabtoConfiguration(const TIniFile& systemFile);
// The key `Enabled` alone.
bool ReadNabtoEnabled(const TIniFile& systemFile);

} // namespace tidewell
