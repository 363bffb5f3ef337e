#include "core/Housekeeping.h"

#include "core/Errors.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

namespace tidewell {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using days = std::chrono::days;

TEST(Housekeeping, AgeCountsWholeDaysOfTheCalendar) {
    const test::TVirtualTime time; // 08:00
    const std::pair<std::chrono::seconds, int> ages[] = {
        {-25h, 0},     {-24h, 0}, {-23h, 1},           {0s, 1},
        {24h - 1s, 1}, {24h, 2},  {days(29) - 1s, 29}, {days(29), 30},
    };
    for (const auto& [beforeMidnight, age] : ages)
        EXPECT_EQ(FileAge(time, time.Midnight(time.Now()) - beforeMidnight), age) << beforeMidnight.count();
    // The machine turned to summer time on the day of the file: that day has 23 hours.
    struct TSummer : test::TVirtualTime {
        TTime Midnight(TTime at) const override {
            const TTime today = TVirtualTime::Midnight(TVirtualTime::Now());
            return at >= today ? today : today - (at >= today - 23h ? 23h : 47h);
        }
    };
    const TSummer summer;
    const TTime today = summer.Midnight(summer.Now());
    for (const auto& [before, age] : {std::pair{23h - 1s, 1}, {23h, 2}, {23h + 1s, 2}})
        EXPECT_EQ(FileAge(summer, today - before), age) << before.count();
}

TEST(Housekeeping, RemovesWhatIsOldAndCanGo) {
    const test::TVirtualTime time;
    test::TMemoryFiles files;
    const std::filesystem::path mask = "/log/*.log";
    EXPECT_EQ(SearchPurgeFiles(files, time, mask, 30), 0U);
    for (const auto& [path, age] : {std::pair{"/log/young.log", days(29) - 1s},
                                    {"/log/old.log", days(29)},
                                    {"/log/old.csv", days(99)},
                                    {"/log/sub/old.log", days(99)},
                                    {"/log/kept.log", days(99)}}) {
        files.Put(path, "x");
        files.Times[path] = time.Midnight(time.Now()) - age;
    }
    files.Unwritable.insert("/log/kept.log");
    EXPECT_EQ(SearchPurgeFiles(files, time, mask, 30), 2U);
    EXPECT_EQ(PurgeFiles(files, time, mask, 30, false), 2U);
    EXPECT_THAT(files.List("/log", "*"), ElementsAre("kept.log", "old.csv", "young.log"));
    EXPECT_TRUE(files.FileExists("/log/sub/old.log"));
    EXPECT_THAT([&] { PurgeFiles(files, time, mask, 30, true); },
                testing::ThrowsMessage<EInOutError>(
                    testing::StartsWith("PurgFiles() Failed on file\n/log/kept.log\n\n")));
}

} // namespace
} // namespace tidewell
