#include "link/EepromReader.h"
#include "link/FlashBlocks.h"
#include "link/FlashRecords.h"
#include "link/NabtoStream.h"
#include "link/ReadReport.h"
#include "support/MemoryFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace tidewell::test {

namespace {

using TBytes = std::vector<std::uint8_t>;

// Block 2544 begins the second area, behind a gap; the ring ends with block 6607.
TEST(FlashBlocks, CoverTheRangeInUpToThreeRuns) {
    using TRuns = std::vector<std::pair<int, int>>; // first block and count
    struct TCase {
        int L, U, C; // newer and older end, back from the current block
        int Start, Slut;
        TRuns Runs;
    };
    for (const auto& [l, u, c, start, slut, runs] : std::vector<TCase>{
             {0, 0, 0, 0, 0, {{0, 0}}},
             {0, 0, 100, 100, 100, {{100, 0}}},
             {10, 50, 100, 50, 90, {{50, 40}}},
             {0, 100, 100, 0, 100, {{0, 100}}}, // just not back across the end
             {0, 101, 100, 6607, 100, {{6607, 1}, {0, 100}}},
             {0, 200, 100, 6508, 100, {{6508, 100}, {0, 100}}},
             {99, 200, 100, 6508, 1, {{6508, 100}, {0, 1}}},
             {100, 200, 100, 6508, 0, {{6508, 100}, {0, 0}}},
             // Both ends before the wrap, in one area and on both sides of its border.
             {101, 200, 100, 6508, 6607, {{6508, 99}}},
             {200, 300, 100, 6408, 6508, {{6408, 100}}},
             {100, 5000, 0, 1608, 6508, {{1608, 936}, {2544, 3964}}},
             {4063, 5000, 0, 1608, 2545, {{1608, 936}, {2544, 1}}},
             {4064, 5000, 0, 1608, 2544, {{1608, 936}}}, // up to the border
             {4065, 5000, 0, 1608, 2543, {{1608, 935}}},
             {100, 4065, 0, 2543, 6508, {{2543, 1}, {2544, 3964}}},
             {100, 4064, 0, 2544, 6508, {{2544, 3964}}}, // from the border on
             // All of the second area between both ends.
             {0, 6608, 0, 0, 0, {{0, 2544}, {2544, 4064}, {0, 0}}},
             {0, 6500, 5, 113, 5, {{113, 2431}, {2544, 4064}, {0, 5}}},
             {0, 4070, 5, 2543, 5, {{2543, 1}, {2544, 4064}, {0, 5}}},
             {0, 4069, 5, 2544, 5, {{2544, 4064}, {0, 5}}},
             // An end in the second area asks for the length of the whole ring, one on its border does not.
             {0, 6608, 2544, 2544, 2544, {{2544, 4064}, {0, 2544}}},
             {0, 6609, 2544, 2543, 2544, {{2543, 1}, {2544, 4064}, {0, 2544}}},
             {0, 6610, 2545, 2543, 2545, {{2543, 1}, {2544, 6608}, {0, 2545}}},
             {0, 8000, 3000, 1608, 3000, {{1608, 936}, {2544, 6608}, {0, 3000}}},
             // Not wrapped: no split at the border.
             {0, 600, 2544, 1944, 2544, {{1944, 600}}},
             {10, 1000, 3000, 2000, 2990, {{2000, 990}}},
             // From the second area on.
             {0, 4000, 3000, 5608, 3000, {{5608, 1000}, {0, 3000}}},
             {0, 6608, 65535, 58927, 65535, {{58927, 6608}}}, // a counter beyond the ring
         }) {
        const TFlashBlocks blocks = CalcFlashBlocks(l, u, c);
        SCOPED_TRACE(std::to_string(l) + " to " + std::to_string(u) + " at " + std::to_string(c));
        EXPECT_EQ(std::pair(blocks.AbsolutStartBlock, blocks.AbsolutSlutBlock), std::pair(start, slut));
        EXPECT_EQ(std::pair(blocks.AbsolutStartWrapAround, blocks.AbsolutSlutWrapAround),
                  std::pair(u > c, l > c));
        ASSERT_EQ(blocks.qlist.size(), 6U);
        bool empty = true;
        for (std::size_t i = 0; i < 3; ++i) {
            const auto [first, count] = i < runs.size() ? runs[i] : std::pair(0, 0);
            EXPECT_EQ(std::pair(blocks.BlockNumberStart[i], blocks.BlockNumberLength[i]),
                      std::pair(first, count));
            EXPECT_EQ(blocks.BlockAdrStart[i], FlashBlockAddress(first));
            EXPECT_EQ(blocks.BlockAdrLength[i], count * 4096);
            EXPECT_EQ(blocks.qlist[2 * i], std::to_string(FlashBlockAddress(first)));
            EXPECT_EQ(blocks.qlist[2 * i + 1], std::to_string(count * 4096));
            empty = empty && count == 0;
        }
        EXPECT_EQ(blocks.Empty(), empty);
    }
    for (const auto& [block, address] :
         {std::pair{0, 0x20000}, {1, 0x21000}, {2543, 0xA0F000}, {2544, 0xD30000}, {6607, 0x1D0F000}})
        EXPECT_EQ(FlashBlockAddress(block), address) << block;
}

TEST(FlashRecords, LimitDatesAndTimesAndReadSignedWords) {
    std::string zeros;
    for (int i = 0; i < 123; ++i)
        zeros += "0;";
    struct TCase {
        std::uint8_t DateHigh, DateLow, Hour, Minute;
        const char* Head;
    };
    for (const auto& [high, low, hour, minute, head] :
         std::vector<TCase>{{0x30, 0x65, 7, 0x1E, "05-03-2024;07:30:00;"},
                            {0, 0, 0, 0, "00-00-2000;00:00:00;"},
                            {99 << 1 | 1, 12 << 5 & 0xFF, 23, 59, "00-12-2099;23:59:00;"},
                            {100 << 1 | 1, (13 << 5 & 0xFF) | 31, 24, 60, "31-12-2099;23:59:00;"},
                            {98 << 1, 11 << 5 & 0xFF, 22, 58, "00-03-2098;22:58:00;"},
                            {0xFF, 0xFF, 0xFF, 0xFF, "31-12-2099;23:59:00;"}}) {
        std::array<std::uint8_t, 256> record{high, low, hour, minute, 0x80, 0x00, 0x7F, 0xFF};
        record[255] = 9;
        EXPECT_EQ(TFlashRecords::Row(12, record), "12;" + std::string(head) + "-32768;32767;" + zeros + "9;");
    }
}

// Rows are counted on within a segment; a remainder is no record.
TEST(FlashRecords, AreSavedSegmentBySegment) {
    TMemoryFiles files;
    files.CreateDirectories("/log");
    TFlashRecords records;
    for (const auto& [size, first] : {std::pair{512U, 1U}, {255U, 7U}, {0U, 7U}, {257U, 2U}})
        records.Add(TBytes(size), first);
    EXPECT_EQ(records.Count(), 3U);
    records.Save(files, "/log/a.csv", "header");
    std::string numbers;
    const std::string text = files.Read("/log/a.csv");
    for (std::size_t at = 0; at < text.size(); at = text.find("\r\n", at) + 2)
        numbers += text.substr(at, text.find_first_of(";\r", at) - at) + " ";
    EXPECT_EQ(numbers, "1 2 2 header ");
}

TEST(EepromReader, PairsOfBytesAreWords) {
    EXPECT_EQ(BytesToWordList(TBytes{}), "");
    EXPECT_EQ(BytesToWordList(TBytes{1, 2, 3}), "");
    EXPECT_EQ(BytesToWordList(TBytes{2, 1, 4, 3}), "513;1027;");
    EXPECT_EQ(BytesToWordList(TBytes{255, 255, 0, 0}), "65535;0;");
}

TEST(ReadReport, TellsHowMuchCameAndWhereTheRestLies) {
    using enum TStreamRead::EEnd;
    const TDownloadTexts texts;
    struct TCase {
        std::uint32_t First, Unit, Wanted;
        std::size_t Came;
        TStreamRead::EEnd End;
        std::string Told;
    };
    for (const auto& [first, unit, wanted, came, end, told] : std::vector<TCase>{
             {5, 1, 0, 0, Complete, "Only 0 of 0 bytes were read."},
             {5, 1, 8, 8, Broken, "Only 8 of 8 bytes were read."},
             {5, 1, 8, 7, Broken, "Only 7 of 8 bytes were read.\nBytes 12 to 12: the stream broke off"},
             {5, 1, 8, 0, Failed, "Only 0 of 8 bytes were read.\nBytes 5 to 12: the stream broke off"},
             {5, 1, 8, 1, Ended, "Only 1 of 8 bytes were read.\nBytes 6 to 12: "},
             {5, 10, 20, 19, TimedOut,
              "Only 1 of 2 blocks were read.\nBlocks 6 to 6: nothing more came in time"},
             {5, 10, 21, 20, Complete, "Only 2 of 3 blocks were read.\nBlocks 7 to 7: the stream broke off"},
         }) {
        TReadPart part{.First = first, .Unit = unit, .Wanted = wanted};
        TStreamRead read;
        read.Bytes.resize(came);
        read.End = end;
        part.Take(read, texts);
        TReadReport report;
        report.Add(part);
        EXPECT_EQ(report.Text(texts), told);
        EXPECT_EQ(report.Whole(), came == wanted) << told;
        report.Add({.First = 40, .Unit = unit, .Wanted = unit, .Came = unit});
        EXPECT_EQ(report.Came(), came + unit);
        EXPECT_EQ(report.Reason(), part.Reason);
    }
    EXPECT_EQ(RefusalReason("{}", 0, texts), "");
    EXPECT_EQ(RefusalReason("", 1, texts), "the device did not answer");
    EXPECT_EQ(RefusalReason("{}", -1, texts), "the device refused (status -1)");
    EXPECT_EQ(RefusalReason(R"({"error":{"body":"busy"}})", 1, texts), "the device refused (busy)");
}

} // namespace

} // namespace tidewell::test
