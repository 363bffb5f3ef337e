#pragma once

#include <cstdint>
#include <string_view>

namespace tidewell {

// CRC-32 of the bytes as archives use it: reflected polynomial 0xEDB88320, start value and final XOR
// 0xFFFFFFFF.
std::uint32_t Crc32(std::string_view bytes);

} // namespace tidewell
