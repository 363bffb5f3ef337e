#pragma once

#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "fuzz/RowProperties.h"
#include "graph/GraphPage.h"
#include "logging/DatalogReader.h"
#include "logging/LogBuffers.h"
#include "model/Profile.h"
#include "support/FixedDialogs.h"
#include "support/IdleProgram.h"
#include "support/MemoryFiles.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell::test {

// What each target does with some bytes; throws if something does not hold.
void FeedDatalog(std::string_view bytes); // a size of blocks, then files, separated by 0x1C
void FeedIni(std::string_view bytes);     // a file, 0x1C and a value to write
void FeedProfile(std::string_view bytes);
void FeedSd(std::string_view bytes); // files, separated by 0x1C

constexpr char nextPart = '\x1C';

// The text up to the mark, which is taken off with it; all of it if there is no mark.
inline std::string_view TakeUpTo(std::string_view& text, char mark) {
    const std::string_view taken = text.substr(0, text.find(mark));
    text.remove_prefix(taken.size() + (taken.size() < text.size() ? 1 : 0));
    return taken;
}

// A graph page and what opens files on it.
class TFuzzRig {
  public:
    // One to three files, each made of a part.
    std::vector<std::filesystem::path> PutFiles(std::string_view parts,
                                                const std::function<std::string(std::string_view)>& make) {
        std::vector<std::filesystem::path> paths;
        do {
            paths.push_back("/t/" + std::to_string(paths.size()));
            Files.Put(paths.back(), make(TakeUpTo(parts, nextPart)));
        } while (!parts.empty() && paths.size() < 3);
        return paths;
    }

    TIdleLog Log;
    TIdleProgram Program;
    TMemoryFiles Files;
    TNoWait Wait;
    TFixedDialogs Dialogs;
    TProfile Profile{Files};
    TMemo MemoEventLog{"MemoEventLog"};
    TLogBuffers Buffers;
    TProgressBar FileProgressBar{"FileProgressBar"};
    TForm Form{"FormMain"};
    TGraphPage Page{Form, {Profile, Buffers, Dialogs, Wait, MemoEventLog, FileProgressBar}};
    std::filesystem::path directorypath = "/t";
    TExclusiveUse Opening;
    TDatalogNeeds Needs{Log,  Program,      Dialogs,         Files,         Wait,   Profile,
                        Page, MemoEventLog, FileProgressBar, directorypath, Opening};
};

} // namespace tidewell::test
