#include "rig/Journey.h"

namespace tidewell::test {
namespace {

class TJourneys : public testing::TestWithParam<std::filesystem::path> {};

// With TIDEWELL_UPDATE_GOLDEN set, what the program tells is written anew; look at the difference then.
TEST_P(TJourneys, GoAsTheyDid) {
    auto cases = ReadJourney(GetParam());
    for (auto& one : cases)
        TJourney(one).Play();
    const std::string told = WriteJourney(cases);
    TDiskFiles disk;
    const std::string before = disk.Read(GetParam());
    if (std::getenv("TIDEWELL_UPDATE_GOLDEN") != nullptr && told != before) {
        const auto file = disk.Replace(GetParam());
        file->Write(told);
        file->Commit();
    }
    const auto differs = static_cast<std::size_t>(std::ranges::mismatch(before, told).in1 - before.begin());
    EXPECT_TRUE(told == before) << GetParam() << ", behind\n"
                                << before.substr(differs > 400 ? differs - 400 : 0,
                                                 std::min<std::size_t>(differs, 400))
                                << "\nis not " << before.substr(differs, 200) << "\nbut "
                                << told.substr(differs, 200);
}

INSTANTIATE_TEST_SUITE_P(Each, TJourneys, testing::ValuesIn(AllJourneys()),
                         [](const auto& journey) { return journey.param.stem().string(); });

} // namespace
} // namespace tidewell::test
