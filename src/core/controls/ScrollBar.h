#pragma once

#include "core/controls/Control.h"

namespace tidewell {

enum class EScrollCode {
    Track, // the thumb is dragged, and stands at the position
    End,   // it was let go, or another move is over
    Other,
};

// Position runs from 0 to Max, both included.
class TScrollBar : public TControl {
  public:
    using TControl::TControl;
    int Position() const { return Current; }
    void SetPosition(int position) { Assign(Current, position); }
    int Max() const { return Maximum; }
    void SetMax(int maximum) { Assign(Maximum, maximum); }
    // What a move by the user does.
    void Scroll(EScrollCode code, int position) {
        SetPosition(position);
        OnScroll(code, position);
    }
    TEvent<EScrollCode, int> OnScroll;
    int PageSize() const { return Page; } // length of the thumb, in positions
    void SetPageSize(int size) { Assign(Page, size); }

  private:
    int Current = 0;
    int Maximum = 0;
    int Page = 0;
};

} // namespace tidewell
