#include "mainform/FormMain.h"

#include "core/Errors.h"
#include "core/Guard.h"
#include "core/IniFile.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Paths.h"
#include "core/TextFile.h"
#include "logging/DatalogWriter.h"
#include "mainform/FormMainTexts.h"
#include "mainform/NabtoUserFolder.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tidewell {

namespace {

constexpr int initialWidth = 1280;
constexpr int initInterval = 200;
constexpr int deleteUsersInterval = 30000;
constexpr int closeAgainInterval = 60000;
constexpr int portScanPoll = 100;
constexpr int graphTabIndex = 1;

} // namespace

TFormMain::TFormMain(const TPorts& ports, TStartOptions& options, TCurrentInifilesPath& paths,
                     const TExtensions& extensions, TUNabto& nabto, const TForms& forms)
    : Ports(ports), Options(options), Forms(forms), FCurrentInifilesPath(paths), Extensions(extensions),
      SignIn(ports, {*this, paths, options, _commandLineParameters, EventLogTexts, forms.NabtoLogOn,
                     forms.NabtoDevice}),
      LinkedDevice(_commandLineParameters, forms.NabtoDevice, [this]() -> TApiClient& { return Client(); }),
      ModbusPanel(ports.Files, ports.Wait), Profile(ports.Files),
      ContextHelp(ports.Dialogs, ports.Files, ports.Process, MemoEventLog),
      SetpointPage(TSetpointPage::TParts{Hosts.SetpointPage, ports.Dialogs, ports.Clock, ModbusPanel,
                                         ContextHelp.HelpfileDoc, forms.InputDialog, SetpointTexts,
                                         extensions}),
      GraphPage(
          TGraphPage::TParts{Profile, LogBuffers, ports.Dialogs, ports.Wait, MemoEventLog, FileProgressBar}),
      LiveLog(TLiveLog::TParts{Hosts.LiveLog, ports.Dialogs, ports.Clock, ports.Files, ports.Timers,
                               ModbusPanel, Profile, GraphPage, LogBuffers, TrafficButton, MemoEventLog,
                               paths, extensions, Opening}),
      DatalogReader(DatalogParts()), SdDatalogReader(DatalogParts()), CsvExport(DatalogParts()),
      ProfileOpening(ports, TProfileOpening::TParts{*this, paths, ModbusPanel, Profile, SetpointPage,
                                                    GraphPage, nabto, forms.NabtoDevice}),
      ErrorLog({Hosts.ErrorLog, ports.Files, ports.Clock, paths, Configuration.ErrorLog, Profile, ModbusPanel,
                TheTab}),
      FlashView(ports, {*this, ModbusPanel, Profile, ProfileOpening, GraphPage, forms.NabtoDevice}),
      ReadBack(Hosts.ReadBack, ports.Wait, forms.NabtoDevice),
      SetpointFiles(TSetpointFiles::TParts{
          ports.Dialogs, ports.Files, ports.Clock, ModbusPanel, Hosts.ReadBack, ReadBack, forms.LoadSetpoints,
          MemoEventLog, SetpointTexts, SetpointPage.SelectedSetpointParent, paths.directorypath}),
      InitTimer(ports.Timers.CreateTimer()), NabtoDeleteUsers(ports.Timers.CreateTimer()),
      CloseAgain(ports.Timers.CreateTimer()) {
    InitTimer->SetInterval(initInterval);
    InitTimer->SetHandler([this] { InitTimerTimer(); });
    NabtoDeleteUsers->SetInterval(deleteUsersInterval);
    NabtoDeleteUsers->SetHandler([this] { NabtoDeleteUsersTimer(); });
    CloseAgain->SetInterval(closeAgainInterval);
    CloseAgain->SetHandler([this] { CloseAgain->SetEnabled(false); });
    ConnectControls();
}

TDatalogParts TFormMain::DatalogParts() {
    return {Hosts.Datalog, Ports.Dialogs,   Ports.Files,
            Ports.Wait,    Profile,         GraphPage,
            MemoEventLog,  FileProgressBar, FCurrentInifilesPath.directorypath,
            Opening};
}

void TFormMain::ConnectControls() {
    // The message loop begins with the first showing.
    OnShow = [this] {
        InitTimer->SetEnabled(false);
        InitTimer->SetEnabled(true);
    };
    OnCloseQuery = [this](bool& mayClose) { FormCloseQuery(mayClose); };
    OnClose = [this] { FormClose(); };
    OnResize = [this] { FormResize(); };
    OnKeyDown = [this](EKey key, bool& handled) { FormKeyDown(key, handled); };
    TheTab.OnChange = [this] { TheTabChange(); };
    TrafficButton.OnClick = [this] { LiveLog.TrafficButtonClick(); };
    DeviceID.OnClick = [this] { Setup1Click(); };
    but_swupdate.OnClick = [this] { but_swupdateClick(); };
    OpenProfile2.OnClick = [this] { OpenProfile2Click(); };
    OpenDatalogfile1.OnClick = [this] { DatalogReader.OpenDatalogfile1Click(); };
    Open_sd_datalog.OnClick = [this] { SdDatalogReader.Open_sd_datalogClick(); };
    GraphPage.Exportdatatocsv1.OnClick = [this] { CsvExport.Exportdatatocsv1Click(); };
    SaveUserDatalog1.OnClick = [this] { LiveLog.SaveUserDatalog1Click(); };
    StartLog1.OnClick = [this] { TrafficButton.Click(); };
    WindowSetpoint1.OnClick = [this] { TheTab.SetActivePage(TabSetpoint); };
    WindowGraph1.OnClick = [this] { TheTab.SetActivePage(TabGraph); };
    SetpointPage.Savesetpoints1.OnClick = [this] { SetpointFiles.Savesetpoints1Click(); };
    SetpointPage.Loadsetpointfromfile1.OnClick = [this] { SetpointFiles.Loadsetpointfromfile1Click(); };
    ButStopReadBack.OnClick = [this] { ReadBack.Cancel(); };
    Opening.AddControls(
        {&OpenProfile2, &OpenDatalogfile1, &Open_sd_datalog, &Setup1, &DeviceID, &StartLog1, &TrafficButton});
    ProfileOpening.OnOtherProfile = LinkedDevice.OnOther = [this] { ForgetValues(); };
    ReadBackChanged = ReadBack.Changed.Connect([this] { ShowReadBack(); });
    Setup1.OnClick = [this] { Setup1Click(); };
    Nabtodebug1.OnClick = [this] { Nabtodebug1Click(); };
    Changelanguage1.OnClick = [this] { Changelanguage1Click(); };
    Close1.OnClick = [this] { Close1Click(); };
}

void TFormMain::ConnectService() {
    Forms.NabtoDevice.Cycle.OnEmptyCycle = [this] { LiveLog.CycleWithoutValues(); };
    but_errorlog.OnClick = [this] { but_errorlogClick(); };
    Errorlog1.OnClick = [this] { ErrorLog.Errorlog1Click(); };
    FlasDatalog1.OnClick = [this] { FlasDatalog1Click(); };
    Forms.NabtoDevice.Cycle.OnFailed = [this](const std::string& reason) { LiveLog.PollingFailed(reason); };
    // A read that is under way is one of this device and this profile.
    Forms.NabtoDevice.Use.AddControls(
        {&but_errorlog, &but_swupdate, &FlasDatalog1, &DeviceID, &Setup1, &OpenProfile2});
}

void TFormMain::ConnectUpdate() {
    TUpdateStatus& status = Forms.NabtoDevice.UpdateStatus;
    FollowUpdate.push_back(status.Changed.Connect([this, &status] { LockForUpdate(status.Running()); }));
    for (TControl* shown :
         {static_cast<TControl*>(&status.LabUpdatePhase), static_cast<TControl*>(&status.LabUpdateFile),
          static_cast<TControl*>(&status.UpdateProgress)})
        FollowUpdate.push_back(shown->Changed.Connect([this] { ShowUpdate(); }));
    ButShowUpdate.OnClick = [this] { Ports.Dialogs.Show(Forms.NabtoDevice); };
}

void TFormMain::FormCreate(const TIniFile& language) {
    DeleteNabtoUserFolder();
    ConnectUpdate();
    ConnectService();
    ReadTexts(language, *this);
    SignIn.MakeClient();
    StatusBar.SetText(PanelVersion, VersionText(Options.Version));
    SetClientSize(initialWidth, Ports.Dialogs.WorkAreaHeight());
    ReadSystemFile();
    TheTab.SetActivePageIndex(graphTabIndex);
    ModbusPanel.SetMpanelWorkingpath(FCurrentInifilesPath.directorypath);
    ModbusPanel.SetMpanelSystempath(FCurrentInifilesPath.Systemfile);
    ModbusPanel.InitQuestionStringlistStructures();
    SetpointPage.BuildSetpointTree();
    InitTimer->SetEnabled(true);
    SignIn.KeepAliveTimer->SetEnabled(true);
    CreateDirectories();
    SetpointPage.CategoryPanelDebug.SetCollapsed(false);
    GraphPage.GraphZoomFactor = 1;
}

void TFormMain::ReadSystemFile() {
    Configuration = ReadConfiguration(TIniFile(Ports.Files, FCurrentInifilesPath.Systemfile));
    for (const TReplacedNumber& number : Configuration.Replaced)
        MemoEventLog.Add(LineOn(number, EventLogTexts));
    TrafficButton.SetCaption(LiveLog.TrafficButtonOFF);
    LiveLog.UpdateTimer->SetInterval(Configuration.UpdateTimer.Time);
    LiveLog.UpdateTimerCallBackEvents.XAxisJump = Configuration.UpdateTimer.XAxisJump;
    LiveLog.UpdateTimerCallBackEvents.DatalogCount = Configuration.UpdateTimer.DatalogCount;
    GraphPage.XAxisJump = Configuration.UpdateTimer.XAxisJump;
}

void TFormMain::CreateDirectories() {
    for (const char* name : {"Help", "log/userlog", "log/systemlog", "log/exported", "setpoint"}) {
        try {
            Ports.Files.CreateDirectories(FCurrentInifilesPath.directorypath / name);
        } catch (const EInOutError&) {
            // A save by the user tells its own failure; without a system log the close saves nothing.
        }
    }
}

void TFormMain::InitTimerTimer() {
    InitTimer->SetEnabled(false);
    if (!IsOpen())
        return; // not shown yet, or closing
    LiveLog.UpdateTimerCallBackEvents.ClearStrings();
    // A bad profile is told, and must not cost the sign-in.
    RunGuarded(Ports.Dialogs, [this] { DoPortScanMode(); });
    FileProgressBar.SetVisible(false);
    const bool nabto = Forms.NabtoDevice.isEnabled();
    for (TControl* control : {static_cast<TControl*>(&Forms.NabtoDevice.LblNabto),
                              static_cast<TControl*>(&Forms.NabtoDevice.LedNabto),
                              static_cast<TControl*>(&Forms.NabtoDevice.lblConnectedUser)})
        control->SetVisible(nabto);
    if (!IsOpen() || (nabto && !StartLink()))
        return;
    SignIn.ForgetPasswords(); // which a program without a link has never asked for
    RunGuarded(Ports.Dialogs, [this] { GraphPage.GraphInit(true); });
    SetpointPage.ArrangeSetpointPage(GridClientWidth, GroupClientHeight);
    DeviceID.SetVisible(ShowButtonDevid);
    if (Configuration.PortScan.doPortScan && Configuration.AutoLoadProfile.doAutoloadProfile &&
        Configuration.LogAutoStart.doLogAutoStart)
        LiveLog.TimerLogAutostart->SetEnabled(true);
}

void TFormMain::DoPortScanMode() {
    if (Configuration.PortScan.doPortScan && Configuration.AutoLoadProfile.doAutoloadProfile)
        return;
    ProfileOpening.OpenFileProfile();
    if (!Configuration.PortScan.doPortScan)
        return;
    if (ModbusPanel.DeviceList.Count() > 0 && !ModbusPanel.DeviceList.GetDevice(0).ReadList.empty())
        ModbusPanel.PingTestModbusID =
            std::to_string(ModbusPanel.GetModbusIDFromDeviceName(ModbusPanel.DeviceList.GetDevice(0).Name));
    while (ModbusPanel.doTest && IsOpen()) {
        Ports.Wait.Sleep(portScanPoll);
        Ports.Wait.ProcessMessages();
    }
}

bool TFormMain::StartLink() {
    Forms.NabtoDevice.FOnCycleDone = [this] {
        LiveLog.SetCycleResult(Forms.NabtoDevice.NabtoResultstring());
    };
    if (!SignIn.Run()) {
        Close();
        return false;
    }
    if (!IsOpen())
        return false;
    StatusBar.Repaint();
    ShowButtonDevid = _commandLineParameters.devid.empty();
    RunGuarded(Ports.Dialogs, [this] {
        if (ShowButtonDevid)
            Setup1Click();
        else
            ProfileOpening.TestProfileNabto(_commandLineParameters.devid, Client(),
                                            Configuration.AutoLoadProfile);
    });
    return IsOpen();
}

// Those of another device, or another profile, must not stand beside what is shown now.
void TFormMain::ForgetValues() {
    LiveLog.UpdateTimerCallBackEvents.ClearStrings();
    SetpointPage.ForgetValues();
}

void TFormMain::OpenProfile2Click() {
    const TExclusiveUse::THold hold(Opening);
    if (!hold)
        return;
    if (Ports.Dialogs.ShowMessageBox(EMessageKind::Confirmation, Texts.MessageStopLog, EButtons::OkCancel) !=
            EModalResult::Ok ||
        !IsOpen()) // closed while it was asked
        return;
    StopLog();
    ProfileOpening.OpenFileProfile();
    GraphPage.GraphInit(true);
    GraphPage.ClearGraphPage();
}

void TFormMain::Setup1Click() {
    if (!IsOpen() || Opening.Taken())
        return; // closed below a message that leads here, or a file is being read
    StopLog();
    LiveLog.TimerLogAutostart->SetEnabled(false); // no start of its own below the dialog
    Forms.SetupForm.FormInit();
    if (Client()._isLocalSession)
        Forms.SetupForm.GetLocalDevices();
    Ports.Dialogs.ShowModal(Forms.SetupForm);
    StatusBar.Repaint();
    if (IsOpen() && !NabtoDeleteUsers->Enabled())
        NabtoDeleteUsers->SetEnabled(true);
}

void TFormMain::Changelanguage1Click() {
    Ports.Dialogs.ShowModal(Forms.languagedialog);
}

void TFormMain::Nabtodebug1Click() {
    StopLog();
    StatusBar.Repaint();
    Ports.Dialogs.Show(Forms.NabtoDevice);
}

void TFormMain::but_swupdateClick() {
    const TDeviceUse::TAction action(Device().Use);
    if (!action)
        return;
    StopLog();
    LiveLog.TimerLogAutostart->SetEnabled(false); // no start of its own below the dialog
    Ports.Dialogs.Show(Forms.NabtoDevice);
    Forms.NabtoDevice.BtnUpdateClick();
}

void TFormMain::but_errorlogClick() {
    const TDeviceUse::TAction action(Device().Use);
    if (!action)
        return;
    StopLog();
    Forms.NabtoDevice.ButErorlogClick();
}

void TFormMain::FlasDatalog1Click() {
    TFlashDatalog& flash = Device().FlashDatalog;
    if (flash.PanelFDDatalog.Visible()) {
        Nabtodebug1Click();
        return;
    }
    const TDeviceUse::TAction action(Device().Use);
    if (!action)
        return;
    Nabtodebug1Click();
    flash.ButFlashDatalogClick();
}

// The service form, which tells more, may be closed or covered.
void TFormMain::ShowUpdate() {
    const TUpdateStatus& status = Forms.NabtoDevice.UpdateStatus;
    std::string text = status.Texts.Running + " " + status.LabUpdatePhase.Caption();
    if (status.LabUpdateFile.Visible())
        text += ", " + status.LabUpdateFile.Caption();
    LblUpdate.SetCaption(text);
    ButShowUpdate.SetCaption(status.Texts.Show);
    UpdatePanel.SetVisible(status.Running());
    FileProgressBar.SetMax(status.UpdateProgress.Max());
    FileProgressBar.SetPosition(status.UpdateProgress.Position());
    FileProgressBar.SetVisible(status.Running() && status.UpdateProgress.Visible());
}

void TFormMain::LockForUpdate(bool running) {
    ShowUpdate();
    if (!running) {
        UpdateLock.Release();
        return;
    }
    LiveLog.TimerLogAutostart->SetEnabled(false);
    std::vector<TControl*> controls{&TrafficButton,
                                    &DeviceID,
                                    &but_swupdate,
                                    &but_errorlog,
                                    &SetpointPage.SetpointTreeView,
                                    &SetpointPage.SetpointGrid};
    for (const TMenuItem& menu : MainMenu.Items)
        for (TMenuItem& item : menu.Items)
            if (&item != &Nabtodebug1 && &item != &Close1)
                controls.push_back(&item);
    UpdateLock.Lock(controls);
}

void TFormMain::NabtoDeleteUsersTimer() {
    DeleteNabtoUserFolder();
    NabtoDeleteUsers->SetEnabled(false);
}

void TFormMain::DeleteNabtoUserFolder() {
    tidewell::DeleteNabtoUserFolder(Ports.Files, FCurrentInifilesPath.directorypath);
}

void TFormMain::ShowReadBack() {
    const bool running = ReadBack.Running();
    SetpointPage.Savesetpoints1.SetEnabled(!running);
    SetpointPage.Loadsetpointfromfile1.SetEnabled(!running);
    LblReadBack.SetCaption(ReadBack.ProgressText());
    ReadBackPanel.SetVisible(running);
    const auto progress = ReadBack.Progress();
    FileProgressBar.SetMax(progress.Max);
    FileProgressBar.SetPosition(progress.Position);
    FileProgressBar.SetVisible(running);
}

void TFormMain::TheTabChange() {
    GraphControlsPanel.SetVisible(!TheTab.IsActive(TabSetpoint));
}

void TFormMain::FormResize() {
    int others = 0;
    for (const std::size_t panel : {PanelLink, PanelProgress, PanelVersion})
        others += StatusBar.Panels()[panel].Width;
    StatusBar.SetWidth(PanelUser, std::max(0, ClientWidth() - others));
    SetpointPage.ArrangeSetpointPage(GridClientWidth, GroupClientHeight);
}

void TFormMain::SetpointPageResized(int gridClientWidth, int groupClientHeight) {
    GridClientWidth = gridClientWidth;
    GroupClientHeight = groupClientHeight;
    SetpointPage.ArrangeSetpointPage(GridClientWidth, GroupClientHeight);
}

void TFormMain::FormKeyDown(EKey key, bool& handled) {
    const std::array<std::pair<EKey, TMenuItem*>, 9> keys{{{EKey::F2, &OpenProfile2},
                                                           {EKey::F3, &OpenDatalogfile1},
                                                           {EKey::F4, &SaveUserDatalog1},
                                                           {EKey::F5, &StartLog1},
                                                           {EKey::F6, &WindowSetpoint1},
                                                           {EKey::F7, &WindowGraph1},
                                                           {EKey::F8, &Setup1},
                                                           {EKey::F11, &Nabtodebug1},
                                                           {EKey::F12, &Changelanguage1}}};
    handled = true;
    for (const auto& [itsKey, item] : keys)
        if (itsKey == key)
            return item->Click();
    if (key == EKey::Escape)
        return Close1Click();
    if (key == EKey::F1 && TheTab.IsActive(TabSetpoint))
        return ContextHelp.Show(Texts.ErrorMissingAdobe);
    handled = key == EKey::F1;
}

void TFormMain::FormCloseQuery(bool& mayClose) {
    if (AskBeforeClose && Forms.NabtoDevice.UpdateStatus.Running())
        mayClose = Ports.Dialogs.ShowMessageBox(EMessageKind::Confirmation,
                                                Forms.NabtoDevice.UpdateStatus.Texts.CloseProgram,
                                                EButtons::YesNo) == EModalResult::Yes;
}

// The first failure to save keeps the form open, so that the log can be saved elsewhere; a second close
// within a minute saves what it can and ends.
void TFormMain::FormClose() {
    if (!CloseAgain->Enabled()) {
        CloseAgain->SetEnabled(true);
        for (const auto& save : ClosingSaves())
            save();
    } else {
        for (const auto& save : ClosingSaves())
            RunGuarded(Ports.Dialogs, save);
    }
    for (ITimer* timer : {InitTimer.get(), SignIn.KeepAliveTimer.get(), NabtoDeleteUsers.get(),
                          CloseAgain.get(), LiveLog.UpdateTimer.get(), LiveLog.TimerLogAutostart.get()})
        timer->SetEnabled(false);
    Forms.NabtoDevice.stopLog();
    DeleteNabtoUserFolder();
    Ports.Application.Terminate();
}

std::vector<std::function<void()>> TFormMain::ClosingSaves() {
    const auto systemlog = FCurrentInifilesPath.directorypath / "log" / "systemlog";
    const std::string stamp = DateTimeStamp(Ports.Clock);
    std::vector<std::function<void()>> saves;
    if (Profile.ProfileLoaded)
        // What cannot be kept of the graph must not cost the logs.
        saves.emplace_back([this] {
            RunGuarded(Ports.Dialogs, [this] { Profile.WriteGraphSettings(GraphPage.ChannelSettings()); });
        });
    if (Ports.Files.DirectoryExists(systemlog)) {
        saves.emplace_back([=, this] {
            WriteLines(Ports.Files, systemlog / (stamp + "eventlog.log"), MemoEventLog.Lines());
        });
        saves.emplace_back([=, this] {
            SaveDataLogFile(
                UnusedPath(Ports.Files, systemlog / ("datalog" + NowStamp(Ports.Clock) + ".csv")));
        });
    }
    saves.emplace_back([this] { ModbusPanel.WannaClose = true; });
    if (Configuration.DebugEnable && Ports.Files.DirectoryExists(systemlog))
        saves.emplace_back([=, this] {
            WriteLines(Ports.Files, systemlog / (stamp + "debug.log"), ModbusPanel.MemoDebug.Lines());
        });
    return saves;
}

} // namespace tidewell
