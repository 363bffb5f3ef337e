#include "sim/controller/UploadDialogue.h"

#include "core/Crc16.h"

#include <algorithm>
#include <span>

namespace tidewell {

namespace {

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
    EraseUntilMs = std::max(nowMs, ResetUntilMs) + EraseMs;
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
        ResetUntilMs = nowMs + ResetMs;
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
