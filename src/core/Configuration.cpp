#include "core/Configuration.h"

#include "core/Errors.h"
#include "core/Numbers.h"

#include <cmath>
#include <limits>

namespace tidewell {

namespace {

constexpr std::string_view nabtoSection = "CommInitNabto";

int ReadInterval(const TIniFile& systemFile, std::string_view key, std::string_view otherwise) {
    const std::string text = systemFile.ReadText(nabtoSection, key, otherwise);
    try {
        const double interval = std::round(ToFloat(text));
        if (interval >= 1 && interval <= std::numeric_limits<int>::max())
            return static_cast<int>(interval);
    } catch (const EConvertError& error) {
        throw EConvertError(systemFile.Where(nabtoSection, key) + error.what());
    }
    throw EConvertError(systemFile.Where(nabtoSection, key) + "'" + text +
                        "' is not a valid interval in milliseconds");
}

} // namespace

TConfiguration ReadConfiguration(const TIniFile& systemFile) {
    TConfiguration result;
    result.PortScan.doPortScan = systemFile.ReadTrue("Port", "PortScan");
    result.AutoLoadProfile.doAutoloadProfile = systemFile.ReadTrue("Profile", "AutoloadProfile");
    result.AutoLoadProfile.ItemNumber = systemFile.ReadSection("ModelFamily");
    result.AutoLoadProfile.Model = systemFile.ReadSection("ModelProfile");
    result.ErrorLog.doGetErrorlog = systemFile.ReadNotFalse("ErrorLog", "ErrorLogEnable");
    result.ErrorLog.doIncludeValuesInFile = systemFile.ReadTrue("ErrorLog", "DebugLog");
    result.ErrorLog.Qestion = systemFile.ReadSection("ErrorlogQestions");
    result.LogAutoStart.doLogAutoStart = systemFile.ReadTrue("LogAutoStart", "Enabled");
    result.DebugEnable = systemFile.ReadStrict("CommInitModbus", "DebugEnable");
    auto& timer = result.UpdateTimer;
    timer.Time = systemFile.ReadInteger("UpdateTimer", "Time", timer.Time);
    timer.XAxisJump = systemFile.ReadInteger("UpdateTimer", "XAxisJump", timer.XAxisJump);
    timer.DatalogCount = systemFile.ReadInteger("UpdateTimer", "DatalogCount", timer.DatalogCount);
    return result;
}

TCloudSettings ReadCloudSettings(const TIniFile& systemFile, const std::filesystem::path& directory) {
    TCloudSettings result;
    result.ApiHost = systemFile.ReadText("Cloud", "ApiHost");
    const std::int32_t port = systemFile.ReadInteger("Cloud", "ApiPort", result.ApiPort);
    if (port > 0 && port <= std::numeric_limits<std::uint16_t>::max())
        result.ApiPort = static_cast<std::uint16_t>(port);
    if (const std::string file = systemFile.ReadText("Cloud", "CaFile"); !file.empty())
        result.CaFile = directory / file;
    return result;
}

TNabtoConfiguration ReadNabtoConfiguration(const TIniFile& systemFile) {
    TNabtoConfiguration result;
    result.Name = systemFile.ReadText(nabtoSection, "Name");
    result.DelayBetweenQuestions = ReadInterval(systemFile, "DelayBetweenQuestions", "50");
    result.PauseTime = ReadInterval(systemFile, "PauseTime", "2000");
    result.Enabled = ReadNabtoEnabled(systemFile);
    result.LastLoginUser = systemFile.ReadText(nabtoSection, "LastLoginUser");
    result.LastLoginPW = systemFile.ReadText(nabtoSection, "LastLoginPW");
    result.Domain = systemFile.ReadText(nabtoSection, "Domain", "remote.tidewell.example");
    return result;
}

bool ReadNabtoEnabled(const TIniFile& systemFile) {
    return systemFile.ReadStrict(nabtoSection, "Enabled", "FALSE");
}

} // namespace tidewell
