#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

// Where a controller keeps one of its firmware images.
struct TImageSetup {
    std::uint32_t Address = 0; // in flash; 2 and above, since smaller answers mean "not ready"
    std::uint32_t Room = 0;    // bytes
    std::string Version;       // member of the answer to "ping.json" that it brings; empty: none
    // That version's number. Without it the image tells: bytes 4 to 7, high byte first.
    std::optional<std::int32_t> Number;
};

// The firmware images in a controller's flash, as far as they have come. Files count from 1. What was
// announced and received stays over restarts, until the file is announced anew.
class TImageStore {
  public:
    using TSetup = std::map<std::int32_t, TImageSetup>;
    TSetup Setup;

    // Announces a file, which becomes the current one and loses what it held. Its flash address; nothing when
    // there is no such file or no room.
    std::optional<std::uint32_t> Announce(std::int64_t file, std::int64_t size, std::int64_t crc32);
    // The file that was announced last, until Forget.
    std::optional<std::int32_t> Current() const { return CurrentFile; }
    void Forget() { CurrentFile.reset(); }
    // The announced file of just that address and size.
    std::optional<std::int32_t> FileAt(std::int64_t address, std::int64_t size) const;

    void Clear(std::int32_t file);
    // What goes beyond the announced size is dropped.
    void Append(std::int32_t file, std::string_view bytes);
    // All of the announced bytes came, with the announced CRC-32.
    bool Whole(std::int32_t file) const;
    std::string_view Bytes(std::int32_t file) const;

    // The number of the version that a whole image brings; nothing if it brings none.
    std::optional<std::int64_t> VersionNumber(std::int32_t file) const;
    // Writes what the images hold over the bytes of the flash that begin at the address.
    void Overlay(std::int64_t address, std::string& flash) const;

  private:
    struct TImage {
        std::size_t Size = 0;
        std::uint32_t Crc = 0;
        std::string Bytes;
    };
    std::map<std::int32_t, TImage> Images; // announced
    std::optional<std::int32_t> CurrentFile;
};

} // namespace tidewell
