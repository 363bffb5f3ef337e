#include "link/EepromReader.h"
#include "link/FlashBlocks.h"
#include "link/FlashRecords.h"
#include "link/NabtoStream.h"
#include "link/ReadReport.h"
#include "rig/Test.h"

namespace tidewell::test {

namespace {

// Newer and older end, back from the current block; the blocks of both ends, and first block and count of up
// to three runs. Block 2544 begins the second area, behind a gap; the ring ends with block 6607.
TEST(FlashBlocks, CoverTheRangeInUpToThreeRuns) {
    const auto runs = [](std::string_view input) {
        const auto number = [&input](std::size_t at) { return ToInteger(Piece(input, at)); };
        const TFlashBlocks blocks = CalcFlashBlocks(number(0), number(1), number(2));
        EXPECT_EQ(blocks.AbsolutStartWrapAround, number(1) > number(2)) << input;
        EXPECT_EQ(blocks.AbsolutSlutWrapAround, number(0) > number(2)) << input;
        std::string told =
            std::to_string(blocks.AbsolutStartBlock) + " to " + std::to_string(blocks.AbsolutSlutBlock) + ":";
        int count = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const int first = blocks.BlockNumberStart[i];
            const int length = blocks.BlockNumberLength[i];
            count += length;
            told += " " + std::to_string(first) + "+" + std::to_string(length);
            EXPECT_EQ(blocks.qlist[2 * i], std::to_string(FlashBlockAddress(first))) << input;
            EXPECT_EQ(blocks.qlist[2 * i + 1], std::to_string(length * 4096)) << input;
        }
        EXPECT_EQ(blocks.Empty(), count == 0) << input;
        return told;
    };
    ExpectRows(
        runs,
        {"0|0|0 -> 0 to 0: 0+0 0+0 0+0", "10|50|100 -> 50 to 90: 50+40 0+0 0+0",
         "0|100|100 -> 0 to 100: 0+100 0+0 0+0", // just not back across the end
         "0|101|100 -> 6607 to 100: 6607+1 0+100 0+0", "99|200|100 -> 6508 to 1: 6508+100 0+1 0+0",
         "100|200|100 -> 6508 to 0: 6508+100 0+0 0+0",
         // Both ends before the wrap, in one area and on both sides of its border.
         "101|200|100 -> 6508 to 6607: 6508+99 0+0 0+0", "100|5000|0 -> 1608 to 6508: 1608+936 2544+3964 0+0",
         "4063|5000|0 -> 1608 to 2545: 1608+936 2544+1 0+0", "4064|5000|0 -> 1608 to 2544: 1608+936 0+0 0+0",
         "4065|5000|0 -> 1608 to 2543: 1608+935 0+0 0+0", "100|4065|0 -> 2543 to 6508: 2543+1 2544+3964 0+0",
         "100|4064|0 -> 2544 to 6508: 2544+3964 0+0 0+0",
         // All of the second area between both ends.
         "0|6608|0 -> 0 to 0: 0+2544 2544+4064 0+0", "0|4070|5 -> 2543 to 5: 2543+1 2544+4064 0+5",
         "0|4069|5 -> 2544 to 5: 2544+4064 0+5 0+0",
         // An end in the second area asks for the length of the whole ring, one on its border does not.
         "0|6608|2544 -> 2544 to 2544: 2544+4064 0+2544 0+0",
         "0|6609|2544 -> 2543 to 2544: 2543+1 2544+4064 0+2544",
         "0|6610|2545 -> 2543 to 2545: 2543+1 2544+6608 0+2545",
         "0|600|2544 -> 1944 to 2544: 1944+600 0+0 0+0",         // not wrapped: no split at the border
         "0|4000|3000 -> 5608 to 3000: 5608+1000 0+3000 0+0",    // from the second area on
         "0|6608|65535 -> 58927 to 65535: 58927+6608 0+0 0+0"}); // a counter beyond the ring
    EXPECT_EQ(FlashBlockAddress(2543), 0xA0F000);
    EXPECT_EQ(FlashBlockAddress(2544), 0xD30000);
}

TEST(FlashRecords, LimitDatesAndTimesAndReadSignedWords) {
    std::string zeros;
    for (int i = 0; i < 123; ++i)
        zeros += "0;";
    ExpectRows( // the bytes of date, hour and minute
        [&zeros](std::string_view input) {
            const auto byte = [&input](std::size_t at) {
                return static_cast<std::uint8_t>(ToInteger(Piece(input, at)));
            };
            std::array<std::uint8_t, 256> record{byte(0), byte(1), byte(2), byte(3), 0x80, 0x00, 0x7F, 0xFF};
            record[255] = 9;
            const std::string row = TFlashRecords::Row(12, record);
            const std::string rest = "-32768;32767;" + zeros + "9;";
            return row.ends_with(rest) ? row.substr(0, row.size() - rest.size()) : row;
        },
        {"$30|$65|7|30 -> 12;05-03-2024;07:30:00;", "0|0|0|0 -> 12;00-00-2000;00:00:00;",
         "199|128|23|59 -> 12;00-12-2099;23:59:00;", "201|191|24|60 -> 12;31-12-2099;23:59:00;",
         "196|$60|22|58 -> 12;00-03-2098;22:58:00;", "255|255|255|255 -> 12;31-12-2099;23:59:00;"});
}

TEST(EepromReader, PairsOfBytesAreWords) {
    EXPECT_EQ(BytesToWordList(std::vector<std::uint8_t>{1, 2, 3}), "");
    EXPECT_EQ(BytesToWordList(std::vector<std::uint8_t>{2, 1, 255, 255}), "513;65535;");
}

TEST(ReadReport, TellsHowMuchCameAndWhereTheRestLies) {
    const TDownloadTexts texts;
    ExpectRows( // first byte or block, its size, bytes wanted and come, how it ended
        [&texts](std::string_view input) {
            using enum TStreamRead::EEnd;
            const auto number = [&input](std::size_t at) {
                return static_cast<std::uint32_t>(ToInteger(Piece(input, at)));
            };
            const std::string end = Piece(input, 4);
            TReadPart part{.First = number(0), .Unit = number(1), .Wanted = number(2)};
            TStreamRead read;
            read.Bytes.resize(number(3));
            read.End = end == "broken"   ? Broken
                       : end == "failed" ? Failed
                       : end == "late"   ? TimedOut
                       : end == "whole"  ? Complete
                                         : Ended;
            part.Take(read, texts);
            TReadReport report;
            report.Add(part);
            EXPECT_EQ(report.Whole(), number(3) == number(2)) << input;
            const std::string told = report.Text(texts);
            report.Add({.First = 40, .Unit = part.Unit, .Wanted = part.Unit, .Came = part.Unit});
            EXPECT_EQ(report.Came(), number(3) + part.Unit);
            EXPECT_EQ(report.Reason(), part.Reason);
            return told;
        },
        {"5|1|0|0|whole -> Only 0 of 0 bytes were read.", "5|1|8|8|broken -> Only 8 of 8 bytes were read.",
         "5|1|8|7|broken -> Only 7 of 8 bytes were read.\nBytes 12 to 12: the stream broke off",
         "5|1|8|0|failed -> Only 0 of 8 bytes were read.\nBytes 5 to 12: the stream broke off",
         "5|1|8|1|ended -> Only 1 of 8 bytes were read.\nBytes 6 to 12: ",
         "5|10|20|19|late -> Only 1 of 2 blocks were read.\nBlocks 6 to 6: nothing more came in time",
         "5|10|21|20|whole -> Only 2 of 3 blocks were read.\nBlocks 7 to 7: the stream broke off"});
    EXPECT_EQ(RefusalReason("{}", 0, texts), "");
    EXPECT_EQ(RefusalReason("", 1, texts), "the device did not answer");
    EXPECT_EQ(RefusalReason("{}", -1, texts), "the device refused (status -1)");
    EXPECT_EQ(RefusalReason(R"({"error":{"body":"busy"}})", 1, texts), "the device refused (busy)");
}

} // namespace

} // namespace tidewell::test
