#include "sim/controller/Firmware.h"

#include "core/Crc16.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

namespace tidewell {

namespace {

constexpr auto Crc32Table = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t entry = i;
        for (int bit = 0; bit < 8; ++bit)
            entry = (entry >> 1U) ^ ((entry & 1U) != 0 ? 0xEDB88320U : 0U);
        table[i] = entry;
    }
    return table;
}();

constexpr std::int32_t MostFiles = 16;

enum EState : std::int64_t {
    AskUpload = 1,
    MainData = 2,
    Init = 5,
    WaitDisplayCheck = 6,
    StartPreErase = 7,
    Data = 8,
    StartProgram = 11,
    Go = 12,
    DeInit = 13,
    WaitPreErase = 14,
    Reset = 15,
    WaitReset = 16
};

} // namespace

std::uint32_t Crc32(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char byte : bytes)
        crc = (crc >> 8U) ^ Crc32Table[(crc ^ static_cast<unsigned char>(byte)) & 0xFFU];
    return ~crc;
}

std::optional<std::uint32_t> TImageStore::Announce(std::int64_t file, std::int64_t size, std::int64_t crc32) {
    const auto place = std::find_if(Setup.begin(), Setup.end(),
                                    [file](const auto& entry) { return std::int64_t{entry.first} == file; });
    constexpr std::int64_t MostCrc = std::numeric_limits<std::uint32_t>::max();
    if (place == Setup.end() || size < 1 || size > std::int64_t{place->second.Room} || crc32 < 0 ||
        crc32 > MostCrc)
        return std::nullopt;
    CurrentFile = place->first;
    Images[place->first] = {static_cast<std::size_t>(size), static_cast<std::uint32_t>(crc32), {}};
    return place->second.Address;
}

std::optional<std::int32_t> TImageStore::FileAt(std::int64_t address, std::int64_t size) const {
    for (const auto& [file, image] : Images) {
        const auto place = Setup.find(file);
        if (place != Setup.end() && std::int64_t{place->second.Address} == address &&
            static_cast<std::int64_t>(image.Size) == size)
            return file;
    }
    return std::nullopt;
}

void TImageStore::Clear(std::int32_t file) {
    if (const auto found = Images.find(file); found != Images.end())
        found->second.Bytes.clear();
}

void TImageStore::Append(std::int32_t file, std::string_view bytes) {
    if (const auto found = Images.find(file); found != Images.end()) {
        TImage& image = found->second;
        image.Bytes += bytes.substr(0, image.Size - image.Bytes.size());
    }
}

bool TImageStore::Whole(std::int32_t file) const {
    const auto found = Images.find(file);
    return found != Images.end() && found->second.Bytes.size() == found->second.Size &&
           Crc32(found->second.Bytes) == found->second.Crc;
}

std::string_view TImageStore::Bytes(std::int32_t file) const {
    const auto found = Images.find(file);
    return found == Images.end() ? std::string_view() : std::string_view(found->second.Bytes);
}

std::optional<std::int64_t> TImageStore::VersionNumber(std::int32_t file) const {
    const auto place = Setup.find(file);
    if (place == Setup.end() || place->second.Version.empty())
        return std::nullopt;
    if (place->second.Number)
        return *place->second.Number;
    constexpr std::size_t First = 4;
    constexpr std::size_t Length = 4;
    const std::string_view bytes = Bytes(file);
    if (bytes.size() < First + Length)
        return std::nullopt;
    std::int64_t number = 0;
    for (const char byte : bytes.substr(First, Length))
        number = number << 8U | static_cast<unsigned char>(byte);
    return number;
}

void TImageStore::Overlay(std::int64_t address, std::string& flash) const {
    for (const auto& [file, image] : Images) {
        const auto place = Setup.find(file);
        if (place == Setup.end())
            continue;
        const std::int64_t start = place->second.Address;
        const std::int64_t from = std::max(start, address);
        const std::int64_t end = std::min(start + static_cast<std::int64_t>(image.Bytes.size()),
                                          address + static_cast<std::int64_t>(flash.size()));
        if (from < end) {
            flash.replace(static_cast<std::size_t>(from - address), static_cast<std::size_t>(end - from),
                          image.Bytes, static_cast<std::size_t>(from - start),
                          static_cast<std::size_t>(end - from));
        }
    }
}

void TUpdateMode::Announce(std::int32_t file) {
    if (file >= 1 && file <= MostFiles)
        Bad |= 1U << static_cast<unsigned>(file - 1);
}

void TUpdateMode::Restart(std::uint32_t mask, std::int64_t nowMs, std::int64_t longerMs) {
    Mask = mask;
    ReturnsAtMs = nowMs + (mask == 0 ? Times.Restart : Times.Update) + longerMs;
}

TIdentity TUpdateMode::Return(std::uint32_t spoiled, std::int64_t nowMs) {
    ReturnsAtMs.reset();
    TIdentity versions;
    if (!TestsImages())
        return versions;
    Tested = Mask;
    Bad = (Bad & ~Mask) | spoiled;
    TestedAtMs = nowMs + Times.Check;
    for (std::int32_t file = 1; file <= MostFiles; ++file) {
        const std::uint32_t bit = 1U << static_cast<unsigned>(file - 1);
        if ((Mask & bit) == 0 || (Bad & bit) != 0)
            continue;
        if (!Images.Whole(file))
            Bad |= bit;
        else if (const auto number = Images.VersionNumber(file))
            versions.emplace_back(Images.Setup.at(file).Version, *number);
    }
    return versions;
}

std::uint16_t TUpdateMode::CrcResult(std::int64_t nowMs) const {
    return static_cast<std::uint16_t>(nowMs < TestedAtMs ? Tested | Bad : Bad);
}

TUploadDialogue::EAnswer TUploadDialogue::Begin(ETarget target) {
    const std::optional<std::int32_t> file = Images.Current();
    if (!file)
        return target == ETarget::Main ? NotYet : Refused;
    Images.Clear(*file);
    Target = target;
    LastNumber.reset();
    return Done;
}

TUploadDialogue::EAnswer TUploadDialogue::PreErase(std::int64_t nowMs) {
    if (EraseUntilMs && nowMs < *EraseUntilMs)
        return Busy;
    EraseUntilMs = std::max(nowMs, ResetUntilMs) + Times.Erase;
    if (Target == ETarget::Other && Images.Current())
        Images.Clear(*Images.Current());
    return Done;
}

TUploadDialogue::EAnswer TUploadDialogue::Command(std::int64_t state, std::int64_t nowMs) {
    switch (state) {
    case AskUpload:
        return Begin(ETarget::Main);
    case Reset:
        Abort();
        ResetUntilMs = nowMs + Times.Reset;
        return Done;
    case WaitReset:
        return nowMs < ResetUntilMs ? NotYet : Done;
    case Init:
        return Begin(ETarget::Other); // also during the reset, behind which it is done
    case WaitDisplayCheck:
        if (nowMs < ResetUntilMs)
            return NotYet;
        return Target == ETarget::Other ? Done : Refused;
    case StartPreErase:
        return PreErase(nowMs);
    case WaitPreErase:
        if (!EraseUntilMs)
            return Refused;
        return nowMs < *EraseUntilMs ? Busy : Done;
    case StartProgram: {
        const bool open = Target == ETarget::Other;
        Abort();
        return open ? Done : Refused;
    }
    case Go:
        return Done;
    case DeInit:
        if (Target != ETarget::None && Images.Current())
            Images.Clear(*Images.Current());
        Abort();
        return Done;
    default:
        return Refused;
    }
}

TUploadDialogue::EAnswer TUploadDialogue::Packet(std::int64_t state, std::uint16_t number, std::uint16_t crc,
                                                 std::string_view payload, std::int64_t nowMs) {
    const bool open = (state == MainData && Target == ETarget::Main) ||
                      (state == Data && Target == ETarget::Other && EraseUntilMs.has_value());
    if (!open || !Images.Current())
        return Refused;
    if (Target == ETarget::Other && nowMs < *EraseUntilMs)
        return Busy;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(payload.data());
    if (Crc16(Crc16Start, std::span(bytes, payload.size()), true) != crc)
        return WrongCrc;
    if (LastNumber == number)
        return Done;
    if (LastNumber && number != static_cast<std::uint16_t>(*LastNumber + 1))
        return WrongNumber;
    Images.Append(*Images.Current(), payload);
    LastNumber = number;
    return Done;
}

void TUploadDialogue::Abort() {
    Target = ETarget::None;
    EraseUntilMs.reset();
    LastNumber.reset();
}

} // namespace tidewell
