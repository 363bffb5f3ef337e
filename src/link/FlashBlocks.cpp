#include "link/FlashBlocks.h"

namespace tidewell {

namespace {

constexpr std::int32_t wholeSecondArea = FlashBlockCount - FlashSecondArea;

void SetRuns(TFlashBlocks& blocks) {
    const std::int32_t start = blocks.AbsolutStartBlock;
    const std::int32_t slut = blocks.AbsolutSlutBlock;
    const auto run = [&blocks](std::size_t index, std::int32_t first, std::int32_t length) {
        blocks.BlockNumberStart[index] = first;
        blocks.BlockNumberLength[index] = length;
    };
    const bool ringEnds = blocks.AbsolutStartWrapAround && !blocks.AbsolutSlutWrapAround;
    if (ringEnds && start >= FlashSecondArea) {
        run(0, start, FlashBlockCount - start);
        run(1, 0, slut);
    } else if (ringEnds) {
        run(0, start, FlashSecondArea - start);
        // Where the end lies in the second area, the middle run goes on past the end of the ring. That is
        // how the range is defined, and what comes from there is for the controller to say.
        run(1, FlashSecondArea, slut > FlashSecondArea ? FlashBlockCount : wholeSecondArea);
        run(2, 0, slut);
    } else if (blocks.AbsolutStartWrapAround && start < FlashSecondArea && slut > FlashSecondArea) {
        run(0, start, FlashSecondArea - start);
        run(1, FlashSecondArea, slut - FlashSecondArea);
    } else {
        run(0, start, slut - start); // in one piece, even across the border of the areas
    }
}

} // namespace

TFlashBlocks CalcFlashBlocks(std::int32_t sliderL, std::int32_t sliderU, std::int32_t currentLogBlock) {
    TFlashBlocks blocks;
    blocks.SliderL = sliderL;
    blocks.SliderU = sliderU;
    blocks.CurrentLogBlock = currentLogBlock;
    blocks.AbsolutStartWrapAround = sliderU > currentLogBlock;
    blocks.AbsolutSlutWrapAround = sliderL > currentLogBlock;
    blocks.AbsolutStartBlock =
        currentLogBlock - sliderU + (blocks.AbsolutStartWrapAround ? FlashBlockCount : 0);
    blocks.AbsolutSlutBlock =
        currentLogBlock - sliderL + (blocks.AbsolutSlutWrapAround ? FlashBlockCount : 0);
    SetRuns(blocks);
    for (std::size_t run = 0; run < blocks.BlockNumberStart.size(); ++run) {
        blocks.BlockAdrStart[run] = FlashBlockAddress(blocks.BlockNumberStart[run]);
        blocks.BlockAdrLength[run] = blocks.BlockNumberLength[run] * FlashBlockSize;
        blocks.qlist.push_back(std::to_string(blocks.BlockAdrStart[run]));
        blocks.qlist.push_back(std::to_string(blocks.BlockAdrLength[run]));
    }
    return blocks;
}

void ReportFlashBlocks(const TFlashBlocks& blocks, const std::string& startText, const std::string& endText,
                       TMemo& memo) {
    const auto add = [&memo](const std::string& name, std::int32_t value) {
        memo.Add(name + ": " + std::to_string(value));
    };
    const auto addRuns = [&add](const std::string& name, const auto& starts, const auto& lengths) {
        for (std::size_t run = 0; run < starts.size(); ++run) {
            add(name + "Start" + std::to_string(run + 1), starts[run]);
            add(name + "Length" + std::to_string(run + 1), lengths[run]);
        }
    };
    memo.Clear();
    memo.Add("-----------------FC count Entry--------------------------");
    memo.Add("Slider L: " + std::to_string(blocks.SliderL) + " -> " + startText);
    memo.Add("Slider H: " + std::to_string(blocks.SliderU) + " -> " + endText);
    add("CurrentLogBlock", blocks.CurrentLogBlock);
    add("AbsolutStartBlock", blocks.AbsolutStartBlock);
    add("AbsolutSlutBlock", blocks.AbsolutSlutBlock);
    addRuns("BlockNumber", blocks.BlockNumberStart, blocks.BlockNumberLength);
    memo.Add("-----------------Adress----------------------------------");
    addRuns("BlockAdr", blocks.BlockAdrStart, blocks.BlockAdrLength);
    memo.Add("-----------------End-------------------------------------");
}

} // namespace tidewell
