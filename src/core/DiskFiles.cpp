#include "core/DiskFiles.h"

#include "core/Errors.h"
#include "core/Numbers.h"
#include "core/Paths.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace tidewell {

namespace fs = std::filesystem;

namespace {

constexpr mode_t newMode = 0644;

[[noreturn]] void Fail(const std::string& what, const fs::path& path, int error) {
    throw EInOutError(what + " " + path.string(), std::generic_category().message(error));
}

// A file descriptor that closes itself.
class TDescriptor {
  public:
    explicit TDescriptor(int value) : Value(value) {}
    TDescriptor(TDescriptor&& other) noexcept : Value(std::exchange(other.Value, -1)) {}
    TDescriptor(const TDescriptor&) = delete;
    TDescriptor& operator=(const TDescriptor&) = delete;
    TDescriptor& operator=(TDescriptor&&) = delete;
    ~TDescriptor() {
        if (Value >= 0)
            ::close(Value);
    }
    int Get() const { return Value; }
    // Closes now; 0, or the error.
    int Close() { return ::close(std::exchange(Value, -1)) == 0 ? 0 : errno; }

  private:
    int Value;
};

class TDiskReader : public IFileReader {
  public:
    explicit TDiskReader(const fs::path& path)
        : Path(path), Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (Descriptor.Get() < 0 || ::fstat(Descriptor.Get(), &Info) != 0)
            Fail("Cannot read", path, errno);
        if (S_ISDIR(Info.st_mode))
            Fail("Cannot read", path, EISDIR);
        ::posix_fadvise(Descriptor.Get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    }
    std::size_t Size() const { return static_cast<std::size_t>(Info.st_size); }
    std::size_t Read(std::span<char> buffer) override {
        std::size_t got = 0;
        while (got < buffer.size()) {
            const auto count = ::read(Descriptor.Get(), buffer.data() + got, buffer.size() - got);
            if (count == 0)
                break;
            if (count > 0)
                got += static_cast<std::size_t>(count);
            else if (errno != EINTR)
                Fail("Cannot read", Path, errno);
        }
        return got;
    }

  private:
    fs::path Path;
    TDescriptor Descriptor;
    struct stat Info {};
};

void WriteAll(int descriptor, std::string_view bytes, const fs::path& path) {
    while (!bytes.empty()) {
        const auto written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            Fail("Cannot write", path, errno);
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

// False: there is such a file.
bool MoveToFree(const fs::path& from, const fs::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno == EEXIST)
        return false;
    if (errno != EINVAL && errno != ENOSYS)
        Fail("Cannot write", to, errno);
    // The file system cannot: an empty file reserves the name.
    const TDescriptor reserved(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (reserved.Get() < 0) {
        if (errno == EEXIST)
            return false;
        Fail("Cannot write", to, errno);
    }
    if (::rename(from.c_str(), to.c_str()) != 0)
        Fail("Cannot write", to, errno);
    return true;
}

enum class ETarget { Replaced, New };

class TDiskWriter : public IFileWriter {
  public:
    TDiskWriter(fs::path target, ETarget kind, mode_t mode)
        : Target(std::move(target)), Kind(kind), Temporary(Target.string() + TemporaryMark + "XXXXXX"),
          Descriptor(::mkostemp(Temporary.data(), O_CLOEXEC)) {
        if (Descriptor.Get() < 0)
            Fail("Cannot write", Target, errno);
        ::flock(Descriptor.Get(), LOCK_EX | LOCK_NB); // in use, for the sweep of another program
        ::fchmod(Descriptor.Get(), mode);
    }
    TDiskWriter(const TDiskWriter&) = delete;
    TDiskWriter& operator=(const TDiskWriter&) = delete;
    ~TDiskWriter() override {
        if (!Committed)
            ::unlink(Temporary.c_str());
    }

    void Write(std::string_view bytes) override { WriteAll(Descriptor.Get(), bytes, Target); }

    fs::path Commit() override {
        // What the disk has not taken by now, such as a delayed "disk full", must show before the old file
        // goes.
        if (::fsync(Descriptor.Get()) != 0)
            Fail("Cannot write", Target, errno);
        if (const int error = Descriptor.Close(); error != 0)
            Fail("Cannot write", Target, error);
        fs::path place = Target;
        if (Kind == ETarget::New)
            for (int number = 2; !MoveToFree(Temporary, place); ++number)
                place = NumberedPath(Target, number);
        else if (::rename(Temporary.c_str(), Target.c_str()) != 0)
            Fail("Cannot replace", Target, errno);
        Committed = true;
        return place;
    }

  private:
    fs::path Target;
    ETarget Kind;
    std::string Temporary;
    TDescriptor Descriptor;
    bool Committed = false;
};

// Makes a file durable in a thread of its own, since a slow disk takes its time.
class TSync {
  public:
    explicit TSync(int descriptor) : Descriptor(descriptor), Thread([this] { Run(); }) {}
    TSync(const TSync&) = delete;
    TSync& operator=(const TSync&) = delete;
    ~TSync() {
        Tell(Ended);
        Thread.join();
    }
    void Start() { Tell(Wanted); }
    int Error() const { return Failure; } // of an earlier one; 0: none

  private:
    void Tell(bool& what) {
        const std::lock_guard lock(Mutex);
        what = true;
        Told.notify_one();
    }
    void Run() {
        std::unique_lock lock(Mutex);
        for (;;) {
            Told.wait(lock, [this] { return Wanted || Ended; });
            if (!std::exchange(Wanted, false))
                return;
            lock.unlock();
            if (::fdatasync(Descriptor) != 0)
                Failure = errno;
            lock.lock();
        }
    }

    const int Descriptor;
    std::mutex Mutex; // of the two flags
    std::condition_variable Told;
    bool Wanted = false;
    bool Ended = false;
    std::atomic<int> Failure = 0;
    std::thread Thread;
};

class TDiskAppender : public IFileWriter {
  public:
    // Nothing: there is such a file, or another program has taken the new one.
    static std::unique_ptr<TDiskAppender> Make(const fs::path& path) {
        TDescriptor file(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC, newMode));
        if (file.Get() < 0 && errno != EEXIST)
            Fail("Cannot write", path, errno);
        struct stat info {};
        const bool held = file.Get() >= 0 && ::flock(file.Get(), LOCK_EX | LOCK_NB) == 0 &&
                          ::fstat(file.Get(), &info) == 0 && info.st_nlink > 0;
        return held ? std::make_unique<TDiskAppender>(path, std::move(file)) : nullptr;
    }
    TDiskAppender(fs::path path, TDescriptor file)
        : Path(std::move(path)), File(std::move(file)), Sync(File.Get()) {}

    void Write(std::string_view bytes) override {
        TellFailure();
        WriteAll(File.Get(), bytes, Path);
    }
    fs::path Commit() override {
        TellFailure();
        Sync.Start();
        return Path;
    }

  private:
    void TellFailure() const {
        if (const int error = Sync.Error(); error != 0)
            Fail("Cannot write", Path, error);
    }

    fs::path Path;
    TDescriptor File;
    TSync Sync;
};

// Who made a file read-only wants it kept, even by a user whom its mode does not bind.
bool HasWriteBit(mode_t mode) {
    return (mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0;
}

} // namespace

bool MatchesMask(const std::string& name, const std::string& mask) {
    if (mask == "*.*")
        return true;
    std::size_t n = 0;
    std::size_t m = 0;
    std::size_t star = std::string::npos;
    std::size_t resume = 0;
    while (n < name.size()) {
        if (m < mask.size() && mask[m] == '*') {
            star = m++;
            resume = n;
        } else if (m < mask.size() && (mask[m] == '?' || LowerCase(mask[m]) == LowerCase(name[n]))) {
            ++m;
            ++n;
        } else if (star != std::string::npos) {
            m = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    while (m < mask.size() && mask[m] == '*')
        ++m;
    return m == mask.size();
}

std::string TDiskFiles::Read(const fs::path& path) const {
    TDiskReader file(path);
    std::string bytes(file.Size(), '\0');
    std::size_t got = 0;
    for (;;) {
        if (got == bytes.size())
            bytes.resize(got + 65536); // a file that grows, or one whose size is not known beforehand
        const std::size_t count = file.Read(std::span(bytes).subspan(got));
        if (count == 0)
            break;
        got += count;
    }
    bytes.resize(got);
    return bytes;
}

std::unique_ptr<IFileReader> TDiskFiles::Open(const fs::path& path) const {
    return std::make_unique<TDiskReader>(path);
}

std::unique_ptr<IFileWriter> TDiskFiles::Replace(const fs::path& path) {
    // A link is followed, so that it goes on pointing at the file that is replaced.
    std::error_code error;
    const fs::path target = fs::is_symlink(path, error) ? fs::weakly_canonical(path, error) : path;
    if (target.empty())
        Fail("Cannot write", path, error.value());
    struct stat info {};
    const bool existed = ::stat(target.c_str(), &info) == 0;
    // A rename would replace a read-only file too.
    if (existed && (!HasWriteBit(info.st_mode) || ::access(target.c_str(), W_OK) != 0))
        Fail("Cannot write", path, EACCES);
    return std::make_unique<TDiskWriter>(target, ETarget::Replaced,
                                         existed ? (info.st_mode & 07777U) : newMode);
}

std::unique_ptr<IFileWriter> TDiskFiles::Create(const fs::path& wanted) {
    return std::make_unique<TDiskWriter>(wanted, ETarget::New, newMode);
}

std::unique_ptr<IFileWriter> TDiskFiles::Append(const fs::path& wanted) {
    std::unique_ptr<TDiskAppender> file;
    for (int number = 1; !file; ++number)
        file = TDiskAppender::Make(NumberedPath(wanted, number));
    return file;
}

bool TDiskFiles::FileExists(const fs::path& path) const {
    std::error_code error;
    return fs::exists(path, error) && !fs::is_directory(path, error);
}

bool TDiskFiles::DirectoryExists(const fs::path& path) const {
    std::error_code error;
    return fs::is_directory(path, error);
}

void TDiskFiles::CreateDirectories(const fs::path& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error && !DirectoryExists(path))
        Fail("Cannot make directory", path, error.value());
}

std::vector<std::string> TDiskFiles::List(const fs::path& directory, const std::string& mask) const {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (!entry->is_directory(ignored) && MatchesMask(entry->path().filename().string(), mask))
            names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

TTime TDiskFiles::Modified(const fs::path& path) const {
    std::error_code error;
    const auto time = fs::last_write_time(path, error);
    if (error)
        Fail("Cannot read", path, error.value());
    return std::chrono::time_point_cast<TTime::duration>(std::chrono::file_clock::to_sys(time));
}

void TDiskFiles::Remove(const fs::path& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0 && !HasWriteBit(info.st_mode))
        Fail("Cannot remove", path, EACCES); // a file that someone made read-only is to stay
    if (::unlink(path.c_str()) != 0)
        Fail("Cannot remove", path, errno);
}

bool TDiskFiles::IsLocked(const fs::path& path) const {
    if (!FileExists(path))
        return false;
    struct stat info {};
    const TDescriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    return file.Get() < 0 || ::fstat(file.Get(), &info) != 0 || !HasWriteBit(info.st_mode) ||
           ::flock(file.Get(), LOCK_EX | LOCK_NB) != 0;
}

} // namespace tidewell
