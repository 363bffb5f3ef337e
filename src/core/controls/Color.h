#pragma once

#include <cstdint>

namespace tidewell {

// A colour as profiles and handlers write it: 0x00BBGGRR.
struct TColor {
    std::uint32_t Value = 0;

    constexpr std::uint8_t Red() const { return static_cast<std::uint8_t>(Value); }
    constexpr std::uint8_t Green() const { return static_cast<std::uint8_t>(Value >> 8U); }
    constexpr std::uint8_t Blue() const { return static_cast<std::uint8_t>(Value >> 16U); }
    friend constexpr bool operator==(TColor, TColor) = default;
};

} // namespace tidewell
