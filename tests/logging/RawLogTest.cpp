#include "core/Errors.h"
#include "logging/LogBuffers.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace tidewell {

TEST(RawLog, ReadsLikeATableResizedAtEachRow) {
    std::mt19937 random(7);
    for (int round = 0; round < 30; ++round) {
        TRawLog log;
        std::vector<std::vector<std::int32_t>> table; // the same by brute force
        std::size_t row = 0;
        std::size_t width = 5;
        for (int step = 0; step < 400; ++step) {
            if (random() % 20 == 0)
                width = 1 + random() % 300;
            std::vector<std::int32_t> values(width);
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
    }
}

TEST(RawLog, NeedsLittleMoreThanItsNumbers) {
    struct TCase {
        std::size_t Columns;
        std::size_t Rows;
        bool Flapping; // each other row is one column wider
    };
    for (const TCase& sample : {TCase{127, 5000, false}, TCase{1, 100'000, false}, TCase{20'000, 10, false},
                                TCase{40, 5000, true}}) {
        TRawLog log;
        for (std::size_t row = 0; row < sample.Rows; ++row) {
            const std::vector<std::int32_t> values(sample.Columns + (sample.Flapping ? row % 2 : 0), 1);
            log.SetRow(row, values);
        }
        const std::size_t needed = sample.Columns * sample.Rows * sizeof(std::int32_t);
        EXPECT_LT(static_cast<double>(log.MemoryUsed()),
                  static_cast<double>(needed) * (sample.Flapping ? 2 : 1.2))
            << sample.Columns;
    }
}

TEST(RawLog, RefusesWhatItDoesNotHold) {
    TRawLog log;
    EXPECT_THROW(log.Run(0), EListError);
    log.SetRow(2, std::vector<std::int32_t>{7, 8});
    EXPECT_EQ(log.At(1, 0), 0);
    EXPECT_EQ(log.At(1, 2), 8);
    EXPECT_THROW(log.At(0, 3), EListError);
    EXPECT_THROW(log.At(2, 0), EListError);
    log.Clear();
    EXPECT_EQ(log.Rows(), 0U);
    EXPECT_THROW(log.At(0, 0), EListError);
}

} // namespace tidewell
