#include "mainform/NabtoUserFolder.h"

#include "core/Errors.h"

namespace tidewell {

void DeleteNabtoUserFolder(IFiles& files, const std::filesystem::path& directory) {
    const auto users = directory / "nabto_config" / "users";
    for (const std::string& name : files.List(users, "*")) {
        if (name.starts_with('.'))
            continue; // hidden files are not the library's
        try {
            files.Remove(users / name);
        } catch (const EInOutError&) {
            // The next run tries again.
        }
    }
}

} // namespace tidewell
