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

// Sets a flag for as long as it lives.
class TFlagged {
  public:
    explicit TFlagged(bool& flag) : Flag(flag) { Flag = true; }
    ~TFlagged() { Flag = false; }
    TFlagged(const TFlagged&) = delete;
    TFlagged& operator=(const TFlagged&) = delete;

  private:
    bool& Flag;
};

} // namespace tidewell
