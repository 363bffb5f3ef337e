#include "sim/controller/RegisterBank.h"

#include "core/Errors.h"

#include <cstddef>

namespace tidewell {

std::uint16_t TMotion::Bits(std::int64_t nowMs) const {
    return static_cast<std::uint16_t>(SourceValue(Source, Seed, nowMs));
}

void TRegisterBank::Add(const TValueRun& run) {
    const bool oneForAll = run.Sources.size() == 1;
    if (!oneForAll && run.Sources.size() != static_cast<std::size_t>(run.Count))
        throw EListError("a run of values needs one source, or one for each address");
    for (std::int32_t i = 0; i < run.Count; ++i) {
        TRegister added;
        added.Motion.Source = run.Sources[oneForAll ? 0 : static_cast<std::size_t>(i)];
        added.Motion.Source.AheadMs += run.StaggerMs * i;
        added.Signed = run.Signed;
        added.RefusedStatus = run.RefusedStatus;

        const TKey key{run.Table, {run.First.Obj, run.First.Address + i}};
        const std::uint64_t table = run.Table == ETable::Setpoint ? 0 : 1;
        added.Motion.Seed = (table << 48) ^ (static_cast<std::uint64_t>(key.At.Obj) << 32) ^
                            static_cast<std::uint64_t>(key.At.Address);
        Registers[key] = added;
        for (const TRegisterAddress& writtenAt : run.WrittenAt)
            WriteTargets[{writtenAt.Obj, writtenAt.Address + i}] = key;
    }
}

std::optional<std::int32_t> TRegisterBank::Read(ETable table, TRegisterAddress at, std::int64_t nowMs) const {
    const auto found = Registers.find({table, at});
    if (found == Registers.end())
        return std::nullopt;
    const TRegister& value = found->second;
    const std::uint16_t bits = value.Written ? *value.Written : value.Motion.Bits(nowMs);
    return value.Signed ? std::int32_t{static_cast<std::int16_t>(bits)} : std::int32_t{bits};
}

std::optional<TMotion> TRegisterBank::Motion(ETable table, TRegisterAddress at) const {
    const auto found = Registers.find({table, at});
    return found == Registers.end() ? std::nullopt : std::optional(found->second.Motion);
}

TRegisterBank::TKey TRegisterBank::Target(TRegisterAddress at) const {
    const auto found = WriteTargets.find(at);
    return found != WriteTargets.end() ? found->second : TKey{ETable::Setpoint, at};
}

TRegisterBank::EWrite TRegisterBank::CheckWrite(TRegisterAddress at, std::int32_t& refusedStatus) const {
    const auto found = Registers.find(Target(at));
    if (found == Registers.end())
        return EWrite::Unknown;
    if (found->second.RefusedStatus) {
        refusedStatus = *found->second.RefusedStatus;
        return EWrite::Refused;
    }
    return EWrite::Done;
}

void TRegisterBank::Write(TRegisterAddress at, std::uint16_t bits) {
    const auto found = Registers.find(Target(at));
    if (found != Registers.end())
        found->second.Written = bits;
}

} // namespace tidewell
