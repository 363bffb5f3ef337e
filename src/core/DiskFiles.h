#pragma once

#include "core/ports/IFiles.h"

#include <string>

namespace tidewell {

// Whether the whole name matches the mask; "*" is any run of characters, "?" any one, letters compare without
// case. "*.*" is any name, with or without a point.
bool MatchesMask(const std::string& name, const std::string& mask);

// The files of this machine.
// Stands before the last six characters of a file's name while it is being written.
inline constexpr const char* TemporaryMark = ".tmp-";

class TDiskFiles : public IFiles {
  public:
    std::string Read(const std::filesystem::path& path) const override;
    std::unique_ptr<IFileReader> Open(const std::filesystem::path& path) const override;
    std::unique_ptr<IFileWriter> Replace(const std::filesystem::path& path) override;
    std::unique_ptr<IFileWriter> Create(const std::filesystem::path& wanted) override;
    std::unique_ptr<IFileWriter> Append(const std::filesystem::path& wanted) override;
    bool FileExists(const std::filesystem::path& path) const override;
    bool DirectoryExists(const std::filesystem::path& path) const override;
    void CreateDirectories(const std::filesystem::path& path) override;
    std::vector<std::string> List(const std::filesystem::path& directory,
                                  const std::string& mask) const override;
    TTime Modified(const std::filesystem::path& path) const override;
    void Remove(const std::filesystem::path& path) override;
    bool IsLocked(const std::filesystem::path& path) const override;
};

} // namespace tidewell
