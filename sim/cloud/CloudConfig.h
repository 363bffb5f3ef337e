#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace tidewell {

class TIniFile;

struct TCloudUser {
    std::string Password;
    std::array<bool, 64> Flags{};
    std::vector<std::string> Devices; // ids that the user may reach
    std::string NabtoUser;
    std::string NabtoId;
};

// What the cloud does wrong on purpose, on every request whose path ends in Path (empty: all).
struct TCloudFaults {
    std::string Path;
    int RefuseCode = 0; // answered to every request; 0: off
    bool NoJson = false;
    bool EmptyBody = false;
    int FlagCount = 64; // members of PermissionFlags that are sent
    int DelayMs = 0;
};

struct TCloudConfig {
    std::map<std::string, TCloudUser> Users; // by name
    std::vector<std::string> Devices;        // ids that exist
    int TokenLifetimeSeconds = 3600;
    int TokenRequests = 0; // a token expires after that many requests; 0: never
    TCloudFaults Faults;
};

// Throws TError naming file, section, key and value of what cannot be understood.
TCloudConfig ReadCloudConfig(const TIniFile& ini);

} // namespace tidewell
