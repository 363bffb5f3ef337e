#include "link/FlashRecords.h"

#include "core/BlockWriter.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace tidewell {

namespace {

using TRecord = std::span<const std::uint8_t, TFlashRecords::RecordSize>;

constexpr std::size_t dateWord = 0;
constexpr std::size_t timeWord = 1;
constexpr std::size_t firstValue = 2;
constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view headShape = "DD-MM-20YY;HH:MM:00;";
constexpr std::size_t longestRow =
    headShape.size() + (TFlashRecords::ValueCount + 1) * TBlockWriter::LongestField;

std::uint16_t WordAt(TRecord record, std::size_t word) {
    return static_cast<std::uint16_t>(record[word * 2] << 8U | record[word * 2 + 1]);
}

// Date and time, each with its ";". What no calendar and no clock has is shown as the highest there is.
std::string_view Head(TRecord record, std::string& head) {
    const unsigned date = WordAt(record, dateWord);
    const unsigned time = WordAt(record, timeWord);
    const auto put = [&head](std::size_t at, unsigned number) {
        head[at] = static_cast<char>('0' + number / 10);
        head[at + 1] = static_cast<char>('0' + number % 10);
    };
    put(0, date & 0x1FU);
    put(3, std::min(date >> 5U & 0xFU, 12U));
    put(8, std::min(date >> 9U, 99U));
    put(11, std::min(time >> 8U, 23U));
    put(14, std::min(time & 0xFFU, 59U));
    return head;
}

// For a writer that has room for a row.
void WriteRow(TBlockWriter& out, std::size_t number, TRecord record, std::string& head) {
    out.RowNumber(number);
    out.Text(Head(record, head));
    for (std::size_t word = firstValue; word < firstValue + TFlashRecords::ValueCount; ++word)
        out.Number(static_cast<std::int16_t>(WordAt(record, word)));
}

class TTextSink : public IFileWriter {
  public:
    explicit TTextSink(std::string& text) : Sink(text) {}
    void Write(std::string_view bytes) override { Sink += bytes; }
    std::filesystem::path Commit() override { return {}; }

  private:
    std::string& Sink;
};

} // namespace

void TFlashRecords::Add(std::vector<std::uint8_t> bytes, std::size_t firstNumber) {
    bytes.resize(bytes.size() / RecordSize * RecordSize);
    if (bytes.empty())
        return;
    if (bytes.capacity() > bytes.size() + bytes.size() / 4)
        bytes.shrink_to_fit();
    Segments.push_back({std::move(bytes), firstNumber});
}

std::size_t TFlashRecords::Count() const {
    std::size_t count = 0;
    for (const TSegment& segment : Segments)
        count += segment.Bytes.size() / RecordSize;
    return count;
}

std::string TFlashRecords::Row(std::size_t number, TRecord record) {
    std::string text;
    std::string head(headShape);
    TTextSink sink(text);
    TBlockWriter out(sink);
    WriteRow(out, number, record, head);
    out.Flush();
    return text;
}

std::filesystem::path TFlashRecords::Save(IFileWriter& file, std::string_view header) const {
    TBlockWriter out(file);
    std::string head(headShape);
    for (const TSegment& segment : Segments) {
        std::size_t number = segment.FirstNumber;
        for (auto rest = std::span(segment.Bytes); !rest.empty(); rest = rest.subspan(RecordSize)) {
            out.Reserve(longestRow);
            WriteRow(out, number++, rest.first<RecordSize>(), head);
            out.Text(lineEnd);
        }
    }
    out.Reserve(header.size() + lineEnd.size());
    out.Text(header);
    out.Text(lineEnd);
    out.Flush();
    return file.Commit();
}

} // namespace tidewell
