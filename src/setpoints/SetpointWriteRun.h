#pragma once

#include "setpoints/ReadBack.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tidewell {

class IDialogs;
class IProgramState;
class TColorList;
class TLabel;
class TModbusPanel;
class TNabtoDevice;
class TProgressBar;

// The setpoints that a run writes, entry by entry the same ones; texts as in the file.
struct TSelectedSetpoints {
    struct TNameValue {
        std::string Name;
        std::string Value;
    };
    std::vector<TNameValue> ValueAdrList;  // ModbusAdr, RawValue
    std::vector<TNameValue> ValueNamelist; // SetpointName, formatted value
};

// One run of the bulk load: writes each setpoint, reads the device back, and compares the texts. A write
// counts as done when its reply reads as status 1. So does one without a reply, or with an error reply; that
// such a value is not in the device is what the compare finds out.
class TSetpointWriteRun {
  public:
    struct TNeeds {
        IDialogs& Dialogs;
        const TModbusPanel& Panel;
        TNabtoDevice& Device;
        const TDeviceUse::TAction& Action; // whose device is written
        TReadBack& ReadBack;
        const IProgramState& Program;
        TColorList& ResultList;
        TProgressBar& ProgressBar;
        TLabel& progresslabel;
    };

    // The log must be stopped. profileList holds ModbusAdr=EEadr of the device's setpoints.
    TSetpointWriteRun(const TNeeds& needs, std::string deviceName,
                      const std::vector<std::string>& profileList, const TSelectedSetpoints& selected);

    // Does not throw; the log is stopped afterwards. A close of the main form ends the run early, and so does
    // another device.
    void Run();

    std::vector<std::string> LastWriteResultList; // lines of the result file; one may hold several
    std::size_t ErrorCount = 0;
    std::size_t ReadErrorCount = 0;

  private:
    using TTexts = std::unordered_map<std::string_view, std::string_view>;

    bool MayGoOn() const;
    void ShowWaiting();
    void WriteAll();
    void WriteOne();
    bool ReadBackAll(); // true for a snapshot to compare with
    void CompareAll();
    void CompareOne(const TTexts& structnumbers, const std::vector<std::string>& values);

    TNeeds Needs;
    std::string DeviceName;
    std::unordered_map<std::string, std::string> EEadrByModbusAdr;
    const TSelectedSetpoints& Selected;
    std::size_t CurrentSetpointNumber = 0; // position in ValueAdrList
    std::array<std::string, 2> Snapshot;   // values of two cycles
};

} // namespace tidewell
