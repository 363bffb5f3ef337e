#include "link/NabtoDevice.h"

#include "cloud/ApiClient.h"
#include "core/Configuration.h"
#include "core/DeviceId.h"
#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "core/TextFile.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IWait.h"
#include "link/Nabto.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"

namespace tidewell {

namespace {

constexpr const char* readSetpoint = "setpointReadValue.json";
constexpr const char* readDatapoint = "datapointReadValue.json";
constexpr const char* notConnected = "NOT CONNECTED TO BASESTATION!";
constexpr int deviceInUse = -4;

// A log of events has a word of each, then another word of each.
constexpr std::uint32_t ErrorLogEvents = 100;
constexpr std::uint32_t ErrorLogBytes = 4 * ErrorLogEvents;

// Those of which both words came.
std::size_t WholeErrorEvents(std::uint32_t bytes) {
    return bytes / 2 > ErrorLogEvents ? bytes / 2 - ErrorLogEvents : 0;
}

// The words of a log that holds no other events.
std::string ErrorLogOfEvents(const std::string& words, std::size_t events) {
    std::string list;
    for (const std::size_t first : {std::size_t{0}, std::size_t{ErrorLogEvents}})
        for (std::size_t event = 0; event < events; ++event)
            list += GetRowField(words, first + event) + ";";
    return list;
}

int KnownObject(int obj) {
    return obj > 10 ? 0 : obj;
}

} // namespace

TNabtoDevice::TNabtoDevice(IDialogs& dialogs, ITimers& timers, IWait& wait, IFiles& files,
                           const IClock& clock, const TCurrentInifilesPath& paths,
                           const TExtensions& extensions, TUNabto& nabto, TModbusPanel& panel, IHost& host)
    : TForm("NabtoDevice", "Nabto"), Identity(dialogs, nabto, device),
      Cycle(timers, nabto, panel, device, LblNabto, LedNabto, [this] { CycleDone(); }),
      InForce({host, dialogs, nabto, LblNabto, StatusBar, device, Domain, initialized}), UpdateStatus(clock),
      UpdateRun(
          wait, nabto, UpdateStatus, device, [&host] { return host.FormOpen(); }, extensions),
      Upload(
          {dialogs, files, clock, nabto, UpdateRun, memoDebug, streamDelayEdit, device, CurrentUpdateSWFile}),
      Update({dialogs, files, clock, paths, nabto, Use, UpdateRun, UpdateStatus, Upload, memoDebug, device,
              EnableContineousUpdate, CurrentUpdateSWFile, extensions}),
      ContinuousUpdate({dialogs, files, clock, timers, paths, Use, UpdateStatus, Update, memoDebug, StatusBar,
                        ButContUpdate, device, EnableContineousUpdate, CurrentUpdateSWFile, extensions}),
      Eeprom(nabto, memoDebug, device, extensions, ReadTexts),
      FlashDatalog({host, dialogs, files, clock, paths, nabto, Use, Eeprom, memoDebug, StatusBar, device,
                    extensions, ReadTexts}),
      ServiceTools({dialogs, files, clock, paths, nabto, Use, Eeprom, FlashDatalog, memoDebug,
                    Identity.LblJson, device, extensions, ReadTexts}),
      Dialogs(dialogs), Wait(wait), Files(files), Paths(paths), Extensions(extensions), Nabto(nabto),
      Panel(panel), Host(host),
      SessionKeeper({timers, nabto, LinkTexts, device, [&host] { return host.FormOpen(); },
                     [&host](const std::string& line) { host.AddEventLog(line); }}) {
    InitControls();
    Use.Take = [this] { return InForce.Take(); };
    Use.TellLost = [this](const std::string& lost) { InForce.TellLost(lost); };
    btnPing.OnClick = [this] { btnPingClick(); };
    butChangeDeviceID.OnClick = [this] { butChangeDeviceIDClick(); };
    ButAccount.OnClick = [this] { Identity.PanelDevice.SetVisible(!Identity.PanelDevice.Visible()); };
    btnClearLog.OnClick = [this] { memoDebug.Clear(); };
    btnShowReadList.OnClick = [this] { btnShowReadListClick(); };
    ButErorlog.OnClick = [this] { ButErorlogClick(); };
    BtnUpdate.OnClick = [this] { BtnUpdateClick(); };
    ButContUpdate.OnClick = [this] { ContinuousUpdate.ButContUpdateClick(); };
    OnShow = [this] { FormShow(); };
    OnCloseQuery = [this](bool& mayClose) { FormCloseQuery(mayClose); };
    OnClose = [this] { FormClose(); };
}

TNabtoDevice::~TNabtoDevice() {
    Nabto.FOnUpdateProgress = nullptr;
    Nabto.MayGoOn = nullptr;
    Nabto.MayAsk = nullptr;
    Nabto.OnInterfaceMissing = nullptr;
}

void TNabtoDevice::InitControls() {
    TControl* const hidden[] = {&BtnUpdate, &ButErorlog, &ButAccount, &ButContUpdate};
    for (TControl* control : hidden)
        control->SetVisible(false);
    // Each of them asks the device, or changes what becomes the log of the running action.
    Use.AddControls(
        {&btnPing, &BtnUpdate, &butChangeDeviceID, &btnClearLog, &btnShowReadList, &Identity.btnUserAccount});
    Use.AddControls({&ButErorlog, &FlashDatalog.ButFlashDatalog, &FlashDatalog.DayTracker,
                     &FlashDatalog.DT_MaskeditStartDate, &FlashDatalog.DT_MaskeditEndDate,
                     &FlashDatalog.DT_GetData, &ServiceTools.butGetEepromValues, &ServiceTools.BtnReadFlash,
                     &ServiceTools.Button1, &ServiceTools.ExtendedSystemVersion, &ButContUpdate});
    streamDelayEdit.SetText("10");
    const std::string delay = "Pause after each block written to the device; raise it when writing fails";
    LabStreamDelay.SetHint(delay);
    streamDelayEdit.SetHint(delay);
    streamDelayEdit.OnReturn = [this] {
        streamDelayEdit.SelectAllRequested.Emit(); // taken; not a ping by the default button
    };
    btnShowReadList.SetHint("Lists the read questions of the open profile's devices");
}

void TNabtoDevice::FormCreate(const TIniFile& language) {
    Cycle.queryCounter = 0;
    Cycle.isLastResultError = false;
    Nabto.FOnUpdateProgress = [this](TStreamProgress&) { ShowProgress(); };
    Nabto.MayGoOn = [this] { return !FlashDatalog.Stopped() && !UpdateRun.Stopped(); };
    Nabto.MayAsk = [this] { return Host.FormOpen(); };
    ReadLanguage(language);
    Nabto.OnInterfaceMissing = [this](const std::filesystem::path& path) {
        Host.AddEventLog(FillText(EventLogTexts.InterfaceMissing, {path.string()}));
    };
    if (const TLoadedLibrary& loaded = Nabto.Loaded(); !loaded.Library)
        Host.AddEventLog(FillText(EventLogTexts.LibraryNotLoaded, {loaded.File, loaded.Failure}));
    ReadConfiguration();
}

void TNabtoDevice::ReadConfiguration() {
    const TNabtoConfiguration configuration = ReadNabtoConfiguration(TIniFile(Files, Paths.Systemfile));
    name = configuration.Name;
    enabled = configuration.Enabled;
    LastUser = configuration.LastLoginUser;
    LastPW = configuration.LastLoginPW;
    Domain = configuration.Domain;
    for (const TReplacedNumber& number : configuration.Replaced)
        Host.AddEventLog(LineOn(number, EventLogTexts));
    Cycle.SetIntervals(configuration.PauseTime, configuration.DelayBetweenQuestions);
}

void TNabtoDevice::ReadLanguage(const TIniFile& language) {
    UpdateStatus.Texts.Read(language);
    EventLogTexts.Read(language);
    ReadTexts.Read(language);
    LinkTexts.Read(language);
    InForce.Texts.Read(language);
    tidewell::ReadTexts(language, "Nabtodriver",
                        {{btnPing, "Butping"},
                         {BtnUpdate, "ButFWupdate"},
                         {ButErorlog, "ButErrorlog"},
                         {butChangeDeviceID, "ButChangeID"},
                         {ButAccount, "ButAccount"}});
    FlashDatalog.TakeTexts(language);
}

int TNabtoDevice::init(const std::string& deviceid, TApiClient& apiClient) {
    const int result = Link(deviceid, apiClient);
    if (result != 0) {
        const std::string asked = deviceid.empty() ? device : InForce.AddressOf(deviceid);
        Host.AddEventLog(LinkTexts.NotLinked + " " + asked + ": " +
                         (result == deviceInUse ? LinkTexts.InUse : NoLinkCause));
    }
    return result;
}

int TNabtoDevice::Link(const std::string& deviceid, TApiClient& apiClient) {
    if (!deviceid.empty()) {
        const std::string address = InForce.AddressOf(deviceid);
        if (!SameText(address, device)) {
            if (Use.Fixed())
                return deviceInUse;
            Use.DeviceChanged();
        }
        device = address;
        SaveDevice();
    }
    ApiClient = &apiClient;
    if (!ApiClient->_isLoggedIn)
        return NoLink(-2, LinkTexts.NotSignedIn);
    if (ApiClient->_isLocalSession && !IsLocalDevice)
        return NoLink(1030, LinkTexts.NotLocal);
    TCredentials credentials;
    const char* refusal = nullptr;
    if (GetCredentials(credentials) != 0)
        refusal = "status";
    else if (credentials.Username.empty())
        refusal = "creds.Username";
    if (refusal) {
        LblNabto.SetCaption("Not authorized to device \"" + device + "\" (" + refusal + " not ok)");
        const std::string& failure = ApiClient->LastFailure;
        return NoLink(-3, failure.empty() ? LinkTexts.NoUserName : failure);
    }
    if (!initialized) {
        // A message of Init runs the event loop, in which another init may succeed.
        const int result = Nabto.Init(credentials.Username, credentials.Password);
        if (result == 0) {
            initialized = true;
            if (Extensions.SessionReopen)
                SessionKeeper.Keep(credentials);
        }
        LblNabto.SetCaption(initialized ? "Connected to Basestation" : notConnected);
        if (!initialized) // the label soon tells something else
            Host.AddEventLog(std::string(notConnected) + " " +
                             (result < 0 ? EventLogTexts.NoLibrary : Nabto.StatusText(result)));
    }
    return 0;
}

int TNabtoDevice::GetCredentials(TCredentials& credentials) {
    return ApiClient->_isLocalSession ? ApiClient->GetOfflineSessionCredentials(credentials)
                                      : ApiClient->GetNabtoUserInfo(DeviceIdOf(device), credentials);
}

int TNabtoDevice::NoLink(int result, const std::string& cause) {
    initialized = false;
    NoLinkCause = cause;
    return result;
}

// The link does not depend on this key, so a system file that cannot be written only leaves a line.
void TNabtoDevice::SaveDevice() {
    try {
        TIniFile systemFile(Files, Paths.Systemfile);
        systemFile.WriteText("CommInitNabto", "Device", device);
        systemFile.Save(Files);
    } catch (const TError& error) {
        Host.AddEventLog(FillText(EventLogTexts.DeviceNotSaved, {device, error.what()}));
    }
}

bool TNabtoDevice::isEnabled() const {
    return ReadNabtoEnabled(TIniFile(Files, Paths.Systemfile));
}

void TNabtoDevice::startLog() {
    if (initialized)
        Cycle.startLog();
}

void TNabtoDevice::SetNabtoQuestion(const std::filesystem::path& path) {
    Cycle.SetQuestions(ReadPollQuestions(Files, path));
}

std::string TNabtoDevice::Showquestions() const {
    std::string text;
    for (const auto& row : Cycle.Questions.Rows())
        text += row.Name + "=" + row.Value + "\r\n";
    return text;
}

std::string TNabtoDevice::ReadValue(int CMD, int address, int obj) {
    if (CMD != 3 && CMD != 4)
        return {};
    const std::string request =
        TUNabto::ValueToJson(std::to_string(address), "1", std::to_string(KnownObject(obj)));
    return Nabto.SendQuery(device, CMD == 3 ? readSetpoint : readDatapoint, request);
}

std::string TNabtoDevice::SendValue(const TDeviceUse::TAction& action, int value, int address, int obj) {
    return Nabto.SendQuery(
        action.Device(), "setpointWriteValue.json",
        TUNabto::FormatSaveSetpoint(KnownObject(obj), address, value), [&action] { return action.Kept(); });
}

std::string TNabtoDevice::GetDataList(const std::string& s) {
    return Nabto.JsonToValue(s);
}

std::int32_t TNabtoDevice::GetResponsstatus(const std::string& s) {
    return Nabto.getResponseStatus(s);
}

bool TNabtoDevice::TryPing() {
    return Nabto.ping(device);
}

void TNabtoDevice::GetLocalDevices(TComboBox& sender) {
    sender.SetItems(Nabto.GetLocal());
}

void TNabtoDevice::SaveSetDatapointstringToStringlist() {
    ReadBack.SaveSetDatapointstringToStringlist(Cycle.NabtoResultstring);
}

void TNabtoDevice::CycleDone() {
    SaveSetDatapointstringToStringlist();
    FOnCycleDone();
    Host.UpdateTimerTimer();
}

void TNabtoDevice::ShowProgress() {
    const std::uint64_t length = Nabto.currentstreamlength;
    const std::uint64_t percent = length == 0 ? 0 : std::uint64_t{Nabto.currentstreamprogress} * 100 / length;
    StatusBar.SetText(2, "progress " + std::to_string(percent) + " %");
    if (UpdateStatus.Running())
        UpdateStatus.SetProgress(Nabto.currentstreamprogress, Nabto.currentstreamlength);
    Wait.ProcessMessages();
}

void TNabtoDevice::btnPingClick() {
    const bool shown = Visible(); // the setup dialog pings too, while this form is hidden
    const std::string asked = device;
    memoDebug.Clear();
    const bool answered = Nabto.ping(asked);
    // The event loop ran: who has closed the form, or the program, waits for no answer.
    if (!Host.FormOpen() || (shown && !Visible()))
        return;
    if (!answered) {
        Dialogs.ShowMessage("Device is not available");
        return;
    }
    memoDebug.Add("DeviceID: " + asked);
    memoDebug.Add("Ping Response: OK");
    if (!Nabto.SlaveDeviceNum.empty() && !Nabto.SlaveModel.empty())
        Dialogs.ShowMessage("Gateway DeviceID: " + asked + "\rGateway Model: " + Nabto.model +
                            "\rGateway Number: " + Nabto.varenummer +
                            "\rGateway Version: " + Nabto.GatewayVersion +
                            "\rSlave Number: " + Nabto.SlaveDeviceNum + "\rSlaveModel: " + Nabto.SlaveModel);
    else
        Dialogs.ShowMessage("DeviceID: " + asked + "\rModel: " + Nabto.model +
                            "\rVarenummer: " + Nabto.varenummer + "\rHP SW version: " + Nabto.versionHP +
                            "\rNP SW version: " + Nabto.versionNP + "\rBT SW version: " + Nabto.versionBT);
}

void TNabtoDevice::btnShowReadListClick() {
    for (const std::string& row : SplitLines(Panel.CycleReadListGetListText()))
        memoDebug.Add(row);
}

void TNabtoDevice::butChangeDeviceIDClick() {
    Hide();
    Host.Setup1Click();
    if (Host.FormOpen())
        Dialogs.Show(*this);
}

void TNabtoDevice::ButErorlogClick() {
    TEepromReader::TResult read;
    {
        const TDeviceUse::THold hold(Use);
        if (!hold)
            return;
        ErrorLogNotice.Clear();
        read = Eeprom.ReadEeprom(static_cast<std::uint32_t>(Host.ErrorLogOffset()), ErrorLogBytes);
    }
    if (!Host.FormOpen())
        return;
    const bool whole = read.Report.Whole();
    const std::size_t events = WholeErrorEvents(read.Report.Came());
    std::string told;
    if (events == 0)
        told = FillText(ReadTexts.NoErrorLog, {read.Report.Reason()});
    else if (!whole)
        told = FillText(ReadTexts.ErrorLogPart,
                        {std::to_string(events), std::to_string(ErrorLogEvents), read.Report.Reason()});
    ErrorLogNotice.Show(told);
    if (!Extensions.ServiceStrict)
        told.clear();
    else if (!whole)
        read.Words = ErrorLogOfEvents(read.Words, events);
    if (!read.Words.empty())
        Host.EvalErrorlog(read.Words, told);
    else if (!told.empty() && Visible())
        Dialogs.ShowMessageBox(EMessageKind::Error, told, EButtons::Ok);
}

void TNabtoDevice::BtnUpdateClick() {
    if (Use.Taken())
        return;
    const TDeviceUse::TAction action(Use);
    if (!action)
        return;
    ContinuousUpdate.UseMultibleFiles = false;
    Update.SelectConfigFile();
    const bool success = Update.UpdateSW(CurrentUpdateSWFile);
    if (Host.FormOpen())
        Dialogs.ShowMessage(success ? "Download success Device is online again" : "Error during update!");
}

void TNabtoDevice::FormShow() {
    Host.AddEventLog("Nabto form active");
    StatusBar.SetText(1, "Current DeviceID : " + device);
    LblNabto.SetCaption("ID : " + device);
    BtnUpdate.SetVisible(true);
    FlashDatalog.ButFlashDatalog.SetVisible(true);
    ButErorlog.SetVisible(Host.ErrorLogVisible());
    butChangeDeviceID.SetVisible(Host.ShowButtonDevid());
    ButContUpdate.SetVisible(EnableContineousUpdate);
    ServiceTools.ExtendedSystemVersion.SetVisible(Enable_debugShowExtendedVersionInfo);
}

void TNabtoDevice::FormCloseQuery(bool& mayClose) {
    if (UpdateStatus.Running() && Host.FormOpen())
        mayClose = Dialogs.ShowMessageBox(EMessageKind::Confirmation, UpdateStatus.Texts.CloseWindow,
                                          EButtons::YesNo) == EModalResult::Yes;
    mayClose = mayClose && FlashDatalog.MayClose();
}

void TNabtoDevice::FormClose() {
    Host.AddEventLog("Nabto form closed");
    FlashDatalog.PanelFDDatalog.SetVisible(false);
}

} // namespace tidewell
