#include "sim/nabto/SimulationTime.h"

#include <thread>

namespace tidewell {

std::int64_t TRealTime::NowMs() const {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

void TRealTime::Sleep(std::int64_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::int64_t TPortTime::NowMs() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock.Now() - Start).count();
}

void TPortTime::Sleep(std::int64_t milliseconds) {
    Wait.Sleep(static_cast<int>(milliseconds));
}

} // namespace tidewell
