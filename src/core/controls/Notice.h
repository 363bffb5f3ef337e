#pragma once

#include "core/controls/Simple.h"

#include <functional>
#include <string>
#include <utility>

namespace tidewell {

// A line of its owner's on the main form: what goes wrong, or what the values shown are. It stands until its
// owner clears it or the user hides it.
class TNotice : public TPanel {
  public:
    TNotice(TControls& form, const std::string& name)
        : TPanel(form, name), Text(form, "Lbl" + name), Action(form, "But" + name),
          Hide(form, "ButHide" + name, "\u2715") {
        SetVisible(false);
        Action.SetVisible(false);
        Hide.OnClick = [this] { Clear(); };
    }

    void Show(const std::string& text) {
        Text.SetCaption(text);
        SetVisible(!text.empty());
    }
    // What can be done about it, as a button beside the text.
    void OfferAction(const std::string& caption, std::function<void()> handler) {
        Action.SetCaption(caption);
        Action.OnClick = std::move(handler);
        Action.SetVisible(true);
    }
    void Clear() { Show({}); }

    TLabel Text;
    TButton Action;
    TButton Hide;
};

} // namespace tidewell
