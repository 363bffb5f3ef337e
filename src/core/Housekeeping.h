#pragma once

#include "core/ports/IClock.h"
#include "core/ports/IFiles.h"

#include <cstddef>
#include <filesystem>

// Purge of old files. A mask is a directory and a name pattern, "log/systemlog/*.*"; subdirectories are
// neither counted, entered nor removed. A file is old when its age is at least the days given.
namespace tidewell {

class IDialogs;

// Whole days from the file's modification to the midnight that began today, plus 1: a file from earlier today
// and one from yesterday both have an age of 1.
long FileAge(const IClock& clock, TTime modified);

std::size_t SearchPurgeFiles(const IFiles& files, const IClock& clock, const std::filesystem::path& mask,
                             int days);
// Gives the number of old files, removed or not. With raiseOnError the first file that cannot be removed
// throws EInOutError.
std::size_t PurgeFiles(IFiles& files, const IClock& clock, const std::filesystem::path& mask, int days,
                       bool raiseOnError);
// Offers to remove the files of log/systemlog that are 30 days old. Files that cannot be removed stay in
// silence.
// Those of log/kept go without a question after a year.
void CleanUpLogFiles(IFiles& files, const IClock& clock, IDialogs& dialogs,
                     const std::filesystem::path& directory);

// Removes what programs that were killed while they wrote have left in that folder.
void SweepTemporaryFiles(IFiles& files, const IClock& clock, const std::filesystem::path& folder);

} // namespace tidewell
