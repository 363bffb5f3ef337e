#pragma once

#include "sim/controller/FlashRing.h"
#include "sim/controller/Identity.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tidewell {

// What a controller's EEPROM holds, in words, high byte first: from address 0 its identity, a word for each
// number of its answer to "ping.json"; the two counters of its flash log; and its error events. All else is
// erased.
struct TEepromSetup {
    std::int32_t Size = 4096;                // bytes
    std::optional<std::int32_t> LogCounters; // addresses; nothing: not there
    std::optional<std::int32_t> ErrorLog;
    std::int32_t ErrorEvents = 100; // written ones; the other slots up to 100 hold zeros
};

// The whole content. startMinutes is the controller's clock at time 0, up to which the events happened.
std::string EepromBytes(const TEepromSetup& setup, const TIdentity& identity, TFlashRing::TPosition log,
                        std::int64_t startMinutes);

} // namespace tidewell
