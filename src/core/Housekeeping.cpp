#include "core/Housekeeping.h"

#include "core/DiskFiles.h"
#include "core/Errors.h"
#include "core/ports/IDialogs.h"

#include <chrono>
#include <cmath>
#include <ratio>
#include <string>
#include <vector>

namespace tidewell {

namespace {

constexpr int purgeDays = 30;
constexpr int keptDays = 365;
constexpr std::chrono::minutes leastAge{1};

std::vector<std::filesystem::path> OldFiles(const IFiles& files, const IClock& clock,
                                            const std::filesystem::path& mask, int days) {
    std::vector<std::filesystem::path> old;
    for (const auto& name : files.List(mask.parent_path(), mask.filename().string())) {
        const auto path = mask.parent_path() / name;
        try {
            if (FileAge(clock, files.Modified(path)) >= days)
                old.push_back(path);
        } catch (const EInOutError&) {
            continue; // gone since it was listed, or a link to nowhere: it has no age
        }
    }
    return old;
}

} // namespace

long FileAge(const IClock& clock, TTime modified) {
    // Counted on the calendar, so that the hour of a change to summer time moves no file to another day.
    const TTime day = clock.Midnight(modified);
    const double elapsed =
        std::chrono::duration<double, std::ratio<86400>>(clock.Midnight(clock.Now()) - day).count();
    const long days = std::lround(elapsed);
    const bool withinDay = modified != day;
    return (withinDay && days > 0 ? days - 1 : days) + 1;
}

std::size_t SearchPurgeFiles(const IFiles& files, const IClock& clock, const std::filesystem::path& mask,
                             int days) {
    return OldFiles(files, clock, mask, days).size();
}

std::size_t PurgeFiles(IFiles& files, const IClock& clock, const std::filesystem::path& mask, int days,
                       bool raiseOnError) {
    const auto old = OldFiles(files, clock, mask, days);
    for (const auto& path : old) {
        try {
            files.Remove(path);
        } catch (const EInOutError& error) {
            if (raiseOnError)
                throw EInOutError("PurgFiles() Failed on file\n" + path.string() + "\n\n" + error.Reason());
        }
    }
    return old.size();
}

void CleanUpLogFiles(IFiles& files, const IClock& clock, IDialogs& dialogs,
                     const std::filesystem::path& directory) {
    PurgeFiles(files, clock, directory / "log" / "kept" / "*.*", keptDays, false);
    const auto mask = directory / "log" / "systemlog" / "*.*";
    const std::size_t count = SearchPurgeFiles(files, clock, mask, purgeDays);
    if (count == 0)
        return;
    const std::string question = "Systemlog contain " + std::to_string(count) + " old files > " +
                                 std::to_string(purgeDays) + " days. Delete files?";
    if (dialogs.ShowMessageBox(EMessageKind::Confirmation, question, EButtons::YesNo) == EModalResult::Yes)
        PurgeFiles(files, clock, mask, purgeDays, false);
}

void SweepTemporaryFiles(IFiles& files, const IClock& clock, const std::filesystem::path& folder) {
    for (const auto& name : files.List(folder, std::string("*") + TemporaryMark + "??????"))
        try {
            // A young one may be that of a program that has not locked it yet.
            if (!files.IsLocked(folder / name) && clock.Now() - files.Modified(folder / name) > leastAge)
                files.Remove(folder / name);
        } catch (const EInOutError&) {
            continue; // gone since it was listed, or to stay
        }
}

} // namespace tidewell
