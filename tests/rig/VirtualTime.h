#pragma once

#include "core/ports/IClock.h"
#include "core/ports/ITimers.h"
#include "core/ports/IWait.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tidewell::test {

// Timers, waits and the clock on one queue of (due, sequence). Nothing here takes real time. The day starts
// as 2026-03-02 08:00:00; dates read "02-03-2026", times "08:00" and "08:00:00", whatever the locale.
class TVirtualTime : public ITimers, public IWait, public IClock {
  public:
    TVirtualTime();

    // What happens to an exception that leaves a timer's handler; unset, it leaves Advance.
    std::function<void(const std::exception&)> OnException;
    // At the beginning of each Sleep and ProcessMessages.
    std::function<void()> OnWait;
    // Every Sleep, in order, in ms.
    std::vector<int> Sleeps;

    // Runs what is due within the next milliseconds, in order of (due, sequence).
    void Advance(int milliseconds);
    // Advances in steps to the next due timer until the condition holds or the time has passed; true if it
    // holds.
    bool AdvanceUntil(const std::function<bool()>& condition, int milliseconds);
    // Something to happen once at that time from now, such as a click while a wait runs.
    void After(int milliseconds, std::function<void()> action);
    bool Idle() const { return Queue.empty(); }           // nothing will happen by itself
    std::int64_t Milliseconds() const { return Current; } // since the start

    std::unique_ptr<ITimer> CreateTimer() override;

    void Sleep(int milliseconds) override; // moves the clock, delivers nothing
    void ProcessMessages() override;       // delivers what is due now

    TTime Now() const override;
    std::chrono::milliseconds Monotonic() const override { return std::chrono::milliseconds{Current}; }
    std::pair<int, int> HourMinute(TTime time) const override;
    TTime Midnight(TTime time) const override;
    std::string ShortDate(TTime time) const override;
    std::string ShortTime(TTime time) const override;
    std::string LongTime(TTime time) const override;

  private:
    class TTimer;
    using TKey = std::pair<std::int64_t, std::uint64_t>; // due, sequence

    TKey Schedule(std::int64_t due, std::function<void()> action);
    bool RunNext(std::int64_t until);

    std::int64_t Current = 0;
    std::uint64_t NextSequence = 0;
    std::map<TKey, std::function<void()>> Queue;
    TTime Start;
};

} // namespace tidewell::test
