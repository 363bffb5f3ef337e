#pragma once

#include "setpoints/ReadBack.h"
#include "setpoints/SetpointTexts.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tidewell {

class IClock;
class IDialogs;
class IFiles;
class ILogControl;
class IProgramState;
class TLoadSetpoints;
class TMemo;
class TModbusPanel;

// The two entries of the popup menu on a device node: its setpoints are saved as they are read from the
// device, or a saved list is opened for writing.
class TSetpointFiles {
  public:
    struct TNeeds {
        IDialogs& Dialogs;
        IFiles& Files;
        const IClock& Clock;
        const TModbusPanel& Panel;
        ILogControl& Log;
        const IProgramState& Program;
        TReadBack& ReadBack;
        TLoadSetpoints& LoadSetpoints;
        TMemo& MemoEventLog;
        const TSetpointTexts& Texts;
        const std::string& SelectedSetpointParent; // of the setpoint page
        const std::filesystem::path& directorypath;
    };
    explicit TSetpointFiles(const TNeeds& needs) : Needs(needs) {}

    void Savesetpoints1Click();
    void Loadsetpointfromfile1Click();
    // The log must be stopped. For an unknown device and a read-back that failed only the event log tells
    // that nothing is saved; what is thrown stands there, too. Throws EConvertError for a value that has to
    // be a position in UserUnits and is none, and for a bad number of the profile. A file is there whole or
    // not at all; what cannot be written may be saved elsewhere.
    void SetpointSaveSetpoints(const std::string& deviceName);

  private:
    void Save(const std::string& deviceName);
    // Why there is no snapshot to save; null when there is one.
    const std::string* ReadDevice();
    void TellNotSaved(const std::string& reason);
    std::vector<std::string> HeadLines(const std::string& deviceName) const;

    TNeeds Needs;
};

} // namespace tidewell
