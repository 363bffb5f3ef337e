#pragma once

#include "core/controls/Control.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

// Panels from left to right. A panel either shows its text or holds other controls, which the form names.
class TStatusBar : public TControl {
  public:
    struct TStatusPanel {
        int Width = 0; // pixels
        std::string Text;
        bool Centred = false;
        friend bool operator==(const TStatusPanel&, const TStatusPanel&) = default;
    };

    TStatusBar(TControls& form, std::string name, std::vector<TStatusPanel> panels)
        : TControl(form, std::move(name)), Content(std::move(panels)) {}

    const std::vector<TStatusPanel>& Panels() const { return Content; }
    void SetText(std::size_t panel, const std::string& text) { Assign(Content.at(panel).Text, text); }
    void SetWidth(std::size_t panel, int width) { Assign(Content.at(panel).Width, width); }

  private:
    std::vector<TStatusPanel> Content;
};

} // namespace tidewell
