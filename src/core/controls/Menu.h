#pragma once

#include "core/controls/Control.h"

#include <functional>
#include <string>
#include <vector>

namespace tidewell {

// An entry of a menu. ShortCut is only shown; the form's key handler acts on the key.
class TMenuItem : public TCaptionControl {
  public:
    using TCaptionControl::TCaptionControl;
    TEvent<> OnClick;
    void Click() const {
        if (Visible() && Enabled())
            OnClick();
    }
    bool Checkable() const { return IsCheckable; }
    void SetCheckable(bool checkable) { Assign(IsCheckable, checkable); }
    bool Checked() const { return IsChecked; }
    void SetChecked(bool checked) { Assign(IsChecked, checked); }
    const std::string& ShortCut() const { return KeyText; }
    void SetShortCut(const std::string& text) { Assign(KeyText, text); }

    // Entries of the submenu, in order; owned by the form.
    std::vector<std::reference_wrapper<TMenuItem>> Items;

  private:
    bool IsCheckable = false;
    bool IsChecked = false;
    std::string KeyText;
};

// The menu bar of a form: its entries are the menus.
class TMainMenu : public TControl {
  public:
    using TControl::TControl;
    std::vector<std::reference_wrapper<TMenuItem>> Items;
};

class TPopupMenu : public TControl {
  public:
    using TControl::TControl;
    std::vector<std::reference_wrapper<TMenuItem>> Items;
};

} // namespace tidewell
