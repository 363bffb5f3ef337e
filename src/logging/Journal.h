#pragma once

#include "core/BlockWriter.h"
#include "core/ports/IClock.h"
#include "core/ports/IFiles.h"
#include "logging/DatalogWriter.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tidewell {

// The rows of a running log that no file holds yet, in a file that survives the end of the program: the
// header line of the datalog first, then each row as it will stand there. It is locked for as long as the
// program runs.
class TJournal {
  public:
    TJournal(IFiles& files, const IClock& clock) : Files(files), Clock(clock) {}

    // Writes the rows that it does not hold yet; a new one begins behind those that are saved. What was
    // written is made durable once syncTime has passed, in ms. Throws EInOutError.
    void Add(const std::filesystem::path& folder, const TDatalogRows& rows, std::size_t saved,
             std::string_view header, int syncTime);
    // Another file holds all of its rows: it goes.
    void Drop();
    // It stays for the next start of the program.
    void Leave();

  private:
    void Begin(const std::filesystem::path& folder, std::size_t saved, std::string_view header);

    IFiles& Files;
    const IClock& Clock;
    std::unique_ptr<IFileWriter> File;
    std::optional<TBlockWriter> Out;
    std::filesystem::path Path;
    std::size_t NextRow = 0;
    TTime Synced;
};

// A journal that was left over by an end that nobody saw coming, as a datalog.
struct TRecoveredLog {
    std::filesystem::path Path;
    std::size_t Rows = 0;
    std::filesystem::path Profile; // that it was logged with
};

// The journals of the folder that no running program holds.
std::vector<std::filesystem::path> JournalsLeft(const IFiles& files, const std::filesystem::path& folder);
// Turns the journal into a datalog in that folder, without a last line that is torn, and removes it. Nothing,
// and it stays, if it holds no row. Throws EInOutError; it then stays.
std::optional<TRecoveredLog> RecoverJournal(IFiles& files, const std::filesystem::path& journal,
                                            const std::filesystem::path& folder);

} // namespace tidewell
