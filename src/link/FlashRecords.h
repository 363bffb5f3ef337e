#pragma once

#include "core/ports/IFiles.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// The rows of a flash datalog, kept as the 256-byte records that they come from: 128 big-endian words, date,
// time and 126 signed values. The row of a record reads
// "<number>;<DD-MM-20YY>;<HH:MM:00>;<126 values>;".
class TFlashRecords {
  public:
    static constexpr std::size_t RecordSize = 256; // bytes
    static constexpr std::size_t ValueCount = 126;

    void Clear() { Segments.clear(); }
    // Takes the whole records of the bytes and drops what is left; their rows are numbered from that one on.
    void Add(std::vector<std::uint8_t> bytes, std::size_t firstNumber);
    std::size_t Count() const; // rows

    static std::string Row(std::size_t number, std::span<const std::uint8_t, RecordSize> record);
    // One line per row and then the header line, each ended by CR LF. The file is replaced in one step at the
    // end. Throws EInOutError; an old file then stays.
    std::filesystem::path Save(IFileWriter& file, std::string_view header) const;

  private:
    struct TSegment {
        std::vector<std::uint8_t> Bytes;
        std::size_t FirstNumber = 1;
    };
    std::vector<TSegment> Segments;
};

} // namespace tidewell
