#include "logging/DatalogWriter.h"

#include "graph/TextColumn.h"
#include "logging/LogBuffers.h"
#include "support/Test.h"

namespace tidewell {

using TValues = std::vector<std::int32_t>;

TEST(DatalogWriter, WritesRowsAndHeader) {
    TValues wide(30'000);
    std::iota(wide.begin(), wide.end(), 0);
    std::string wideText;
    for (const std::int32_t value : wide)
        wideText += std::to_string(value) + ";";
    struct {
        std::size_t Count, FirstText;
        std::vector<TValues> Rows;
        std::vector<std::string> Lines;
    } const cases[] = {
        {0, 0, {}, {}},
        {2, 0, {{1, -2}, {40000, 0}}, {"1;d0;t0;1;-2;", "2;d1;t1;40000;0;"}},
        {1,
         0,
         {{0, 9, 10, 99, 100, 999, 1000, 9999, 10000, -9999, -10000, 2147483647, -2147483647 - 1}},
         {"1;d0;t0;0;9;10;99;100;999;1000;9999;10000;-9999;-10000;2147483647;-2147483648;"}},
        // The last row sets the columns.
        {3, 0, {{1, 2, 3}, {4}, {5, 6, 7}}, {"1;d0;t0;1;0;0;", "2;d1;t1;4;0;0;", "3;d2;t2;5;6;7;"}},
        {2, 0, {{1, 2, 3}, {4}}, {"1;d0;t0;1;", "2;d1;t1;4;"}},
        // Rows that are not counted, or hold nothing, or were never dated.
        {1, 0, {{1}, {2}, {3}}, {"1;d0;t0;1;"}},
        {3, 0, {{1}}, {"1;d0;t0;1;", "2;d1;t1;0;", "3;d2;t2;0;"}},
        {2, 4, {{1}, {2}}, {"1;d4;t4;1;", "2;;;2;"}},
        {3, 0, {wide, wide, wide}, {"1;d0;t0;" + wideText, "2;d1;t1;" + wideText, "3;d2;t2;" + wideText}},
    };
    for (const auto& c : cases) {
        TTextColumn dates;
        TTextColumn times;
        for (const char number : std::string_view("01234")) {
            dates.Add(std::string("d") + number);
            times.Add(std::string("t") + number);
        }
        TRawLog log;
        for (std::size_t row = 0; row < c.Rows.size(); ++row)
            log.SetRow(row, c.Rows[row]);
        test::TMemoryFiles files;
        files.CreateDirectories("/t");
        WriteDatalog(files, "/t/a", {c.Count, dates, times, log, c.FirstText}, "head");
        std::string expected;
        for (const std::string& line : c.Lines)
            expected += line + "\r\n";
        EXPECT_EQ(files.Read("/t/a"), expected + "head\r\n");
    }
}

TEST(RawLog, ReadsLikeATableResizedAtEachRow) {
    std::mt19937 random(7);
    for (int round = 0; round < 30; ++round) {
        TRawLog log;
        std::vector<TValues> table; // the same by brute force
        std::size_t row = 0;
        std::size_t width = 5;
        for (int step = 0; step < 400; ++step) {
            if (random() % 20 == 0)
                width = 1 + random() % 300;
            TValues values(width);
            for (auto& value : values)
                value = static_cast<std::int32_t>(random());
            log.SetRow(row, values);
            table.resize(row + 1);
            for (auto& kept : table)
                kept.resize(width, 0);
            table[row] = values;
            // A row may be written again, rows before it too, or some be left out.
            const auto kind = random() % 50;
            row = kind == 0 ? row - random() % (row + 1) : kind == 1 ? row + 4 : kind == 2 ? row : row + 1;
        }
        ASSERT_EQ(log.Rows(), table.size());
        ASSERT_EQ(log.Columns(), width);
        for (std::size_t at = 0; at < log.Rows(); ++at)
            for (std::size_t column = 0; column < width; ++column)
                ASSERT_EQ(log.At(column, at), table[at][column]) << at << " " << column;
        EXPECT_THROW(log.At(0, table.size()), EListError);
        EXPECT_THROW(log.At(width, 0), EListError);
        log.Clear();
        EXPECT_THROW(log.Run(0), EListError);
    }
}

TEST(RawLog, NeedsLittleMoreThanItsNumbers) {
    for (const auto& [columns, rows] : {std::pair{127U, 5000U}, {1U, 100'000U}, {20'000U, 10U}}) {
        TRawLog log;
        for (std::size_t row = 0; row < rows; ++row)
            log.SetRow(row, TValues(columns, 1));
        EXPECT_LT(log.MemoryUsed(), columns * rows * sizeof(std::int32_t) * 6 / 5);
    }
}

} // namespace tidewell
