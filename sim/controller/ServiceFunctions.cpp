#include "sim/controller/ServiceFunctions.h"

#include "sim/controller/Requests.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace tidewell {

namespace {

using TJson = nlohmann::ordered_json;

constexpr std::string_view PacketQuery = "FlashWriteNostreamV2.json";

constexpr std::int64_t Done = 0;
constexpr std::int64_t NotPossible = 1;
constexpr std::int64_t NotReady = 0; // of "prepareUpdate.json", where it is no flash address

constexpr std::int64_t RestartCommand = 42; // the mask of images stands above its 16 bits
constexpr std::int64_t FlashSize = 0x2000000;
constexpr std::int64_t TestArea = 0; // what is written there goes nowhere
constexpr std::size_t MostPayload = 256;

std::string Payload(const TJson& request) {
    std::string payload;
    for (const TJson& element : ListMember(request, "list"))
        payload += static_cast<char>(static_cast<unsigned char>(NumberMember(element, "payload", 0xFF)));
    if (payload.size() > MostPayload)
        throw ERequestRefused("member \"list\" is too long");
    return payload;
}

} // namespace

void TServiceFunctions::Configure(const TServiceSetup& setup, const TRegisterBank& values) {
    Equipped = true;
    Setup = setup;
    Images.Setup = setup.Images;
    Ring.StartBlock = setup.LogBlock;
    Ring.StartInUse = setup.LogInUse;
    Ring.Values.clear();
    for (const TServiceSetup::TLogValue& value : setup.LogValues)
        if (const auto motion = values.Motion(value.Table, value.At))
            Ring.Values.push_back(*motion);
}

std::int64_t TServiceFunctions::Execute(const TCall& call) {
    const TFault* const refusal = FindFault(call.Due, EFault::Refuse);
    if (call.Query == PacketQuery) {
        const std::int64_t number = NumberMember(call.Request, "blocknumber", 0xFFFF);
        const std::int64_t echo = number + FaultNumber(call.Due, EFault::WrongEcho);
        return (refusal != nullptr ? refusal->Number : Packet(call)) | (echo & 0xFFFF) << 16U;
    }
    if (refusal != nullptr)
        return refusal->Number;
    if (call.Query == "admincmd.json")
        return AdminCommand(call);
    if (call.Query == "prepareUpdate.json")
        return PrepareUpdate(call);
    if (call.Query == "flashWrite.json")
        return PrepareWrite(call);
    if (call.Query == "flashRead.json")
        return PrepareRead(call, ETransfer::ReadFlash);
    if (call.Query == "eepReadRaw.json")
        return PrepareRead(call, ETransfer::ReadEeprom);
    if (call.Query == "FlashWriteNostream.json")
        return Command(call);
    if (call.Query == "SystemIdentify.json") {
        NumberMember(call.Request, "SystemIdentify");
        return Done;
    }
    throw ERequestRefused("unknown query " + std::string(call.Query));
}

std::int64_t TServiceFunctions::AdminCommand(const TCall& call) {
    const std::int64_t cmd = TextMember(call.Request, "cmd");
    if (!Equipped || (cmd & 0xFFFF) != RestartCommand)
        return NotPossible;
    const std::vector<TFault> due = call.Faults.Due({EOccasion::Restart, {}, {}, {}, call.NowMs});
    Update.Restart(static_cast<std::uint32_t>(cmd >> 16 & 0xFFFF), call.NowMs,
                   FaultNumber(due, EFault::LateReturn));
    Dialogue.Abort();
    Images.Forget();
    Prepared = {};
    Open = {};
    return Done;
}

std::int64_t TServiceFunctions::PrepareUpdate(const TCall& call) {
    const std::int64_t file = TextMember(call.Request, "fileid");
    const std::int64_t size = TextMember(call.Request, "filesize");
    const std::int64_t crc32 = TextMember(call.Request, "crc32");
    if (!Equipped)
        return NotPossible;
    const std::optional<std::uint32_t> address = Images.Announce(file, size, crc32);
    if (!address)
        return NotReady;
    Dialogue.Abort();
    if (FindFault(call.Due, EFault::OldResult) == nullptr)
        Update.Announce(*Images.Current());
    return *address;
}

std::int64_t TServiceFunctions::PrepareWrite(const TCall& call) {
    const std::int64_t address = TextMember(call.Request, "address");
    const std::int64_t length = TextMember(call.Request, "length");
    const std::optional<std::int32_t> file = Images.FileAt(address, length);
    if (!Equipped || (!file && address != TestArea))
        return NotPossible;
    Prepared = {};
    if (file) {
        Prepared.Kind = ETransfer::WriteImage;
        Prepared.File = *file;
        Images.Clear(*file);
    }
    return Done;
}

std::int64_t TServiceFunctions::PrepareRead(const TCall& call, ETransfer kind) {
    const std::int64_t address = TextMember(call.Request, "address");
    const std::int64_t length = TextMember(call.Request, "length");
    const std::int64_t size = kind == ETransfer::ReadEeprom ? std::int64_t{Setup.Eeprom.Size} : FlashSize;
    if (!Equipped || address < 0 || length < 0 || address > size || length > size - address)
        return NotPossible;
    Prepared = {};
    Prepared.Kind = kind;
    Prepared.Address = address;
    Prepared.Length = Amount(length - FaultNumber(call.Due, EFault::ShortRead));
    Prepared.NowMs = call.NowMs;
    if (kind == ETransfer::ReadEeprom) {
        Prepared.Eeprom =
            EepromBytes(Setup.Eeprom, call.Identity, Ring.Position(call.NowMs), Ring.StartMinutes);
    }
    return Done;
}

std::int64_t TServiceFunctions::Command(const TCall& call) {
    const std::int64_t state = NumberMember(call.Request, "nostreamstate");
    NumberMember(call.Request, "blocknumber");
    Payload(call.Request);
    return Equipped ? Dialogue.Command(state, call.NowMs) : TUploadDialogue::Refused;
}

std::int64_t TServiceFunctions::Packet(const TCall& call) {
    const std::int64_t state = NumberMember(call.Request, "nostreamstate");
    const auto number = static_cast<std::uint16_t>(NumberMember(call.Request, "blocknumber"));
    const auto crc = static_cast<std::uint16_t>(NumberMember(call.Request, "blockCRC", 0xFFFF));
    const std::string payload = Payload(call.Request);
    return Equipped ? std::int64_t{Dialogue.Packet(state, number, crc, payload, call.NowMs)} : NotPossible;
}

bool TServiceFunctions::Away(TFaults& faults, TIdentity& identity, std::int64_t nowMs) {
    if (!Update.Restarting())
        return false;
    if (Update.Away(nowMs) || !faults.Due({EOccasion::Return, {}, {}, {}, nowMs}).empty())
        return true;
    std::uint32_t spoiled = 0;
    if (Update.TestsImages())
        for (const TFault& fault : faults.Due({EOccasion::ImageTest, {}, {}, {}, nowMs}))
            spoiled |= 1U << static_cast<unsigned>(fault.Number - 1);
    for (const auto& [name, number] : Update.Return(spoiled, nowMs)) {
        const auto member =
            std::find_if(identity.begin(), identity.end(),
                         [&wanted = name](const auto& entry) { return entry.first == wanted; });
        if (member != identity.end())
            member->second = number;
        else
            identity.emplace_back(name, number);
    }
    return false;
}

std::optional<std::int32_t> TServiceFunctions::CrcResult(TRegisterAddress at, std::int64_t nowMs) const {
    return Setup.CrcResult == at ? std::optional<std::int32_t>(Update.CrcResult(nowMs)) : std::nullopt;
}

void TServiceFunctions::OpenStream() {
    Open = std::exchange(Prepared, {});
}

std::string TServiceFunctions::ReadStream(std::size_t most) {
    const std::size_t length = std::min(most, Open.Length - Open.Moved);
    const std::int64_t from = Open.Address + static_cast<std::int64_t>(Open.Moved);
    std::string bytes;
    if (Open.Kind == ETransfer::ReadFlash) {
        bytes = Ring.Bytes(from, length, Open.NowMs);
        Images.Overlay(from, bytes);
    } else if (Open.Kind == ETransfer::ReadEeprom) {
        bytes = Open.Eeprom.substr(static_cast<std::size_t>(from), length);
    }
    Open.Moved += bytes.size();
    return bytes;
}

void TServiceFunctions::WriteStream(std::string_view bytes) {
    if (Open.Kind == ETransfer::WriteImage)
        Images.Append(Open.File, bytes);
}

} // namespace tidewell
