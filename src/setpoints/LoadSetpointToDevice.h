#pragma once

#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "core/controls/StringGrid.h"
#include "setpoints/ReadBack.h"
#include "setpoints/SetpointWriteRun.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tidewell {

class IClock;
class IDialogs;
class IFiles;
class ILogControl;
class IProgramState;
class TModbusPanel;
class TNabtoDevice;
struct TSetpointFileTexts;

// Writes the raw values of a setpoint file to the device of the chosen tree node as they stand, reads the
// device back, compares, and leaves a result file in the system log folder. It cannot be closed during a run.
class TLoadSetpoints : public TForm {
  public:
    struct TNeeds {
        IDialogs& Dialogs;
        IFiles& Files;
        const IClock& Clock;
        TModbusPanel& Panel;
        TNabtoDevice& Device;
        TReadBack& ReadBack;
        ILogControl& Log;
        const IProgramState& Program;
        TMemo& MemoEventLog;
        const TSetpointFileTexts& Texts;
        const std::string& SelectedSetpointParent; // text of the device node; empty if none
        const std::filesystem::path& directorypath;
    };

    explicit TLoadSetpoints(const TNeeds& needs);

    // Takes the file's records; false, with nothing kept, for a file that is none. Throws EInOutError for one
    // that cannot be read, EConvertError, naming file and line, for a record with bad decimals or offset;
    // nothing is kept then either.
    bool LoadForm(const std::filesystem::path& fileName);
    // The view tells the width, in pixels, that the grid has got.
    void SetpointGridResized(int gridClientWidth);

    TPanel ButPanel{*this, "ButPanel"}; // hidden during a run
    TButton ButcheckAll{*this, "ButcheckAll", "CheckAll"};
    TButton ButClearAll{*this, "ButClearAll", "UncheckAll"};
    TButton ButWriteSetpoints{*this, "ButWriteSetpoints", "Write"};
    TButton ButCancel{*this, "ButCancel", "Close"};
    TLabel LabSelected{*this, "LabSelected"}; // "n of m selected"
    TStringGrid setpointgrid{*this, "setpointgrid"};
    TColorList ResultList{*this, "ResultList"}; // one row per selected setpoint, shown in place of the grid
    TPanel showpanel{*this, "showpanel"};
    TProgressBar ProgressBar{*this, "ProgressBar"};
    TLabel progresslabel{*this, "progresslabel"};
    TLabel LabHint{*this, "LabHint"}; // what the list shown is good for; hidden during a run
    // Only while the read-back is waited for.
    TLabel LabReadBack{*this, "LabReadBack"};
    TButton ButEndReadBack{*this, "ButEndReadBack", "Stop waiting"};

    int ErrorCount = 0; // of the last run; 9999 after a load dialog that was cancelled
    std::filesystem::path FileName;
    std::vector<std::string> LastWriteResultList; // lines of the last result file

    static constexpr int DesignedWidth = 960; // client area, pixels
    static constexpr int DesignedHeight = 560;

  private:
    // What is shown and hidden for as long as a run takes.
    void ShowRun(bool running);

    void ButWriteSetpointsClick();
    void ButcheckAllClick() { SetAllChecks(true); }
    void ButClearAllClick() { SetAllChecks(false); }
    void setpointgridClick(const TCellClick& click);
    TCellLook setpointgridDrawCell(int column, int row) const;
    void ShowReadBack();

    void Forget();
    void FillGrid(const std::filesystem::path& fileName, const std::string& heading);
    bool Checked(std::size_t row) const;
    void ToggleCheck(int row);
    void SetAllChecks(bool checked);
    void ShowSelected();
    void ShowGrid(bool show);
    TSelectedSetpoints CollectSelectedSetpoints() const;
    void WriteSetpointsToDevice(const TDeviceUse::TAction& action, bool report);
    void SaveResult();

    TNeeds Needs;
    std::vector<std::string> LoadSetpointValues;        // records of the file
    std::vector<std::string> CurrentSetpointValues;     // shown value of each
    std::vector<std::string> DeviceSetpointProfilelist; // ModbusAdr=EEadr of the device's setpoints
    TSelectedSetpoints Selected;                        // of the run
    std::size_t SelectedCount = 0;                      // checked records
    int GridClientWidth = DesignedWidth;
    bool Running = false;
    bool InClick = false;
    TConnection ReadBackChanged;
};

} // namespace tidewell
