#pragma once

#include "sim/controller/Identity.h"
#include "sim/controller/ImageStore.h"

#include <cstdint>
#include <optional>

namespace tidewell {

// The restarts of a controller. A restart into the update mode tests the images that its mask names, puts
// the good ones in force and keeps a word that tells the bad ones, a bit each. While it restarts, a
// controller is away. An image that was announced counts as bad until a test finds it good.
class TUpdateMode {
  public:
    explicit TUpdateMode(const TImageStore& images) : Images(images) {}
    TUpdateMode(const TUpdateMode&) = delete;
    TUpdateMode& operator=(const TUpdateMode&) = delete;

    std::int64_t UpdateMs = 30000; // how long a restart into the update mode takes
    std::int64_t RestartMs = 3000; // and one with an empty mask, which tests nothing
    std::int64_t CheckMs = 0;      // so long after the return the word still tells each named file as bad

    // A new image of that file, from 1, is on its way.
    void Announce(std::int32_t file);
    // Bit k of the mask names file k + 1.
    void Restart(std::uint32_t mask, std::int64_t nowMs, std::int64_t longerMs);
    bool Restarting() const { return ReturnsAtMs.has_value(); }
    // It restarts, and is not through yet.
    bool Away(std::int64_t nowMs) const { return ReturnsAtMs && nowMs < *ReturnsAtMs; }
    bool TestsImages() const { return Mask != 0; }
    // Ends the restart. spoiled: bits of files whose test is to fail. The versions that came into force, by
    // member of the answer to "ping.json".
    TIdentity Return(std::uint32_t spoiled, std::int64_t nowMs);

    std::uint16_t CrcResult(std::int64_t nowMs) const;

  private:
    const TImageStore& Images;
    std::optional<std::int64_t> ReturnsAtMs;
    std::uint32_t Mask = 0;
    std::uint32_t Tested = 0; // by the last test
    std::uint32_t Bad = 0;
    std::int64_t TestedAtMs = 0;
};

} // namespace tidewell
