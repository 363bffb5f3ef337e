#pragma once

#include "core/ports/IFiles.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace tidewell {

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

// Writes <number from 1>;<date>;<time>;<values>; per row and then the header line, each ended by CR LF. The
// file is replaced in one step at the end. Throws EInOutError, or EListError when a row has no date or time;
// the old file then stays.
void WriteDatalog(IFiles& files, const std::filesystem::path& path, const TDatalogRows& rows,
                  std::string_view header);

} // namespace tidewell
