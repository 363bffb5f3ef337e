#pragma once

#include "core/controls/Control.h"
#include "graph/GraphPage.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tidewell {

// Integers by column and row, filled row by row. The count of columns is that of the last row: an earlier row
// reads 0 in columns that it lacks, and loses for good what lies beyond the columns of a later row. It grows
// in blocks that never move.
class TRawLog {
  public:
    // Makes the values row number row, the last one: rows missing before it are filled with zeros, rows from
    // it on are dropped.
    void SetRow(std::size_t row, std::span<const std::int32_t> values);
    void Clear();
    std::size_t Rows() const { return RowCount; }
    std::size_t Columns() const { return ColumnCount; }
    // Rows that lie side by side, from the one asked for on.
    struct TRun {
        std::span<const std::int32_t> Values; // row by row
        std::size_t Stride = 0;               // of Values from row to row
        std::size_t Columns = 0;              // that count; the others up to Columns() are 0
        std::size_t Rows = 0;                 // at least 1
        std::span<const std::int32_t> Row(std::size_t index) const {
            return Values.subspan(index * Stride, Columns);
        }
    };
    TRun Run(std::size_t row) const;                            // throws EListError beyond the end
    std::int32_t At(std::size_t column, std::size_t row) const; // throws EListError beyond the end
    // Bytes of heap memory held.
    std::size_t MemoryUsed() const;

  private:
    struct TBlock {
        std::size_t FirstRow = 0;
        std::size_t Stride = 0;  // integers per row
        std::size_t Columns = 0; // that count; at most Stride
        std::size_t Rows = 0;
        std::size_t Capacity = 0; // rows
        std::unique_ptr<std::int32_t[]> Values;
    };

    void Append(std::span<const std::int32_t> values);
    void Truncate(std::size_t rows);
    void Narrow(std::size_t columns);

    std::size_t RowCount = 0;
    std::size_t ColumnCount = 0;
    std::vector<TBlock> Blocks; // in order of FirstRow; Columns never falls from one to the next
};

// What a log keeps beside the graph's own buffers.
class TLogBuffers : public TGraphPage::ILog {
  public:
    TRawLog DataLogRawData;
    std::size_t DatalogCount = 0; // rows so far, and the number of the next one
    std::size_t SavedRows = 0;    // of them, those that a file holds
    std::size_t Generation = 0;   // how often the log has begun anew
    std::string Header; // the last line of a file of this log, by the profile that it was begun with
    TEvent<> OnClear;   // while all rows still stand

    void ClearLog() override {
        OnClear();
        DataLogRawData.Clear();
        DatalogCount = 0;
        SavedRows = 0;
        ++Generation;
    }
};

} // namespace tidewell
