#include "logging/LogBuffers.h"

#include "core/Errors.h"

#include <algorithm>
#include <string>

namespace tidewell {

namespace {

constexpr std::size_t BlockValues = 16384;

} // namespace

void TRawLog::SetRow(std::size_t row, std::span<const std::int32_t> values) {
    Truncate(row);
    Narrow(values.size());
    if (RowCount < row) {
        const std::vector<std::int32_t> zeros(values.size(), 0);
        while (RowCount < row)
            Append(zeros);
    }
    Append(values);
    ColumnCount = values.size();
}

void TRawLog::Clear() {
    *this = TRawLog();
}

TRawLog::TRun TRawLog::Run(std::size_t row) const {
    if (row >= RowCount)
        throw EListError("List index out of bounds (" + std::to_string(row) + ")");
    const auto next =
        std::upper_bound(Blocks.begin(), Blocks.end(), row,
                         [](std::size_t wanted, const TBlock& block) { return wanted < block.FirstRow; });
    const TBlock& block = *std::prev(next);
    const std::size_t skipped = row - block.FirstRow;
    const std::size_t rows = block.Rows - skipped;
    return {{block.Values.get() + skipped * block.Stride, rows * block.Stride},
            block.Stride,
            block.Columns,
            rows};
}

std::int32_t TRawLog::At(std::size_t column, std::size_t row) const {
    if (column >= ColumnCount)
        throw EListError("List index out of bounds (" + std::to_string(column) + ")");
    const TRun run = Run(row);
    return column < run.Columns ? run.Values[column] : 0;
}

std::size_t TRawLog::MemoryUsed() const {
    std::size_t used = Blocks.capacity() * sizeof(TBlock);
    for (const TBlock& block : Blocks)
        used += block.Capacity * block.Stride * sizeof(std::int32_t);
    return used;
}

void TRawLog::Append(std::span<const std::int32_t> values) {
    const bool continues =
        !Blocks.empty() && Blocks.back().Stride == values.size() && Blocks.back().Columns == values.size();
    if (!continues || Blocks.back().Rows == Blocks.back().Capacity) {
        // Blocks of one width double up to their full size, so that rows of ever changing width cost little.
        const std::size_t full =
            std::max<std::size_t>(BlockValues / std::max<std::size_t>(values.size(), 1), 1);
        const std::size_t capacity = continues ? std::min(full, Blocks.back().Capacity * 2) : 1;
        Blocks.push_back({RowCount, values.size(), values.size(), 0, capacity,
                          std::make_unique_for_overwrite<std::int32_t[]>(capacity * values.size())});
    }
    TBlock& block = Blocks.back();
    std::copy(values.begin(), values.end(), block.Values.get() + block.Rows * block.Stride);
    ++block.Rows;
    ++RowCount;
}

void TRawLog::Truncate(std::size_t rows) {
    while (!Blocks.empty() && Blocks.back().FirstRow >= rows)
        Blocks.pop_back();
    if (rows < RowCount) {
        if (!Blocks.empty())
            Blocks.back().Rows = rows - Blocks.back().FirstRow;
        RowCount = rows;
    }
}

void TRawLog::Narrow(std::size_t columns) {
    for (auto block = Blocks.rbegin(); block != Blocks.rend() && block->Columns > columns; ++block)
        block->Columns = columns;
}

} // namespace tidewell
