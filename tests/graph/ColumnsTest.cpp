#include "core/Errors.h"
#include "graph/SampleTable.h"
#include "graph/TextColumn.h"

#include <gtest/gtest.h>

#include <string>

namespace tidewell {

TEST(TextColumn, GivesBackEveryRowAndStoresRepeatsOnce) {
    TTextColumn column;
    const auto text = [](std::size_t row) {
        return row % 7 == 3 ? "" : "time " + std::to_string(row % 5000);
    };
    for (std::size_t row = 0; row < 100'000; ++row)
        column.Add(text(row));
    ASSERT_EQ(column.Count(), 100'000U);
    for (std::size_t row = 0; row < column.Count(); ++row)
        ASSERT_EQ(column.At(row), text(row)) << row;
    EXPECT_LT(column.MemoryUsed(), 100'000U * 4 * 1.3 + 200'000);
    column.Clear();
    EXPECT_THROW(column.At(0), EListError);
}

TEST(SampleTable, HoldsColumnsThatCanBeWalkedInRuns) {
    TSampleTable table;
    table.Reset(3);
    const auto value = [](std::size_t channel, std::size_t sample) {
        return static_cast<double>(channel * 10'000 + sample) / 8;
    };
    for (std::size_t sample = 0; sample < 1000; ++sample) {
        table.Resize(sample + 1);
        for (std::size_t channel = 0; channel < 3; ++channel)
            table.Set(channel, sample, value(channel, sample));
    }
    std::size_t next = 100;
    for (auto run = table.Run(2, next); !run.empty(); run = table.Run(2, next))
        for (const double got : run)
            ASSERT_EQ(got, value(2, next++));
    EXPECT_EQ(next, 1000U);
    EXPECT_THROW(table.At(0, 1000), EListError);
    EXPECT_THROW(table.At(3, 0), EListError);

    // What was cut away does not come back.
    table.Resize(300);
    table.Resize(600);
    EXPECT_EQ(table.At(1, 299), value(1, 299));
    EXPECT_EQ(table.At(1, 300) + table.At(1, 599), 0);
    table.Reset(0);
    table.Resize(5);
    EXPECT_THROW(table.Set(0, 0, 1), EListError);
}

} // namespace tidewell
