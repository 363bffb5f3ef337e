#pragma once

#include "core/controls/Lists.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// The controller's own log lies in a ring of flash blocks of 4096 bytes, one block for each 32 minutes. The
// ring has two areas with a gap between them.
namespace tidewell {

constexpr std::int32_t FlashBlockCount = 6608;
constexpr std::int32_t FlashBlockSize = 4096;      // bytes
constexpr std::int32_t FlashSecondArea = 2544;     // its first block
constexpr std::int32_t FlashBaseAddress = 0x20000; // of block 0
constexpr std::int32_t FlashAreaGap = 3276800;     // bytes in front of the second area
constexpr std::int32_t FlashMinutesPerBlock = 32;

constexpr std::int32_t FlashBlockAddress(std::int32_t block) {
    return block * FlashBlockSize + FlashBaseAddress + (block >= FlashSecondArea ? FlashAreaGap : 0);
}

// What a range on the slider covers: up to three runs of blocks, the first ones at index 0. An unused run has
// length 0.
struct TFlashBlocks {
    std::int32_t SliderL = 0; // blocks back from the current one: the range's newer end
    std::int32_t SliderU = 0; // its older end
    std::int32_t CurrentLogBlock = 0;
    std::int32_t AbsolutStartBlock = 0;
    std::int32_t AbsolutSlutBlock = 0;
    bool AbsolutStartWrapAround = false;
    bool AbsolutSlutWrapAround = false;
    std::array<std::int32_t, 3> BlockNumberStart{};
    std::array<std::int32_t, 3> BlockNumberLength{};
    std::array<std::int32_t, 3> BlockAdrStart{};  // flash addresses
    std::array<std::int32_t, 3> BlockAdrLength{}; // bytes
    // Address and length in bytes of each run as decimal texts: start 1, length 1, start 2, ...
    std::vector<std::string> qlist;

    bool Empty() const { return BlockNumberLength == std::array<std::int32_t, 3>{}; }
};

TFlashBlocks CalcFlashBlocks(std::int32_t sliderL, std::int32_t sliderU, std::int32_t currentLogBlock);

// Writes all of it, one item per line; the texts are those of the edits that show the slider's positions.
void ReportFlashBlocks(const TFlashBlocks& blocks, const std::string& startText, const std::string& endText,
                       TMemo& memo);

} // namespace tidewell
