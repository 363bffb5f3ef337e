#pragma once

#include "core/ports/IProcess.h"

#include <filesystem>
#include <string>
#include <string_view>

// How a password is kept on this machine: two programs, "E" and "D" in "share" below the program's directory,
// turn it into a text that only this machine can turn back.
namespace tidewell {

// 16 upper-case hexadecimal digits: the first ones of the processor's text, which may hold anything between
// them, filled up with "0". Lower-case letters do not count.
std::string MachineKey(std::string_view processorText);

// Empty when the tool is missing or fails.
std::string Scramble(IProcess& process, const std::filesystem::path& directory, const std::string& clear,
                     const std::string& key);
// Empty when the tool is missing or fails, when the key is not the one it was scrambled with, and when the
// clear text has a character outside the codes 32 to 127.
std::string Unscramble(IProcess& process, const std::filesystem::path& directory,
                       const std::string& scrambled, const std::string& key);

} // namespace tidewell
