#include "logging/DatalogWriter.h"

#include "core/ports/IDialogs.h"
#include "graph/TextColumn.h"
#include "logging/LogBuffers.h"
#include "model/ModbusPanel.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <memory>
#include <span>

namespace tidewell {

namespace {

constexpr std::size_t BlockSize = 256 * 1024;
constexpr std::size_t LongestField = 21; // of a number, with its ";"
constexpr std::string_view LineEnd = "\r\n";

// Gathers text and hands it to the file in large blocks.
class TBlockWriter {
  public:
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

void WriteRow(TBlockWriter& out, const TDatalogRows& rows, std::size_t row,
              std::span<const std::int32_t> values) {
    const std::size_t text = rows.FirstText + row;
    const std::string_view date = text < rows.Dates.Count() ? rows.Dates.At(text) : std::string_view();
    const std::string_view time = text < rows.Times.Count() ? rows.Times.At(text) : std::string_view();
    const std::size_t columns = rows.Values.Columns();
    out.Reserve((columns + 1) * LongestField + date.size() + time.size() + 8);
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

std::string DatalogHeader(const TModbusPanel& panel, const std::filesystem::path& currentprofilefile) {
    std::string header = ";[HeaderStart]";
    for (const TMDevice& device : panel.DeviceList)
        for (const std::string& question : device.ReadList)
            header += question;
    return header + currentprofilefile.string() + "[HeaderEnd]";
}

void WriteDatalog(IFiles& files, const std::filesystem::path& path, const TDatalogRows& rows,
                  std::string_view header) {
    const std::unique_ptr<IFileWriter> file = files.Replace(path);
    TBlockWriter out(*file);
    for (std::size_t row = 0; row < rows.Count;) {
        if (row >= rows.Values.Rows()) { // counted, but its cycle brought nothing
            WriteRow(out, rows, row++, {});
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
    file->Commit();
}

std::filesystem::path UnusedPath(const IFiles& files, const std::filesystem::path& wanted) {
    auto path = wanted;
    for (int number = 2; files.FileExists(path); ++number)
        path = wanted.parent_path() /
               (wanted.stem().string() + "-" + std::to_string(number) + wanted.extension().string());
    return path;
}

std::filesystem::path WithCsv(const IFiles& files, IDialogs& dialogs, const std::filesystem::path& chosen) {
    if (chosen.filename().string().find(".csv") != std::string::npos)
        return chosen;
    std::filesystem::path path = chosen;
    path += ".csv";
    if (files.FileExists(path) &&
        dialogs.ShowMessageBox(EMessageKind::Confirmation, path.string() + " already exists. Replace it?",
                               EButtons::YesNo) != EModalResult::Yes)
        return {};
    return path;
}

} // namespace tidewell
