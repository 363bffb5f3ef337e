#pragma once

#include <utility>

namespace tidewell {

// Runs the action when its block is left, by whatever way. The action must not throw.
template <class TAction>
class TAtExit {
  public:
    explicit TAtExit(TAction action) : Action(std::move(action)) {}
    ~TAtExit() { Action(); }
    TAtExit(const TAtExit&) = delete;
    TAtExit& operator=(const TAtExit&) = delete;

  private:
    TAction Action;
};

} // namespace tidewell
