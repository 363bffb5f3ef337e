#pragma once

#include "rig/Test.h"

namespace tidewell::test {

// A case of a journey file: what stands between two lines "== ...".
struct TJourneyCase {
    std::string Title;
    struct TStep {
        std::string Text;              // as the person wrote it, comments in front of it included
        std::string Verb, Rest;        // of its last line
        std::vector<std::string> Told; // what came of it, written by the program
    };
    std::vector<TStep> Steps;
};
// The files of all journeys, in order.
std::vector<std::filesystem::path> AllJourneys();
std::vector<TJourneyCase> ParseJourney(const std::string& text);
std::vector<TJourneyCase> ReadJourney(const std::filesystem::path& path);
std::string WriteJourney(const std::vector<TJourneyCase>& cases);

// A step that no person could take.
struct TBadStep : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What steps are made of.

// The first word, and what stands behind it.
std::pair<std::string, std::string> SplitFirst(const std::string& text);
std::vector<std::string> Words(const std::string& text);
// "\n" and the like as the person wrote them.
std::string Unescaped(std::string text);
// "200ms", "5s", "10min", "2h" in ms; nothing for another text.
std::optional<int> Duration(const std::string& text);
// Below the installation, if it is relative.
std::filesystem::path Place(const std::string& path);

} // namespace tidewell::test
