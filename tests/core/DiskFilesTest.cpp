#include "rig/Test.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
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

    fs::path Directory;
    TDiskFiles Files;
};

TEST_F(DiskFiles, ReadsAndLists) {
    for (const char* name : {".", "none"})
        EXPECT_THROW(Files.Open(Directory / name), EInOutError) << name;
    EXPECT_THROW(Files.Modified(Directory / "none"), EInOutError);
    const std::string bytes("\0\r\nabcd", 7);
    Put("System_b.INN", "");
    Put("system_a.inn", bytes);
    Put("plain", "");
    Files.CreateDirectories(Directory / "system_c.inn" / "deep");
    EXPECT_THROW(Files.CreateDirectories(Directory / "plain" / "deep"), EInOutError);
    EXPECT_THAT(Files.List(Directory, "system_*.inn"), ElementsAre("System_b.INN", "system_a.inn"));
    EXPECT_THAT(Files.List(Directory / "none", "*"), ElementsAre());
    EXPECT_TRUE(Files.DirectoryExists(Directory / "system_c.inn") &&
                !Files.FileExists(Directory / "system_c.inn"));
    const auto age = std::chrono::system_clock::now() - Files.Modified(Directory / "plain");
    EXPECT_LT(std::chrono::abs(age), std::chrono::minutes(1));
    EXPECT_EQ(Files.Read(Directory / "system_a.inn"), bytes);
    EXPECT_GT(Files.Read("/proc/self/status").size(), 100U); // of a size that is not known beforehand
    // Piece by piece, also when the port has gone.
    const auto reader = TDiskFiles().Open(Directory / "system_a.inn");
    std::string buffer(3, ' ');
    std::string read;
    for (std::size_t got = 0; (got = reader->Read(buffer)) > 0;)
        read += buffer.substr(0, got) + '|';
    EXPECT_EQ(read, std::string("\0\r\n|abc|d|", 10));
}

TEST_F(DiskFiles, WhatIsNotCommittedLeavesTheOldFile) {
    EXPECT_THROW(Files.Replace(Directory / "none" / "a"), EInOutError);
    Put("a", "old");
    Files.Replace(Directory / "a")->Write("new");
    EXPECT_EQ(Files.Read(Directory / "a"), "old");
    // So does a disk that is full, which a limit on the size of files stands for.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit full{4096, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_THROW(Put("a", std::string(10000, 'x')), EInOutError);
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(Files.Read(Directory / "a"), "old");
    // A commit that fails, here because a directory has taken the name, removes its temporary file.
    {
        const auto writer = Files.Replace(Directory / "b");
        fs::create_directory(Directory / "b");
        EXPECT_THROW(writer->Commit(), EInOutError);
    }
    EXPECT_THAT(Files.List(Directory, "*"), ElementsAre("a"));
}

// Writers side by side, as of two programs: each file has a place of its own.
TEST_F(DiskFiles, ANewFileReplacesNone) {
    Put("a.log", "old");
    const auto one = Files.Create(Directory / "a.log");
    const auto other = Files.Create(Directory / "a.log");
    one->Write("one");
    other->Write("other");
    EXPECT_EQ(other->Commit(), Directory / "a-2.log");
    fs::create_symlink("nowhere", Directory / "a-3.log");
    EXPECT_EQ(one->Commit(), Directory / "a-4.log");
    EXPECT_EQ(Files.Read(Directory / "a.log") + Files.Read(Directory / "a-2.log") +
                  Files.Read(Directory / "a-4.log"),
              "oldotherone");
    EXPECT_THROW(Files.Create(Directory / "none" / "a"), EInOutError);
    EXPECT_THAT(Files.List(Directory, "*"), ElementsAre("a-2.log", "a-3.log", "a-4.log", "a.log"));
}

TEST_F(DiskFiles, ReplacesInPlaceAndLeavesWhatIsReadOnly) {
    Put("a", "old");
    EXPECT_EQ(fs::status(Directory / "a").permissions(), fs::perms(0644));
    const int holder = ::open((Directory / "a").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(holder, LOCK_SH | LOCK_NB), 0);
    EXPECT_TRUE(Files.IsLocked(Directory / "a"));
    ::close(holder);
    EXPECT_FALSE(Files.IsLocked(Directory / "a"));
    fs::permissions(Directory / "a", fs::perms(0640));
    fs::create_symlink("a", Directory / "link");
    Put("link", std::string(200000, 'x'));
    EXPECT_TRUE(fs::is_symlink(Directory / "link"));
    EXPECT_EQ(fs::status(Directory / "a").permissions(), fs::perms(0640));
    fs::create_symlink("loop", Directory / "loop");
    EXPECT_THROW(Files.Replace(Directory / "loop"), EInOutError);

    fs::permissions(Directory / "a", fs::perms(0444));
    EXPECT_TRUE(Files.IsLocked(Directory / "a"));
    EXPECT_THROW(Files.Replace(Directory / "a"), EInOutError);
    EXPECT_THROW(Files.Remove(Directory / "a"), EInOutError);
    fs::permissions(Directory / "a", fs::perms(0644));
    Files.Remove(Directory / "a");
    EXPECT_THAT([&] { Files.Remove(Directory / "a"); },
                testing::ThrowsMessage<EInOutError>("Cannot remove " + (Directory / "a").string() + ": " +
                                                    std::generic_category().message(ENOENT)));
}

TEST(MatchesMask, Names) {
    test::ExpectRows(
        [](std::string_view input) {
            return MatchesMask(test::Piece(input, 0), test::Piece(input, 1)) ? "yes" : "no";
        },
        {"a| -> no", "|? -> no", "ab|? -> no", "a|ab -> no", "a.pls.bak|*.pls -> no",
         "\xC3\x85|\xC3\xA5 -> no", "\xC5|\xE5 -> no", "| -> yes", "|* -> yes", "a|? -> yes", "a|a** -> yes",
         "a.PLS|*.pls -> yes", "aab|*ab -> yes", "abcabd|*ab? -> yes", "noext|*.* -> yes",
         "system_.inn|system_*.inn -> yes", "Z\xC3\x85|z\xC3\x85 -> yes"});
}

} // namespace
} // namespace tidewell
