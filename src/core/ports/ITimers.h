#pragma once

#include <functional>
#include <memory>

namespace tidewell {

// A repeating timer. It starts disabled; enabling it, or changing its interval while enabled, starts a whole
// interval anew. The handler runs from the event loop; an exception that leaves it goes to the general
// handler.
class ITimer {
  public:
    virtual ~ITimer() = default;
    virtual void SetInterval(int milliseconds) = 0;
    virtual int Interval() const = 0;
    virtual void SetEnabled(bool enabled) = 0;
    virtual bool Enabled() const = 0;
    virtual void SetHandler(std::function<void()> handler) = 0;
};

class ITimers {
  public:
    virtual ~ITimers() = default;
    virtual std::unique_ptr<ITimer> CreateTimer() = 0;
};

} // namespace tidewell
