#include "sim/controller/ImageStore.h"

#include "sim/controller/Crc32.h"

#include <algorithm>
#include <limits>

namespace tidewell {

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

} // namespace tidewell
