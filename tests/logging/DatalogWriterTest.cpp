#include "logging/DatalogWriter.h"

#include "graph/TextColumn.h"
#include "logging/LogBuffers.h"
#include "rig/Test.h"

// How a datalog looks is told in tests/journeys/log.txt.
namespace tidewell::test {

using TValues = std::vector<std::int32_t>;

TEST(DatalogWriter, WritesWhatATableResizedAtEachRowHolds) {
    const TValues numbers{0,    1,    9,     10,    99,     100,        999,
                          1000, 9999, 10000, -9999, -10000, 2147483647, -2147483647 - 1};
    constexpr std::size_t dated = 5; // later rows were never
    TTextColumn dates;
    TTextColumn times;
    for (std::size_t i = 0; i < dated; ++i) {
        dates.Add("d" + std::to_string(i));
        times.Add("t" + std::to_string(i));
    }
    TMemoryFiles files;
    files.CreateDirectories("/t");
    std::mt19937 random(7);
    for (std::size_t round = 0; round < 30; ++round) {
        TRawLog log;
        std::vector<TValues> table; // the same by brute force
        std::size_t row = 0;
        std::size_t width = 5;
        for (int step = 0; step < 400; ++step) {
            if (random() % 20 == 0)
                width = 1 + random() % 300;
            TValues values(width);
            for (auto& value : values)
                value = numbers.at(random() % numbers.size());
            log.SetRow(row, values);
            table.resize(row + 1);
            for (auto& kept : table)
                kept.resize(width, 0);
            table[row] = values;
            // A row may be written again, rows before it too, or some be left out.
            const auto kind = random() % 50;
            row = kind == 0 ? row - random() % (row + 1) : kind == 1 ? row + 4 : kind == 2 ? row : row + 1;
        }
        EXPECT_THROW(log.At(0, table.size()), EListError);
        EXPECT_THROW(log.At(width, 0), EListError);
        ASSERT_EQ(log.Rows(), table.size());
        table.resize(round * table.size() / 28, TValues(width, 0)); // of all rows some, or more
        const std::size_t first = round % 7;
        WriteDatalog(*files.Replace("/t/a"), {table.size(), dates, times, log, first}, "head");
        std::string expected;
        for (row = 0; row < table.size(); ++row) {
            const std::string text = std::to_string(first + row);
            expected +=
                std::to_string(row + 1) + (first + row < dated ? ";d" + text + ";t" + text + ";" : ";;;");
            for (std::size_t column = 0; column < width; ++column) {
                expected += std::to_string(table[row][column]) + ";";
                ASSERT_TRUE(row >= log.Rows() || log.At(column, row) == table[row][column]);
            }
            expected += "\r\n";
        }
        ASSERT_TRUE(files.Read("/t/a") == expected + "head\r\n") << round;
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

} // namespace tidewell::test
