#include "link/DynamicLibraryLoader.h"

#include <dlfcn.h>

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

std::unique_ptr<ILibrary> TDynamicLibraryLoader::Load(const std::string& name) {
    const std::string fileName = "lib" + name + ".so";
    void* handle = nullptr;
    if (!Folder.empty())
        handle = dlopen((std::filesystem::absolute(Folder) / fileName).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        handle = dlopen(fileName.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        return nullptr;
    return std::make_unique<TDynamicLibrary>(handle);
}

} // namespace tidewell
