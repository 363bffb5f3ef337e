#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace tidewell {

// The frame of a tool that takes exactly a text and a key, whatever they begin with, and writes its result to
// standard output, nothing else. A failure is told on standard error, and not a byte of the result is
// written. Gives the exit code: 0, or 1 for a failure.
using TToolWork = std::function<std::string(std::string_view text, std::string_view key)>;
int RunTool(std::span<char* const> arguments, const std::string& usage, const TToolWork& work);

} // namespace tidewell
