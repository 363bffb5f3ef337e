#pragma once

#include "core/LanguageTexts.h"
#include "core/controls/ExclusiveUse.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IFiles.h"
#include "core/ports/IWait.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tidewell {

class ILogControl;
class IProgramState;
class TGraphPage;
class TMemo;
class TProfile;
class TProgressBar;

// What the datalog readers and the export work on. All outlive them.
struct TDatalogNeeds {
    ILogControl& Log;
    const IProgramState& Program;
    IDialogs& Dialogs;
    IFiles& Files;
    IWait& Wait;
    TProfile& Profile;
    TGraphPage& GraphPage;
    TMemo& MemoEventLog;
    TProgressBar& FileProgressBar;
    const std::filesystem::path& directorypath;
    TExclusiveUse& Opening; // of a file or a profile: what is asked for meanwhile does nothing
};

// Opens finished datalogs and shows them as if they had just been logged, with the channels of the open
// profile.
class TDatalogReader {
  public:
    explicit TDatalogReader(const TDatalogNeeds& needs) : Needs(needs) {}

    // Nothing without an open profile. The last row is left out. Throws EListError for a selection that
    // begins with an empty file, or holds no rows but one, and EInOutError.
    void OpenDatalogfile1Click();

    // The same for files that were chosen elsewhere.
    void Show(const std::vector<std::filesystem::path>& paths);

    void TakeTexts(const TIniFile& language);

  private:
    TDatalogNeeds Needs;
    std::string DialogOpenDatalogFileCaption; // title of the dialog
};

// Shows the bar and tells the names of the chosen files to the event log.
void TellChosenFiles(const TDatalogNeeds& needs, const std::vector<std::filesystem::path>& paths);
// Lets the windows be painted before the rows are read. False when the main form was closed meanwhile.
bool WaitForPaint(const TDatalogNeeds& needs, std::size_t rows);

inline constexpr const char* NoDatalogMessage = "File is not a valid datalog file";

} // namespace tidewell
