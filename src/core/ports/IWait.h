#pragma once

namespace tidewell {

// The only places where anything waits or runs the event loop from inside a handler.
class IWait {
  public:
    virtual ~IWait() = default;
    // Keeps the windows painted, but delivers no input and no timer tick.
    virtual void Sleep(int milliseconds) = 0;
    // Delivers what is due: input, timer ticks, paints. Handlers can so run inside handlers.
    virtual void ProcessMessages() = 0;
};

} // namespace tidewell
