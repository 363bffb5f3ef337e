#pragma once

#include "core/Extensions.h"
#include "core/LanguageTexts.h"
#include "core/Paths.h"
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
#include "logging/LogBuffers.h"

#include <array>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class TModbusPanel;
class TProfile;

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
};

// Turns each finished poll cycle into one row of the log, draws it, and saves the log. The log lives in
// memory until ClearGraphPage.
class TLiveLog {
  public:
    // What the live log asks of the main form.
    class IHost {
      public:
        virtual ~IHost() = default;
        virtual bool NabtoEnabled() = 0;     // TNabtoDevice.isEnabled
        virtual int InitLink() = 0;          // TNabtoDevice.init with the current id; 0: the link stands
        virtual void StartPolling() = 0;     // TNabtoDevice.startLog
        virtual void StopPolling() = 0;      // TNabtoDevice.stopLog
        virtual bool Polls() = 0;            // questions are asked
        virtual void ShowSetpointPage() = 0; // makes TabSetpoint visible and enables WindowSetpoint1
        virtual void Setup1Click() = 0;
        virtual void RepaintStatusBar() = 0;
        virtual bool FormOpen() = 0; // false once the main form is closed
        // Shows the line's values in the grid, if SetpointListReady.
        virtual void ApplyDataLine(const std::string& line) = 0;
    };

    // All references outlive the live log.
    struct TParts {
        IHost& Host;
        IDialogs& Dialogs;
        const IClock& Clock;
        IFiles& Files;
        ITimers& Timers;
        TModbusPanel& Panel;
        TProfile& Profile;
        TGraphPage& GraphPage;
        TLogBuffers& Buffers;
        TButton& TrafficButton;
        TMemo& MemoEventLog;
        const TCurrentInifilesPath& Paths;
        const TExtensions& Extensions;
        const TExclusiveUse& Opening; // of a file or a profile
    };

    explicit TLiveLog(const TParts& parts);
    TLiveLog(const TLiveLog&) = delete;
    TLiveLog& operator=(const TLiveLog&) = delete;

    void TakeTexts(const TIniFile& language);

    // FOnCycleDone: copies the answers of the cycle.
    void SetCycleResult(const std::string& nabtoResultstring);
    // One log step. Throws TError "Division by zero: ..." when UpdateTimerCallBackEvents.DatalogCount is 0,
    // and EInOutError when a partial file cannot be written; the row is then not counted. What graph and grid
    // throw comes last: the row is then logged.
    void UpdateTimerTimer();
    // A cycle has ended without a value; told once per start.
    void CycleWithoutValues();
    // With QuestionEnable asks whether to clear the old log, which is saved to a partial file first; if that
    // fails, the log goes on. ClearData also says whether the start is reported.
    void StartLog(bool questionEnable, bool clearData);
    // The driver asks no more questions: the log counts as stopped, and says why.
    void PollingFailed(const std::string& reason);
    void StopLog();
    void TrafficButtonClick();
    void TimerLogAutostartTimer();
    // Makes the last level of the path's directory if it is missing. Throws EInOutError; an old file then
    // stays.
    void SaveDataLogFile(const std::filesystem::path& path);
    std::string CreateDatalogHeader() const;
    void SaveUserDatalog1Click();

    std::string TrafficButtonON, TrafficButtonOFF; // captions
    TLiveLogTexts Texts;
    TUpdateTimerCallBackEvents UpdateTimerCallBackEvents;
    TNotice NoticeNoValues{"NoticeNoValues"}; // while such cycles are all that the log gets
    bool DatalogOn = false;
    TNotice LogNotice{"LogNotice"};                  // why the log gets no rows, or has stopped
    const std::unique_ptr<ITimer> UpdateTimer;       // key Time; nothing enables it
    const std::unique_ptr<ITimer> TimerLogAutostart; // 5000 ms, once; enabled by the start of the program

  private:
    void ForgetNoValues();
    // What graph or grid have thrown.
    std::exception_ptr LogRow(const std::array<std::string_view, 7>& strings);
    void Tell(const std::string& line); // on the form and in the event log
    void SavePartialFile();
    std::filesystem::path UserLogDirectory() const;
    TDatalogRows Rows() const;
    void ReportTraffic(const std::string& message);

    // The partial file that a later one of the same log and minute may replace, since it holds all of it.
    struct TPartial {
        std::filesystem::path Wanted;
        std::filesystem::path Written;
        std::size_t Generation = 0;
    };

    TParts Parts;
    std::string MessageLoggingStart, MessageLoggingStop, MessageClearGraphData, DialogSaveDatalogFile;
    bool NoValuesTold = false;
    TPartial LastPartial;
    std::string Line;                 // the data line at hand; kept for its memory
    std::vector<std::int32_t> Values; // of that line, likewise
};

} // namespace tidewell
