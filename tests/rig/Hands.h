#pragma once

#include "rig/Test.h"

namespace tidewell {
class TControl;
} // namespace tidewell

namespace tidewell::test {

// What a person's hands do to a control, as its widget reports it. All throw TBadStep for a control that has
// nothing of the kind; what they return is to be told.

// By the mouse; one that no screen shows can be meant, too.
std::string Click(TControl& control, bool evenHidden);
void Type(TControl& control, const std::string& text);
// "F1", "Escape", "Return", "Space"; any other word is another key.
std::string Press(TControl& control, const std::string& key);
// What is chosen in it: words as docs/testing.md tells for each kind.
std::string Pick(TControl& control, const std::vector<std::string>& words);

} // namespace tidewell::test
