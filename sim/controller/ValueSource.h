#pragma once

#include <cstdint>

namespace tidewell {

enum class ESource { Constant, Ramp, Sine, Noise, Bits, Counter };

// How a simulated value moves. What First and Second mean depends on the kind: Constant value, -; Ramp from,
// to; Sine middle, amplitude; Noise middle, deviation; Bits value, mask of the bits that flip; Counter start,
// step.
struct TValueSource {
    ESource Kind = ESource::Constant;
    double First = 0;
    double Second = 0;
    std::int64_t PeriodMs = 1000; // above 0
    std::int64_t AheadMs = 0;     // runs ahead of the time by that much
};

// The value at that time, which may lie before 0, before it is cut to 16 bits. The same seed gives the same
// noise in every run.
std::int64_t SourceValue(const TValueSource& source, std::uint64_t seed, std::int64_t nowMs);

// A well-mixed number for each number.
std::uint64_t Mixed(std::uint64_t number);

} // namespace tidewell
