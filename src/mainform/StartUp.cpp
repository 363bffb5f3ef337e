#include "mainform/StartUp.h"

#include "core/Errors.h"
#include "core/Guard.h"
#include "core/Housekeeping.h"
#include "core/IniFile.h"
#include "core/KvSupport.h"
#include "core/Paths.h"
#include "graph/GraphPage.h"
#include "link/NabtoDevice.h"
#include "logging/LiveLog.h"
#include "mainform/CommandLine.h"
#include "mainform/DeviceActions.h"
#include "mainform/FormMain.h"
#include "mainform/NabtoUserFolder.h"
#include "mainform/ProfileOpening.h"
#include "mainform/SignIn.h"
#include "model/ModbusPanel.h"
#include "setpoints/SetpointPage.h"

#include <string>

namespace tidewell {

namespace {

constexpr int initialWidth = 1280;
constexpr int initInterval = 200;
constexpr int portScanPoll = 100;
constexpr int graphTabIndex = 1;

} // namespace

TStartUp::TStartUp(const TPorts& ports, const TNeeds& needs)
    : InitTimer(ports.Timers.CreateTimer()), Ports(ports), Needs(needs) {
    InitTimer->SetInterval(initInterval);
    InitTimer->SetHandler([this] { InitTimerTimer(); });
}

void TStartUp::FormShow() {
    InitTimer->SetEnabled(false);
    InitTimer->SetEnabled(true);
}

void TStartUp::FormCreate() {
    Needs.UserFolder.DeleteNabtoUserFolder();
    Needs.SignIn.MakeClient();
    TFormMain& main = Needs.FormMain;
    main.StatusBar.SetText(TFormMain::PanelVersion, VersionText(Needs.Options.Version));
    main.SetClientSize(initialWidth, Ports.Dialogs.WorkAreaHeight());
    ReadSystemFile();
    main.TheTab.SetActivePageIndex(graphTabIndex);
    Needs.Panel.SetMpanelWorkingpath(Needs.Paths.directorypath);
    Needs.Panel.SetMpanelSystempath(Needs.Paths.Systemfile);
    Needs.Panel.InitQuestionStringlistStructures();
    Needs.SetpointPage.BuildSetpointTree();
    InitTimer->SetEnabled(true);
    Needs.SignIn.KeepAliveTimer->SetEnabled(true);
    CreateDirectories();
    Needs.LiveLog.RecoverJournals();
    Needs.SetpointPage.CategoryPanelDebug.SetCollapsed(false);
    Needs.GraphPage.GraphZoomFactor = 1;
}

void TStartUp::ReadSystemFile() {
    TConfiguration& configuration = Needs.Configuration;
    configuration = ReadConfiguration(TIniFile(Ports.Files, Needs.Paths.Systemfile));
    for (const TReplacedNumber& number : configuration.Replaced)
        Needs.FormMain.MemoEventLog.Add(LineOn(number, Needs.Texts));
    Needs.FormMain.TrafficButton.SetCaption(Needs.LiveLog.TrafficButtonOFF);
    Needs.LiveLog.UpdateTimer->SetInterval(configuration.UpdateTimer.Time);
    Needs.LiveLog.UpdateTimerCallBackEvents.XAxisJump = configuration.UpdateTimer.XAxisJump;
    Needs.LiveLog.JournalSyncTime = configuration.JournalSyncTime;
    Needs.LiveLog.UpdateTimerCallBackEvents.DatalogCount = configuration.UpdateTimer.DatalogCount;
    Needs.GraphPage.XAxisJump = configuration.UpdateTimer.XAxisJump;
}

void TStartUp::CreateDirectories() {
    for (const char* name : {"Help", "log/userlog", "log/systemlog", "log/exported", "setpoint"}) {
        try {
            Ports.Files.CreateDirectories(Needs.Paths.directorypath / name);
        } catch (const EInOutError&) {
            // A save by the user tells its own failure; the close puts the log elsewhere.
        }
    }
    for (const char* name :
         {"log/userlog", "log/systemlog", "log/exported", "log/kept", "setpoint", "profile", "cfg"})
        SweepTemporaryFiles(Ports.Files, Ports.Clock, Needs.Paths.directorypath / name);
}

void TStartUp::InitTimerTimer() {
    InitTimer->SetEnabled(false);
    if (!Needs.FormMain.IsOpen())
        return; // not shown yet, or closing
    Needs.LiveLog.UpdateTimerCallBackEvents.ClearStrings();
    // A bad profile is told, and must not cost the sign-in.
    RunGuarded(Ports.Dialogs, [this] { DoPortScanMode(); });
    Needs.FormMain.FileProgressBar.SetVisible(false);
    TNabtoDevice& device = Needs.Device;
    const bool nabto = device.isEnabled();
    device.LblNabto.SetVisible(nabto);
    device.LedNabto.SetVisible(nabto);
    device.lblConnectedUser.SetVisible(nabto);
    if (!Needs.FormMain.IsOpen() || (nabto && !StartLink()))
        return;
    Needs.SignIn.ForgetPasswords(); // which a program without a link has never asked for
    RunGuarded(Ports.Dialogs, [this] { Needs.GraphPage.GraphInit(true); });
    Needs.SetpointPage.ArrangeAgain();
    Needs.FormMain.DeviceID.SetVisible(device.ShowButtonDevid);
    if (Needs.Configuration.PortScan.doPortScan && Needs.Configuration.AutoLoadProfile.doAutoloadProfile &&
        Needs.Configuration.LogAutoStart.doLogAutoStart)
        Needs.LiveLog.TimerLogAutostart->SetEnabled(true);
}

void TStartUp::DoPortScanMode() {
    if (Needs.Configuration.PortScan.doPortScan && Needs.Configuration.AutoLoadProfile.doAutoloadProfile)
        return;
    Needs.ProfileOpening.OpenFileProfile();
    if (!Needs.Configuration.PortScan.doPortScan)
        return;
    TModbusPanel& panel = Needs.Panel;
    if (panel.DeviceList.Count() > 0 && !panel.DeviceList.GetDevice(0).ReadList.empty())
        panel.PingTestModbusID =
            std::to_string(panel.GetModbusIDFromDeviceName(panel.DeviceList.GetDevice(0).Name));
    while (panel.doTest && Needs.FormMain.IsOpen()) {
        Ports.Wait.Sleep(portScanPoll);
        Ports.Wait.ProcessMessages();
    }
}

bool TStartUp::StartLink() {
    TFormMain& main = Needs.FormMain;
    if (!Needs.SignIn.Run()) {
        main.Close();
        return false;
    }
    if (!main.IsOpen())
        return false;
    main.StatusBar.Repaint();
    Needs.Device.ShowButtonDevid = Needs.Parameters.devid.empty();
    RunGuarded(Ports.Dialogs, [this] {
        if (Needs.Device.ShowButtonDevid)
            Needs.DeviceActions.Setup1Click();
        else
            Needs.ProfileOpening.TestProfileNabto();
    });
    return main.IsOpen();
}

} // namespace tidewell
