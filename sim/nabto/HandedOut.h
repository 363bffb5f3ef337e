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
    // Ended by a zero byte.
    char* Text(std::string_view text) {
        const auto memory = std::make_shared<std::string>(text);
        Out.emplace(memory->data(), memory);
        return memory->data();
    }
    // Texts in an array; each is freed on its own, and so is the array.
    char** Texts(const std::vector<std::string>& texts) {
        const auto memory = std::make_shared<std::vector<char*>>();
        for (const std::string& text : texts)
            memory->push_back(Text(text));
        memory->push_back(nullptr);
        Out.emplace(memory->data(), memory);
        return memory->data();
    }
    // nullptr is ignored. False for what was not given out, or was freed before.
    bool Free(const void* memory) { return memory == nullptr || Out.erase(memory) == 1; }

  private:
    std::unordered_map<const void*, std::shared_ptr<void>> Out;
};

} // namespace tidewell
