#pragma once

#include <cstdint>
#include <string>

namespace tidewell {

// The four parts of the program's version.
struct Tsysteminfo {
    std::uint16_t Major = 0;
    std::uint16_t Minor = 0;
    std::uint16_t Release = 0;
    std::uint16_t Build = 0;

    // major.minor.release Build: build
    std::string Text() const {
        return std::to_string(Major) + "." + std::to_string(Minor) + "." + std::to_string(Release) +
               " Build: " + std::to_string(Build);
    }
};

} // namespace tidewell
