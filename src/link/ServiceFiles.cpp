#include "link/ServiceFiles.h"

#include "core/KvSupport.h"
#include "core/Paths.h"

namespace tidewell {

namespace {

constexpr std::size_t idLength = 12; // what follows in an address is the domain

} // namespace

std::filesystem::path GetFlashLogLogpath(const TCurrentInifilesPath& paths) {
    return paths.directorypath / "log" / "userlog" / "";
}

std::filesystem::path ServiceFilePath(const IFiles& files, const IClock& clock,
                                      const TCurrentInifilesPath& paths, const std::string& kind,
                                      const std::string& device, bool whole) {
    std::filesystem::path path = GetFlashLogLogpath(paths);
    path += "/" + kind + device.substr(0, idLength) + "_" + NowStamp(clock) + (whole ? ".csv" : "_part.csv");
    return UnusedPath(files, path);
}

} // namespace tidewell
