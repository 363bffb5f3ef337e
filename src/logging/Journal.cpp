#include "logging/Journal.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "logging/DatalogLines.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

namespace tidewell {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view endOfRow = "\r\n";
constexpr std::size_t journalBlock = 1U << 17U;

// The path that stands between the questions, each ended by ";", and the closing mark.
fs::path ProfileOf(std::string_view header) {
    header = header.substr(0, header.rfind("[HeaderEnd]"));
    const auto questions = header.rfind(';');
    header.remove_prefix(questions == header.npos ? 0 : questions + 1);
    return header.substr(header.starts_with("[HeaderStart]") ? HeaderMark.size() - 1 : 0);
}

// Gives what is whole of a text that comes in blocks.
class TWholeLines {
  public:
    explicit TWholeLines(std::unique_ptr<IFileReader> file)
        : File(std::move(file)), Block(journalBlock, '\0') {}

    // Whole lines, with their ends; empty at the end, or where a power cut has left zeros.
    std::string Next() {
        for (;;) {
            const std::size_t got = AtEnd ? 0 : File->Read(Block);
            const std::string_view read = std::string_view(Block).substr(0, got);
            const std::string_view good = read.substr(0, read.find('\0'));
            AtEnd = good.size() < Block.size();
            Pending += good;
            const auto end = Pending.rfind(endOfRow);
            if (end != std::string::npos) {
                std::string lines = Pending.substr(0, end + endOfRow.size());
                Pending.erase(0, lines.size());
                return lines;
            }
            if (AtEnd)
                return {};
        }
    }

  private:
    std::unique_ptr<IFileReader> File;
    std::string Block;
    std::string Pending; // no whole line
    bool AtEnd = false;
};

std::size_t CountLines(std::string_view lines) {
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n'));
}

} // namespace

void TJournal::Add(const fs::path& folder, const TDatalogRows& rows, std::size_t saved,
                   std::string_view header, int syncTime) {
    if (!File)
        Begin(folder, saved, header);
    for (; NextRow < rows.Count; ++NextRow)
        WriteDatalogRow(*Out, rows, NextRow);
    Out->Flush();
    if (Clock.Now() - Synced >= std::chrono::milliseconds(syncTime)) {
        Synced = Clock.Now();
        File->Commit();
    }
}

void TJournal::Begin(const fs::path& folder, std::size_t saved, std::string_view header) {
    Files.CreateDirectories(folder);
    File = Files.Append(folder / (DateTimeStamp(Clock) + ".csv"));
    Path = File->Commit();
    Out.emplace(*File);
    Out->Reserve(header.size() + endOfRow.size());
    Out->Text(header);
    Out->Text(endOfRow);
    NextRow = saved;
    Synced = Clock.Now();
}

void TJournal::Drop() {
    if (!File)
        return;
    try {
        Files.Remove(Path);
    } catch (const EInOutError&) {
        // The next start recovers rows that another file holds, too.
    }
    Leave();
}

void TJournal::Leave() {
    Out.reset();
    File.reset();
}

std::vector<fs::path> JournalsLeft(const IFiles& files, const fs::path& folder) {
    std::vector<fs::path> left;
    for (const std::string& name : files.List(folder, "*.csv"))
        if (!files.IsLocked(folder / name))
            left.push_back(folder / name);
    return left;
}

std::optional<TRecoveredLog> RecoverJournal(IFiles& files, const fs::path& journal, const fs::path& folder) {
    TWholeLines source(files.Open(journal));
    std::string lines = source.Next();
    const std::string header = lines.substr(0, lines.find(endOfRow));
    if (!header.starts_with(HeaderMark))
        return std::nullopt;
    lines.erase(0, header.size() + endOfRow.size());
    if (lines.empty())
        lines = source.Next();
    if (lines.empty())
        return std::nullopt;
    files.CreateDirectories(folder);
    const auto file = files.Create(folder / ("recovered" + journal.filename().string()));
    TRecoveredLog recovered;
    for (; !lines.empty(); lines = source.Next()) {
        file->Write(lines);
        recovered.Rows += CountLines(lines);
    }
    file->Write(header + std::string(endOfRow));
    recovered.Path = file->Commit();
    recovered.Profile = ProfileOf(header);
    files.Remove(journal);
    return recovered;
}

} // namespace tidewell
