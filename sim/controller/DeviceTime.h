#pragma once

#include <cstdint>

namespace tidewell {

// A controller's own clock, in local time.
struct TDeviceTime {
    std::uint32_t Year = 0; // since 2000
    std::uint32_t Month = 0;
    std::uint32_t Day = 0;
    std::uint32_t Hour = 0;
    std::uint32_t Minute = 0;
};

// Of a time in minutes since 2000-01-01 00:00; times before that count as that.
TDeviceTime DeviceTime(std::int64_t minutes);

} // namespace tidewell
