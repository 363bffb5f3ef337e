#pragma once

#include "core/ports/IFiles.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace tidewell {

class TBlockWriter;
class TRawLog;
class TTextColumn;

// The rows of a datalog file, as views of the log.
struct TDatalogRows {
    std::size_t Count = 0;
    const TTextColumn& Dates;
    const TTextColumn& Times;
    const TRawLog& Values;
    std::size_t FirstText = 0; // entry of Dates and Times that belongs to the first row
};

// One row, with the end of its line.
void WriteDatalogRow(TBlockWriter& out, const TDatalogRows& rows, std::size_t row);
// Writes <number from 1>;<date>;<time>;<values>; per row and then the header line, each ended by CR LF. The
// file is complete then; its place is given. Throws EInOutError, or EListError when a row has no date or
// time.
std::filesystem::path WriteDatalog(IFileWriter& file, const TDatalogRows& rows, std::string_view header);

} // namespace tidewell
