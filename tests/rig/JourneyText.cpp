#include "rig/JourneyText.h"

#include "rig/Test.h"

namespace tidewell::test {

std::vector<std::filesystem::path> AllJourneys() {
    const auto folder = std::filesystem::path(TIDEWELL_SOURCE_DIR) / "tests/journeys";
    std::vector<std::filesystem::path> paths;
    for (const std::string& name : TDiskFiles().List(folder, "*.txt"))
        paths.push_back(folder / name);
    return paths;
}

std::vector<TJourneyCase> ReadJourney(const std::filesystem::path& path) {
    return ParseJourney(TDiskFiles().Read(path));
}

std::vector<TJourneyCase> ParseJourney(const std::string& text) {
    std::vector<TJourneyCase> cases;
    std::string above; // comments and blank lines
    for (const std::string& line : SplitLines(text)) {
        if (line.starts_with("== ")) {
            cases.push_back({above + line, {}});
            above.clear();
        } else if (line.empty() || line[0] == '#') {
            above += line + "\n";
        } else if (line[0] == '>') {
            continue; // told anew
        } else {
            const auto [verb, rest] = SplitFirst(line);
            cases.at(cases.size() - 1).Steps.push_back({above + line, verb, rest, {}});
            above.clear();
        }
    }
    return cases;
}

std::string WriteJourney(const std::vector<TJourneyCase>& cases) {
    std::string text;
    for (const TJourneyCase& one : cases) {
        text += one.Title + "\n";
        for (const auto& step : one.Steps) {
            text += step.Text + "\n";
            for (const std::string& line : step.Told)
                text += "> " + line + "\n";
        }
    }
    return text;
}

std::pair<std::string, std::string> SplitFirst(const std::string& text) {
    const auto blank = text.find(' ');
    return blank == std::string::npos ? std::pair{text, std::string()}
                                      : std::pair{text.substr(0, blank), text.substr(blank + 1)};
}

std::vector<std::string> Words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::string Unescaped(std::string text) {
    for (const auto& [shown, raw] : {std::pair{"\\n", "\n"}, {"\\r", "\r"}, {"\\t", "\t"}})
        for (std::size_t at = 0; (at = text.find(shown, at)) != std::string::npos;)
            text.replace(at, 2, raw);
    return text;
}

std::optional<int> Duration(const std::string& text) {
    const auto end = text.find_first_not_of("0123456789");
    for (const auto& [unit, ms] : {std::pair{"ms", 1}, {"s", 1000}, {"min", 60000}, {"h", 3600000}})
        if (end != std::string::npos && end > 0 && text.substr(end) == unit)
            return std::stoi(text) * ms;
    return std::nullopt;
}

std::filesystem::path Place(const std::string& path) {
    return path.starts_with("/") ? std::filesystem::path(path) : "/t" / std::filesystem::path(path);
}

} // namespace tidewell::test
