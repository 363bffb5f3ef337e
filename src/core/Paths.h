#pragma once

#include <filesystem>

namespace tidewell {

// The shared paths, known as FCurrentInifilesPath of the splash form, which keeps them for the whole run.
struct TCurrentInifilesPath {
    std::filesystem::path Systemfile;    // empty when there is not exactly one
    std::filesystem::path Languagefile;  // may not exist
    std::filesystem::path plsfile;       // the open profile; empty when none is
    std::filesystem::path configpath;    // directorypath/cfg
    std::filesystem::path directorypath; // the folder that the program works in
};

} // namespace tidewell
