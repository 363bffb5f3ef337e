#pragma once

#include "sim/controller/ImageStore.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace tidewell {

// How a controller takes images in packets, without a stream: a dialogue of commands, which brings the
// processor that is to be updated through reset and pre-erase, and numbered packets with a CRC each. Reset
// and pre-erase take their time, during which commands are answered with "not yet" and "busy".
class TUploadDialogue {
  public:
    explicit TUploadDialogue(TImageStore& images) : Images(images) {}
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

    std::int64_t ResetMs = 1000;
    std::int64_t EraseMs = 1000;

  private:
    enum class ETarget { None, Main, Other };

    EAnswer Begin(ETarget target);
    EAnswer PreErase(std::int64_t nowMs);

    TImageStore& Images;
    ETarget Target = ETarget::None;
    std::int64_t ResetUntilMs = 0;
    std::optional<std::int64_t> EraseUntilMs; // nothing: not asked for
    std::optional<std::uint16_t> LastNumber;
};

} // namespace tidewell
