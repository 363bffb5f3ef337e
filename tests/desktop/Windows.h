#pragma once

#include "Support.h"
#include "rig/World.h"

namespace tidewell::test {

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
