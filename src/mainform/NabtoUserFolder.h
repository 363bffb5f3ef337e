#pragma once

#include "core/ports/IFiles.h"
#include "core/ports/ITimers.h"

#include <memory>

namespace tidewell {

// nabto_config/users below the directory, where the library keeps the profile of each e-mail.
class TNabtoUserFolder {
  public:
    TNabtoUserFolder(IFiles& files, ITimers& timers, const std::filesystem::path& directory);

    // Deletes every file directly in it. The folder stays; what cannot be deleted is left in silence.
    void DeleteNabtoUserFolder();
    void NabtoDeleteUsersTimer();

    std::unique_ptr<ITimer> NabtoDeleteUsers; // 30000 ms, once, after the setup dialog

  private:
    IFiles& Files;
    const std::filesystem::path& Directory;
};

} // namespace tidewell
