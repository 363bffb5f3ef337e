#pragma once

#include "core/ports/IFiles.h"

#include <filesystem>

namespace tidewell {

// Deletes every file directly in nabto_config/users below the directory, where the library keeps the profile
// of each e-mail. The folder stays; what cannot be deleted is left in silence.
void DeleteNabtoUserFolder(IFiles& files, const std::filesystem::path& directory);

} // namespace tidewell
