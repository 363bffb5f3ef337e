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

// The path itself, or, if there is such a file, the first of "name-2.csv", "name-3.csv", ... that is free.
// The names of datalogs tell the minute only, and an earlier log must not go.
std::filesystem::path UnusedPath(const IFiles& files, const std::filesystem::path& wanted);

// The directory as texts show it, with its closing backslash.
std::string ShownDirectory(const std::filesystem::path& directory);

} // namespace tidewell
