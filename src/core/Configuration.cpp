#include "core/Configuration.h"

#include "core/Errors.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"

#include <cmath>
#include <limits>

namespace tidewell {

namespace {

constexpr std::string_view nabtoSection = "CommInitNabto";

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

// The default for a text that is no number from least to most.
std::int32_t ReadNumber(const TIniFile& systemFile, std::string_view section, std::string_view key,
                        std::int32_t otherwise, std::int32_t least, std::int32_t most,
                        TReplacedNumbers& replaced) {
    const std::string text = systemFile.ReadText(section, key);
    if (text.empty())
        return otherwise;
    const auto number = TryToInteger(text);
    if (number && least <= *number && *number <= most)
        return *number;
    replaced.push_back({systemFile.Where(section, key), text, otherwise});
    return otherwise;
}

int ReadInterval(const TIniFile& systemFile, std::string_view key, std::string_view otherwise,
                 TReplacedNumbers& replaced) {
    const std::string text = systemFile.ReadText(nabtoSection, key, otherwise);
    double interval = 0;
    try {
        interval = std::round(ToFloat(text));
    } catch (const EConvertError& error) {
        throw EConvertError(systemFile.Where(nabtoSection, key) + error.what());
    }
    if (interval >= 1 && interval <= largest)
        return static_cast<int>(interval);
    const int nearest = interval > largest ? largest : 1;
    replaced.push_back({systemFile.Where(nabtoSection, key), text, nearest});
    return nearest;
}

} // namespace

std::string LineOn(const TReplacedNumber& number, const TEventLogTexts& texts) {
    return FillText(texts.NumberReplaced, {number.Where, number.Text, std::to_string(number.Used)});
}

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
    const auto read = [&](std::string_view key, std::int32_t& number, std::int32_t least) {
        number = ReadNumber(systemFile, "UpdateTimer", key, number, least, largest, result.Replaced);
    };
    read("Time", timer.Time, 1);
    read("XAxisJump", timer.XAxisJump, 1);
    read("DatalogCount", timer.DatalogCount, 0);
    result.JournalSyncTime =
        ReadNumber(systemFile, "Journal", "SyncTime", result.JournalSyncTime, 1, largest, result.Replaced);
    return result;
}

TCloudSettings ReadCloudSettings(const TIniFile& systemFile, const std::filesystem::path& directory) {
    TCloudSettings result;
    result.ApiHost = systemFile.ReadText("Cloud", "ApiHost");
    result.ApiPort =
        static_cast<std::uint16_t>(ReadNumber(systemFile, "Cloud", "ApiPort", result.ApiPort, 1,
                                              std::numeric_limits<std::uint16_t>::max(), result.Replaced));
    if (const std::string file = systemFile.ReadText("Cloud", "CaFile"); !file.empty())
        result.CaFile = directory / file;
    return result;
}

TNabtoConfiguration ReadNabtoConfiguration(const TIniFile& systemFile) {
    TNabtoConfiguration result;
    result.Name = systemFile.ReadText(nabtoSection, "Name");
    result.DelayBetweenQuestions = ReadInterval(systemFile, "DelayBetweenQuestions", "50", result.Replaced);
    result.PauseTime = ReadInterval(systemFile, "PauseTime", "2000", result.Replaced);
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
