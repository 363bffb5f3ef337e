#include "sim/controller/Faults.h"

#include "sim/controller/Memories.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tidewell {

namespace {

constexpr std::uint32_t Bit(EOccasion occasion) {
    return 1U << static_cast<unsigned>(occasion);
}
constexpr std::uint32_t Read = Bit(EOccasion::Read);
constexpr std::uint32_t Write = Bit(EOccasion::Write);
constexpr std::uint32_t PrepareRead = Bit(EOccasion::PrepareRead);
constexpr std::uint32_t Packet = Bit(EOccasion::Packet);
constexpr std::uint32_t Services = Bit(EOccasion::Service) | PrepareRead | Packet;
constexpr std::uint32_t Queries = Read | Write | Bit(EOccasion::Ping) | Services;
constexpr std::uint32_t StreamRead = Bit(EOccasion::StreamRead);
constexpr std::uint32_t StreamWrite = Bit(EOccasion::StreamWrite);
constexpr std::uint32_t Moves = StreamRead | StreamWrite;
constexpr std::uint32_t Streams = Moves | Bit(EOccasion::StreamOpen);

constexpr std::array<TFaultKind, 20> Kinds{{
    {EFault::Latency, "Latency", EFaultArgument::Time, Queries},
    {EFault::NoAnswer, "NoAnswer", EFaultArgument::On, Queries | Streams},
    {EFault::Error, "Error", EFaultArgument::Text, Queries},
    {EFault::WrongCount, "WrongCount", EFaultArgument::Integer, Read},
    {EFault::Garbage, "Garbage", EFaultArgument::Text, Queries},
    {EFault::Huge, "Huge", EFaultArgument::Count, Queries},
    {EFault::RefuseWrite, "RefuseWrite", EFaultArgument::Integer, Write},
    {EFault::ChangeAfterWrite, "ChangeAfterWrite", EFaultArgument::Integer, Write},
    {EFault::SlowStream, "SlowStream", EFaultArgument::Time, Moves},
    {EFault::BrokenStream, "BrokenStream", EFaultArgument::Count, Moves},
    {EFault::StalledStream, "StalledStream", EFaultArgument::Count, StreamRead},
    {EFault::BufferFull, "BufferFull", EFaultArgument::On, StreamWrite},
    {EFault::LostAnswer, "LostAnswer", EFaultArgument::On, Queries},
    {EFault::Refuse, "Refuse", EFaultArgument::Count, Services},
    {EFault::WrongEcho, "WrongEcho", EFaultArgument::Integer, Packet},
    {EFault::ShortRead, "ShortRead", EFaultArgument::Count, PrepareRead},
    {EFault::BadImage, "BadImage", EFaultArgument::File, Bit(EOccasion::ImageTest)},
    {EFault::OldResult, "OldResult", EFaultArgument::On, Bit(EOccasion::Service)},
    {EFault::LateReturn, "LateReturn", EFaultArgument::Time, Bit(EOccasion::Restart)},
    {EFault::NoReturn, "NoReturn", EFaultArgument::On, Bit(EOccasion::Return)},
}};
static_assert([] {
    for (std::size_t i = 0; i < Kinds.size(); ++i)
        if (Kinds[i].Kind != static_cast<EFault>(i))
            return false;
    return true;
}());

bool Concerns(EFault fault, EOccasion occasion) {
    return (Kinds[static_cast<std::size_t>(fault)].Occasions & Bit(occasion)) != 0;
}

bool Fits(const TFaultCondition& condition, const TOccasion& occasion) {
    if (occasion.NowMs < condition.FromMs || (condition.ToMs && occasion.NowMs >= *condition.ToMs))
        return false;
    if (!condition.Query.empty() && condition.Query != occasion.Query)
        return false;
    if (condition.State && occasion.State != *condition.State)
        return false;
    if (condition.Block) {
        const std::int64_t first = TFlashRing::AddressOf(*condition.Block);
        if (first >= occasion.Flash.second || first + TFlashRing::BlockSize <= occasion.Flash.first)
            return false;
    }
    if (!condition.Obj && !condition.Address)
        return true;
    return std::any_of(occasion.Touched.begin(), occasion.Touched.end(), [&](const TRegisterAddress& at) {
        return (!condition.Obj || *condition.Obj == at.Obj) &&
               (!condition.Address || *condition.Address == at.Address);
    });
}

} // namespace

std::span<const TFaultKind> FaultKinds() {
    return Kinds;
}

bool TFaultKind::CanBeDue(std::string_view query) const {
    if (query == StreamQuery)
        return (Occasions & Streams) != 0;
    const std::optional<EOccasion> kind = QueryOccasion(query);
    return kind && (Occasions & Bit(*kind)) != 0;
}

std::optional<EOccasion> QueryOccasion(std::string_view queryName) {
    static constexpr std::array<std::pair<std::string_view, EOccasion>, 12> queries{{
        {"ping.json", EOccasion::Ping},
        {"setpointReadValue.json", EOccasion::Read},
        {"datapointReadValue.json", EOccasion::Read},
        {"setpointWriteValue.json", EOccasion::Write},
        {"admincmd.json", EOccasion::Service},
        {"flashRead.json", EOccasion::PrepareRead},
        {"flashWrite.json", EOccasion::Service},
        {"eepReadRaw.json", EOccasion::PrepareRead},
        {"prepareUpdate.json", EOccasion::Service},
        {"FlashWriteNostream.json", EOccasion::Service},
        {"FlashWriteNostreamV2.json", EOccasion::Packet},
        {"SystemIdentify.json", EOccasion::Service},
    }};
    for (const auto& [name, kind] : queries)
        if (name == queryName)
            return kind;
    return std::nullopt;
}

bool TFaultCondition::Strikes(const TOccasion& occasion) {
    if (!Fits(*this, occasion))
        return false;
    const std::size_t number = Seen++;
    return number >= Skip && (!Times || number - Skip < *Times);
}

const TFault* FindFault(const std::vector<TFault>& due, EFault kind) {
    const auto found =
        std::find_if(due.begin(), due.end(), [kind](const TFault& fault) { return fault.Kind == kind; });
    return found == due.end() ? nullptr : &*found;
}

std::int64_t FaultNumber(const std::vector<TFault>& due, EFault kind) {
    const TFault* const fault = FindFault(due, kind);
    return fault != nullptr ? fault->Number : 0;
}

std::size_t Amount(std::int64_t number) {
    return static_cast<std::size_t>(std::max<std::int64_t>(number, 0));
}

void TFaults::Replace(const std::vector<TFault>& faults) {
    Armed = faults;
    for (TFault& fault : Armed)
        fault.When.Seen = 0;
}

std::vector<TFault> TFaults::Due(const TOccasion& occasion) {
    std::vector<TFault> due;
    for (TFault& fault : Armed)
        if (Concerns(fault.Kind, occasion.Kind) && fault.When.Strikes(occasion))
            due.push_back(fault);
    return due;
}

} // namespace tidewell
