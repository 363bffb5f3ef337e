#pragma once

namespace tidewell {

// The message loop as a whole.
class IApplication {
  public:
    virtual ~IApplication() = default;
    // Asks the message loop to end. Before the loop has started, it ends as soon as it starts.
    virtual void Terminate() = 0;
    virtual bool Terminated() const = 0; // asked to end
};

} // namespace tidewell
