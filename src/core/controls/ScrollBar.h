#pragma once

#include "core/controls/Control.h"

namespace tidewell {

// Position runs from 0 to Max, both included.
class TScrollBar : public TControl {
  public:
    using TControl::TControl;
    int Position() const { return Current; }
    void SetPosition(int position) { Assign(Current, position); }
    int Max() const { return Maximum; }
    void SetMax(int maximum) { Assign(Maximum, maximum); }
    int PageSize() const { return Page; } // length of the thumb, in positions
    void SetPageSize(int size) { Assign(Page, size); }

  private:
    int Current = 0;
    int Maximum = 0;
    int Page = 0;
};

} // namespace tidewell
