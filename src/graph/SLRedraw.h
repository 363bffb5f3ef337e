#pragma once

#include "core/controls/Signal.h"

namespace tidewell {

// What a view has to draw anew. It is told once of each kind of change, however much changes until it draws.
class TSLRedraw {
  public:
    // Curves, axes, labels, cursor or settings.
    void Touch() {
        if (!PicturePending) {
            PicturePending = true;
            Changed.Emit();
        }
    }
    // Other curves stand in the place of the drawn ones, so that even a held picture must be taken anew.
    void Replace() {
        CurvesReplaced = true;
        Touch();
    }
    // Only what the legend shows.
    void TouchNames() {
        if (!NamesPending) {
            NamesPending = true;
            Changed.Emit();
        }
    }
    bool IsPending() const { return PicturePending; }
    bool AreCurvesReplaced() const { return CurvesReplaced; }
    bool AreNamesPending() const { return NamesPending; }
    // The view calls this before it reads what it draws.
    void Begin() {
        PicturePending = false;
        CurvesReplaced = false;
        NamesPending = false;
    }

    TSignal<> Changed;

  private:
    bool PicturePending = false;
    bool CurvesReplaced = false;
    bool NamesPending = false;
};

} // namespace tidewell
