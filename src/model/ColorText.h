#pragma once

#include "core/controls/Color.h"

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

// What a text that names no colour stands for; no colour that can be chosen.
inline constexpr TColor UnknownColor{0x01000000};

// A name such as "clRed" or "clBtnFace", in any case, or a number: "$00BBGGRR", "0x00BBGGRR" or decimal.
// Colours of the system have fixed values. Nothing for any other text.
std::optional<TColor> TryColorFromText(std::string_view text);
// The same, with UnknownColor for any other text.
TColor ColorFromText(std::string_view text);
// The text that was read if it still stands for the colour, so that nothing is lost; else the colour's name
// if it has one, else "$00BBGGRR".
std::string ColorToText(TColor color, std::string_view asRead);

} // namespace tidewell
