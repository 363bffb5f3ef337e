#pragma once

#include "setpoints/ReadBack.h"
#include "setpoints/SetpointTexts.h"

#include <filesystem>
#include <string>

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
    // EConvertError for a value that has to be a position in UserUnits and is none, EInOutError when the
    // file cannot be written; no file is left half-written.
    void SetpointSaveSetpoints(const std::string& deviceName);

  private:
    TParts Parts;
};

} // namespace tidewell
