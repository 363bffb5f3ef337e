#pragma once

#include "logging/DatalogReader.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tidewell {

// Shows the datalogs that a controller has written to an SD card: six hours of minute rows of 16 columns in
// each file, described by a profile of its own. They go to the plot surface alone: such a view cannot be
// scrolled or exported, and after it no profile is open.
class TSdDatalogReader {
  public:
    explicit TSdDatalogReader(const TDatalogNeeds& needs) : Needs(needs) {}

    // Throws EListError when the first file is refused, EConvertError for a stamp or a value that is none,
    // EInOutError.
    void Open_sd_datalogClick();

    void TakeTexts(const TIniFile& language);

    TEvent<const std::filesystem::path&> OnOpenProfile; // the chosen files are drawn by that one

  private:
    bool ChooseProfile();
    std::vector<std::filesystem::path> ChooseFiles();
    // Adds "<index>;<day>-<month>-<year>;<hour>:<minute>:00;<16 values>" for each of the 360 rows of the
    // file, and a last row ";[HeaderStart]". A file that is none adds nothing, and is told.
    void Convert(const std::filesystem::path& path, std::vector<std::string>& rows);
    void TellRefused(const std::string& what);
    // Sets the X axis; gives how many rows lie between two labels.
    std::size_t FitAxis(std::vector<std::string>& rows);
    void Draw(const std::vector<std::string>& rows, std::size_t labelInterval);

    TDatalogNeeds Needs;
    std::string MessageStopLog, DialogOpenProfileCaption, DialogOpenDatalogFileCaption;
    std::string FileRefused = "SD-card datalog refused: %1"; // of the event log; the file, or what is wrong
};

} // namespace tidewell
