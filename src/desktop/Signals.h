#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace tidewell {

// Brings SIGINT and SIGTERM (end) and SIGUSR1 (report) into the event loop. One object at a time; the default
// actions are back when it dies, and stay where the pipe that it needs cannot be had.
class TSignals {
  public:
    TSignals(std::function<void()> onEnd, std::function<void()> onReport);
    ~TSignals();
    TSignals(const TSignals&) = delete;
    TSignals& operator=(const TSignals&) = delete;

  private:
    void Read();

    std::function<void()> OnEnd;
    std::function<void()> OnReport;
    int Pipe[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> Notifier;
};

} // namespace tidewell
