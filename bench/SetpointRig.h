#pragma once

#include "IdlePorts.h"
#include "bench/IdleSurroundings.h"
#include "core/DiskFiles.h"
#include "core/KvSupport.h"
#include "core/controls/Form.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"
#include "setpoints/Finputdialog.h"
#include "setpoints/SetpointPage.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

// A setpoint page in a world in which nothing happens.
namespace tidewell {

inline constexpr int unitCount = 30;
inline constexpr int otherSetpoints = 10;

// The list row of a profile, without its number. A quarter of them is signed, and all scales come about as
// often.
inline std::string ListRow(int index, const std::string& group = "Group") {
    constexpr std::array<const char*, 4> limits{"0;1000;1;0", "-400;900;1;0", "0;600;0;-50", "1;60;2;0"};
    const std::string number = std::to_string(index);
    return number + " Supply air temperature;" + number + ";" + limits[static_cast<std::size_t>(index) % 4] +
           ";" + std::to_string(40000 + index) + ";" + std::to_string(3 + index) + ";" +
           std::to_string(index % unitCount) + ";;;;;0;" + group + ";;;" + number + ";Key" + number + ";";
}

// What a device answers; other numbers for another seed.
inline std::string Values(int count, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::string values;
    for (int value = 0; value < count; ++value)
        values += std::to_string(random() % 6000) + "; ";
    return values;
}

inline std::string DataLine(int values, unsigned seed = 1) {
    return "1;02-03-2026;08:00:00;" + Values(values, seed) + "\r\n";
}

class TNoLibraries : public ILibraryLoader {
  public:
    TLoadedLibrary Load(const std::string& name) override { return {nullptr, name, "there is none"}; }
};

// A page with one group of that many setpoints, chosen in the tree, and another one of a few.
class TPageRig {
  public:
    explicit TPageRig(int setpoints) {
        std::vector<std::string> rows;
        rows.reserve(static_cast<std::size_t>(setpoints + otherSetpoints));
        for (int row = 0; row < setpoints; ++row)
            rows.push_back(ListRow(row));
        for (int row = 0; row < otherSetpoints; ++row)
            rows.push_back(ListRow(row, "Other"));
        TMDevice device;
        device.Name = "Device";
        device.ReadList = {"30;3;0;1;List;Device;0;"};
        FillGridFromRows(std::move(rows), device.ReadListText.emplace_back());
        Panel.DeviceList.Add(std::move(device));
        std::vector<TIniSection::TRow> units;
        units.reserve(unitCount);
        for (int code = 0; code < unitCount; ++code)
            units.push_back({std::to_string(code), "unit " + std::to_string(code)});
        Texts.DataUnits = TIniSection(std::move(units));
        Page.BuildSetpointTree();
        LiveLog.SetCycleResult(Values(setpoints));
        LiveLog.DatalogOn = true;
        Buffers.DatalogCount = 1;
        ChooseGroup(0);
        if (Page.ShownRows.size() != static_cast<std::size_t>(setpoints))
            std::abort();
    }
    void ChooseGroup(int child) {
        Page.SetpointTreeView.SetSelected(TTreeView::TSelection{0, child});
        Page.SetpointTreeView.OnClick();
    }

  private:
    TDiskFiles Files;
    TNoWait Wait;
    TNoDialogs Dialogs;
    TBenchClock Clock;
    TIdleTimers Timers;
    TNoLibraries Libraries;
    test::TIdleSurroundings World{Dialogs, Timers, Wait, Files, Clock, Libraries, {{}, {}, {}, {}, "."}};
    TModbusPanel& Panel = World.Panel;
    TNabtoDevice Device{World.Needs};
    TForm Form{"FormMain"};
    TStatusBar StatusBar{Form, "StatusBar", {}};
    TInputDialog InputDialog{{Dialogs, Panel, Device, World.MemoEventLog, StatusBar}};
    TLogBuffers Buffers;
    TProgressBar FileProgressBar{"FileProgressBar"};
    TGraphPage GraphPage{Form, {World.Profile, Buffers, Dialogs, Wait, World.MemoEventLog, FileProgressBar}};
    TIdlePolling Polling;
    TButton TrafficButton{"TrafficButton"};
    TExclusiveUse Opening;
    std::vector<std::filesystem::path> SpareFolders;
    TLiveLog LiveLog{Form,
                     {Polling, World.Program, Dialogs, Clock, Files, Timers, Panel, World.Profile, GraphPage,
                      Buffers, TrafficButton, StatusBar, World.MemoEventLog, World.Paths, World.Extensions,
                      Opening, SpareFolders}};
    THelpfileDoc HelpfileDoc;
    TSetpointTexts Texts;

  public:
    TSetpointPage Page{Form,
                       {LiveLog, Buffers, GraphPage, Dialogs, Clock, Panel, HelpfileDoc, InputDialog, Texts,
                        World.Extensions}};
};

} // namespace tidewell
