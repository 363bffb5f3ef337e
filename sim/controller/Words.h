#pragma once

#include <cstdint>
#include <string>

namespace tidewell {

inline constexpr char ErasedByte = '\xFF'; // of flash and EEPROM

// The low 16 bits, high byte first.
inline void AppendWord(std::string& bytes, std::uint32_t word) {
    bytes += static_cast<char>(static_cast<unsigned char>(word >> 8U & 0xFFU));
    bytes += static_cast<char>(static_cast<unsigned char>(word & 0xFFU));
}

} // namespace tidewell
