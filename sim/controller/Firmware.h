#pragma once

#include "sim/controller/RegisterBank.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

// CRC-32 of the bytes as archives use it: reflected polynomial 0xEDB88320, start value and final XOR
// 0xFFFFFFFF.
std::uint32_t Crc32(std::string_view bytes);

// How long the steps of an update take a controller, in ms.
struct TUpdateTimes {
    std::int64_t Update = 30000; // a restart into the update mode
    std::int64_t Restart = 3000; // one with an empty mask, which tests nothing
    std::int64_t Check = 0;      // so long after the return the word still tells each named file as bad
    std::int64_t Reset = 1000;   // and the pre-erase: of an upload without a stream
    std::int64_t Erase = 1000;
};

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

// The restarts of a controller. A restart into the update mode tests the images that its mask names, puts
// the good ones in force and keeps a word that tells the bad ones, a bit each. While it restarts, a
// controller is away. An image that was announced counts as bad until a test finds it good.
class TUpdateMode {
  public:
    TUpdateMode(const TImageStore& images, const TUpdateTimes& times) : Images(images), Times(times) {}
    TUpdateMode(const TUpdateMode&) = delete;
    TUpdateMode& operator=(const TUpdateMode&) = delete;

    // A new image of that file, from 1, is on its way.
    void Announce(std::int32_t file);
    // Bit k of the mask names file k + 1.
    void Restart(std::uint32_t mask, std::int64_t nowMs, std::int64_t longerMs);
    bool Restarting() const { return ReturnsAtMs.has_value(); }
    // It restarts, and is not through yet.
    bool Away(std::int64_t nowMs) const { return ReturnsAtMs && nowMs < *ReturnsAtMs; }
    bool TestsImages() const { return Mask != 0; }
    // Ends the restart. spoiled: bits of files whose test is to fail. The versions that came into force, by
    // member of the answer to "ping.json".
    TIdentity Return(std::uint32_t spoiled, std::int64_t nowMs);

    std::uint16_t CrcResult(std::int64_t nowMs) const;

  private:
    const TImageStore& Images;
    const TUpdateTimes& Times;
    std::optional<std::int64_t> ReturnsAtMs;
    std::uint32_t Mask = 0;
    std::uint32_t Tested = 0; // by the last test
    std::uint32_t Bad = 0;
    std::int64_t TestedAtMs = 0;
};

// How a controller takes images in packets, without a stream: a dialogue of commands, which brings the
// processor that is to be updated through reset and pre-erase, and numbered packets with a CRC each. Reset
// and pre-erase take their time, during which commands are answered with "not yet" and "busy".
class TUploadDialogue {
  public:
    TUploadDialogue(TImageStore& images, const TUpdateTimes& times) : Images(images), Times(times) {}
    TUploadDialogue(const TUploadDialogue&) = delete;
    TUploadDialogue& operator=(const TUploadDialogue&) = delete;

    // Answers of commands and packets.
    enum EAnswer : std::int64_t {
        Done = 0,
        NotYet = 1,
        WrongCrc = 2,    // of a packet
        WrongNumber = 3, // of a packet: neither the one that is due nor the one before
        Refused = 6,     // there is no upload that this belongs to
        Busy = 7         // with the pre-erase
    };

    // A command by its number, field "nostreamstate".
    EAnswer Command(std::int64_t state, std::int64_t nowMs);
    // A packet; state tells the kind of target. The first one of an upload may have any number. One that was
    // stored already is answered as done and not stored again.
    EAnswer Packet(std::int64_t state, std::uint16_t number, std::uint16_t crc, std::string_view payload,
                   std::int64_t nowMs);
    void Abort(); // ends the upload, as a restart does

  private:
    enum class ETarget { None, Main, Other };

    EAnswer Begin(ETarget target);
    EAnswer PreErase(std::int64_t nowMs);

    TImageStore& Images;
    const TUpdateTimes& Times;
    ETarget Target = ETarget::None;
    std::int64_t ResetUntilMs = 0;
    std::optional<std::int64_t> EraseUntilMs; // nothing: not asked for
    std::optional<std::uint16_t> LastNumber;
};

} // namespace tidewell
