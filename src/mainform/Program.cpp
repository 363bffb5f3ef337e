#include "mainform/Program.h"

#include "core/Guard.h"
#include "core/IniFile.h"

#include <utility>

namespace tidewell {

namespace {

// Each splash line stays readable for a while.
constexpr int afterCleanUp = 1000; // ms
constexpr int afterMainForm = 500;
constexpr int afterReady = 700;

} // namespace

TProgram::TProgram(const TPorts& ports, TStartOptions options)
    : Ports(ports), Options(std::move(options)), Splashscreen(Ports, Options),
      Paths(Splashscreen.FCurrentInifilesPath), FormMain(Ports.Application),
      ModbusPanel(Ports.Files, Ports.Wait), Profile(Ports.Files),
      ContextHelp(Ports.Dialogs, Ports.Files, Ports.Process, FormMain.MemoEventLog),
      Nabto(FormMain, Ports.Libraries, Ports.Dialogs, Ports.Timers, Ports.Wait, Ports.Files,
            Options.Directory),
      ApiClient(FormMain, Ports.Dialogs),
      NabtoDevice({Ports.Dialogs, Ports.Timers, Ports.Wait, Ports.Files, Ports.Clock, FormMain, FormMain,
                   Paths, Extensions, ApiClient, Nabto, ModbusPanel, Profile, FormMain.MemoEventLog,
                   EventLogTexts, _commandLineParameters.devid}),
      Polling(NabtoDevice), GraphPage(FormMain, {Profile, LogBuffers, Ports.Dialogs, Ports.Wait,
                                                 FormMain.MemoEventLog, FormMain.FileProgressBar}),
      LiveLog(FormMain,
              {Polling, FormMain, Ports.Dialogs, Ports.Clock, Ports.Files, Ports.Timers, ModbusPanel, Profile,
               GraphPage, LogBuffers, FormMain.TrafficButton, FormMain.StatusBar, FormMain.MemoEventLog,
               Paths, Extensions, Opening, Options.SpareFolders}),
      DatalogReader(DatalogNeeds()), SdDatalogReader(DatalogNeeds()), CsvExport(DatalogNeeds()),
      InputDialog({Ports.Dialogs, ModbusPanel, NabtoDevice, FormMain.MemoEventLog, FormMain.StatusBar}),
      SetpointPage(FormMain, {LiveLog, LogBuffers, GraphPage, Ports.Dialogs, Ports.Clock, ModbusPanel,
                              ContextHelp.HelpfileDoc, InputDialog, SetpointTexts, Extensions}),
      ReadBack(LiveLog, FormMain, Ports.Wait, NabtoDevice),
      LoadSetpoints({Ports.Dialogs, Ports.Files, Ports.Clock, ModbusPanel, NabtoDevice, ReadBack, LiveLog,
                     FormMain, FormMain.MemoEventLog, SetpointTexts.Files,
                     SetpointPage.SelectedSetpointParent, Paths.directorypath}),
      SetpointFiles({Ports.Dialogs, Ports.Files, Ports.Clock, ModbusPanel, LiveLog, FormMain, ReadBack,
                     LoadSetpoints, FormMain.MemoEventLog, SetpointTexts, SetpointPage.SelectedSetpointParent,
                     Paths.directorypath}),
      ErrorLog(FormMain, {LiveLog, Ports.Files, Ports.Clock, Paths, Configuration.ErrorLog, Profile,
                          ModbusPanel, FormMain.TheTab}),
      ProfileOpening(Ports, {FormMain, Paths, ModbusPanel, Profile, SetpointPage, GraphPage, LiveLog, Nabto,
                             NabtoDevice, ApiClient, Configuration.AutoLoadProfile, Opening}),
      FlashDatalogOpening(Ports, {FormMain, ModbusPanel, Profile, ProfileOpening, GraphPage, NabtoDevice}),
      NabtoLogOn(Ports.Libraries, Ports.Process, Ports.Dialogs, Paths, Extensions, NabtoDevice.LastPW),
      SignIn(Ports, {FormMain, Paths, Options, _commandLineParameters, EventLogTexts, ApiClient, NabtoLogOn,
                     NabtoDevice}),
      languagedialog(Ports, Options, Extensions, Paths),
      SetupForm({Ports.Dialogs, ApiClient, Nabto, NabtoDevice, FormMain.StatusBar}),
      UserFolder(Ports.Files, Ports.Timers, Paths.directorypath),
      DeviceActions({Ports.Dialogs, FormMain, NabtoDevice, SetupForm, ApiClient, LiveLog, ErrorLog,
                     FlashDatalogOpening, UserFolder, Opening}),
      StartUp(Ports, {Options, Paths, Configuration, _commandLineParameters, EventLogTexts, FormMain, SignIn,
                      NabtoDevice, UserFolder, ModbusPanel, LiveLog, GraphPage, SetpointPage, ProfileOpening,
                      DeviceActions}),
      CloseDown(Ports,
                {Paths,
                 Configuration,
                 Extensions,
                 EventLogTexts,
                 FormMain,
                 NabtoDevice,
                 UserFolder,
                 ModbusPanel,
                 Profile,
                 GraphPage,
                 LiveLog,
                 {StartUp.InitTimer.get(), SignIn.KeepAliveTimer.get(), UserFolder.NabtoDeleteUsers.get(),
                  LiveLog.UpdateTimer.get(), LiveLog.TimerLogAutostart.get()}}) {
    ConnectMainForm();
    ConnectDevice();
    ConnectUpdate();
}

TDatalogNeeds TProgram::DatalogNeeds() {
    return {LiveLog,
            FormMain,
            Ports.Dialogs,
            Ports.Files,
            Ports.Wait,
            Profile,
            GraphPage,
            FormMain.MemoEventLog,
            FormMain.FileProgressBar,
            Paths.directorypath,
            Opening};
}

// What the user asks for, and the rooms tell one another.
void TProgram::ConnectMainForm() {
    TFormMain& main = FormMain;
    main.OpenProfile2.OnClick = [this] { ProfileOpening.OpenProfile2Click(); };
    main.OpenDatalogfile1.OnClick = [this] { DatalogReader.OpenDatalogfile1Click(); };
    main.Open_sd_datalog.OnClick = [this] { SdDatalogReader.Open_sd_datalogClick(); };
    main.SaveUserDatalog1.OnClick = [this] { LiveLog.SaveUserDatalog1Click(); };
    main.TrafficButton.OnClick = [this] { LiveLog.TrafficButtonClick(); };
    main.Errorlog1.OnClick = [this] { ErrorLog.Errorlog1Click(); };
    main.Changelanguage1.OnClick = [this] { Ports.Dialogs.ShowModal(languagedialog); };
    main.ButStopReadBack.OnClick = [this] { ReadBack.Cancel(); };
    main.ButShowUpdate.OnClick = [this] { Ports.Dialogs.Show(NabtoDevice); };
    main.DeviceID.OnClick = main.Setup1.OnClick = [this] { DeviceActions.Setup1Click(); };
    main.Nabtodebug1.OnClick = [this] { DeviceActions.Nabtodebug1Click(); };
    main.but_swupdate.OnClick = [this] { DeviceActions.but_swupdateClick(); };
    main.but_errorlog.OnClick = [this] { DeviceActions.but_errorlogClick(); };
    main.FlasDatalog1.OnClick = [this] { DeviceActions.FlasDatalog1Click(); };
    main.OnHelp = [this] { ContextHelp.Show(); };
    main.OnShow = [this] { StartUp.FormShow(); };
    main.OnCloseQuery = [this](bool& mayClose) { CloseDown.FormCloseQuery(mayClose); };
    main.OnClose = [this] { CloseDown.FormClose(); };
    main.OnResize = [this] {
        FormMain.FormResize();
        SetpointPage.ArrangeAgain();
    };
    main.Notices = {&ProfileOpening.NoticeProfile, &LiveLog.NoticeNoValues, &LiveLog.LogNotice,
                    &LiveLog.NoticeRecovered, &NabtoDevice.ErrorLogNotice};
    GraphPage.Exportdatatocsv1.OnClick = [this] { CsvExport.Exportdatatocsv1Click(); };
    SetpointPage.Savesetpoints1.OnClick = [this] { SetpointFiles.Savesetpoints1Click(); };
    SetpointPage.Loadsetpointfromfile1.OnClick = [this] { SetpointFiles.Loadsetpointfromfile1Click(); };
    Connections.push_back(ReadBack.Changed.Connect([this] { ShowReadBack(); }));
    LiveLog.OnDataLine = [this](const std::string& line) { SetpointPage.ApplyDataLine(line); };
    LiveLog.OnOpenRecovered = [this](const TRecoveredLog& log) { OpenRecovered(log); };
    LiveLog.OnNoProfile = [this] {
        FormMain.TabSetpoint.SetVisible(true);
        FormMain.WindowSetpoint1.SetEnabled(true);
        DeviceActions.Setup1Click();
    };
    SdDatalogReader.OnOpenProfile = [this](const std::filesystem::path& path) {
        ProfileOpening.OpenProfile(path);
    };
    ProfileOpening.OnOtherProfile = [this] { ForgetValues(); };
    Opening.AddControls({&main.OpenProfile2, &main.OpenDatalogfile1, &main.Open_sd_datalog, &main.Setup1,
                         &main.DeviceID, &main.StartLog1, &main.TrafficButton});
}

void TProgram::ConnectDevice() {
    NabtoDevice.FOnCycleDone = [this] {
        LiveLog.SetCycleResult(NabtoDevice.NabtoResultstring());
        LiveLog.UpdateTimerTimer();
    };
    NabtoDevice.Cycle.OnEmptyCycle = [this] { LiveLog.CycleWithoutValues(); };
    NabtoDevice.Cycle.OnFailed = [this](const std::string& reason) { LiveLog.PollingFailed(reason); };
    NabtoDevice.OnSetup = [this] { DeviceActions.Setup1Click(); };
    NabtoDevice.OnErrorlog = [this](const std::string& wordList, const std::string& remark) {
        DeviceActions.ShowErrorlog(wordList, remark);
    };
    NabtoDevice.InForce.OnOther = [this] { ForgetValues(); };
    NabtoDevice.FlashDatalog.OnStopRunningLog = [this] { DeviceActions.StopRunningLog(); };
    NabtoDevice.FlashDatalog.OnShowFlashDatalog = [this](const std::filesystem::path& profile,
                                                         const std::filesystem::path& file) {
        DeviceActions.ShowFlashDatalog(profile, file);
    };
    SetupForm.OnLinked = [this] { ProfileOpening.TestProfileNabto(); };
    // A read that is under way is one of this device and this profile.
    NabtoDevice.Use.AddControls({&FormMain.but_errorlog, &FormMain.but_swupdate, &FormMain.FlasDatalog1,
                                 &FormMain.DeviceID, &FormMain.Setup1, &FormMain.OpenProfile2});
}

void TProgram::ConnectUpdate() {
    TUpdateStatus& status = NabtoDevice.UpdateStatus;
    const auto show = [this, &status] { FormMain.ShowUpdate(status); };
    Connections.push_back(status.Changed.Connect([this, &status, show] {
        show();
        if (status.Running())
            LiveLog.TimerLogAutostart->SetEnabled(false);
        FormMain.LockForUpdate(status.Running(),
                               {&SetpointPage.SetpointTreeView, &SetpointPage.SetpointGrid});
    }));
    Connections.push_back(status.LabUpdatePhase.Changed.Connect(show));
    Connections.push_back(status.LabUpdateFile.Changed.Connect(show));
    Connections.push_back(status.UpdateProgress.Changed.Connect(show));
}

void TProgram::ForgetValues() {
    LiveLog.UpdateTimerCallBackEvents.ClearStrings();
    SetpointPage.ForgetValues();
}

void TProgram::ShowReadBack() {
    SetpointPage.Savesetpoints1.SetEnabled(!ReadBack.Running());
    SetpointPage.Loadsetpointfromfile1.SetEnabled(!ReadBack.Running());
    FormMain.ShowReadBack(ReadBack);
}

bool TProgram::Start() {
    Splashscreen.FormCreate();
    Ports.Dialogs.Show(Splashscreen);
    if (!Ports.Files.DirectoryExists(Paths.configpath) || Paths.Systemfile.empty() ||
        !Ports.Files.FileExists(Paths.Systemfile)) {
        Ports.Dialogs.ShowMessage(Splashscreen.Texts.MessageFileStructureMissing);
        Ports.Application.Terminate();
        Splashscreen.Hide();
        return false;
    }
    Extensions = ReadExtensions(TIniFile(Ports.Files, Paths.Systemfile));
    Splashscreen.Repaint();
    Splashscreen.CleanUpLogFiles();
    Splashscreen.infostring.SetCaption(Splashscreen.Texts.MessageLogFileDeleted);
    Ports.Wait.Sleep(afterCleanUp);

    // A form that cannot be made would leave a window that does nothing.
    if (!RunGuarded(Ports.Dialogs, [this] { CreateForms(); })) {
        Ports.Application.Terminate();
        Splashscreen.Hide();
        return false;
    }
    Splashscreen.infostring.SetCaption(Splashscreen.Texts.MessageApplicationReady);
    Ports.Wait.Sleep(afterReady);
    Splashscreen.Close();
    if (!Ports.Application.Terminated())
        Ports.Dialogs.Show(FormMain);
    return true;
}

void TProgram::CreateForms() {
    const TIniFile& language = Splashscreen.Language;
    TakeTexts();
    StartUp.FormCreate();
    NabtoDevice.FormCreate(language);
    Splashscreen.infostring.SetCaption(Splashscreen.Texts.MessageMainAppDone);
    Ports.Wait.Sleep(afterMainForm);
    languagedialog.FormCreate(language);
    SetupForm.FormCreate(language);
    InputDialog.FormCreate(language);
}

void TProgram::TakeTexts() {
    const TIniFile& language = Splashscreen.Language;
    EventLogTexts.Read(language);
    SetpointTexts.TakeTexts(language);
    SignIn.Texts.Read(language);
    FormMain.TakeTexts(language);
    ContextHelp.TakeTexts(language);
    LiveLog.TakeTexts(language);
    DatalogReader.TakeTexts(language);
    SdDatalogReader.TakeTexts(language);
    CsvExport.TakeTexts(language);
    GraphPage.TakeTexts(language);
    SetpointPage.TakeTexts(language);
    ProfileOpening.TakeTexts(language);
}

void TProgram::OpenRecovered(const TRecoveredLog& log) {
    const TExclusiveUse::THold hold(Opening);
    if (!hold)
        return;
    LiveLog.StopLog();
    ProfileOpening.OpenAndReload(log.Profile);
    if (Profile.ProfileLoaded)
        DatalogReader.Show({log.Path});
}

void TProgram::Finish() {
    CloseDown.AskBeforeClose = false;
    if (!FormMain.Visible() || RunGuarded(Ports.Dialogs, [this] { FormMain.Close(); }))
        return;
    if (LogBuffers.DatalogCount > 0)
        RunGuarded(Ports.Dialogs, [this] { LiveLog.SaveUserDatalog1Click(); });
    FormMain.Close(); // saves what it can
}

std::unique_ptr<TProgram> Build(const TPorts& ports, const TStartOptions& options) {
    return std::make_unique<TProgram>(ports, options);
}

} // namespace tidewell
