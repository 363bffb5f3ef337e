#pragma once

#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "graph/GraphPage.h"
#include "model/Profile.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tidewell::test {

class TFakeLog : public TGraphPage::ILog {
  public:
    void ClearLog() override { ++Cleared; }
    int Cleared = 0;
};

// Lines as a reader gives them, one behind the other.
class TListedLines : public IDataLines {
  public:
    explicit TListedLines(std::vector<std::string> lines) : Lines(std::move(lines)) {}
    std::size_t Count() const override { return Lines.size(); }
    std::string_view Next() override { return Given < Lines.size() ? Lines[Given++] : std::string_view(); }

  private:
    std::vector<std::string> Lines;
    std::size_t Given = 0;
};

inline constexpr const char* OneChannel = "[GraphPoints]\r\nA=Temp;1;clBlue;3;0;1;150;;;;;;1;\r\n";
inline constexpr const char* BitChannels = "[GraphPoints]\r\n"
                                           "A=Off;1;clRed;3;0;0;150;;;;;;0;\r\n"
                                           "B=Temp;1;clBlue;3;0;1;150;;;;;;1;\r\n"
                                           "C=Flags;1;clRed;4;0;0; 100 ;Run, Alarm,1st;;;;;1;\r\n"
                                           "D=Plain;1;clRed;4;0;0;100; ;;;;;1;\r\n";

class TPage {
  public:
    explicit TPage(const std::string& profileText, int xAxisJump = 10) {
        Files.Put("/p/a.pls", profileText);
        Profile.Open("/p/a.pls");
        Page.XAxisJump = xAxisJump;
    }
    // Adds live samples until there are that many; each sample's raw value is its number.
    void Extend(std::size_t count) {
        for (std::size_t n = Page.GraphSampleCount(); n < count; ++n) {
            Page.GraphDataLabelsTimeText.Add("t" + std::to_string(n));
            Page.GraphDataLabelsDateText.Add("d" + std::to_string(n));
            Page.ExtendGraph(std::to_string(n) + ";02-03-2026;08:00:00;" + std::to_string(n) + "; ");
        }
    }
    std::vector<double> DrawnX() const {
        std::vector<double> xs;
        for (const auto& point : Page.graph.Channels[0].Data.Points())
            xs.push_back(point.X);
        return xs;
    }
    // The labels that are shown, "text@X" each, in order; fails the test for one that is off its place.
    std::vector<std::string> Labels() {
        std::vector<std::string> shown;
        for (std::size_t i = 0; i < Page.graph.Labels.Count(); ++i) {
            const TSLScopeTextLabel& label = Page.graph.Labels[i];
            if (!label.Visible())
                continue;
            EXPECT_EQ(label.YAxisIndex(), 2);
            EXPECT_EQ(label.Position().Y, i % 2 == 0 ? 0.05 : 0.02);
            shown.push_back(label.Name() + '@' + std::to_string(std::lround(label.Position().X)));
        }
        return shown;
    }
    std::pair<double, double> View() const {
        return {Page.graph.XAxis.Min.Value(), Page.graph.XAxis.Max.DataValue()};
    }

    TMemoryFiles Files;
    TProfile Profile{Files};
    TFakeLog Log;
    TMemo MemoEventLog{"MemoEventLog"};
    TProgressBar FileProgressBar{"FileProgressBar"};
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TForm Form{"FormMain"};
    TGraphPage Page{Form, {Profile, Log, Dialogs, Time, MemoEventLog, FileProgressBar}};
};

inline std::vector<double> Range(int first, int last, int step = 1) {
    std::vector<double> values;
    for (int x = first; x <= last; x += step)
        values.push_back(x);
    return values;
}

} // namespace tidewell::test
