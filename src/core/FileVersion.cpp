#include "core/FileVersion.h"

namespace tidewell {

std::string TFileVersion::Text() const {
    return std::to_string(Major) + "." + std::to_string(Minor) + "." + std::to_string(Release) +
           " Build: " + std::to_string(Build);
}

} // namespace tidewell
