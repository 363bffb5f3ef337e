#pragma once

#include "core/controls/Color.h"

#include <array>

namespace tidewell {

// Colours for curves, in order of use, that colour-blind users can tell apart too.
inline constexpr std::array<TColor, 8> ChannelPalette{{
    {0x00B27200}, // blue
    {0x00005ED5}, // vermilion
    {0x00739E00}, // bluish green
    {0x00A779CC}, // reddish purple
    {0x00009FE6}, // orange
    {0x00E9B456}, // sky blue
    {0x00808080}, // grey
    {0x00A03060}, // violet
}};

} // namespace tidewell
