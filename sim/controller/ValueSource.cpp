#include "sim/controller/ValueSource.h"

#include <cmath>
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

} // namespace tidewell
