#pragma once

#include "Robot.h"
#include "desktop/Desktop.h"
#include "rig/World.h"

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

// The real windows of the program in a world. They go before it.
class TWindows : public TTestDesk {
  public:
    explicit TWindows(TWorld& world) : World(world) {
        World.OnBuilt = [this] { RegisterViews(*World.Program); };
        World.BeforeEnd = [this] { Dialogs.DestroyViews(); };
    }
    ~TWindows() {
        Dialogs.CancelAll();
        if (World.Program)
            World.Program->Finish();
        World.End();
    }
    TWindows(const TWindows&) = delete;
    TWindows& operator=(const TWindows&) = delete;

    // Makes the windows of forms that other dialogs than its own have shown.
    void Update() {
        for (TForm* form : World.Forms())
            if (form->Visible() && Of(*form) == nullptr)
                Dialogs.Show(*form);
        QCoreApplication::processEvents();
    }
    QWidget* Of(const TForm& form) const { return Dialogs.FindView(form); }

  private:
    TWorld& World;
};

} // namespace tidewell::test
