#pragma once

#include "core/controls/Control.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace tidewell {

// A page of a page control; its caption is on the tab. A page that is not Visible has no tab.
class TTabSheet : public TCaptionControl {
  public:
    using TCaptionControl::TCaptionControl;
};

class TPageControl : public TControl {
  public:
    using TControl::TControl;
    std::vector<std::reference_wrapper<TTabSheet>> Pages; // in the order of the tabs

    int ActivePageIndex() const { return Active; }
    bool IsActive(const TTabSheet& page) const {
        return Active >= 0 && static_cast<std::size_t>(Active) < Pages.size() &&
               &Pages[static_cast<std::size_t>(Active)].get() == &page;
    }
    // From code and by the user alike; OnChange runs when the page differs.
    void SetActivePageIndex(int index) {
        if (index == Active)
            return;
        Assign(Active, index);
        OnChange();
    }
    void SetActivePage(const TTabSheet& page) {
        for (std::size_t i = 0; i < Pages.size(); ++i)
            if (&Pages[i].get() == &page)
                SetActivePageIndex(static_cast<int>(i));
    }
    TEvent<> OnChange;

  private:
    int Active = 0;
};

} // namespace tidewell
