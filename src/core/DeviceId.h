#pragma once

#include <cstddef>
#include <string>

namespace tidewell {

inline constexpr std::size_t DeviceIdLength = 12; // characters

// The id of a device's address; what follows it is the domain. No character is cut in two: whatever announces
// itself on the network has one.
inline std::string DeviceIdOf(const std::string& address) {
    std::size_t characters = 0;
    for (std::size_t i = 0; i < address.size(); ++i)
        if ((static_cast<unsigned char>(address[i]) & 0xC0U) != 0x80 && ++characters > DeviceIdLength)
            return address.substr(0, i);
    return address;
}

} // namespace tidewell
