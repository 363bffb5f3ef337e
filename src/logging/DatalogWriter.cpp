#include "logging/DatalogWriter.h"

#include "core/BlockWriter.h"
#include "graph/TextColumn.h"
#include "logging/LogBuffers.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace tidewell {

namespace {

constexpr std::string_view LineEnd = "\r\n";

void WriteRow(TBlockWriter& out, const TDatalogRows& rows, std::size_t row,
              std::span<const std::int32_t> values) {
    const std::size_t text = rows.FirstText + row;
    const std::string_view date = text < rows.Dates.Count() ? rows.Dates.At(text) : std::string_view();
    const std::string_view time = text < rows.Times.Count() ? rows.Times.At(text) : std::string_view();
    const std::size_t columns = rows.Values.Columns();
    out.Reserve((columns + 1) * TBlockWriter::LongestField + date.size() + time.size() + 8);
    out.RowNumber(row + 1);
    out.Text(date);
    out.Text(";");
    out.Text(time);
    out.Text(";");
    for (const std::int32_t value : values)
        out.Number(value);
    for (std::size_t column = values.size(); column < columns; ++column)
        out.Text("0;");
    out.Text(LineEnd);
}

} // namespace

void WriteDatalogRow(TBlockWriter& out, const TDatalogRows& rows, std::size_t row) {
    if (row < rows.Values.Rows())
        WriteRow(out, rows, row, rows.Values.Run(row).Row(0));
    else // counted, but its cycle brought nothing
        WriteRow(out, rows, row, {});
}

std::filesystem::path WriteDatalog(IFileWriter& file, const TDatalogRows& rows, std::string_view header) {
    TBlockWriter out(file);
    for (std::size_t row = 0; row < rows.Count;) {
        if (row >= rows.Values.Rows()) {
            WriteDatalogRow(out, rows, row++);
            continue;
        }
        const TRawLog::TRun run = rows.Values.Run(row);
        const std::size_t count = std::min(run.Rows, rows.Count - row);
        for (std::size_t i = 0; i < count; ++i)
            WriteRow(out, rows, row + i, run.Row(i));
        row += count;
    }
    out.Reserve(header.size() + LineEnd.size());
    out.Text(header);
    out.Text(LineEnd);
    out.Flush();
    return file.Commit();
}

} // namespace tidewell
