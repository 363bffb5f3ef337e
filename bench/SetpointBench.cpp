// The setpoint page without its painting: a data line, a click on a group, a key in the filter, and the texts
// of the rows that a screen shows.

#include "IdlePorts.h"
#include "core/DiskFiles.h"
#include "core/KvSupport.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"
#include "setpoints/InputDialog.h"
#include "setpoints/SetpointPage.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

namespace {

constexpr int screenRows = 60;
constexpr int unitCount = 30;

// The list row of a profile, without its number. A quarter of them is signed, and all scales come about as
// often.
std::string ListRow(int index) {
    constexpr std::array<const char*, 4> limits{"0;1000;1;0", "-400;900;1;0", "0;600;0;-50", "1;60;2;0"};
    const std::string number = std::to_string(index);
    return number + " Supply air temperature;" + number + ";" + limits[static_cast<std::size_t>(index) % 4] +
           ";" + std::to_string(40000 + index) + ";" + std::to_string(3 + index) + ";" +
           std::to_string(index % unitCount) + ";;;;;0;Group;;;" + number + ";Key" + number + ";";
}

std::string DataLine(int values) {
    std::mt19937 random(1); // the same values in each run
    std::string line = "1;02-03-2026;08:00:00;";
    for (int value = 0; value < values; ++value)
        line += std::to_string(random() % 6000) + "; ";
    return line + "\r\n";
}

void FormatLine(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    std::vector<std::string> paraIds;
    std::vector<std::string> texts;
    std::vector<TListRow> rows;
    rows.reserve(static_cast<std::size_t>(count));
    for (int row = 0; row < count; ++row)
        rows.push_back(ParseListRow(FormatRowLimits(std::to_string(row) + ";" + ListRow(row), paraIds)));
    const std::string line = DataLine(count);
    for (auto pass : state)
        FormatListValues(line, texts, rows);
    if (texts.size() != rows.size())
        std::abort();
}
BENCHMARK(FormatLine)->Arg(500)->Arg(2000)->Unit(benchmark::kMicrosecond);

class TNoLibraries : public ILibraryLoader {
  public:
    std::unique_ptr<ILibrary> Load(const std::string&) override { return nullptr; }
};

class THost : public TSetpointPage::IHost, public TNabtoDevice::IHost, public TInputDialog::IHost {
  public:
    bool DatalogOn() const override { return true; }
    bool DatalogFileOpen() const override { return false; }
    std::string LastDatalogLine() const override { return {}; }
    std::string CurrentDataString() const override { return {}; }
    std::size_t DatalogCount() const override { return 1; }
    void UpdateTimerTimer() override {}
    void StopLog() override {}
    void Setup1Click() override {}
    void AddEventLog(const std::string&) override {}
    bool ShowButtonDevid() const override { return false; }
    bool ErrorLogVisible() const override { return false; }
    bool FormOpen() const override { return true; }
    void RepaintStatusBar() override {}
};

// A page with one group of that many setpoints, chosen in the tree.
class TPageRig {
  public:
    explicit TPageRig(int setpoints) {
        std::vector<std::string> rows;
        rows.reserve(static_cast<std::size_t>(setpoints));
        for (int row = 0; row < setpoints; ++row)
            rows.push_back(ListRow(row));
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
        Page.SetpointTreeView.SetSelected(TTreeView::TSelection{0, 0});
        Page.SetpointTreeView.OnClick();
        if (Page.ShownRows.size() != static_cast<std::size_t>(setpoints))
            std::abort();
    }

  private:
    TDiskFiles Files;
    TNoWait Wait;
    TNoDialogs Dialogs;
    TBenchClock Clock;
    TIdleTimers Timers;
    TNoLibraries Libraries;
    THost Host;
    TCurrentInifilesPath Paths;
    TModbusPanel Panel{Files, Wait};
    TUNabto Nabto{Libraries, Dialogs, Timers, Wait, Files, "."};
    TNabtoDevice Device{Dialogs, Timers, Wait, Files, Paths, Nabto, Panel, Host};
    TMemo MemoEventLog{"MemoEventLog"};
    TInputDialog InputDialog{{Dialogs, Panel, Device, MemoEventLog, Host}};
    THelpfileDoc HelpfileDoc;
    TSetpointTexts Texts;

  public:
    TSetpointPage Page{{Host, Dialogs, Clock, Panel, HelpfileDoc, InputDialog, Texts}};
};

void ApplyLine(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    TPageRig rig(count);
    const std::string line = DataLine(count);
    for (auto pass : state)
        rig.Page.ApplyDataLine(line);
}
BENCHMARK(ApplyLine)->Arg(2000)->Unit(benchmark::kMicrosecond);

void ClickGroup(benchmark::State& state) {
    TPageRig rig(static_cast<int>(state.range(0)));
    for (auto pass : state)
        rig.Page.SetpointTreeView.OnClick();
}
BENCHMARK(ClickGroup)->Arg(2000)->Unit(benchmark::kMicrosecond);

void TypeInFilter(benchmark::State& state) {
    TPageRig rig(static_cast<int>(state.range(0)));
    constexpr std::array<const char*, 4> texts{"1", "19", "199", "temp"};
    std::size_t key = 0;
    for (auto pass : state)
        rig.Page.SetpointFilter.Enter(texts[key++ % texts.size()]);
}
BENCHMARK(TypeInFilter)->Arg(2000)->Unit(benchmark::kMicrosecond);

void DrawScreen(benchmark::State& state) {
    TPageRig rig(static_cast<int>(state.range(0)));
    rig.Page.ApplyDataLine(DataLine(static_cast<int>(state.range(0))));
    std::size_t characters = 0;
    for (auto pass : state)
        for (int row = 0; row <= screenRows; ++row)
            for (int column = 0; column < 5; ++column)
                characters += rig.Page.SetpointGrid.OnDrawCell(column, row).Text.size();
    benchmark::DoNotOptimize(characters);
}
BENCHMARK(DrawScreen)->Arg(2000)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace tidewell
