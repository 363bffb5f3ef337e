#include "mainform/DeviceActions.h"

#include "errorlog/ErrorLog.h"
#include "link/NabtoDevice.h"
#include "link/SetupForm.h"
#include "logging/LiveLog.h"
#include "mainform/FlashDatalogOpening.h"
#include "mainform/FormMain.h"
#include "mainform/NabtoUserFolder.h"

namespace tidewell {

void TDeviceActions::Setup1Click() {
    if (!Needs.FormMain.IsOpen() || Needs.Opening.Taken())
        return; // closed below a message that leads here, or a file is being read
    Needs.LiveLog.StopLog();
    Needs.LiveLog.TimerLogAutostart->SetEnabled(false); // no start of its own below the dialog
    Needs.SetupForm.FormInit();
    if (Needs.ApiClient._isLocalSession)
        Needs.SetupForm.GetLocalDevices();
    Needs.Dialogs.ShowModal(Needs.SetupForm);
    Needs.FormMain.StatusBar.Repaint();
    ITimer& deleteUsers = *Needs.UserFolder.NabtoDeleteUsers;
    if (Needs.FormMain.IsOpen() && !deleteUsers.Enabled())
        deleteUsers.SetEnabled(true);
}

void TDeviceActions::Nabtodebug1Click() {
    Needs.LiveLog.StopLog();
    Needs.FormMain.StatusBar.Repaint();
    Needs.Dialogs.Show(Needs.Device);
}

void TDeviceActions::but_swupdateClick() {
    const TDeviceUse::TAction action(Needs.Device.Use);
    if (!action)
        return;
    Needs.LiveLog.StopLog();
    Needs.LiveLog.TimerLogAutostart->SetEnabled(false); // no start of its own below the dialog
    Needs.Dialogs.Show(Needs.Device);
    Needs.Device.BtnUpdateClick();
}

void TDeviceActions::but_errorlogClick() {
    const TDeviceUse::TAction action(Needs.Device.Use);
    if (!action)
        return;
    Needs.LiveLog.StopLog();
    Needs.Device.ButErorlogClick();
}

void TDeviceActions::FlasDatalog1Click() {
    TFlashDatalog& flash = Needs.Device.FlashDatalog;
    if (flash.PanelFDDatalog.Visible()) {
        Nabtodebug1Click();
        return;
    }
    const TDeviceUse::TAction action(Needs.Device.Use);
    if (!action)
        return;
    Nabtodebug1Click();
    flash.ButFlashDatalogClick();
}

void TDeviceActions::StopRunningLog() {
    if (Needs.Device.Cycle.Dologging)
        Needs.LiveLog.StopLog();
}

void TDeviceActions::ShowFlashDatalog(const std::filesystem::path& profile,
                                      const std::filesystem::path& file) {
    const TExclusiveUse::THold hold(Needs.Opening);
    if (!hold)
        return;       // it is saved, and can be opened
    StopRunningLog(); // one that was started while the question was open
    Needs.FlashDatalogOpening.Show(profile, file);
}

void TDeviceActions::ShowErrorlog(const std::string& wordList, const std::string& remark) {
    Needs.Dialogs.Show(Needs.FormMain);
    Needs.ErrorLog.EvalErrorlog(wordList, remark);
}

} // namespace tidewell
