#pragma once

#include "core/controls/Color.h"
#include "core/controls/Control.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tidewell {

// A horizontal track bar with two thumbs, which bound a range of positions from Min to Max, both included. A
// thumb that is set beyond the other one takes it along.
class TTrackBar2 : public TControl {
  public:
    TTrackBar2(TControls& form, std::string name, int min, int max)
        : TControl(form, std::move(name)), Minimum(min), Maximum(max), Lower(min), Upper(max) {}

    int Min() const { return Minimum; }
    int Max() const { return Maximum; }
    int LowerPosition() const { return Lower; }
    int UpperPosition() const { return Upper; }
    // From code and by the user alike; OnChange runs when a thumb has moved.
    void SetLowerPosition(int position) {
        position = std::clamp(position, Minimum, Maximum);
        SetPositions(position, std::max(position, Upper));
    }
    void SetUpperPosition(int position) {
        position = std::clamp(position, Minimum, Maximum);
        SetPositions(std::min(position, Lower), position);
    }

    int Frequency() const { return TickFrequency; } // positions between two ticks; 0: no ticks
    void SetFrequency(int frequency) { Assign(TickFrequency, frequency); }
    int PageSize() const { return Page; } // positions of a large step by the keyboard
    void SetPageSize(int size) { Assign(Page, size); }
    TColor ThumbColor() const { return Thumbs; }
    void SetThumbColor(TColor color) { Assign(Thumbs, color); }

    TEvent<> OnChange;

  private:
    void SetPositions(int lower, int upper) {
        if (lower == Lower && upper == Upper)
            return;
        Lower = lower;
        Upper = upper;
        Changed.Emit();
        OnChange();
    }

    int Minimum;
    int Maximum;
    int Lower;
    int Upper;
    int TickFrequency = 0;
    int Page = 1;
    TColor Thumbs{0x00008000}; // green
};

} // namespace tidewell
