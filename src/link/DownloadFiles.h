#pragma once

#include <filesystem>
#include <string>

namespace tidewell {

class IClock;
struct TCurrentInifilesPath;

// Where what was read from a device is kept.
std::filesystem::path GetFlashLogLogpath(const TCurrentInifilesPath& paths);
// Where the logs of firmware updates are kept.
std::filesystem::path UpdateLogDirectory(const TCurrentInifilesPath& paths);
// A file to be made there: the kind, such as "FDlog_", the device id, the time, and "_part" for
// what was not read whole.
std::filesystem::path DownloadPath(const IClock& clock, const TCurrentInifilesPath& paths,
                                   const std::string& kind, const std::string& device, bool whole);

} // namespace tidewell
