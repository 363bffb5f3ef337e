// One log step, the texts of a shown setpoint grid included, and the memory that a log takes.

#include "IdlePorts.h"
#include "core/DiskFiles.h"
#include "core/controls/Form.h"
#include "core/controls/StatusBar.h"
#include "logging/LiveLog.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "model/ValueCodec.h"
#include "tests/rig/IdleProgram.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <array>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace tidewell {

namespace {

constexpr int ValueCount = 126;
constexpr int ChannelCount = 36;
constexpr int GridRowCount = 60;

// Formats the values of a setpoint grid, as the setpoint page does at each step.
class TGridTexts {
  public:
    TGridTexts() {
        constexpr std::array<const char*, 4> limits{"0;1000;1;0", "-400;900;1;0", "0;600;0;-50", "1;60;2;0"};
        std::vector<std::string> helpNumbers;
        for (int row = 0; row < GridRowCount; ++row) {
            const std::string number = std::to_string(row);
            const auto limit = limits[static_cast<std::size_t>(row) % limits.size()];
            Rows.push_back(
                ParseListRow(FormatRowLimits(number + ";Setpoint " + number + ";0;" + limit + ";40001;" +
                                                 std::to_string(3 + row * 2) + ";1;;;;;0;Group;;;1;",
                                             helpNumbers)));
        }
    }
    void ApplyDataLine(const std::string& line) { FormatListValues(line, Texts, Rows); }

  private:
    std::vector<TListRow> Rows;
    std::vector<std::string> Texts;
};

// The graph rows of every type code that a profile may use.
void FillProfile(TProfile& profile) {
    constexpr std::array<const char*, 4> codes{"101", "150", "250", "100"};
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const auto code = codes[static_cast<std::size_t>(channel) % codes.size()];
        profile.GraphValues.push_back("Channel " + std::to_string(channel) + ";1;clRed;" +
                                      std::to_string(3 + channel * 3) + ";0;1;" + code + ";;;;;;1;");
        profile.GraphPoints.push_back(ParseGraphPoint(profile.GraphValues.back()));
    }
    profile.GraphEnableCount = ChannelCount;
    profile.ProfileLoaded = true;
}

// A live log with as much around it as a log step touches.
class TLogRig {
  public:
    TLogRig() {
        FillProfile(Profile);
        Page.GraphInit(true);
        Log.OnDataLine = [this](const std::string& line) { Grid.ApplyDataLine(line); };
        Log.UpdateTimerCallBackEvents.DatalogCount = std::numeric_limits<int>::max();
        std::mt19937 random(1); // the same values in each run
        for (std::string& line : Lines)
            for (int value = 0; value < ValueCount; ++value)
                line += std::to_string(random() % 6000) + "; ";
    }
    void Step() {
        Log.SetCycleResult(Lines[Buffers.DatalogCount % Lines.size()]);
        Log.UpdateTimerTimer();
    }
    void Fill(std::size_t rows) {
        while (Buffers.DatalogCount < rows)
            Step();
    }
    std::size_t Rows() const { return Buffers.DatalogCount; }
    // Each row goes to the disk at once.
    void KeepJournal(const std::filesystem::path& folder) {
        Paths.directorypath = folder;
        Extensions.JournalEnabled = true;
    }

  private:
    TDiskFiles Files;
    TNoWait Wait;
    TNoDialogs Dialogs;
    TGridTexts Grid;
    TIdlePolling Polling;
    test::TIdleProgram Program;
    TBenchClock Clock;
    TIdleTimers Timers;
    TModbusPanel Panel{Files, Wait};
    TProfile Profile{Files};
    TMemo MemoEventLog{"MemoEventLog"};
    TLogBuffers Buffers;
    TProgressBar FileProgressBar{"FileProgressBar"};
    TForm Form{"FormMain"};
    TGraphPage Page{Form, {Profile, Buffers, Dialogs, Wait, MemoEventLog, FileProgressBar}};
    TButton TrafficButton{"TrafficButton"};
    TStatusBar StatusBar{Form, "StatusBar", {}};
    TCurrentInifilesPath Paths;
    TExtensions Extensions;
    TExclusiveUse Opening;
    std::vector<std::filesystem::path> SpareFolders;
    TLiveLog Log{Form,
                 {Polling, Program, Dialogs, Clock, Files, Timers, Panel, Profile, Page, Buffers,
                  TrafficButton, StatusBar, MemoEventLog, Paths, Extensions, Opening, SpareFolders}};
    std::array<std::string, 16> Lines;
};

std::size_t HeapInUse() {
    const auto heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// 126 values, 36 channels and a grid of 60 rows, from that row on. memory_ratio is what the rows took of the
// heap, all of it, to the bytes of their integers, doubles and time texts.
void LogStep(benchmark::State& state) {
    TLogRig rig;
    const std::size_t before = HeapInUse();
    rig.Fill(static_cast<std::size_t>(state.range(0)));
    for (auto step : state)
        rig.Step();
    constexpr std::size_t rowBytes =
        (ValueCount + 1) * sizeof(std::int32_t) + ChannelCount * sizeof(double) + 8;
    state.counters["memory_ratio"] =
        static_cast<double>(HeapInUse() - before) / static_cast<double>(rig.Rows() * rowBytes);
}
BENCHMARK(LogStep)->Arg(1'000)->Arg(1'000'000)->Iterations(20'000)->Unit(benchmark::kMicrosecond);

// The same with the journal, on the disk of the temporary folder; the rows before are not measured.
void LogStepWithJournal(benchmark::State& state) {
    const auto folder = std::filesystem::temp_directory_path() / "log_bench";
    {
        TLogRig rig;
        rig.Fill(static_cast<std::size_t>(state.range(0)));
        rig.KeepJournal(folder);
        rig.Step(); // writes those before, too
        for (auto step : state)
            rig.Step();
    }
    std::filesystem::remove_all(folder);
}
BENCHMARK(LogStepWithJournal)->Arg(1'000)->Arg(1'000'000)->Iterations(20'000)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace tidewell
