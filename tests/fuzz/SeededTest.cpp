#include "fuzz/Fuzz.h"
#include "rig/Test.h"

// The targets without their engine, in every run of the tests: bytes of chance, made of the files that each
// target starts from.
namespace tidewell::test {
namespace {

constexpr std::array words = {";",    "\"",       "\r",  "\n",       "\x1C",        "=",
                              "[",    "]",        "-",   " ",        "9",           "99999999999",
                              "\xE9", "\xC3\xA9", "\0x", ";;;;;;1;", "\xEF\xBB\xBF"};

void Feed(const std::string& target, void (&feed)(std::string_view), int rounds) {
    const TDiskFiles files;
    const auto folder = std::filesystem::path(TIDEWELL_CORPUS) / target;
    std::vector<std::string> corpus;
    for (const std::string& name : files.List(folder, "*"))
        corpus.push_back(files.Read(folder / name));
    ASSERT_FALSE(corpus.empty());
    std::mt19937 random(7);
    const auto below = [&random](std::size_t end) { return static_cast<std::size_t>(random() % end); };
    for (int round = 0; round < rounds; ++round) {
        std::string bytes = corpus[below(corpus.size())];
        for (std::size_t change = below(8); change > 0; --change) {
            const std::string& other = corpus[below(corpus.size())];
            const std::string piece =
                below(3) == 0 ? other.substr(below(other.size()), below(40)) : words[below(words.size())];
            bytes.replace(below(bytes.size() + 1), below(2) * below(20), piece);
        }
        ASSERT_NO_THROW(feed(bytes)) << testing::PrintToString(bytes);
    }
}

TEST(Seeded, HoldsWhatTheTargetsRequire) {
    Feed("datalog", FeedDatalog, 1500);
    Feed("ini", FeedIni, 6000);
    Feed("profile", FeedProfile, 1500);
    Feed("sd", FeedSd, 1000);
}

} // namespace
} // namespace tidewell::test
