#pragma once

#include <cstdint>
#include <span>

namespace tidewell {

constexpr std::uint16_t Crc16Start = 0xFFFF;

// CRC-16/MODBUS of the bytes: reflected polynomial 0xA001, no final XOR. To go on over further bytes, start
// with the result so far, unswapped. With swap the two bytes of the result change places.
std::uint16_t Crc16(std::uint16_t start, std::span<const std::uint8_t> bytes, bool swap);

} // namespace tidewell
