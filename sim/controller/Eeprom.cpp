#include "sim/controller/Eeprom.h"

#include "sim/controller/DeviceTime.h"
#include "sim/controller/ValueSource.h"
#include "sim/controller/Words.h"

#include <algorithm>
#include <cstddef>

namespace tidewell {

namespace {

constexpr std::int32_t EventSlots = 100;
constexpr std::uint32_t ErrorNumbers = 24;
constexpr std::uint32_t NewestError = 7;

// What would pass the end is cut off.
void Put(std::string& eeprom, std::int32_t address, const std::string& bytes) {
    const auto at = static_cast<std::size_t>(address);
    if (at < eeprom.size())
        eeprom.replace(at, std::min(bytes.size(), eeprom.size() - at), bytes.substr(0, eeprom.size() - at));
}

// The newest event first. Errors come and go in turns, so that at last none is left.
std::string ErrorEvents(std::int32_t count, std::int64_t startMinutes) {
    std::string dates;
    std::string times;
    std::int64_t minutes = startMinutes;
    for (std::int32_t event = 0; event < EventSlots; ++event) {
        if (event >= count) {
            AppendWord(dates, 0);
            AppendWord(times, 0);
            continue;
        }
        const bool came = event % 2 == 1;
        const auto mixed = static_cast<std::int64_t>(Mixed(static_cast<std::uint64_t>(event)) >> 32U);
        minutes -= came ? 5 + mixed % 180 : 60 + mixed % (3 * 24 * 60); // it lasts less than it stays away
        const auto pair = static_cast<std::uint64_t>(event / 2);
        const std::uint32_t error =
            pair == 0 ? NewestError : static_cast<std::uint32_t>(Mixed(pair) % ErrorNumbers) + 1;
        const TDeviceTime time = DeviceTime(minutes);
        AppendWord(dates, time.Month << 12U | time.Day << 7U | time.Year);
        AppendWord(times, (time.Hour * 60 + time.Minute) / 5 << 7U | error << 1U | (came ? 1U : 0U));
    }
    return dates + times;
}

} // namespace

std::string EepromBytes(const TEepromSetup& setup, const TIdentity& identity, TFlashRing::TPosition log,
                        std::int64_t startMinutes) {
    std::string eeprom(static_cast<std::size_t>(setup.Size), ErasedByte);
    std::string words;
    for (const auto& [name, number] : identity)
        AppendWord(words, static_cast<std::uint32_t>(number));
    Put(eeprom, 0, words);
    if (setup.LogCounters) {
        std::string counters;
        AppendWord(counters, static_cast<std::uint32_t>(log.Block));
        AppendWord(counters, static_cast<std::uint32_t>(log.InUse));
        Put(eeprom, *setup.LogCounters, counters);
    }
    if (setup.ErrorLog)
        Put(eeprom, *setup.ErrorLog, ErrorEvents(setup.ErrorEvents, startMinutes));
    return eeprom;
}

} // namespace tidewell
