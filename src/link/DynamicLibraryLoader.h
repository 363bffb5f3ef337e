#pragma once

#include "core/ports/ILibraryLoader.h"

#include <filesystem>
#include <memory>
#include <string>

namespace tidewell {

// Shared libraries of this machine, "lib<name>.so".
class TDynamicLibraryLoader : public ILibraryLoader {
  public:
    // programFolder: may be empty, then only the system's path counts.
    explicit TDynamicLibraryLoader(std::filesystem::path programFolder);
    TLoadedLibrary Load(const std::string& name) override;

  private:
    std::filesystem::path Folder;
};

} // namespace tidewell
