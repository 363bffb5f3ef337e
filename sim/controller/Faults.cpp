#include "sim/controller/Faults.h"

#include "sim/controller/FlashRing.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

namespace tidewell {

namespace {

bool IsService(EOccasion occasion) {
    return occasion == EOccasion::Service || occasion == EOccasion::PrepareRead ||
           occasion == EOccasion::Packet;
}

bool Concerns(EFault fault, EOccasion occasion) {
    const bool query = occasion == EOccasion::Read || occasion == EOccasion::Write ||
                       occasion == EOccasion::Ping || IsService(occasion);
    const bool moves = occasion == EOccasion::StreamRead || occasion == EOccasion::StreamWrite;
    switch (fault) {
    case EFault::Latency:
    case EFault::Error:
    case EFault::Garbage:
    case EFault::Huge:
    case EFault::LostAnswer:
        return query;
    case EFault::NoAnswer:
        return query || moves || occasion == EOccasion::StreamOpen;
    case EFault::WrongCount:
        return occasion == EOccasion::Read;
    case EFault::RefuseWrite:
    case EFault::ChangeAfterWrite:
        return occasion == EOccasion::Write;
    case EFault::SlowStream:
    case EFault::BrokenStream:
        return moves;
    case EFault::StalledStream:
        return occasion == EOccasion::StreamRead;
    case EFault::BufferFull:
        return occasion == EOccasion::StreamWrite;
    case EFault::OldResult:
        return occasion == EOccasion::Service;
    case EFault::Refuse:
        return IsService(occasion);
    case EFault::WrongEcho:
        return occasion == EOccasion::Packet;
    case EFault::ShortRead:
        return occasion == EOccasion::PrepareRead;
    case EFault::BadImage:
        return occasion == EOccasion::ImageTest;
    case EFault::LateReturn:
        return occasion == EOccasion::Restart;
    case EFault::NoReturn:
        return occasion == EOccasion::Return;
    }
    return false;
}

} // namespace

std::optional<EOccasion> QueryOccasion(std::string_view queryName) {
    struct TQuery {
        std::string_view Name;
        EOccasion Kind;
    };
    static constexpr std::array<TQuery, 12> queries{{
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
    const auto* const found = std::find_if(
        queries.begin(), queries.end(), [queryName](const TQuery& query) { return query.Name == queryName; });
    return found == queries.end() ? std::nullopt : std::optional(found->Kind);
}

bool CanBeDue(EFault fault, std::string_view query) {
    if (query == StreamQuery) {
        const auto streams = {EOccasion::StreamOpen, EOccasion::StreamRead, EOccasion::StreamWrite};
        return std::any_of(streams.begin(), streams.end(),
                           [fault](EOccasion kind) { return Concerns(fault, kind); });
    }
    const std::optional<EOccasion> kind = QueryOccasion(query);
    return kind && Concerns(fault, *kind);
}

TConditionCounter::TConditionCounter(TFaultCondition condition) : Condition(std::move(condition)) {}

bool TConditionCounter::Fits(const TOccasion& occasion) const {
    if (occasion.NowMs < Condition.FromMs || (Condition.ToMs && occasion.NowMs >= *Condition.ToMs))
        return false;
    if (!Condition.Query.empty() && Condition.Query != occasion.Query)
        return false;
    if (Condition.State && occasion.State != *Condition.State)
        return false;
    if (Condition.Block) {
        const std::int64_t first = TFlashRing::AddressOf(*Condition.Block);
        if (first >= occasion.Flash.second || first + TFlashRing::BlockSize <= occasion.Flash.first)
            return false;
    }
    if (!Condition.Obj && !Condition.Address)
        return true;
    return std::any_of(occasion.Touched.begin(), occasion.Touched.end(), [this](const TRegisterAddress& at) {
        return (!Condition.Obj || *Condition.Obj == at.Obj) &&
               (!Condition.Address || *Condition.Address == at.Address);
    });
}

bool TConditionCounter::Strikes(const TOccasion& occasion) {
    if (!Fits(occasion))
        return false;
    const std::size_t number = Seen++;
    return number >= Condition.Skip && (!Condition.Times || number - Condition.Skip < *Condition.Times);
}

const TFault* FindFault(const std::vector<TFault>& due, EFault kind) {
    const auto found =
        std::find_if(due.begin(), due.end(), [kind](const TFault& fault) { return fault.Kind == kind; });
    return found == due.end() ? nullptr : &*found;
}

void TFaults::Replace(const std::vector<TFault>& faults) {
    Armed.clear();
    for (const TFault& fault : faults)
        Add(fault);
}

void TFaults::Add(const TFault& fault) {
    Armed.push_back({fault, TConditionCounter(fault.When)});
}

std::vector<TFault> TFaults::Due(const TOccasion& occasion) {
    std::vector<TFault> due;
    for (TArmed& armed : Armed)
        if (Concerns(armed.Fault.Kind, occasion.Kind) && armed.Counter.Strikes(occasion))
            due.push_back(armed.Fault);
    return due;
}

} // namespace tidewell
