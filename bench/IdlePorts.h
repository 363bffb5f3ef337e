#pragma once

#include "core/ports/IClock.h"
#include "core/ports/IDialogs.h"
#include "core/ports/ITimers.h"
#include "core/ports/IWait.h"
#include "logging/LiveLog.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

// Ports of a world in which nothing happens.
namespace tidewell {

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
    std::vector<std::filesystem::path> OpenFiles(const TFileDialog&) override { return {}; }
    std::optional<std::filesystem::path> SaveFile(const TFileDialog&, std::size_t&) override { return {}; }
    EModalResult ShowModal(TForm&) override { return EModalResult::Cancel; }
    void Show(TForm&) override {}
    void Popup(TPopupMenu&) override {}
    bool IsModalOpen() const override { return false; }
    void SetWaitCursor(bool) override {}
    int WorkAreaHeight() const override { return 0; }
};

class TIdlePolling : public TLiveLog::IPolling {
  public:
    bool Link() override { return true; }
    void Start() override {}
    void Stop() override {}
    bool Running() const override { return true; }
};

} // namespace tidewell
