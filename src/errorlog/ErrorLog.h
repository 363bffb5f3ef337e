#pragma once

#include "core/controls/Lists.h"
#include "core/controls/Pages.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace tidewell {

class IClock;
class IFiles;
class ILogControl;
class TModbusPanel;
class TProfile;
struct TCurrentInifilesPath;
struct TErrorLogSettings;

// One event of the device's error log as text. MoDy: month (4 bits), day (5), year since 2000 (7). MinErr:
// time of day in units of 5 minutes (9 bits), error number (6), whether the error came or went (1).
std::string ErrorEventText(std::uint16_t MoDy, std::uint16_t MinErr);

// Decodes the error log that was read from the device, shows it on a tab page of its own and saves it.
class TErrorLog : public TControls {
  public:
    // All references outlive the error log.
    struct TNeeds {
        ILogControl& Log;
        IFiles& Files;
        const IClock& Clock;
        const TCurrentInifilesPath& Paths;
        const TErrorLogSettings& Settings; // read at each use
        const TProfile& Profile;
        TModbusPanel& Panel;
        TPageControl& TheTab;
    };
    // Adds its page, hidden, behind the pages of TheTab.
    TErrorLog(TForm& form, const TNeeds& needs);

    // The words as decimal numbers, each closed by ";": those of all events' MoDy, then those of their
    // MinErr. The page shows them in place of an earlier log. Throws EListError when the last MinErr is
    // missing and EInOutError when the file cannot be written; the page then shows what there is. A remark
    // stands below the events, in the file too.
    void EvalErrorlog(const std::string& wordList, const std::string& remark = {});
    // The older way: asks the questions of the configuration in a log. Nothing evaluates the answers.
    void Errorlog1Click();

    bool ErrorLogActive = false; // that log runs
    std::size_t ErrorLogActiveCount = 0;
    TTabSheet TabErrorlog{*this, "TabErrorlog", "ErrorLog"}; // no page until the first log
    TMemo Memo{*this, "MemoErrorlog"};                       // fills the page

  private:
    void AddEvents(const std::string& wordList);

    const TNeeds Needs;
};

} // namespace tidewell
