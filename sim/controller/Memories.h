#pragma once

#include "sim/controller/RegisterBank.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

// The log that a controller keeps in its flash: a ring of blocks, each of 16 records, one for every second
// minute. A record has 128 words, high byte first: date, time and 126 values. The ring lies in two areas of
// the flash. Nothing is stored: what stands in a block follows from its distance to the one being written,
// and from how the controller's values move, slowed down so that their waves take hours and days.
class TFlashRing {
  public:
    static constexpr std::int32_t BlockCount = 6608;
    static constexpr std::int32_t BlockSize = 4096;
    static constexpr std::size_t MostValues = 126;

    std::int32_t StartBlock = 0;              // being written at time 0; beyond the ring it stands still
    std::int32_t StartInUse = BlockCount - 1; // blocks behind it that hold records
    std::int64_t StartMinutes = 0;            // the controller's clock at time 0, since 2000-01-01 00:00
    std::vector<TMotion> Values;              // of a record, in order; with none the ring is erased

    static std::int64_t AddressOf(std::int32_t block); // in the flash

    // The block being written and the blocks in use behind it.
    struct TPosition {
        std::int32_t Block = 0;
        std::int32_t InUse = 0;
    };
    TPosition Position(std::int64_t nowMs) const;
    // Bytes of the flash from that address on, at most as many as asked for; where no block of the ring lies
    // they read as erased.
    std::string Bytes(std::int64_t address, std::size_t length, std::int64_t nowMs) const;

  private:
    // Records since time 0 of the clock, the one that comes next.
    std::int64_t Slot(std::int64_t nowMs) const;
    std::string Record(std::int64_t slot) const;
    std::string RecordAt(std::int32_t block, std::int32_t index, std::int64_t nowMs) const;
};

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
