#pragma once

#include <string>

namespace tidewell {

// The process: its message loop as a whole, and who started it.
class IApplication {
  public:
    virtual ~IApplication() = default;
    // Asks the message loop to end. Before the loop has started, it ends as soon as it starts.
    virtual void Terminate() = 0;
    virtual bool Terminated() const = 0; // asked to end
    // Tells a line on standard error.
    virtual void WriteError(const std::string& line) = 0;
};

} // namespace tidewell
