#include "sim/controller/DeviceTime.h"

#include <algorithm>
#include <chrono>

namespace tidewell {

TDeviceTime DeviceTime(std::int64_t minutes) {
    using namespace std::chrono;
    constexpr sys_days Start = year{2000} / January / 1;
    const std::int64_t since = std::max<std::int64_t>(minutes, 0);
    const year_month_day date(Start + days(since / (24 * 60)));
    return {static_cast<std::uint32_t>(int{date.year()} - 2000), unsigned{date.month()}, unsigned{date.day()},
            static_cast<std::uint32_t>(since / 60 % 24), static_cast<std::uint32_t>(since % 60)};
}

} // namespace tidewell
