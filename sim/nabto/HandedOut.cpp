#include "sim/nabto/HandedOut.h"

#include <algorithm>
#include <utility>

namespace tidewell {

char* THandedOut::Text(std::string_view text) {
    auto memory = std::make_unique<char[]>(text.size() + 1);
    std::copy(text.begin(), text.end(), memory.get());
    char* const given = memory.get();
    TextsOut.emplace(given, std::move(memory));
    return given;
}

char** THandedOut::Texts(const std::vector<std::string>& texts) {
    auto memory = std::make_unique<char*[]>(texts.size() + 1);
    for (std::size_t i = 0; i < texts.size(); ++i)
        memory[i] = Text(texts[i]);
    char** const given = memory.get();
    ArraysOut.emplace(given, std::move(memory));
    return given;
}

bool THandedOut::Free(const void* memory) {
    return memory == nullptr || TextsOut.erase(memory) + ArraysOut.erase(memory) == 1;
}

} // namespace tidewell
