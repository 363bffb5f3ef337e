#pragma once

#include <filesystem>
#include <string>

namespace tidewell {

class IClock;
class IDialogs;
class IFiles;
class IProgramState;
class ITimers;
class IWait;
class TApiClient;
class TDeviceUse;
class TForm;
class TMemo;
class TModbusPanel;
class TProfile;
class TStatusBar;
class TUNabto;
struct TCurrentInifilesPath;
struct TEventLogTexts;
struct TExtensions;
struct TDownloadTexts;

// What the driver needs of the program around it. All outlive it.
struct TDeviceNeeds {
    IDialogs& Dialogs;
    ITimers& Timers;
    IWait& Wait;
    IFiles& Files;
    const IClock& Clock;
    const IProgramState& Program;
    TForm& MainForm; // which shows the link
    const TCurrentInifilesPath& Paths;
    const TExtensions& Extensions;
    TApiClient& ApiClient;
    TUNabto& Nabto;
    TModbusPanel& Panel;
    const TProfile& Profile; // the open one
    TMemo& MemoEventLog;
    const TEventLogTexts& EventLogTexts;
    std::string& devid; // the device that was linked to, by id or address; empty if none was
};

// What the driver's tasks share: its own needs, and what there is once of each device.
struct TDeviceServices : TDeviceNeeds {
    TForm& Form; // the service form
    TDeviceUse& Use;
    TMemo& memoDebug;          // the service form's diary
    TStatusBar& StatusBar;     // of the service form; panel 2 shows the progress
    const std::string& device; // address of the device in force, read at each use
    const TDownloadTexts& DownloadTexts;
    const bool& EnableContineousUpdate;         // what is only to be verified is a line then, not a box
    std::filesystem::path& CurrentUpdateSWFile; // the package in force
};

} // namespace tidewell
