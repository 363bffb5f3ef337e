#pragma once

#include "core/ports/IFiles.h"
#include "logging/DatalogReader.h"

#include <filesystem>
#include <string>

namespace tidewell {

// Saves the log as it is drawn, as a table for a spreadsheet: fields separated by ";", decimal comma.
class TCsvExport {
  public:
    explicit TCsvExport(const TDatalogNeeds& needs) : Needs(needs) {}

    // The table has as many lines as the log has rows, two of them for heads, so the last two rows are not in
    // it. Every failure is told as "No data in graph buffer", its reason in the event log.
    void Exportdatatocsv1Click();

    void TakeTexts(const TIniFile& language);

  private:
    void Export();
    void WriteTable(IFileWriter& file) const;

    TDatalogNeeds Needs;
    std::string DialogSaveDatalogFile; // title of the dialog
};

} // namespace tidewell
