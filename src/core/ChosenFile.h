#pragma once

#include <filesystem>
#include <string_view>

namespace tidewell {

class IDialogs;
class IFiles;

// For a name that is given its ending after the save dialog has asked about the name as it was typed.
std::filesystem::path WithEnding(std::filesystem::path path, std::string_view ending);
// Asks whether a file that is there may be replaced.
bool MayReplace(const IFiles& files, IDialogs& dialogs, const std::filesystem::path& path);

} // namespace tidewell
