#include "rig/MemoryFiles.h"

#include "core/DiskFiles.h"
#include "core/Errors.h"
#include "core/Paths.h"

#include <utility>

namespace tidewell::test {

std::filesystem::path TMemoryFiles::Plain(const std::filesystem::path& path) const {
    const auto plain = (CurrentDirectory / path).lexically_normal();
    return plain.has_filename() ? plain : plain.parent_path();
}

class TMemoryFiles::TWriter : public IFileWriter {
  public:
    TWriter(TMemoryFiles& files, std::filesystem::path path, std::filesystem::path given)
        : Files(files), Path(std::move(path)), Given(std::move(given)) {}
    void Write(std::string_view bytes) override {
        Whole = false;
        Tell();
        if (bytes.size() > Files.Room)
            throw EInOutError("Cannot write " + Path.string() + ": No space left on device");
        Files.Room -= bytes.size();
        Buffer += bytes;
        Whole = true;
    }
    std::filesystem::path Commit() override {
        Tell();
        if (New) {
            Path = UnusedPath(Files, Path);
            Given = Given.parent_path() / Path.filename();
        }
        if (!Whole)
            Files.Torn.push_back(Path);
        Files.Content[Path] = Buffer;
        Files.Directories.insert(Path.parent_path());
        return Given;
    }
    bool New = false;

  private:
    void Tell() const {
        if (Files.OnWrite)
            Files.OnWrite(Path);
    }
    bool Whole = true;
    TMemoryFiles& Files;
    std::filesystem::path Path, Given; // plain, and as it was asked for
    std::string Buffer;
};

void TMemoryFiles::Put(const std::filesystem::path& path, const std::string& bytes) {
    const auto plain = Plain(path);
    Content[plain] = bytes;
    CreateDirectories(plain.parent_path());
}

bool TMemoryFiles::IsUnwritable(const std::filesystem::path& path) const {
    for (auto part = path;; part = part.parent_path()) {
        if (Unwritable.contains(part))
            return true;
        if (part == part.parent_path())
            return false;
    }
}

std::string TMemoryFiles::Read(const std::filesystem::path& path) const {
    const auto found = Content.find(Plain(path));
    if (found == Content.end())
        throw EInOutError("Cannot read " + path.string() + ": No such file or directory");
    return found->second;
}

namespace {

class TReader : public IFileReader {
  public:
    explicit TReader(std::string content) : Content(std::move(content)) {}
    std::size_t Read(std::span<char> buffer) override {
        const std::size_t count = Content.copy(buffer.data(), buffer.size(), At);
        At += count;
        return count;
    }

  private:
    std::string Content;
    std::size_t At = 0;
};

} // namespace

std::unique_ptr<IFileReader> TMemoryFiles::Open(const std::filesystem::path& path) const {
    return std::make_unique<TReader>(Read(path));
}

std::unique_ptr<IFileWriter> TMemoryFiles::Replace(const std::filesystem::path& path) {
    return MakeWriter(path);
}

std::unique_ptr<IFileWriter> TMemoryFiles::Create(const std::filesystem::path& wanted) {
    auto writer = MakeWriter(wanted);
    writer->New = true;
    return writer;
}

namespace {

class TAppender : public IFileWriter {
  public:
    TAppender(TMemoryFiles& files, std::filesystem::path path) : Files(files), Path(std::move(path)) {
        Files.Content[Path];
        Files.Locked.insert(Path);
    }
    TAppender(const TAppender&) = delete;
    TAppender& operator=(const TAppender&) = delete;
    ~TAppender() override { Files.Locked.erase(Path); }
    void Write(std::string_view bytes) override {
        if (Files.OnWrite)
            Files.OnWrite(Path);
        if (bytes.size() > Files.Room)
            throw EInOutError("Cannot write " + Path.string() + ": No space left on device");
        Files.Room -= bytes.size();
        Files.Content[Path] += bytes;
    }
    std::filesystem::path Commit() override { return Path; }

  private:
    TMemoryFiles& Files;
    std::filesystem::path Path;
};

} // namespace

std::unique_ptr<IFileWriter> TMemoryFiles::Append(const std::filesystem::path& wanted) {
    MakeWriter(wanted); // which fails where this does
    return std::make_unique<TAppender>(*this, UnusedPath(*this, Plain(wanted)));
}

std::unique_ptr<TMemoryFiles::TWriter> TMemoryFiles::MakeWriter(const std::filesystem::path& path) {
    const auto plain = Plain(path);
    if (IsUnwritable(plain))
        throw EInOutError("Cannot write " + path.string() + ": Permission denied");
    if (!DirectoryExists(plain.parent_path()))
        throw EInOutError("Cannot write " + path.string() + ": No such file or directory");
    if (OnWrite)
        OnWrite(plain);
    return std::make_unique<TWriter>(*this, plain, path);
}

bool TMemoryFiles::FileExists(const std::filesystem::path& path) const {
    return Content.contains(Plain(path));
}

bool TMemoryFiles::DirectoryExists(const std::filesystem::path& path) const {
    return Directories.contains(Plain(path));
}

void TMemoryFiles::CreateDirectories(const std::filesystem::path& path) {
    const auto plain = Plain(path);
    if (IsUnwritable(plain))
        throw EInOutError("Cannot make directory " + path.string() + ": Permission denied");
    for (auto part = plain; Directories.insert(part).second && part != part.parent_path();)
        part = part.parent_path();
}

std::vector<std::string> TMemoryFiles::List(const std::filesystem::path& directory,
                                            const std::string& mask) const {
    std::vector<std::string> names;
    for (const auto& [path, bytes] : Content)
        if (path.parent_path() == Plain(directory) && MatchesMask(path.filename().string(), mask))
            names.push_back(path.filename().string());
    return names;
}

TTime TMemoryFiles::Modified(const std::filesystem::path& path) const {
    const auto found = Times.find(Plain(path));
    return found == Times.end() ? TTime(std::chrono::sys_days{std::chrono::year{2026} / 3 / 2})
                                : found->second;
}

void TMemoryFiles::Remove(const std::filesystem::path& path) {
    const auto plain = Plain(path);
    if (IsUnwritable(plain) || Content.erase(plain) == 0)
        throw EInOutError("Cannot remove " + path.string() + ": Permission denied");
}

bool TMemoryFiles::IsLocked(const std::filesystem::path& path) const {
    return FileExists(path) && (Locked.contains(Plain(path)) || IsUnwritable(Plain(path)));
}

} // namespace tidewell::test
