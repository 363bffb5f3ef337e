#pragma once

#include "core/ports/ILibraryLoader.h"

#include <filesystem>
#include <memory>
#include <string>

namespace tidewell {

// Shared libraries of this machine, "lib<name>.so".
class TDynamicLibraryLoader : public ILibraryLoader {
  public:
    // programFolder is searched before the system's path.
    explicit TDynamicLibraryLoader(std::filesystem::path programFolder);
    std::unique_ptr<ILibrary> Load(const std::string& name) override;

  private:
    std::filesystem::path Folder;
};

} // namespace tidewell
