#pragma once

#include "core/controls/Control.h"

#include <QSocketNotifier>

#include <memory>

namespace tidewell {

// Brings SIGINT, SIGTERM and, unless it is ignored, SIGHUP (end) and SIGUSR1 (report) into the event loop.
// One object at a time; the default actions are back when it dies, and stay where the pipe that it needs
// cannot be had.
class TProcessSignals {
  public:
    TProcessSignals();
    ~TProcessSignals();
    TProcessSignals(const TProcessSignals&) = delete;
    TProcessSignals& operator=(const TProcessSignals&) = delete;

    TEvent<> OnEnd;
    TEvent<> OnReport;

  private:
    void SetActions(void (*handler)(int)) const;
    void Read();

    bool TakesHangUp = false; // a closed terminal ends the program, unless it was started to survive that

    int Pipe[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> Notifier;
};

} // namespace tidewell
