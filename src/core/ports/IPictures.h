#pragma once

#include <string>

namespace tidewell {

class IPictures {
  public:
    virtual ~IPictures() = default;
    // Throws TError with the reason when the bytes are no picture that can be shown.
    virtual void Check(const std::string& bytes) const = 0;
};

} // namespace tidewell
