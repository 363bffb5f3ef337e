#include "mainform/NabtoUserFolder.h"

#include "core/Errors.h"

namespace tidewell {

namespace {
constexpr int deleteUsersInterval = 30000;
} // namespace

TNabtoUserFolder::TNabtoUserFolder(IFiles& files, ITimers& timers, const std::filesystem::path& directory)
    : NabtoDeleteUsers(timers.CreateTimer()), Files(files), Directory(directory) {
    NabtoDeleteUsers->SetInterval(deleteUsersInterval);
    NabtoDeleteUsers->SetHandler([this] { NabtoDeleteUsersTimer(); });
}

void TNabtoUserFolder::NabtoDeleteUsersTimer() {
    DeleteNabtoUserFolder();
    NabtoDeleteUsers->SetEnabled(false);
}

void TNabtoUserFolder::DeleteNabtoUserFolder() {
    const auto users = Directory / "nabto_config" / "users";
    for (const std::string& name : Files.List(users, "*")) {
        if (name.starts_with('.'))
            continue; // hidden files are not the library's
        try {
            Files.Remove(users / name);
        } catch (const EInOutError&) {
            // The next run tries again.
        }
    }
}

} // namespace tidewell
