#pragma once

#include "core/controls/Control.h"

#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// An edit whose text always has the shape of its mask. In the mask "9" is a digit that may be missing, a
// character behind "\" stands for itself, and so does any other; "!" in front and what follows the first ";"
// tell how the field is filled: the text holds the literals, and a digit that is missing is shown as "_".
class TMaskEdit : public TControl {
  public:
    TMaskEdit(TControls& form, std::string name, std::string_view mask);

    // One character of the text: a literal, or 0 for a digit.
    const std::vector<char>& Places() const { return Shape; }
    // A missing digit is a blank.
    const std::string& Text() const { return Content; }
    // Lays the text into the mask: digits fill their field from the left up to the next literal, and what
    // fits nowhere is dropped. Blanks and "_" are missing digits.
    void SetText(std::string_view text);

    TEvent<> OnClick;
    TEvent<> OnExit; // the keyboard leaves the field

  private:
    std::vector<char> Shape;
    std::string Content;
};

} // namespace tidewell
