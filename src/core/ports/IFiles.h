#pragma once

#include "core/ports/IClock.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// A file being written beside its final place. What is not committed leaves the old file, or none. Write and
// Commit throw EInOutError.
class IFileWriter {
  public:
    virtual ~IFileWriter() = default;
    virtual void Write(std::string_view bytes) = 0;
    // Makes the bytes durable and puts the file in its place, in one step. Gives that place.
    virtual std::filesystem::path Commit() = 0;
};

// A file read from its start.
class IFileReader {
  public:
    virtual ~IFileReader() = default;
    // Fills the buffer as far as there are bytes; fewer only at the end. Throws EInOutError.
    virtual std::size_t Read(std::span<char> buffer) = 0;
};

// Files as whole byte strings. Operations that fail throw EInOutError, unless they say otherwise.
class IFiles {
  public:
    virtual ~IFiles() = default;
    virtual std::string Read(const std::filesystem::path& path) const = 0;
    // For files that may be large. The reader may outlive the port.
    virtual std::unique_ptr<IFileReader> Open(const std::filesystem::path& path) const = 0;
    // A file of a name that the user chose, or that is written again. The directory must exist.
    virtual std::unique_ptr<IFileWriter> Replace(const std::filesystem::path& path) = 0;
    // A file of a name that the program makes, which never replaces one: its place is the first of
    // NumberedPath that is free when it is complete. The directory must exist.
    virtual std::unique_ptr<IFileWriter> Create(const std::filesystem::path& wanted) = 0;
    // A new file, named as by Create, that holds its bytes as they are written and stays as it is when the
    // program dies. It is locked for as long as the writer lives. Commit has what was written made durable
    // without waiting for it, and may be called again; a failure of that is thrown by the next call. The
    // directory must exist.
    virtual std::unique_ptr<IFileWriter> Append(const std::filesystem::path& wanted) = 0;
    virtual bool FileExists(const std::filesystem::path& path) const = 0;
    virtual bool DirectoryExists(const std::filesystem::path& path) const = 0;
    virtual void CreateDirectories(const std::filesystem::path& path) = 0;
    // Names, without directory, of the entries that match the mask ("*" and "?", case-blind) and are no
    // directories, in the order of the listing, which is by name. A missing directory gives none.
    virtual std::vector<std::string> List(const std::filesystem::path& directory,
                                          const std::string& mask) const = 0;
    virtual TTime Modified(const std::filesystem::path& path) const = 0;
    virtual void Remove(const std::filesystem::path& path) = 0;
    // True when the file exists and cannot be opened for exclusive reading and writing. Does not throw.
    virtual bool IsLocked(const std::filesystem::path& path) const = 0;
};

} // namespace tidewell
