#include "link/DownloadFiles.h"

#include "core/DeviceId.h"
#include "core/KvSupport.h"
#include "core/Paths.h"

namespace tidewell {

std::filesystem::path GetFlashLogLogpath(const TCurrentInifilesPath& paths) {
    return paths.directorypath / "log" / "userlog" / "";
}

std::filesystem::path UpdateLogDirectory(const TCurrentInifilesPath& paths) {
    return GetFlashLogLogpath(paths);
}

std::filesystem::path DownloadPath(const IClock& clock, const TCurrentInifilesPath& paths,
                                   const std::string& kind, const std::string& device, bool whole) {
    std::filesystem::path path = GetFlashLogLogpath(paths);
    path += "/" + kind + DeviceIdOf(device) + "_" + NowStamp(clock) + (whole ? ".csv" : "_part.csv");
    return path;
}

} // namespace tidewell
