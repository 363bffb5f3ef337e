#pragma once

#include "core/ports/IClock.h"
#include "core/ports/IWait.h"

#include <chrono>
#include <cstdint>

namespace tidewell {

// The time that a simulation runs in.
class ISimulationTime {
  public:
    virtual ~ISimulationTime() = default;
    virtual std::int64_t NowMs() const = 0; // from any start; never runs backwards
    // Of the local wall time, since 2000-01-01 00:00.
    virtual std::int64_t LocalMinutes() const = 0;
    virtual void Sleep(std::int64_t milliseconds) = 0;
};

// Real time; Sleep blocks the thread.
class TRealTime : public ISimulationTime {
  public:
    std::int64_t NowMs() const override;
    std::int64_t LocalMinutes() const override;
    void Sleep(std::int64_t milliseconds) override;
};

// The time of a program's ports, for a simulation inside the program: with virtual time behind them nothing
// takes real time.
class TPortTime : public ISimulationTime {
  public:
    TPortTime(IWait& wait, const IClock& clock) : Wait(wait), Clock(clock), Start(clock.Now()) {}
    std::int64_t NowMs() const override;
    std::int64_t LocalMinutes() const override;
    void Sleep(std::int64_t milliseconds) override;

  private:
    IWait& Wait;
    const IClock& Clock;
    TTime Start;
};

} // namespace tidewell
