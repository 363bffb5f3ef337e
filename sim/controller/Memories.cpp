#include "sim/controller/Memories.h"

#include <algorithm>
#include <chrono>

namespace tidewell {

namespace {

constexpr std::int32_t RecordSize = 256;
constexpr std::int32_t RecordsPerBlock = TFlashRing::BlockSize / RecordSize;
constexpr std::int64_t MinutesPerRecord = 2;
constexpr std::int64_t MsPerMinute = 60000;
// The values move that much slower than on the wire: a wave of ten minutes takes some 33 hours.
constexpr std::int64_t Slower = 200;

// The areas of the ring.
constexpr std::int64_t FirstArea = 0x20000;
constexpr std::int32_t FirstAreaBlocks = 2544;
constexpr std::int64_t SecondArea = 0xD30000;

constexpr std::int32_t EventSlots = 100;
constexpr std::uint32_t ErrorNumbers = 24;
constexpr std::uint32_t NewestError = 7;

constexpr char ErasedByte = '\xFF'; // of flash and EEPROM

// The low 16 bits, high byte first.
void AppendWord(std::string& bytes, std::uint32_t word) {
    bytes += static_cast<char>(static_cast<unsigned char>(word >> 8U & 0xFFU));
    bytes += static_cast<char>(static_cast<unsigned char>(word & 0xFFU));
}

// A controller's own clock, in local time.
struct TDeviceTime {
    std::uint32_t Year = 0; // since 2000
    std::uint32_t Month = 0;
    std::uint32_t Day = 0;
    std::uint32_t Hour = 0;
    std::uint32_t Minute = 0;
};

// Of a time in minutes since 2000-01-01 00:00; times before that count as that.
TDeviceTime DeviceTime(std::int64_t minutes) {
    using namespace std::chrono;
    constexpr sys_days Start = year{2000} / January / 1;
    const std::int64_t since = std::max<std::int64_t>(minutes, 0);
    const year_month_day date(Start + days(since / (24 * 60)));
    return {static_cast<std::uint32_t>(int{date.year()} - 2000), unsigned{date.month()}, unsigned{date.day()},
            static_cast<std::uint32_t>(since / 60 % 24), static_cast<std::uint32_t>(since % 60)};
}

// -1 where no block lies.
std::int32_t BlockAt(std::int64_t address) {
    if (address >= SecondArea) {
        const std::int64_t block = FirstAreaBlocks + (address - SecondArea) / TFlashRing::BlockSize;
        return block < TFlashRing::BlockCount ? static_cast<std::int32_t>(block) : -1;
    }
    if (address >= FirstArea) {
        const std::int64_t block = (address - FirstArea) / TFlashRing::BlockSize;
        return block < FirstAreaBlocks ? static_cast<std::int32_t>(block) : -1;
    }
    return -1;
}

std::int32_t Around(std::int64_t block) {
    constexpr std::int64_t Count = TFlashRing::BlockCount;
    return static_cast<std::int32_t>((block % Count + Count) % Count);
}

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

std::int64_t TFlashRing::AddressOf(std::int32_t block) {
    return block < FirstAreaBlocks ? FirstArea + std::int64_t{block} * BlockSize
                                   : SecondArea + std::int64_t{block - FirstAreaBlocks} * BlockSize;
}

std::int64_t TFlashRing::Slot(std::int64_t nowMs) const {
    return (StartMinutes + nowMs / MsPerMinute) / MinutesPerRecord;
}

TFlashRing::TPosition TFlashRing::Position(std::int64_t nowMs) const {
    if (StartBlock >= BlockCount)
        return {StartBlock, StartInUse};
    const std::int64_t written = Slot(nowMs) / RecordsPerBlock - Slot(0) / RecordsPerBlock;
    const std::int64_t inUse =
        std::max<std::int64_t>(StartInUse, std::min<std::int64_t>(StartInUse + written, BlockCount - 1));
    return {Around(StartBlock + written), static_cast<std::int32_t>(inUse)};
}

std::string TFlashRing::Record(std::int64_t slot) const {
    const std::int64_t minutes = slot * MinutesPerRecord;
    const std::int64_t movedMs = (minutes - StartMinutes) * MsPerMinute / Slower;
    const TDeviceTime time = DeviceTime(minutes);
    std::string bytes;
    bytes.reserve(RecordSize);
    AppendWord(bytes, time.Day | time.Month << 5U | time.Year << 9U);
    AppendWord(bytes, time.Hour << 8U | time.Minute);
    for (std::size_t i = 0; i < MostValues; ++i)
        AppendWord(bytes, i < Values.size() ? Values[i].Bits(movedMs) : 0);
    return bytes;
}

std::string TFlashRing::RecordAt(std::int32_t block, std::int32_t index, std::int64_t nowMs) const {
    const TPosition position = Position(nowMs);
    const std::int32_t distance = Around(std::int64_t{position.Block} - block);
    const std::int64_t next = Slot(nowMs);
    const std::int64_t slot = (next / RecordsPerBlock - distance) * RecordsPerBlock + index;
    if (Values.empty() || distance > position.InUse || slot >= next || slot < 0)
        return std::string(RecordSize, ErasedByte);
    return Record(slot);
}

std::string TFlashRing::Bytes(std::int64_t address, std::size_t length, std::int64_t nowMs) const {
    std::string bytes;
    bytes.reserve(length + RecordSize);
    const std::int64_t into = address % RecordSize;
    for (std::int64_t at = address - into; bytes.size() < length + static_cast<std::size_t>(into);
         at += RecordSize) {
        const std::int32_t block = BlockAt(at);
        const auto index = static_cast<std::int32_t>(at % BlockSize / RecordSize);
        bytes += block < 0 ? std::string(RecordSize, ErasedByte) : RecordAt(block, index, nowMs);
    }
    return bytes.substr(static_cast<std::size_t>(into), length);
}

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
