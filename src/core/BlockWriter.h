#pragma once

#include "core/ports/IFiles.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tidewell {

// Gathers text and hands it to the file in large blocks. Number and RowNumber close their field with ";".
class TBlockWriter {
  public:
    static constexpr std::size_t BlockSize = 256 * 1024;
    static constexpr std::size_t LongestField = 21; // of a number, with its ";"

    explicit TBlockWriter(IFileWriter& file) : File(file), Buffer(BlockSize, '\0') {}

    // Makes room for that many bytes; the calls that follow may write no more.
    void Reserve(std::size_t bytes) {
        if (Buffer.size() - Used < bytes) {
            Flush();
            Buffer.resize(std::max(Buffer.size(), bytes));
        }
    }
    void Text(std::string_view text) { Used += text.copy(Buffer.data() + Used, text.size()); }
    void Number(std::int32_t value) {
        char* at = Buffer.data() + Used;
        *at = '-';
        at += value < 0 ? 1 : 0;
        auto rest = static_cast<std::uint32_t>(value < 0 ? -std::int64_t{value} : std::int64_t{value});
        if (rest < 10'000) {
            // Most values; twice as fast as to_chars.
            const int digits = 1 + (rest > 9) + (rest > 99) + (rest > 999);
            at += digits;
            for (int digit = 1; digit <= digits; ++digit, rest /= 10)
                at[-digit] = static_cast<char>('0' + rest % 10);
        } else {
            at = std::to_chars(at, Buffer.data() + Buffer.size(), rest).ptr;
        }
        *at = ';';
        Used = static_cast<std::size_t>(at - Buffer.data()) + 1;
    }
    void RowNumber(std::size_t number) {
        char* const end = std::to_chars(Buffer.data() + Used, Buffer.data() + Buffer.size(), number).ptr;
        *end = ';';
        Used = static_cast<std::size_t>(end - Buffer.data()) + 1;
    }
    void Flush() {
        File.Write(std::string_view(Buffer.data(), Used));
        Used = 0;
    }

  private:
    IFileWriter& File;
    std::string Buffer;
    std::size_t Used = 0;
};

} // namespace tidewell
