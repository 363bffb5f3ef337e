// One log step, the texts of a shown setpoint grid included, and the memory that a log takes.

#include "core/DiskFiles.h"
#include "logging/LiveLog.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "model/ValueCodec.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <array>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace tidewell {

namespace {

constexpr int ValueCount = 126;
constexpr int ChannelCount = 36;
constexpr int GridRowCount = 60;

// A clock that goes on by 2 seconds at each look.
class TBenchClock : public IClock {
  public:
    TTime Now() const override {
        Seconds += 2;
        return TTime{} + std::chrono::seconds{Seconds};
    }
    std::pair<int, int> HourMinute(TTime) const override { return {8, 0}; }
    TTime Midnight(TTime time) const override { return time; }
    std::string ShortDate(TTime time) const override {
        std::string text = "00-03-2026";
        PutTwoDigits(text, 0, time.time_since_epoch() / std::chrono::hours{24} % 28 + 1);
        return text;
    }
    std::string ShortTime(TTime time) const override { return LongTime(time).substr(0, 5); }
    std::string LongTime(TTime time) const override {
        std::string text = "00:00:00";
        const auto seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
        PutTwoDigits(text, 0, seconds / 3600 % 24);
        PutTwoDigits(text, 3, seconds / 60 % 60);
        PutTwoDigits(text, 6, seconds % 60);
        return text;
    }

  private:
    static void PutTwoDigits(std::string& text, std::size_t at, std::int64_t number) {
        text[at] = static_cast<char>('0' + number / 10);
        text[at + 1] = static_cast<char>('0' + number % 10);
    }
    mutable std::int64_t Seconds = 0;
};

class TIdleTimers : public ITimers {
  public:
    std::unique_ptr<ITimer> CreateTimer() override { return std::make_unique<TTimer>(); }

  private:
    class TTimer : public ITimer {
      public:
        void SetInterval(int) override {}
        int Interval() const override { return 0; }
        void SetEnabled(bool) override {}
        bool Enabled() const override { return false; }
        void SetHandler(std::function<void()>) override {}
    };
};

class TNoWait : public IWait {
  public:
    void Sleep(int) override {}
    void ProcessMessages() override {}
};

class TNoDialogs : public IDialogs {
  public:
    EModalResult ShowMessageBox(EMessageKind, const std::string&, EButtons) override {
        return EModalResult::Ok;
    }
    std::optional<std::string> InputBox(const std::string&, const std::string&, const std::string&) override {
        return {};
    }
    std::optional<std::filesystem::path> OpenFile(const TFileDialog&) override { return {}; }
    std::optional<std::filesystem::path> SaveFile(const TFileDialog&) override { return {}; }
    EModalResult ShowModal(TForm&) override { return EModalResult::Cancel; }
    void Show(TForm&) override {}
    void Popup(TPopupMenu&) override {}
    void SetWaitCursor(bool) override {}
    int WorkAreaHeight() const override { return 0; }
};

// Formats the values of a setpoint grid, as the setpoint page does at each step.
class TGridHost : public TLiveLog::IHost {
  public:
    TGridHost() {
        constexpr std::array<const char*, 4> limits{"0;1000;1;0", "-400;900;1;0", "0;600;0;-50", "1;60;2;0"};
        std::vector<std::string> helpNumbers;
        for (int row = 0; row < GridRowCount; ++row) {
            const std::string number = std::to_string(row);
            const auto limit = limits[static_cast<std::size_t>(row) % limits.size()];
            Rows.push_back(FormatRowLimits("Setpoint " + number + ";0;" + limit + ";40001;" +
                                               std::to_string(3 + row * 2) + ";1;;;;;0;Group;;;1;",
                                           helpNumbers));
        }
    }
    bool NabtoEnabled() override { return false; }
    int InitLink() override { return 0; }
    void StartPolling() override {}
    void StopPolling() override {}
    void ShowSetpointPage() override {}
    void Setup1Click() override {}
    void RepaintStatusBar() override {}
    bool FormOpen() override { return true; }
    void ApplyDataLine(const std::string& line) override { FormatListValues(line, Texts, Rows); }

  private:
    std::vector<std::string> Rows;
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

  private:
    TDiskFiles Files;
    TNoWait Wait;
    TNoDialogs Dialogs;
    TGridHost Host;
    TBenchClock Clock;
    TIdleTimers Timers;
    TModbusPanel Panel{Files, Wait};
    TProfile Profile{Files};
    TMemo MemoEventLog{"MemoEventLog"};
    TLogBuffers Buffers;
    TGraphPage Page{Profile, Buffers, MemoEventLog};
    TButton TrafficButton{"TrafficButton"};
    TLoggingTexts Texts;
    TCurrentInifilesPath Paths;
    TLiveLog Log{{Host, Dialogs, Clock, Files, Timers, Panel, Profile, Page, Buffers, TrafficButton,
                  MemoEventLog, Texts, Paths}};
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

} // namespace

} // namespace tidewell
