#pragma once

#include "core/ports/IFiles.h"
#include "graph/GraphPage.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// The lines of a file, read block by block. A line is cut somewhere behind its first longestLine bytes.
class TDatalogLineReader {
  public:
    explicit TDatalogLineReader(std::unique_ptr<IFileReader> file, std::size_t blockSize = 1U << 17U,
                                std::size_t longestLine = 1U << 20U);
    // False behind the last line. The line is valid until the next call. Throws EInOutError.
    bool Next(std::string_view& line);

  private:
    bool Refill();

    std::unique_ptr<IFileReader> File;
    std::size_t Block;
    std::size_t LongestLine;
    std::size_t Capacity = 0;
    std::unique_ptr<char[]> Buffer; // of Capacity; grows with the longest line so far
    std::size_t Begin = 0;          // of what is not given out yet
    std::size_t End = 0;
    bool AtEnd = false;
    bool SkipLineFeed = false; // the second half of a CR LF
    bool InLongLine = false;
};

inline constexpr std::string_view HeaderMark = ";[HeaderStart]";

// The lines of datalog files, one file behind the other, read block by block. A last line with the mark is no
// row. CR LF, LF and CR all end a line, and a last line needs no end.
class TDatalogLines : public IDataLines {
  public:
    // Counts the lines. Throws EInOutError for a file that cannot be read, EListError when the first files
    // are empty: there is no last line to look at.
    TDatalogLines(const IFiles& files, std::vector<std::filesystem::path> paths);

    // The header lines found, at most their first kibibyte.
    const std::vector<std::string>& CurrentFileImportHeaders() const { return Headers; }
    std::size_t Count() const override { return Rows; }
    std::string_view Next() override;

  private:
    const IFiles& Files;
    std::vector<std::filesystem::path> Paths;
    std::vector<std::size_t> RowsOfFile;
    std::vector<std::string> Headers;
    std::size_t Rows = 0;

    std::unique_ptr<TDatalogLineReader> Current;
    std::size_t File = 0;     // the one being read
    std::size_t RowsLeft = 0; // of it
};

} // namespace tidewell
