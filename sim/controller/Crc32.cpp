#include "sim/controller/Crc32.h"

#include <array>

namespace tidewell {

namespace {

constexpr std::array<std::uint32_t, 256> MakeTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t entry = i;
        for (int bit = 0; bit < 8; ++bit)
            entry = (entry >> 1U) ^ ((entry & 1U) != 0 ? 0xEDB88320U : 0U);
        table[i] = entry;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> Table = MakeTable();

} // namespace

std::uint32_t Crc32(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char byte : bytes)
        crc = (crc >> 8U) ^ Table[(crc ^ static_cast<unsigned char>(byte)) & 0xFFU];
    return ~crc;
}

} // namespace tidewell
