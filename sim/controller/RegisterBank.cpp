#include "sim/controller/RegisterBank.h"

#include "core/Errors.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace tidewell {

namespace {

// From -1 to 1.
double Scatter(std::uint64_t state) {
    return static_cast<double>(Mixed(state) >> 11) / 4503599627370496.0 - 1.0;
}

} // namespace

std::uint64_t Mixed(std::uint64_t number) {
    number += 0x9E3779B97F4A7C15ULL;
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9ULL;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EBULL;
    return number ^ (number >> 31);
}

std::int64_t SourceValue(const TValueSource& source, std::uint64_t seed, std::int64_t nowMs) {
    const std::int64_t time = nowMs + source.AheadMs;
    const std::int64_t rest = (time % source.PeriodMs + source.PeriodMs) % source.PeriodMs;
    const std::int64_t step = (time - rest) / source.PeriodMs;
    const double phase = static_cast<double>(rest) / static_cast<double>(source.PeriodMs);
    switch (source.Kind) {
    case ESource::Constant:
        break;
    case ESource::Ramp:
        return std::llround(source.First + (source.Second - source.First) * phase);
    case ESource::Sine:
        return std::llround(source.First + source.Second * std::sin(2 * std::numbers::pi * phase));
    case ESource::Noise: {
        const auto stepNumber = static_cast<std::uint64_t>(step);
        return std::llround(source.First + source.Second * Scatter(seed * 0x100000001B3ULL + stepNumber));
    }
    case ESource::Bits: {
        const std::int64_t value = std::llround(source.First);
        return step % 2 == 0 ? value : value ^ std::llround(source.Second);
    }
    case ESource::Counter:
        return std::llround(source.First) + std::llround(source.Second) * step;
    }
    return std::llround(source.First);
}

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
        added.Motion.Seed = (table << 48) ^ (static_cast<std::uint64_t>(key.second.Obj) << 32) ^
                            static_cast<std::uint64_t>(key.second.Address);
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

std::optional<std::int32_t> TRegisterBank::RefusedStatus(TRegisterAddress at) const {
    const auto found = Registers.find(Target(at));
    return found == Registers.end() ? std::nullopt : found->second.RefusedStatus;
}

void TRegisterBank::Write(TRegisterAddress at, std::uint16_t bits) {
    const auto found = Registers.find(Target(at));
    if (found != Registers.end())
        found->second.Written = bits;
}

} // namespace tidewell
