#include "core/Crc16.h"

#include <array>
#include <cstddef>

namespace tidewell {

namespace {

constexpr std::array<std::uint16_t, 256> MakeTable() {
    std::array<std::uint16_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        auto value = static_cast<std::uint16_t>(i);
        for (int bit = 0; bit < 8; ++bit)
            value = static_cast<std::uint16_t>((value & 1U) != 0 ? (value >> 1U) ^ 0xA001U : value >> 1U);
        table[i] = value;
    }
    return table;
}

constexpr auto table = MakeTable();

} // namespace

std::uint16_t Crc16(std::uint16_t start, std::span<const std::uint8_t> bytes, bool swap) {
    std::uint32_t crc = start;
    for (const std::uint8_t byte : bytes)
        crc = (crc >> 8U) ^ table[(crc ^ byte) & 0xFFU];
    return static_cast<std::uint16_t>(swap ? crc << 8U | crc >> 8U : crc);
}

} // namespace tidewell
