#include "rig/Journey.h"

namespace tidewell::test {
namespace {

std::vector<std::filesystem::path> Journeys() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(TIDEWELL_SOURCE_DIR) / "tests/journeys"))
        if (entry.path().extension() == ".txt")
            paths.push_back(entry.path());
    std::ranges::sort(paths);
    return paths;
}

// The first line that differs, with what stands around it.
std::string FirstDifference(const std::string& expected, const std::string& actual) {
    std::istringstream left(expected), right(actual);
    std::string one, other, above;
    for (int line = 1;; ++line, above += "  " + one + "\n") {
        const bool hasOne = static_cast<bool>(std::getline(left, one));
        const bool hasOther = static_cast<bool>(std::getline(right, other));
        if (hasOne != hasOther || one != other || !hasOne)
            return "line " + std::to_string(line) + "\n" +
                   above.substr(above.size() > 600 ? above.size() - 600 : 0) + "- " + one + "\n+ " + other;
    }
}

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
    EXPECT_TRUE(told == before) << GetParam() << " " << FirstDifference(before, told);
}

INSTANTIATE_TEST_SUITE_P(Each, TJourneys, testing::ValuesIn(Journeys()),
                         [](const auto& journey) { return journey.param.stem().string(); });

} // namespace
} // namespace tidewell::test
