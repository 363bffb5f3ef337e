#pragma once

#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "core/controls/StringGrid.h"
#include "setpoints/ReadBack.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tidewell {

class IClock;
class IDialogs;
class IFiles;
class TModbusPanel;
class TNabtoDevice;

// Writes the raw values of a setpoint file to the device of the chosen tree node as they stand, reads the
// device back, compares, and leaves a result file in the system log folder.
class TLoadSetpoints : public TForm {
  public:
    struct TParts {
        IDialogs& Dialogs;
        IFiles& Files;
        const IClock& Clock;
        TModbusPanel& Panel;
        TNabtoDevice& Device;
        TReadBack& ReadBack;
        TReadBack::IHost& Host;
        TMemo& MemoEventLog;
        const std::string& SelectedSetpointParent; // text of the device node; empty if none
        const std::filesystem::path& directorypath;
    };

    explicit TLoadSetpoints(const TParts& parts);

    // Takes the file's records; false, with nothing kept, for a file that is none. Throws EInOutError for one
    // that cannot be read, EConvertError for a record with bad decimals or offset.
    bool LoadForm(const std::filesystem::path& fileName);

    TPanel ButPanel{"ButPanel"};
    TButton ButcheckAll{"ButcheckAll", "CheckAll"};
    TButton ButClearAll{"ButClearAll", "UncheckAll"};
    TButton ButWriteSetpoints{"ButWriteSetpoints", "Write"};
    TButton ButCancel{"ButCancel", "Close"};
    TLabel LabSelected{"LabSelected"}; // "n of m selected"
    TStringGrid setpointgrid{"setpointgrid"};
    TColorList ResultList{"ResultList"}; // one row per selected setpoint, shown over the grid
    TPanel showpanel{"showpanel"};
    TProgressBar ProgressBar{"ProgressBar"};
    TLabel progresslabel{"progresslabel"};
    TButton ButEndReadBack{"ButEndReadBack", "Stop waiting"}; // only while the read-back is waited for

    int ErrorCount = 0; // of the last run; 9999 after a load dialog that was cancelled

  private:
    TParts Parts;
    std::filesystem::path FileName;
    std::vector<std::string> LoadSetpointValues;    // records of the file
    std::vector<std::string> CurrentSetpointValues; // shown value of each
};

} // namespace tidewell
