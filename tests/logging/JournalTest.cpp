#include "logging/Journal.h"

#include "core/DiskFiles.h"
#include "graph/TextColumn.h"
#include "logging/LogBuffers.h"
#include "rig/Test.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

// What the program makes of its journals is told in tests/journeys/journal.txt.
namespace tidewell::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* header = ";[HeaderStart]30;3;0;4;L;M;0;/t/a b.pls[HeaderEnd]";

// Logs on the real disk without end, and tells each row that it has logged.
[[noreturn]] void LogUntilKilled(const fs::path& folder, int told) {
    TDiskFiles files;
    TVirtualTime time;
    TJournal journal(files, time);
    TTextColumn dates, times;
    TRawLog values;
    for (std::size_t row = 0;; ++row) {
        dates.Add("d");
        times.Add(std::to_string(row));
        values.SetRow(row, std::vector<std::int32_t>(100, static_cast<std::int32_t>(row)));
        journal.Add(folder, {row + 1, dates, times, values}, 0, header, 5000);
        if (::write(told, "r", 1) != 1)
            ::_exit(1);
    }
}

TEST(Journal, LosesNoRowWhenTheProgramIsKilled) {
    const fs::path home = fs::temp_directory_path() / ("tidewell_journal_" + std::to_string(::getpid()));
    std::mt19937 random(3);
    TDiskFiles files;
    for (int kill = 0; kill < 20; ++kill) {
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        const pid_t child = ::fork();
        if (child == 0)
            LogUntilKilled(home, pipe[1]);
        ::close(pipe[1]);
        std::string told(1 + random() % 500, ' ');
        ASSERT_EQ(::read(pipe[0], told.data(), 1), 1);
        EXPECT_THAT(JournalsLeft(files, home), testing::IsEmpty()); // it is in use
        ::usleep(static_cast<useconds_t>(random() % 4000));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        std::size_t rows = 1;
        for (ssize_t got = 0; (got = ::read(pipe[0], told.data(), told.size())) > 0;)
            rows += static_cast<std::size_t>(got);
        ::close(pipe[0]);
        const auto left = JournalsLeft(files, home);
        ASSERT_EQ(left.size(), 1U);
        const auto log = RecoverJournal(files, left[0], home / "kept").value();
        EXPECT_TRUE(log.Rows == rows || log.Rows == rows + 1) << log.Rows << " of " << rows;
        EXPECT_EQ(log.Profile, "/t/a b.pls");
        EXPECT_EQ(files.List(home / "kept", "*.csv").size(), static_cast<std::size_t>(kill) + 1);
        const auto lines = ReadLines(files, log.Path);
        ASSERT_EQ(lines.size(), log.Rows + 1);
        EXPECT_EQ(lines.back(), header);
        for (std::size_t row = 0; row < log.Rows; ++row)
            ASSERT_TRUE(lines[row].starts_with(std::to_string(row + 1) + ";d;" + std::to_string(row) + ";"));
    }
    fs::remove_all(home);
}

} // namespace
} // namespace tidewell::test
