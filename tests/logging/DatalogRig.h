#pragma once

#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "graph/GraphPage.h"
#include "logging/DatalogReader.h"
#include "logging/LogBuffers.h"
#include "model/Profile.h"
#include "support/IdleProgram.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace tidewell::test {

// What opens and exports datalogs works on, with the profile "/t/profile/a.pls" opened.
class TDatalogRig {
  public:
    explicit TDatalogRig(const std::string& profileText) {
        Files.Put("/t/profile/a.pls", profileText);
        Profile.Open("/t/profile/a.pls");
        Page.GraphInit(true);
        FileProgressBar.SetVisible(false);
    }
    // Makes files "0.log" and so on, to be chosen in the next dialog.
    void ExpectFiles(const std::string& title, const std::string& folder,
                     const std::vector<std::string>& contents) {
        std::vector<std::filesystem::path> paths;
        for (const std::string& content : contents) {
            paths.push_back(folder + std::to_string(paths.size()) + ".log");
            Files.Put(paths.back(), content);
        }
        Dialogs.ExpectOpenFiles(title, paths);
    }
    // What a channel holds of each sample; of the plot surface, or of the page's own table.
    std::vector<double> Drawn(std::size_t channel) const {
        std::vector<double> values(Page.graph.Channels[channel].Data.GetSize());
        Page.graph.Channels[channel].Data.GetDrawYData(values.data());
        return values;
    }
    std::vector<double> Samples(std::size_t channel) const {
        std::vector<double> values;
        for (std::size_t sample = 0; sample < Page.GraphSampleCount(); ++sample)
            values.push_back(Page.DataLogDataValues.At(channel, sample));
        return values;
    }

    TIdleLog Log;
    TIdleProgram Program;
    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TProfile Profile{Files};
    TMemo MemoEventLog{"MemoEventLog"};
    TLogBuffers Buffers;
    TProgressBar FileProgressBar{"FileProgressBar"};
    TForm Form{"FormMain"};
    TGraphPage Page{Form, {Profile, Buffers, Dialogs, Time, MemoEventLog, FileProgressBar}};
    std::filesystem::path directorypath = "/t";
    TExclusiveUse Opening;
    TDatalogNeeds Needs{Log,  Program,      Dialogs,         Files,         Time,   Profile,
                        Page, MemoEventLog, FileProgressBar, directorypath, Opening};
};

} // namespace tidewell::test
