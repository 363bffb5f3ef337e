#include "sim/cloud/CloudConfig.h"

#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "sim/common/IniLines.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string_view>

namespace tidewell {

namespace {

constexpr std::string_view UserPrefix = "User";

[[noreturn]] void Fail(const TIniFile& ini, std::string_view section, std::string_view key,
                       std::string_view value, std::string_view what) {
    throw TError(ini.Path().string() + ": [" + std::string(section) + "] " + std::string(key) + "=" +
                 std::string(value) + ": " + std::string(what));
}

void CheckKeys(const TIniFile& ini, const std::string& section,
               std::initializer_list<std::string_view> known) {
    for (const TIniSection::TRow& row : ini.ReadSection(section).Rows())
        if (std::none_of(known.begin(), known.end(),
                         [&](std::string_view name) { return SameText(row.Name, name); }))
            Fail(ini, section, row.Name, row.Value, "unknown key");
}

int ReadNumber(const TIniFile& ini, std::string_view section, std::string_view key, int otherwise,
               int highest = std::numeric_limits<int>::max()) {
    const auto text = ini.Find(section, key);
    if (!text)
        return otherwise;
    const auto number = TryToInteger(*text);
    if (!number || *number < 0 || *number > highest)
        Fail(ini, section, key, *text, "not a number from 0 to " + std::to_string(highest));
    return *number;
}

std::vector<std::string> ReadList(const TIniFile& ini, std::string_view section, std::string_view key) {
    const std::string text = ini.ReadText(section, key);
    std::vector<std::string> items;
    for (const std::string_view piece : SplitStrictly(text))
        if (const std::string_view item = Trim(piece); !item.empty())
            items.emplace_back(item);
    return items;
}

std::vector<std::string> ReadDevices(const TIniFile& ini) {
    std::vector<std::string> devices;
    const TIniSection section = ini.ReadSection("Devices");
    for (const TIniSection::TRow& row : section.Rows()) {
        if (row.Name.size() != 12 || row.Name.find_first_not_of("0123456789") != std::string::npos)
            Fail(ini, "Devices", row.Name, row.Value, "a device id has 12 digits");
        devices.push_back(row.Name);
    }
    return devices;
}

TCloudUser ReadUser(const TIniFile& ini, const std::string& section, const std::string& name,
                    const std::vector<std::string>& devices) {
    CheckKeys(ini, section, {"Password", "Flags", "Devices", "NabtoUser", "NabtoID"});
    TCloudUser user;
    const auto password = ini.Find(section, "Password");
    if (!password)
        Fail(ini, section, "Password", {}, "the key is missing");
    user.Password = *password;
    for (const std::string& item : ReadList(ini, section, "Flags")) {
        const auto flag = TryToInteger(item);
        if (!flag || *flag < 0 || *flag >= static_cast<std::int32_t>(user.Flags.size()))
            Fail(ini, section, "Flags", item, "not a flag from 0 to 63");
        user.Flags[static_cast<std::size_t>(*flag)] = true;
    }
    user.Devices = ReadList(ini, section, "Devices");
    for (const std::string& device : user.Devices)
        if (std::find(devices.begin(), devices.end(), device) == devices.end())
            Fail(ini, section, "Devices", device, "no such device in section Devices");
    user.NabtoUser = ini.ReadText(section, "NabtoUser", name + "@users.tidewell.example");
    user.NabtoId = ini.ReadText(section, "NabtoID", name + "-identity");
    return user;
}

TCloudFaults ReadFaults(const TIniFile& ini) {
    CheckKeys(ini, "Faults", {"Path", "RefuseCode", "NoJson", "EmptyBody", "FlagCount", "DelayMs"});
    TCloudFaults faults;
    faults.Path = ini.ReadText("Faults", "Path");
    faults.RefuseCode = ReadNumber(ini, "Faults", "RefuseCode", 0, 599);
    if (faults.RefuseCode != 0 && faults.RefuseCode < 200)
        Fail(ini, "Faults", "RefuseCode", std::to_string(faults.RefuseCode), "not 0 or a code from 200");
    faults.NoJson = ini.ReadStrict("Faults", "NoJson", "false");
    faults.EmptyBody = ini.ReadStrict("Faults", "EmptyBody", "false");
    faults.FlagCount = ReadNumber(ini, "Faults", "FlagCount", faults.FlagCount, 64);
    faults.DelayMs = ReadNumber(ini, "Faults", "DelayMs", 0);
    return faults;
}

// The name in "User <name>"; empty for any other section.
std::string UserOf(const TIniFile& ini, const std::string& section) {
    if (SameText(section, "Service") || SameText(section, "Devices") || SameText(section, "Faults"))
        return {};
    const std::string_view text = section;
    const bool more = text.size() > UserPrefix.size();
    if (!SameText(text.substr(0, UserPrefix.size()), UserPrefix) || (more && text[UserPrefix.size()] != ' '))
        throw TError(ini.Path().string() + ": section [" + section + "] belongs to nothing");
    const std::string_view name = Trim(text.substr(UserPrefix.size()));
    if (name.empty())
        throw TError(ini.Path().string() + ": section [" + section + "] names no user");
    return std::string(name);
}

} // namespace

TCloudConfig ReadCloudConfig(const TIniFile& ini) {
    CheckIniLines(ini.Bytes(), ini.Path().string());
    TCloudConfig config;
    config.Devices = ReadDevices(ini);
    for (const std::string& section : ini.SectionNames())
        if (const std::string name = UserOf(ini, section); !name.empty())
            config.Users[name] = ReadUser(ini, section, name, config.Devices);
    if (config.Users.empty())
        throw TError(ini.Path().string() + ": there is no section [User <name>], so nobody could log in");
    CheckKeys(ini, "Service", {"TokenLifetime", "TokenRequests"});
    config.TokenLifetimeSeconds = ReadNumber(ini, "Service", "TokenLifetime", config.TokenLifetimeSeconds);
    config.TokenRequests = ReadNumber(ini, "Service", "TokenRequests", config.TokenRequests);
    config.Faults = ReadFaults(ini);
    return config;
}

} // namespace tidewell
