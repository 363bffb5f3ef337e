#pragma once

#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "graph/GraphPage.h"
#include "logging/DatalogReader.h"
#include "logging/LogBuffers.h"
#include "model/Profile.h"
#include "rig/FixedDialogs.h"
#include "rig/IdleProgram.h"
#include "rig/MemoryFiles.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tidewell::test {

// A graph page, and what opens and exports datalogs on it.
class TDatalogRig {
  public:
    TDatalogRig() { FileProgressBar.SetVisible(false); }
    // With that profile opened.
    explicit TDatalogRig(const std::string& profileText, int jump = 1000) : TDatalogRig() {
        Files.Put("/t/profile/a.pls", profileText);
        Profile.Open("/t/profile/a.pls");
        Page.XAxisJump = jump;
        Page.GraphInit(true);
    }
    // Makes files "/t/0.log" and so on, which the dialogs choose.
    void Choose(const std::vector<std::string>& contents) {
        for (const std::string& content : contents) {
            Dialogs.OpenedMany.push_back("/t/" + std::to_string(Dialogs.OpenedMany.size()) + ".log");
            Files.Put(Dialogs.OpenedMany.back(), content);
        }
    }
    // What the first channel holds: of the plot surface, and of the page's own table.
    std::vector<double> Drawn(std::size_t channel = 0) const {
        std::vector<double> values(Page.graph.Channels[channel].Data.GetSize());
        Page.graph.Channels[channel].Data.GetDrawYData(values.data());
        return values;
    }
    std::vector<double> Samples() const {
        std::vector<double> values;
        for (std::size_t sample = 0; sample < Page.GraphSampleCount(); ++sample)
            values.push_back(Page.DataLogDataValues.At(0, sample));
        return values;
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
