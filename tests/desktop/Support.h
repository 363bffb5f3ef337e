#pragma once

#include "Robot.h"
#include "desktop/Desktop.h"

#include <QtTest>
#include <QtWidgets>

namespace tidewell::test {

inline TQtApplication& Application() {
    return *static_cast<TQtApplication*>(QCoreApplication::instance());
}

// Turns the event loop until the condition holds or the time (ms) has passed; whether it holds.
inline bool WaitFor(const std::function<bool()>& condition, int patience = 30'000) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition() && elapsed.elapsed() < patience)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    return condition();
}

// What the views need, as the program has it.
struct TTestDesk : TDesktop {
    TTestDesk() : TDesktop(test::Application(), "/t") {}
    ~TTestDesk() { Application.OnException = nullptr; }
    TTestDesk(const TTestDesk&) = delete;
    TTestDesk& operator=(const TTestDesk&) = delete;
};

} // namespace tidewell::test
