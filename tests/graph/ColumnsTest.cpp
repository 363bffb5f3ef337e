#include "graph/SampleTable.h"
#include "graph/TextColumn.h"
#include "rig/Test.h"

namespace tidewell {

TEST(TextColumn, GivesBackEveryRowAndStoresRepeatsOnce) {
    const auto text = [](std::size_t row) {
        return row % 7 == 3 ? "" : "time " + std::to_string(row % 5000);
    };
    TTextColumn column;
    const auto fill = [&](std::size_t rows) {
        while (column.Count() < rows)
            column.Add(text(column.Count()));
    };
    // Filled up to the first, cut to the second. Its blocks hold 4096.
    constexpr std::array<std::size_t, 2> cases[] = {
        {0, 0},       {1, 1},       {1, 0},    {3, 9},       {4096, 4096}, {4096, 4095}, {4097, 4096},
        {9000, 4096}, {9000, 8192}, {9000, 1}, {8192, 8191}, {8192, 0},    {9000, 8193}};
    for (const auto& [rows, kept] : cases) {
        SCOPED_TRACE(std::to_string(rows) + " cut to " + std::to_string(kept));
        fill(rows);
        const std::size_t count = std::min(column.Count(), kept);
        column.Truncate(kept);
        ASSERT_EQ(column.Count(), count);
        EXPECT_THROW(column.At(count), EListError);
        fill(count + 1);
        for (std::size_t row = 0; row <= count; ++row)
            ASSERT_EQ(column.At(row), text(row)) << row;
    }
    fill(100'000);
    EXPECT_LT(column.MemoryUsed(), 100'000U * 4 * 1.3 + 200'000);
    EXPECT_GT(column.MemoryUsed(), 25U * 4096 * 4 + 8192 * (4 + 4) + 44'000); // blocks, ends, slots, texts
    column.Clear();
    EXPECT_THROW(column.At(0), EListError);
}

TEST(SampleTable, HoldsColumnsThatCanBeCutAndWalkedInRuns) {
    const auto value = [](std::size_t channel, std::size_t sample) {
        return static_cast<double>(channel * 10'000 + sample + 1) / 8;
    };
    // Filled with values up to the first, cut to the second, then grown to the third. Its blocks hold 256.
    constexpr std::array<std::size_t, 3> cases[] = {
        {0, 0, 0},       {1, 1, 2},       {1, 0, 1},       {255, 255, 256}, {256, 256, 257},
        {256, 255, 256}, {257, 256, 257}, {257, 257, 512}, {300, 256, 300}, {512, 256, 600},
        {600, 256, 256}, {600, 512, 600}, {600, 513, 600}, {600, 0, 600},   {1000, 300, 600}};
    for (const auto& [filled, cut, grown] : cases) {
        SCOPED_TRACE(std::to_string(filled) + " cut to " + std::to_string(cut));
        TSampleTable table;
        table.Reset(3);
        table.Resize(filled);
        for (std::size_t i = 0; i < 3 * filled; ++i)
            table.Set(i % 3, i / 3, value(i % 3, i / 3));
        table.Resize(cut);
        table.Resize(grown);
        for (std::size_t channel = 0; channel < 3; ++channel) {
            std::size_t next = 0;
            for (auto run = table.Run(channel, next); !run.empty(); run = table.Run(channel, next))
                for (const double got : run) { // what was cut away does not come back
                    ASSERT_EQ(got, next < cut ? value(channel, next) : 0);
                    ASSERT_EQ(got, table.At(channel, next++));
                }
            EXPECT_EQ(next, grown);
            EXPECT_THROW(table.At(channel, grown), EListError);
        }
        EXPECT_THROW(table.At(3, 0), EListError);
        EXPECT_TRUE(table.Run(3, 0).empty());
    }
    TSampleTable none;
    none.Resize(5);
    EXPECT_THROW(none.Set(0, 0, 1), EListError);
}

} // namespace tidewell
