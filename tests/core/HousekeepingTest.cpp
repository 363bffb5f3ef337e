#include "core/Housekeeping.h"

#include "rig/FixedDialogs.h"
#include "rig/Test.h"

namespace tidewell {
namespace {

using namespace std::chrono_literals;
using days = std::chrono::days;

TEST(Housekeeping, AgeCountsWholeDaysOfTheCalendar) {
    const test::TVirtualTime time; // 08:00
    test::TMemoryFiles files;
    for (const auto& [beforeMidnight, age] : std::initializer_list<std::pair<std::chrono::seconds, int>>{
             {-25h, 0}, {-24h, 0}, {-23h, 1}, {0s, 1}, {24h - 1s, 1}, {24h, 2}, {days(29), 30}}) {
        files.Put("/log/a.log", "");
        files.Times["/log/a.log"] = time.Midnight(time.Now()) - beforeMidnight;
        EXPECT_EQ(FileAge(time, files.Modified("/log/a.log")), age) << beforeMidnight.count();
        EXPECT_EQ(SearchPurgeFiles(files, time, "/log/*.log", 30), age < 30 ? 0U : 1U);
    }
    test::TFixedDialogs dialogs;
    for (const int age : {364, 365}) {
        files.Put("/log/kept/" + std::to_string(age), "");
        files.Times["/log/kept/" + std::to_string(age)] = time.Midnight(time.Now()) - days(age - 1);
    }
    CleanUpLogFiles(files, time, dialogs, "/");
    EXPECT_EQ(files.List("/log/kept", "*"), std::vector<std::string>{"364"});
    // The machine turned to summer time on the day of the file: that day has 23 hours.
    struct TSummer : test::TVirtualTime {
        TTime Midnight(TTime at) const override {
            const TTime today = TVirtualTime::Midnight(TVirtualTime::Now());
            return at >= today ? today : today - (at >= today - 23h ? 23h : 47h);
        }
    };
    const TSummer summer;
    for (const auto& [before, age] : {std::pair{23h - 1s, 1}, {23h, 2}, {23h + 1s, 2}})
        EXPECT_EQ(FileAge(summer, summer.Midnight(summer.Now()) - before), age) << before.count();
}

} // namespace
} // namespace tidewell
