#pragma once

#include "core/Extensions.h"
#include "core/LanguageTexts.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "core/controls/ExclusiveUse.h"
#include "core/controls/Lists.h"
#include "core/controls/Notice.h"
#include "core/controls/Simple.h"
#include "core/ports/IClock.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IFiles.h"
#include "core/ports/ITimers.h"
#include "graph/GraphPage.h"
#include "logging/DatalogWriter.h"
#include "logging/Journal.h"
#include "logging/LogBuffers.h"

#include <array>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class IProgramState;
class TModbusPanel;
class TProfile;
class TStatusBar;

// The seven strings, joined in order, are the values of a cycle; only str_ModbusEthernet is ever filled.
struct TUpdateTimerCallBackEvents {
    std::string str_ModbusSeriel;
    std::string str_ModbusEthernet;
    std::string str_RS232string1;
    std::string str_RS232string2;
    std::string str_RS232string3;
    std::string str_RS232string4;
    std::string str_RS232string5;
    int XAxisJump = 1000;
    int DatalogCount = 50000; // rows between partial files

    void ClearStrings();
    std::array<std::string_view, 7> Strings() const;
};

// Lines of the event log and, but for AutoStartSpared, of the main form.
struct TLiveLogTexts : TOwnTexts {
    TLiveLogTexts() : TOwnTexts("LiveLog") {}
    TOwnText LogStopped{*this, "LogStopped", "The log has stopped"}; // the reason follows
    TOwnText NoSession{*this, "NoSession", "There is no session with the device: the log gets no values"};
    TOwnText AutoStartSpared{*this, "AutoStartSpared",
                             "A datalog file is open: the log does not start by itself"};
    TOwnText NoValues{*this, "NoValues", "The profile asks the device for no value, so the log gets no row."};
    TOwnText Kept{*this, "Kept", "The rows that no file held (%1) are kept in %2"};               // path
    TOwnText NotKept{*this, "NotKept", "The rows that no file held (%1) could not be kept: %2"};  // reason
    TOwnText Recovered{*this, "Recovered", "A log was cut off. Its %1 rows are recovered in %2"}; // path
    TOwnText NotRecovered{*this, "NotRecovered",
                          "The log of %1 could not be recovered: %2"}; // journal, reason
    TOwnText OpenRecovered{*this, "OpenRecovered", "Open"};
    TOwnText JournalFailed{*this, "JournalFailed",
                           "The rows are no longer secured as they come: %1"}; // reason
    TOwnText NotSaved{*this, "NotSaved", "%1 rows are not saved. Close the program?"};
};

// Turns each finished poll cycle into one row of the log, draws it, and saves the log. The log lives in
// memory until ClearGraphPage; rows that stand in no file then are kept in one.
class TLiveLog : public ILogControl, public TControls {
  public:
    // The poll cycle that the rows come from, which lies beside the live log.
    class IPolling {
      public:
        virtual ~IPolling() = default;
        // To the device in force, unless the link is switched off; false: there is none.
        virtual bool Link() = 0;
        virtual void Start() = 0;
        virtual void Stop() = 0;
        virtual bool Running() const = 0; // questions are asked
    };

    // All references outlive the live log.
    struct TNeeds {
        IPolling& Polling;
        const IProgramState& Program;
        IDialogs& Dialogs;
        const IClock& Clock;
        IFiles& Files;
        ITimers& Timers;
        TModbusPanel& Panel;
        TProfile& Profile;
        TGraphPage& GraphPage;
        TLogBuffers& Buffers;
        TButton& TrafficButton;
        TStatusBar& StatusBar; // of the main form
        TMemo& MemoEventLog;
        const TCurrentInifilesPath& Paths;
        const TExtensions& Extensions;
        const TExclusiveUse& Opening; // of a file or a profile
        const std::vector<std::filesystem::path>& SpareFolders;
    };

    TLiveLog(TForm& form, const TNeeds& needs);

    void TakeTexts(const TIniFile& language);

    // FOnCycleDone: copies the answers of the cycle.
    void SetCycleResult(const std::string& nabtoResultstring);
    // One log step. Throws TError "Division by zero: ..." when UpdateTimerCallBackEvents.DatalogCount is 0,
    // and EInOutError when a partial file cannot be written; the row is then not counted. What graph and grid
    // throw comes last: the row is then logged.
    void UpdateTimerTimer();
    // A cycle has ended without a value; told once per start.
    void CycleWithoutValues();
    // The old log is saved to a partial file before it is cleared; if that fails, the log goes on.
    void StartLog(bool questionEnable, bool clearData) override;
    // The driver asks no more questions: the log counts as stopped, and says why.
    void PollingFailed(const std::string& reason);
    void StopLog() override;
    void TrafficButtonClick();
    void TimerLogAutostartTimer();
    // A new file; gives its place. Makes the last level of the directory if it is missing. Throws
    // EInOutError.
    std::filesystem::path SaveDataLogFile(const std::filesystem::path& wanted);
    // Rows of the log that no file holds.
    std::size_t UnsavedRows() const;
    // Puts a log with such rows into log/kept, or else the first spare folder that takes it. The event log
    // names the file, or the failure; neither asks or throws.
    std::optional<std::filesystem::path> KeepRows();
    // Turns what earlier runs have left in log/journal into datalogs in log/kept, and tells it.
    void RecoverJournals();
    std::string CreateDatalogHeader() const;
    void SaveUserDatalog1Click();

    // The values of the last cycle, joined; may be empty.
    std::string CurrentDataString() const;

    TEvent<const std::string&> OnDataLine;         // a row of the log, for the grid
    TEvent<> OnNoProfile;                          // nothing can be logged before a profile is chosen
    std::string TrafficButtonON, TrafficButtonOFF; // captions
    TLiveLogTexts Texts;
    TUpdateTimerCallBackEvents UpdateTimerCallBackEvents;
    TNotice NoticeNoValues{*this, "NoticeNoValues"}; // while such cycles are all that the log gets
    TNotice NoticeRecovered{*this, "NoticeRecovered"};
    TEvent<const TRecoveredLog&> OnOpenRecovered;
    int JournalSyncTime = 5000; // ms
    bool DatalogOn = false;
    TNotice LogNotice{*this, "LogNotice"};           // why the log gets no rows, or has stopped
    const std::unique_ptr<ITimer> UpdateTimer;       // key Time; nothing enables it
    const std::unique_ptr<ITimer> TimerLogAutostart; // 5000 ms, once; enabled by the start of the program

  private:
    void ForgetNoValues();
    // What graph or grid have thrown.
    std::exception_ptr LogRow(const std::array<std::string_view, 7>& strings);
    void Tell(const std::string& line); // on the form and in the event log
    void SavePartialFile();
    void WriteJournal();
    std::filesystem::path WriteRows(IFileWriter& file, std::string_view header);
    std::filesystem::path UserLogDirectory() const;
    TDatalogRows Rows() const;
    void ReportTraffic(const std::string& message);

    // The partial file that a later one of the same log and minute may replace, since it holds all of it.
    struct TPartial {
        std::filesystem::path Wanted;
        std::filesystem::path Written;
        std::size_t Generation = 0;
    };

    TNeeds Needs;
    std::string MessageLoggingStart, MessageLoggingStop, MessageClearGraphData, DialogSaveDatalogFile;
    TJournal Journal;
    bool JournalStopped = false; // until the log is begun anew
    bool NoValuesTold = false;
    TPartial LastPartial;
    std::string Line;                 // the data line at hand; kept for its memory
    std::vector<std::int32_t> Values; // of that line, likewise
};

} // namespace tidewell
