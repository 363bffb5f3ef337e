#pragma once

#include "core/Errors.h"
#include "fuzz/RowProperties.h"
#include "logging/DatalogRig.h"

#include <string>
#include <string_view>
#include <vector>

namespace tidewell::test {

// What each target does with some bytes; throws if something does not hold.
void FeedDatalog(std::string_view bytes); // a size of blocks, then files, separated by 0x1C
void FeedIni(std::string_view bytes);     // a file, 0x1C and a value to write
void FeedProfile(std::string_view bytes);
void FeedSd(std::string_view bytes); // files, separated by 0x1C

// What the program tells in a box is no fault.
void Guarded(const auto& action) {
    try {
        action();
    } catch (const TError&) {
    }
}

constexpr char nextPart = '\x1C';

// The text up to the mark, which is taken off with it; all of it if there is no mark.
inline std::string_view TakeUpTo(std::string_view& text, char mark) {
    const std::string_view taken = text.substr(0, text.find(mark));
    text.remove_prefix(taken.size() + (taken.size() < text.size() ? 1 : 0));
    return taken;
}

// One to three parts.
inline std::vector<std::string> Parts(std::string_view bytes) {
    std::vector<std::string> parts;
    do
        parts.emplace_back(TakeUpTo(bytes, nextPart));
    while (!bytes.empty() && parts.size() < 3);
    return parts;
}

} // namespace tidewell::test
