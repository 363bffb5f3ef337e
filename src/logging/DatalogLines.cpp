#include "logging/DatalogLines.h"

#include "core/Errors.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace tidewell {

namespace {

constexpr std::size_t keptHeader = 1024;

} // namespace

TDatalogLineReader::TDatalogLineReader(std::unique_ptr<IFileReader> file, std::size_t blockSize,
                                       std::size_t longestLine)
    : File(std::move(file)), Block(blockSize), LongestLine(longestLine), Capacity(2 * blockSize),
      Buffer(std::make_unique_for_overwrite<char[]>(Capacity)) {}

// Moves the rest of the line at hand to the front and reads on behind it.
bool TDatalogLineReader::Refill() {
    if (AtEnd)
        return false;
    End -= Begin;
    if (Capacity - End < Block) {
        Capacity *= 2;
        auto grown = std::make_unique_for_overwrite<char[]>(Capacity);
        std::memcpy(grown.get(), Buffer.get() + Begin, End);
        Buffer = std::move(grown);
    } else {
        std::memmove(Buffer.get(), Buffer.get() + Begin, End);
    }
    Begin = 0;
    const std::size_t got = File->Read({Buffer.get() + End, Block});
    AtEnd = got < Block;
    End += got;
    return got > 0;
}

bool TDatalogLineReader::Next(std::string_view& line) {
    for (std::size_t searched = 0;;) {
        const char* const begin = Buffer.get() + Begin;
        const std::size_t size = End - Begin;
        if (SkipLineFeed && size > 0) {
            SkipLineFeed = false;
            if (*begin == '\n') {
                ++Begin;
                continue;
            }
        }
        const auto* const feed =
            static_cast<const char*>(std::memchr(begin + searched, '\n', size - searched));
        const std::size_t reach = feed == nullptr ? size : static_cast<std::size_t>(feed - begin);
        const auto* const back =
            static_cast<const char*>(std::memchr(begin + searched, '\r', reach - searched));
        const char* const found = back != nullptr ? back : feed;
        if (found != nullptr) {
            line = {begin, static_cast<std::size_t>(found - begin)};
            Begin += line.size() + 1;
            SkipLineFeed = back != nullptr;
            if (!std::exchange(InLongLine, false))
                return true;
            searched = 0; // the end of a line that is given out already
            continue;
        }
        if (size >= LongestLine) {
            Begin = End;
            searched = 0;
            if (!std::exchange(InLongLine, true)) {
                line = {begin, size};
                return true;
            }
            continue;
        }
        searched = size;
        if (!Refill()) {
            line = {Buffer.get() + Begin, End - Begin};
            Begin = End;
            return !line.empty() && !std::exchange(InLongLine, false);
        }
    }
}

TDatalogLines::TDatalogLines(const IFiles& files, std::vector<std::filesystem::path> paths)
    : Files(files), Paths(std::move(paths)) {
    for (const auto& path : Paths) {
        TDatalogLineReader reader(Files.Open(path));
        std::string_view line;
        std::size_t rows = 0;
        bool marked = false;
        std::string last;
        while (reader.Next(line)) {
            ++rows;
            // Few lines hold a "[" at all.
            marked = std::memchr(line.data(), '[', line.size()) != nullptr &&
                     line.find(HeaderMark) != std::string_view::npos;
            if (marked)
                last = line.substr(0, keptHeader);
        }
        if (rows == 0 && Rows == 0)
            throw EListError(-1);
        if (marked) {
            Headers.push_back(last);
            --rows;
        }
        RowsOfFile.push_back(rows);
        Rows += rows;
    }
}

std::string_view TDatalogLines::Next() {
    while (RowsLeft == 0) {
        if (File == Paths.size())
            return {};
        RowsLeft = RowsOfFile[File];
        Current = std::make_unique<TDatalogLineReader>(Files.Open(Paths[File++]));
    }
    --RowsLeft;
    std::string_view line;
    Current->Next(line); // a file that has shrunk since gives empty lines
    return line;
}

} // namespace tidewell
