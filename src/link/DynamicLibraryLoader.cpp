#include "link/DynamicLibraryLoader.h"

#include <dlfcn.h>

#include <system_error>
#include <utility>

namespace tidewell {

namespace {

class TDynamicLibrary : public ILibrary {
  public:
    explicit TDynamicLibrary(void* handle) : Handle(handle) {}
    ~TDynamicLibrary() override { dlclose(Handle); }
    TDynamicLibrary(const TDynamicLibrary&) = delete;
    TDynamicLibrary& operator=(const TDynamicLibrary&) = delete;

    void* Symbol(const std::string& name) const override { return dlsym(Handle, name.c_str()); }

  private:
    void* Handle;
};

} // namespace

TDynamicLibraryLoader::TDynamicLibraryLoader(std::filesystem::path programFolder)
    : Folder(std::move(programFolder)) {}

TLoadedLibrary TDynamicLibraryLoader::Load(const std::string& name) {
    std::string file = "lib" + name + ".so";
    if (!Folder.empty()) {
        const auto own = std::filesystem::absolute(Folder) / file;
        std::error_code unreadable; // then the loader tells why
        if (std::filesystem::symlink_status(own, unreadable).type() != std::filesystem::file_type::not_found)
            file = own.string();
    }
    if (void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL))
        return {std::make_unique<TDynamicLibrary>(handle), std::move(file), {}};
    const char* const reason = dlerror();
    return {nullptr, std::move(file), reason != nullptr ? reason : "unknown reason"};
}

} // namespace tidewell
