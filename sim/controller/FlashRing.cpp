#include "sim/controller/FlashRing.h"

#include "sim/controller/DeviceTime.h"
#include "sim/controller/Words.h"

#include <algorithm>

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

} // namespace tidewell
