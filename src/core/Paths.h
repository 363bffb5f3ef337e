#pragma once

#include <filesystem>
#include <string>

namespace tidewell {

class IFiles;

// The shared paths, known as FCurrentInifilesPath of the splash form, which keeps them for the whole run.
struct TCurrentInifilesPath {
    std::filesystem::path Systemfile;    // empty when there is not exactly one
    std::filesystem::path Languagefile;  // may not exist
    std::filesystem::path plsfile;       // the open profile; empty when none is
    std::filesystem::path configpath;    // directorypath/cfg
    std::filesystem::path directorypath; // the folder that the program works in
};

// The path itself for 1, then "name-2.csv", "name-3.csv", ...: names tell no more than the second, and an
// earlier file must not go.
std::filesystem::path NumberedPath(const std::filesystem::path& wanted, int number);
// The first of them that is free at present.
std::filesystem::path UnusedPath(const IFiles& files, const std::filesystem::path& wanted);

// The directory as texts show it, with its closing backslash.
std::string ShownDirectory(const std::filesystem::path& directory);

} // namespace tidewell
