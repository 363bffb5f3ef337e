#include "core/Housekeeping.h"

#include "core/Errors.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <chrono>
#include <vector>

namespace tidewell {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using days = std::chrono::days;

class Housekeeping : public testing::Test {
  protected:
    void Put(const std::string& name, std::chrono::seconds beforeMidnight) {
        const std::filesystem::path path = "/app/log/systemlog/" + name;
        Files.Put(path, "x");
        Files.Times[path] = Time.Midnight(Time.Now()) - beforeMidnight;
    }

    test::TVirtualTime Time; // 08:00
    test::TMemoryFiles Files;
    test::TScriptedDialogs Dialogs;
    const std::string Question = "Systemlog contain 1 old files > 30 days. Delete files?";
};

TEST_F(Housekeeping, AgeCountsWholeDays) {
    const std::pair<std::chrono::seconds, int> ages[] = {
        {-25h, 0},     {-24h, 0}, {-23h, 1},           {0s, 1},
        {24h - 1s, 1}, {24h, 2},  {days(29) - 1s, 29}, {days(29), 30},
    };
    for (const auto& [beforeMidnight, age] : ages)
        EXPECT_EQ(FileAge(Time, Time.Midnight(Time.Now()) - beforeMidnight), age) << beforeMidnight.count();
}

// A clock whose machine turned to summer time on the day of the file: that day has 23 hours.
TEST(HousekeepingClock, SummerTimeMovesNoFileToAnotherDay) {
    struct TSummer : test::TVirtualTime {
        TTime Midnight(TTime time) const override {
            const TTime today = TVirtualTime::Midnight(TVirtualTime::Now());
            return time >= today ? today : today - (time >= today - 23h ? 23h : 47h);
        }
    };
    const TSummer time;
    const TTime today = time.Midnight(time.Now());
    EXPECT_EQ(FileAge(time, today - 23h), 2);
    EXPECT_EQ(FileAge(time, today - 23h + 1s), 1);
    EXPECT_EQ(FileAge(time, today - 23h - 1s), 2);
}

TEST_F(Housekeeping, AsksOnlyForOldFilesAndRemovesThemOnYes) {
    CleanUpLogFiles(Files, Time, Dialogs, "/app"); // no directory
    Put("young.log", days(29) - 1s);
    Files.Put("/app/log/userlog/old", "x");
    Files.Put("/app/log/systemlog/sub/old", "x");
    CleanUpLogFiles(Files, Time, Dialogs, "/app");
    Put("old.log", days(29));
    for (const auto answer : {EModalResult::No, EModalResult::Yes}) {
        EXPECT_TRUE(Files.FileExists("/app/log/systemlog/old.log"));
        Dialogs.ExpectMessage(Question, answer);
        CleanUpLogFiles(Files, Time, Dialogs, "/app");
        EXPECT_EQ(Dialogs.Shown.back().Kind, EMessageKind::Confirmation);
    }
    EXPECT_THAT(Files.List("/app/log/systemlog", "*"), ElementsAre("young.log"));
    EXPECT_TRUE(Files.FileExists("/app/log/systemlog/sub/old") && Files.FileExists("/app/log/userlog/old"));

    // What cannot be removed stays.
    Put("readonly.log", days(40));
    Files.Unwritable.insert("/app/log/systemlog/readonly.log");
    Dialogs.ExpectMessage(Question, EModalResult::Yes);
    CleanUpLogFiles(Files, Time, Dialogs, "/app");
    Put("gone.log", days(40));
    EXPECT_EQ(PurgeFiles(Files, Time, "/app/log/systemlog/*.log", 30, false), 2U);
    EXPECT_THAT(Files.List("/app/log/systemlog", "*"), ElementsAre("readonly.log", "young.log"));
    EXPECT_THAT([&] { PurgeFiles(Files, Time, "/app/log/systemlog/*.log", 30, true); },
                testing::ThrowsMessage<EInOutError>(
                    testing::StartsWith("PurgFiles() Failed on file\n/app/log/systemlog/readonly.log\n\n")));
}

} // namespace
} // namespace tidewell
