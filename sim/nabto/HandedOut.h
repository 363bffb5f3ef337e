#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tidewell {

// Memory given to callers of C functions until they free it; what they never free goes with this object.
class THandedOut {
  public:
    char* Text(std::string_view text); // ended by a zero byte
    // Texts in an array; each is freed on its own, and so is the array.
    char** Texts(const std::vector<std::string>& texts);
    // nullptr is ignored. False for what was not given out, or was freed before.
    bool Free(const void* memory);
    std::size_t Count() const { return TextsOut.size() + ArraysOut.size(); }

  private:
    std::unordered_map<const void*, std::unique_ptr<char[]>> TextsOut;
    std::unordered_map<const void*, std::unique_ptr<char*[]>> ArraysOut;
};

} // namespace tidewell
