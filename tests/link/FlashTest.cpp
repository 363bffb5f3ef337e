#include "link/EepromReader.h"
#include "link/FlashBlocks.h"
#include "link/FlashRecords.h"
#include "link/NabtoStream.h"
#include "link/ReadReport.h"
#include "support/Test.h"

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
             {10, 50, 100, 50, 90, {{50, 40}}},
             {0, 100, 100, 0, 100, {{0, 100}}}, // just not back across the end
             {0, 101, 100, 6607, 100, {{6607, 1}, {0, 100}}},
             {0, 200, 100, 6508, 100, {{6508, 100}, {0, 100}}},
             {99, 200, 100, 6508, 1, {{6508, 100}, {0, 1}}},
             {100, 200, 100, 6508, 0, {{6508, 100}, {0, 0}}},
             // Both ends before the wrap, in one area and on both sides of its border.
             {101, 200, 100, 6508, 6607, {{6508, 99}}},
             {100, 5000, 0, 1608, 6508, {{1608, 936}, {2544, 3964}}},
             {4063, 5000, 0, 1608, 2545, {{1608, 936}, {2544, 1}}},
             {4064, 5000, 0, 1608, 2544, {{1608, 936}}}, // up to the border
             {4065, 5000, 0, 1608, 2543, {{1608, 935}}},
             {100, 4065, 0, 2543, 6508, {{2543, 1}, {2544, 3964}}},
             {100, 4064, 0, 2544, 6508, {{2544, 3964}}}, // from the border on
             // All of the second area between both ends.
             {0, 6608, 0, 0, 0, {{0, 2544}, {2544, 4064}, {0, 0}}},
             {0, 4070, 5, 2543, 5, {{2543, 1}, {2544, 4064}, {0, 5}}},
             {0, 4069, 5, 2544, 5, {{2544, 4064}, {0, 5}}},
             // An end in the second area asks for the length of the whole ring, one on its border does not.
             {0, 6608, 2544, 2544, 2544, {{2544, 4064}, {0, 2544}}},
             {0, 6609, 2544, 2543, 2544, {{2543, 1}, {2544, 4064}, {0, 2544}}},
             {0, 6610, 2545, 2543, 2545, {{2543, 1}, {2544, 6608}, {0, 2545}}},
             {0, 8000, 3000, 1608, 3000, {{1608, 936}, {2544, 6608}, {0, 3000}}},
             // Not wrapped: no split at the border.
             {0, 600, 2544, 1944, 2544, {{1944, 600}}},
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
