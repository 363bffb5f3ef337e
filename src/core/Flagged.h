#pragma once

namespace tidewell {

// Sets a flag for as long as it lives.
class TFlagged {
  public:
    explicit TFlagged(bool& flag) : Flag(flag) { Flag = true; }
    TFlagged(const TFlagged&) = delete;
    TFlagged& operator=(const TFlagged&) = delete;
    ~TFlagged() { Flag = false; }

  private:
    bool& Flag;
};

} // namespace tidewell
