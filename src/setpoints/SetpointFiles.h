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
class TLoadSetpoints;
class TMemo;
class TModbusPanel;

// The two entries of the popup menu on a device node: its setpoints are saved as they are read from the
// device, or a saved list is opened for writing.
class TSetpointFiles {
  public:
    struct TParts {
        IDialogs& Dialogs;
        IFiles& Files;
        const IClock& Clock;
        const TModbusPanel& Panel;
        TReadBack::IHost& Host;
        TReadBack& ReadBack;
        TLoadSetpoints& LoadSetpoints; // may be made later
        TMemo& MemoEventLog;
        const TSetpointTexts& Texts;
        const std::string& SelectedSetpointParent; // of the setpoint page
        const std::filesystem::path& directorypath;
    };
    explicit TSetpointFiles(const TParts& parts) : Parts(parts) {}

    void Savesetpoints1Click();
    void Loadsetpointfromfile1Click();
    // The log must be stopped. Ends in silence for an unknown device and for a read-back that failed. Throws
    // EConvertError for a value that has to be a position in UserUnits and is none, and for a bad number of
    // the profile. A file is there whole or not at all; what cannot be written may be saved elsewhere.
    void SetpointSaveSetpoints(const std::string& deviceName);

  private:
    bool ReadDevice();
    std::vector<std::string> HeadLines(const std::string& deviceName) const;

    TParts Parts;
};

} // namespace tidewell
