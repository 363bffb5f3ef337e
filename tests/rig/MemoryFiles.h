#pragma once

#include "core/ports/IFiles.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tidewell::test {

// Files in memory. Directories exist when made, or when a file was put below them.
class TMemoryFiles : public IFiles {
  public:
    std::map<std::filesystem::path, std::string> Content;
    std::map<std::filesystem::path, TTime> Times; // of files older than the day that virtual time starts on
    std::set<std::filesystem::path> Directories;
    // Paths at which writing or removing fails, as on a read-only or full disk; a directory stands for all
    // below it.
    std::set<std::filesystem::path> Unwritable;
    std::set<std::filesystem::path> Locked;
    std::filesystem::path CurrentDirectory; // relative paths are below it
    // Bytes that can still be written before the disk is full.
    std::size_t Room = static_cast<std::size_t>(-1);

    // Before a file is opened for writing, written to, and put in place; may throw, as for a disk that is
    // full.
    std::function<void(const std::filesystem::path&)> OnWrite;
    // Files put in place although not all of them could be written.
    std::vector<std::filesystem::path> Torn;

    void Put(const std::filesystem::path& path, const std::string& bytes);

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

  private:
    class TWriter;
    std::unique_ptr<TWriter> MakeWriter(const std::filesystem::path& path);
    std::filesystem::path Plain(const std::filesystem::path& path) const;
    bool IsUnwritable(const std::filesystem::path& path) const;
};

} // namespace tidewell::test
