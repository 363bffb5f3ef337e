#include "cloud/Scrambling.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>

namespace tidewell {

namespace {

constexpr std::size_t keyLength = 16;

// What the tool wrote behind the marker; nothing when it did not run or did not write it.
std::optional<std::string> RunTool(IProcess& process, const std::filesystem::path& directory,
                                   const std::string& tool, const std::string& text, const std::string& key,
                                   std::string_view marker) {
    // An argument ends at its first zero byte, so the tool would work on another text.
    if (text.find('\0') != std::string::npos)
        return std::nullopt;
    // The tool does not start in this directory, so its path must stand alone.
    const auto program = std::filesystem::absolute(directory / "share" / tool);
    const auto output = process.Run(program, {text, key}, program.root_path());
    if (!output)
        return std::nullopt;
    const auto at = output->find(marker);
    if (at == std::string::npos)
        return std::nullopt;
    return output->substr(at + marker.size());
}

} // namespace

std::string MachineKey(std::string_view processorText) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string key;
    std::copy_if(processorText.begin(), processorText.end(), std::back_inserter(key),
                 [&digits](char character) { return digits.find(character) != std::string_view::npos; });
    key.resize(keyLength, '0');
    return key;
}

std::string Scramble(IProcess& process, const std::filesystem::path& directory, const std::string& clear,
                     const std::string& key) {
    const auto output = RunTool(process, directory, "E", clear, key, "Result2:");
    if (!output)
        return {};
    const auto end = output->find(",#END");
    return end == std::string::npos ? std::string() : output->substr(0, end);
}

std::string Unscramble(IProcess& process, const std::filesystem::path& directory,
                       const std::string& scrambled, const std::string& key) {
    const auto clear = RunTool(process, directory, "D", scrambled, key, "Result3:");
    if (!clear)
        return {};
    const bool plain = std::all_of(clear->begin(), clear->end(), [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return code >= 32 && code <= 127;
    });
    return plain ? *clear : std::string();
}

} // namespace tidewell
