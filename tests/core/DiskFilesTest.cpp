#include "core/DiskFiles.h"

#include "core/Errors.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <system_error>

namespace tidewell {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

// Each test works in a directory of its own.
class DiskFiles : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "tidewell.XXXXXX").string();
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        Directory = name;
    }
    void TearDown() override { fs::remove_all(Directory); }
    void Put(const fs::path& name, std::string_view bytes) {
        const auto writer = Files.Replace(Directory / name);
        writer->Write(bytes);
        writer->Commit();
    }
    std::size_t Entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(Directory), fs::directory_iterator()));
    }

    fs::path Directory;
    TDiskFiles Files;
};

TEST_F(DiskFiles, ReadsAFilePieceByPiece) {
    Put("a", "abcdefg");
    std::string buffer(3, ' ');
    std::string read;
    {
        auto files = std::make_unique<TDiskFiles>();
        const auto reader = files->Open(Directory / "a");
        files.reset();
        for (std::size_t got = 0; (got = reader->Read(buffer)) > 0;)
            read += buffer.substr(0, got) + '|';
        EXPECT_EQ(reader->Read(buffer), 0U);
    }
    EXPECT_EQ(read, "abc|def|g|");
    EXPECT_THROW(Files.Open(Directory / "none"), EInOutError);
    EXPECT_THROW(Files.Open(Directory), EInOutError);
}

TEST_F(DiskFiles, WhatIsNotCommittedLeavesTheOldFile) {
    Put("a", "old");
    {
        const auto writer = Files.Replace(Directory / "a");
        writer->Write("new");
        EXPECT_EQ(Files.Read(Directory / "a"), "old");
    }
    EXPECT_EQ(Files.Read(Directory / "a"), "old");
    EXPECT_EQ(Entries(), 1U);
    // A commit that fails, here because a directory has taken the name, removes its temporary file.
    {
        const auto writer = Files.Replace(Directory / "b");
        fs::create_directory(Directory / "b");
        EXPECT_THROW(writer->Commit(), EInOutError);
    }
    EXPECT_EQ(Entries(), 2U);
    EXPECT_THROW(Files.Replace(Directory / "none" / "a"), EInOutError);
}

TEST_F(DiskFiles, ReplacesInPlaceAndLeavesWhatIsReadOnly) {
    Put("a", "old");
    fs::permissions(Directory / "a", fs::perms(0640));
    fs::create_symlink("a", Directory / "link");
    Put("link", std::string(200000, 'x'));
    EXPECT_TRUE(fs::is_symlink(Directory / "link"));
    EXPECT_EQ(fs::status(Directory / "a").permissions(), fs::perms(0640));
    fs::create_symlink("loop", Directory / "loop");
    EXPECT_THROW(Files.Replace(Directory / "loop"), EInOutError);

    fs::permissions(Directory / "a", fs::perms(0444));
    EXPECT_THROW(Files.Replace(Directory / "a"), EInOutError);
    EXPECT_THAT([&] { Files.Remove(Directory / "a"); },
                testing::ThrowsMessage<EInOutError>("Cannot remove " + (Directory / "a").string() + ": " +
                                                    std::generic_category().message(EACCES)));
    EXPECT_EQ(Files.Read(Directory / "a").size(), 200000U);
}

TEST_F(DiskFiles, ReadsAndLists) {
    Put("System_b.INN", "");
    Put("system_a.inn", std::string("\0\r\n", 3));
    Put("plain", "");
    Files.CreateDirectories(Directory / "system_c.inn" / "deep");
    EXPECT_THROW(Files.CreateDirectories(Directory / "plain" / "deep"), EInOutError);
    EXPECT_THAT(Files.List(Directory, "system_*.inn"), ElementsAre("System_b.INN", "system_a.inn"));
    EXPECT_THAT(Files.List(Directory, "*.*"), ElementsAre("System_b.INN", "plain", "system_a.inn"));
    EXPECT_THAT(Files.List(Directory / "none", "*"), testing::IsEmpty());
    EXPECT_EQ(Files.Read(Directory / "system_a.inn"), std::string("\0\r\n", 3));
    EXPECT_FALSE(Files.FileExists(Directory / "system_c.inn"));
    EXPECT_TRUE(Files.DirectoryExists(Directory / "system_c.inn"));
    for (const char* name : {"system_c.inn", "none"})
        EXPECT_THROW(Files.Read(Directory / name), EInOutError) << name;
    EXPECT_THROW(Files.Modified(Directory / "none"), EInOutError);
    const auto age = std::chrono::system_clock::now() - Files.Modified(Directory / "plain");
    EXPECT_LT(std::chrono::abs(age), std::chrono::minutes(1));
}

TEST_F(DiskFiles, KnowsWhoHoldsAFile) {
    const fs::path path = Directory / "a";
    EXPECT_FALSE(Files.IsLocked(path));
    Put("a", "");
    const int holder = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(holder, LOCK_SH | LOCK_NB), 0);
    EXPECT_TRUE(Files.IsLocked(path));
    ::close(holder);
    EXPECT_FALSE(Files.IsLocked(path));
}

TEST(MatchesMask, Names) {
    const auto matches = [](const std::string& nameAndMask) {
        const std::size_t bar = nameAndMask.find('|');
        return MatchesMask(nameAndMask.substr(0, bar), nameAndMask.substr(bar + 1));
    };
    for (const char* text : {"|", "|*", "a|?", "a.PLS|*.pls", "aab|*ab", "abcabd|*ab?", "noext|*.*",
                             "system_.inn|system_*.inn", "Z\xC3\x85|z\xC3\x85"})
        EXPECT_TRUE(matches(text)) << text;
    for (const char* text : {"a|", "ab|?", "a.pls.bak|*.pls", "\xC3\x85|\xC3\xA5", "\xC5|\xE5"})
        EXPECT_FALSE(matches(text)) << text;
}

} // namespace
} // namespace tidewell
