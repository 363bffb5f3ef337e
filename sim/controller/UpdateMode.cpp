#include "sim/controller/UpdateMode.h"

namespace tidewell {

namespace {

constexpr std::int32_t MostFiles = 16;

} // namespace

void TUpdateMode::Announce(std::int32_t file) {
    if (file >= 1 && file <= MostFiles)
        Bad |= 1U << static_cast<unsigned>(file - 1);
}

void TUpdateMode::Restart(std::uint32_t mask, std::int64_t nowMs, std::int64_t longerMs) {
    Mask = mask;
    ReturnsAtMs = nowMs + (mask == 0 ? RestartMs : UpdateMs) + longerMs;
}

TIdentity TUpdateMode::Return(std::uint32_t spoiled, std::int64_t nowMs) {
    ReturnsAtMs.reset();
    TIdentity versions;
    if (!TestsImages())
        return versions;
    Tested = Mask;
    Bad = (Bad & ~Mask) | spoiled;
    TestedAtMs = nowMs + CheckMs;
    for (std::int32_t file = 1; file <= MostFiles; ++file) {
        const std::uint32_t bit = 1U << static_cast<unsigned>(file - 1);
        if ((Mask & bit) == 0 || (Bad & bit) != 0)
            continue;
        if (!Images.Whole(file))
            Bad |= bit;
        else if (const auto number = Images.VersionNumber(file))
            versions.emplace_back(Images.Setup.at(file).Version, *number);
    }
    return versions;
}

std::uint16_t TUpdateMode::CrcResult(std::int64_t nowMs) const {
    return static_cast<std::uint16_t>(nowMs < TestedAtMs ? Tested | Bad : Bad);
}

} // namespace tidewell
