#pragma once

#include "core/ProgramState.h"
#include "core/controls/ControlLock.h"
#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Menu.h"
#include "core/controls/Notice.h"
#include "core/controls/Pages.h"
#include "core/controls/Simple.h"
#include "core/controls/StatusBar.h"
#include "core/ports/IApplication.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tidewell {

class TIniFile;
class TReadBack;
class TUpdateStatus;

// What lies on the main form. The tree, the grid and the two category panels belong to the setpoint page;
// LblNabto, LedNabto and lblConnectedUser belong to the driver and are shown in panels 0 and 1 of the status
// bar.
class TFormMain : public TForm, public IProgramState {
  public:
    explicit TFormMain(const IApplication& application);

    bool IsOpen() const override { return Visible() && !Application.Terminated(); }
    // Captions from the language file; an entry without a key keeps its text.
    void TakeTexts(const TIniFile& language);
    void TheTabChange();
    void FormResize();
    void FormKeyDown(EKey key, bool& handled);

    // While a firmware update runs, all but the way to its form and the close; the others are controls of the
    // form's rooms.
    void LockForUpdate(bool running, const std::vector<TControl*>& others);
    // The service form, which tells more, may be closed or covered.
    void ShowUpdate(const TUpdateStatus& status);
    void ShowReadBack(const TReadBack& readBack);

    TEvent<> OnHelp;            // of the selected setpoint
    std::string EditNotAllowed; // shown nowhere

    TMainMenu MainMenu{*this, "MainMenu"};
    TMenuItem filemenu{*this, "filemenu"};
    TMenuItem OpenProfile2{*this, "OpenProfile2"};
    TMenuItem OpenDatalogfile1{*this, "OpenDatalogfile1"};
    TMenuItem Open_sd_datalog{*this, "Open_sd_datalog", "SD-Card datalog"};
    TMenuItem SaveUserDatalog1{*this, "SaveUserDatalog1"};
    TMenuItem Nabtodebug1{*this, "Nabtodebug1"};
    TMenuItem StartLog1{*this, "StartLog1"};
    TMenuItem WindowSetpoint1{*this, "WindowSetpoint1"};
    TMenuItem WindowGraph1{*this, "WindowGraph1"};
    TMenuItem Errorlog1{*this, "Errorlog1", "Show Device Errorlog"};
    TMenuItem FlasDatalog1{*this, "FlasDatalog1", "FlashDatalog"};
    TMenuItem Close1{*this, "Close1"};
    TMenuItem CommPort1{*this, "CommPort1"};
    TMenuItem Setup1{*this, "Setup1"};
    TMenuItem Language1{*this, "Language1"};
    TMenuItem Changelanguage1{*this, "Changelanguage1"};

    // On the tab strip, at its right end, from right to left.
    TButton TrafficButton{*this, "TrafficButton"};
    TButton DeviceID{*this, "DeviceID"};
    TButton but_swupdate{*this, "but_swupdate"};
    TButton but_errorlog{*this, "but_errorlog"};

    TPageControl TheTab{*this, "TheTab"};
    TTabSheet TabSetpoint{*this, "TabSetpoint"};
    TTabSheet TabGraph{*this, "TabGraph"};

    // On TabSetpoint, left: the tree above, the event log below; right: the grid.
    TPanel PanelGroupSetpoints{*this, "PanelGroupSetpoints"};
    TMemo MemoEventLog{*this, "MemoEventLog"};
    TPanel GraphControlsPanel{*this, "GraphControlsPanel"};

    static constexpr std::size_t PanelLink = 0;     // LedNabto and LblNabto
    static constexpr std::size_t PanelUser = 1;     // lblConnectedUser
    static constexpr std::size_t PanelProgress = 2; // FileProgressBar
    static constexpr std::size_t PanelVersion = 3;  // centred text
    static constexpr int StatusBarHeight = 19;      // pixels
    TStatusBar StatusBar;
    TProgressBar FileProgressBar{*this, "FileProgressBar"};

    // Above the status bar: the lines of the rooms, in this order.
    std::vector<TNotice*> Notices;
    // In the same place, while setpoints are read back; the bar then shows how far.
    TPanel ReadBackPanel{*this, "ReadBackPanel"};
    TLabel LblReadBack{*this, "LblReadBack"};
    TButton ButStopReadBack{*this, "ButStopReadBack", "Stop waiting"};
    // Likewise while a firmware update runs. The bar shows how much of a file is sent.
    TPanel UpdatePanel{*this, "UpdatePanel"};
    TLabel LblUpdate{*this, "LblUpdate"};
    TButton ButShowUpdate{*this, "ButShowUpdate"};

  private:
    const IApplication& Application;
    TControlLock UpdateLock;
};

} // namespace tidewell
