#pragma once

#include "sim/controller/Faults.h"
#include "sim/controller/RegisterBank.h"
#include "sim/controller/SimulatedController.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

struct TControllerSetup {
    std::string Name;
    std::string Id;     // 12 digits
    bool Local = true;  // found on the local network
    bool Remote = true; // reached through the domain
    TIdentity Identity;
    std::vector<std::string> Users; // e-mails whose sessions it accepts; empty: any
    std::int32_t WriteStatus = 1;
    std::size_t StreamPiece = 1024;
    std::vector<TValueRun> Values;
    std::optional<TServiceSetup> Service; // nothing: it has no service functions
    std::vector<TFault> Faults;
    std::int32_t Copies = 0; // further ones of its kind, which follow it with ids that count up
};

// Stands for a function: before the next request all sessions are gone, as after a suspend.
inline constexpr const char* EndSessionsFault = "EndSessions";

// A function of the library that fails with that status.
struct TLibraryFault {
    std::string Function;
    std::uint8_t Status = 0;
    TFaultCondition When;
};

// What a simulation file tells.
struct TSimulation {
    std::string Domain;
    std::int64_t AnswerTimeoutMs = 2000;
    bool AnyUser = true;                      // without a list of users
    std::map<std::string, std::string> Users; // password by e-mail
    std::vector<TControllerSetup> Controllers;
    std::vector<TLibraryFault> LibraryFaults;
};

// Reads the text of a simulation file; shownPath is for messages. Throws TError that names path, section and
// key.
TSimulation ParseSimulation(std::string_view bytes, const std::string& shownPath);

} // namespace tidewell
