#include "sim/nabto/SimulationTime.h"

#include <ctime>
#include <thread>

namespace tidewell {

namespace {

std::int64_t MinutesSince2000(std::chrono::sys_days date, int hour, int minute) {
    constexpr std::chrono::sys_days Start = std::chrono::year{2000} / std::chrono::January / 1;
    return std::int64_t{(date - Start).count()} * 24 * 60 + hour * 60 + minute;
}

} // namespace

std::int64_t TRealTime::NowMs() const {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

std::int64_t TRealTime::LocalMinutes() const {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    ::localtime_r(&now, &local);
    const std::chrono::year_month_day date(std::chrono::year{local.tm_year + 1900},
                                           std::chrono::month(static_cast<unsigned>(local.tm_mon + 1)),
                                           std::chrono::day(static_cast<unsigned>(local.tm_mday)));
    return MinutesSince2000(date, local.tm_hour, local.tm_min);
}

void TRealTime::Sleep(std::int64_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::int64_t TPortTime::NowMs() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock.Now() - Start).count();
}

std::int64_t TPortTime::LocalMinutes() const {
    // Noon is of the same date everywhere within twelve hours of the meridian.
    const auto noon = Clock.Midnight(Clock.Now()) + std::chrono::hours(12);
    const auto [hour, minute] = Clock.HourMinute(Clock.Now());
    return MinutesSince2000(std::chrono::floor<std::chrono::days>(noon), hour, minute);
}

void TPortTime::Sleep(std::int64_t milliseconds) {
    Wait.Sleep(static_cast<int>(milliseconds));
}

} // namespace tidewell
