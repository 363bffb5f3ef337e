#pragma once

#include <chrono>
#include <string>
#include <utility>

namespace tidewell {

using TTime = std::chrono::system_clock::time_point;

// Wall time and the machine's formats for it; intervals are measured with Monotonic alone.
class IClock {
  public:
    virtual ~IClock() = default;
    virtual TTime Now() const = 0;
    // Since some moment in the past; no change of the wall time touches it.
    virtual std::chrono::milliseconds Monotonic() const {
        return std::chrono::floor<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    }
    // Local hour and minute.
    virtual std::pair<int, int> HourMinute(TTime time) const = 0;
    // The start of the local day that holds the time.
    virtual TTime Midnight(TTime time) const = 0;
    virtual std::string ShortDate(TTime time) const = 0;
    virtual std::string ShortTime(TTime time) const = 0;
    virtual std::string LongTime(TTime time) const = 0;
};

} // namespace tidewell
