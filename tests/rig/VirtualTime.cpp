#include "rig/VirtualTime.h"

#include <cstdio>
#include <exception>
#include <optional>

namespace tidewell::test {

namespace {

using std::chrono::floor;
using std::chrono::milliseconds;

std::string ThreeNumbers(const char* format, int first, int second, int third) {
    char text[40];
    const int length = std::snprintf(text, sizeof text, format, first, second, third);
    return {text, static_cast<std::size_t>(length)};
}

} // namespace

class TVirtualTime::TTimer : public ITimer {
  public:
    explicit TTimer(TVirtualTime& time) : Time(time) {}
    ~TTimer() override { Cancel(); }
    TTimer(const TTimer&) = delete;
    TTimer& operator=(const TTimer&) = delete;

    void SetInterval(int ms) override {
        if (ms == IntervalMs)
            return;
        IntervalMs = ms;
        if (Key) {
            Cancel();
            Arm();
        }
    }
    int Interval() const override { return IntervalMs; }
    void SetEnabled(bool enabled) override {
        if (enabled == Key.has_value())
            return;
        if (enabled)
            Arm();
        else
            Cancel();
    }
    bool Enabled() const override { return Key.has_value(); }
    void SetHandler(std::function<void()> handler) override { Handler = std::move(handler); }

  private:
    void Arm() {
        Key = Time.Schedule(Time.Current + IntervalMs, [this] {
            Arm();
            if (const auto handler = Handler)
                handler();
        });
    }
    void Cancel() {
        if (Key)
            Time.Queue.erase(*Key);
        Key.reset();
    }

    TVirtualTime& Time;
    int IntervalMs = 1000;
    std::optional<TKey> Key;
    std::function<void()> Handler;
};

TVirtualTime::TVirtualTime() {
    using namespace std::chrono;
    Start = sys_days{year{2026} / March / 2} + hours{8};
}

TVirtualTime::TKey TVirtualTime::Schedule(std::int64_t due, std::function<void()> action) {
    const TKey key{due, NextSequence++};
    Queue.emplace(key, std::move(action));
    return key;
}

bool TVirtualTime::RunNext(std::int64_t until) {
    if (Queue.empty() || Queue.begin()->first.first > until)
        return false;
    auto node = Queue.extract(Queue.begin());
    if (node.key().first > Current)
        Current = node.key().first;
    try {
        node.mapped()();
    } catch (const std::exception& error) {
        if (!OnException)
            throw;
        OnException(error);
    }
    return true;
}

void TVirtualTime::Advance(int ms) {
    const std::int64_t until = Current + ms;
    while (RunNext(until)) {
    }
    if (Current < until)
        Current = until;
}

bool TVirtualTime::AdvanceUntil(const std::function<bool()>& condition, int ms) {
    const std::int64_t until = Current + ms;
    while (!condition()) {
        if (!RunNext(until)) {
            if (Current < until)
                Current = until;
            return condition();
        }
    }
    return true;
}

void TVirtualTime::After(int ms, std::function<void()> action) {
    Schedule(Current + ms, std::move(action));
}

std::unique_ptr<ITimer> TVirtualTime::CreateTimer() {
    return std::make_unique<TTimer>(*this);
}

void TVirtualTime::Sleep(int ms) {
    if (OnWait)
        OnWait();
    Sleeps.push_back(ms);
    Current += ms;
}

void TVirtualTime::ProcessMessages() {
    if (OnWait)
        OnWait();
    // What a handler schedules for this very moment waits for the next turn, so that this call ends.
    const std::uint64_t before = NextSequence;
    const std::int64_t until = Current;
    for (;;) {
        const auto next = Queue.begin();
        if (next == Queue.end() || next->first.first > until || next->first.second >= before)
            return;
        RunNext(until);
    }
}

TTime TVirtualTime::Now() const {
    return Start + milliseconds{Current};
}

std::pair<int, int> TVirtualTime::HourMinute(TTime time) const {
    const std::chrono::hh_mm_ss clock{floor<std::chrono::seconds>(time - floor<std::chrono::days>(time))};
    return {static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count())};
}

TTime TVirtualTime::Midnight(TTime time) const {
    return floor<std::chrono::days>(time);
}

std::string TVirtualTime::ShortDate(TTime time) const {
    const std::chrono::year_month_day day{floor<std::chrono::days>(time)};
    return ThreeNumbers("%02d-%02d-%04d", static_cast<int>(static_cast<unsigned>(day.day())),
                        static_cast<int>(static_cast<unsigned>(day.month())), static_cast<int>(day.year()));
}

std::string TVirtualTime::ShortTime(TTime time) const {
    return LongTime(time).substr(0, 5);
}

std::string TVirtualTime::LongTime(TTime time) const {
    const std::chrono::hh_mm_ss clock{floor<std::chrono::seconds>(time - floor<std::chrono::days>(time))};
    return ThreeNumbers("%02d:%02d:%02d", static_cast<int>(clock.hours().count()),
                        static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
}

} // namespace tidewell::test
