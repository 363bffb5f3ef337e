#include "link/NabtoDevice.h"

#include "cloud/ApiClient.h"
#include "core/Configuration.h"
#include "core/DeviceId.h"
#include "core/Errors.h"
#include "core/Extensions.h"
#include "core/IniFile.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
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

TNabtoDevice::TNabtoDevice(const TDeviceNeeds& needs)
    : TForm("NabtoDevice", "Nabto"), Services{needs,
                                              *this,
                                              Use,
                                              memoDebug,
                                              StatusBar,
                                              device,
                                              DownloadTexts,
                                              EnableContineousUpdate,
                                              CurrentUpdateSWFile},
      Identity(Services), Cycle(needs.Timers, needs.Nabto, needs.Panel, device, LblNabto, LedNabto),
      InForce(*this, Services), UpdateStatus(*this, needs.Clock), UpdateRun(Services, UpdateStatus),
      Upload(Services, UpdateRun, streamDelayEdit), Update(Services, UpdateRun, UpdateStatus, Upload),
      ContinuousUpdate(Services, UpdateStatus, Update, ButContUpdate), Eeprom(Services),
      FlashDatalog(Services, Eeprom), ServiceTools(Services, Eeprom, FlashDatalog, Identity.LblJson),
      SessionKeeper(Services, LinkTexts) {
    InitControls();
    Use.OnTake = [this](std::optional<std::string>& address) { address = InForce.Take(); };
    Use.OnLost = [this](const std::string& lost) { InForce.TellLost(lost); };
    Cycle.OnCycleDone = [this] { CycleDone(); };
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
    Services.Nabto.FOnUpdateProgress = nullptr;
    Services.Nabto.OnMayGoOn = nullptr;
    Services.Nabto.OnInterfaceMissing = nullptr;
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
    Services.Nabto.FOnUpdateProgress = [this](TStreamProgress&) { ShowProgress(); };
    Services.Nabto.OnMayGoOn = [this](bool& goesOn) {
        goesOn = !FlashDatalog.Stopped() && !UpdateRun.Stopped();
    };
    ReadLanguage(language);
    Services.Nabto.OnInterfaceMissing = [this](const std::filesystem::path& path) {
        Services.MemoEventLog.Add(FillText(Services.EventLogTexts.InterfaceMissing, {path.string()}));
    };
    if (const TLoadedLibrary& loaded = Services.Nabto.Loaded(); !loaded.Library)
        Services.MemoEventLog.Add(
            FillText(Services.EventLogTexts.LibraryNotLoaded, {loaded.File, loaded.Failure}));
    ReadConfiguration();
}

void TNabtoDevice::ReadConfiguration() {
    const TNabtoConfiguration configuration =
        ReadNabtoConfiguration(TIniFile(Services.Files, Services.Paths.Systemfile));
    name = configuration.Name;
    enabled = configuration.Enabled;
    LastUser = configuration.LastLoginUser;
    LastPW = configuration.LastLoginPW;
    Domain = configuration.Domain;
    for (const TReplacedNumber& number : configuration.Replaced)
        Services.MemoEventLog.Add(LineOn(number, Services.EventLogTexts));
    Cycle.SetIntervals(configuration.PauseTime, configuration.DelayBetweenQuestions);
}

void TNabtoDevice::ReadLanguage(const TIniFile& language) {
    UpdateStatus.Texts.Read(language);
    DownloadTexts.Read(language);
    LinkTexts.Read(language);
    InForce.Texts.Read(language);
    ReadTexts(language, "Nabtodriver",
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
        Services.MemoEventLog.Add(LinkTexts.NotLinked + " " + asked + ": " +
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
    if (!apiClient._isLoggedIn)
        return NoLink(-2, LinkTexts.NotSignedIn);
    if (apiClient._isLocalSession && !IsLocalDevice)
        return NoLink(1030, LinkTexts.NotLocal);
    TCredentials credentials;
    const char* refusal = nullptr;
    if (GetCredentials(apiClient, credentials) != 0)
        refusal = "status";
    else if (credentials.Username.empty())
        refusal = "creds.Username";
    if (refusal) {
        LblNabto.SetCaption("Not authorized to device \"" + device + "\" (" + refusal + " not ok)");
        const std::string& failure = apiClient.LastFailure;
        return NoLink(-3, failure.empty() ? LinkTexts.NoUserName : failure);
    }
    if (!initialized) {
        // A message of Init runs the event loop, in which another init may succeed.
        const int result = Services.Nabto.Init(credentials.Username, credentials.Password);
        if (result == 0) {
            initialized = true;
            if (Services.Extensions.SessionReopen)
                SessionKeeper.Keep(credentials);
        }
        LblNabto.SetCaption(initialized ? "Connected to Basestation" : notConnected);
        if (!initialized) // the label soon tells something else
            Services.MemoEventLog.Add(std::string(notConnected) + " " +
                                      (result < 0 ? std::string(Services.EventLogTexts.NoLibrary)
                                                  : Services.Nabto.StatusText(result)));
    }
    return 0;
}

int TNabtoDevice::GetCredentials(TApiClient& apiClient, TCredentials& credentials) {
    return apiClient._isLocalSession ? apiClient.GetOfflineSessionCredentials(credentials)
                                     : apiClient.GetNabtoUserInfo(DeviceIdOf(device), credentials);
}

int TNabtoDevice::NoLink(int result, const std::string& cause) {
    initialized = false;
    NoLinkCause = cause;
    return result;
}

// The link does not depend on this key, so a system file that cannot be written only leaves a line.
void TNabtoDevice::SaveDevice() {
    try {
        TIniFile systemFile(Services.Files, Services.Paths.Systemfile);
        systemFile.WriteText("CommInitNabto", "Device", device);
        systemFile.Save(Services.Files);
    } catch (const TError& error) {
        Services.MemoEventLog.Add(FillText(Services.EventLogTexts.DeviceNotSaved, {device, error.what()}));
    }
}

bool TNabtoDevice::isEnabled() const {
    return ReadNabtoEnabled(TIniFile(Services.Files, Services.Paths.Systemfile));
}

void TNabtoDevice::startLog() {
    if (initialized)
        Cycle.startLog();
}

void TNabtoDevice::SetNabtoQuestion(const std::filesystem::path& path) {
    Cycle.SetQuestions(ReadPollQuestions(Services.Files, path));
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
    return Services.Nabto.SendQuery(device, CMD == 3 ? readSetpoint : readDatapoint, request);
}

std::string TNabtoDevice::SendValue(const TDeviceUse::TAction& action, int value, int address, int obj) {
    return Services.Nabto.SendQuery(
        action.Device(), "setpointWriteValue.json",
        TUNabto::FormatSaveSetpoint(KnownObject(obj), address, value), [&action] { return action.Kept(); });
}

std::string TNabtoDevice::GetDataList(const std::string& s) {
    return Services.Nabto.JsonToValue(s);
}

std::int32_t TNabtoDevice::GetResponsstatus(const std::string& s) {
    return Services.Nabto.getResponseStatus(s);
}

bool TNabtoDevice::TryPing() {
    return Services.Nabto.ping(device);
}

void TNabtoDevice::GetLocalDevices(TComboBox& sender) {
    sender.SetItems(Services.Nabto.GetLocal());
}

void TNabtoDevice::SaveSetDatapointstringToStringlist() {
    Snapshot.SaveSetDatapointstringToStringlist(Cycle.NabtoResultstring);
}

void TNabtoDevice::CycleDone() {
    SaveSetDatapointstringToStringlist();
    FOnCycleDone();
}

void TNabtoDevice::ShowProgress() {
    const std::uint64_t length = Services.Nabto.currentstreamlength;
    const std::uint64_t percent =
        length == 0 ? 0 : std::uint64_t{Services.Nabto.currentstreamprogress} * 100 / length;
    StatusBar.SetText(2, "progress " + std::to_string(percent) + " %");
    if (UpdateStatus.Running())
        UpdateStatus.SetProgress(Services.Nabto.currentstreamprogress, Services.Nabto.currentstreamlength);
    Services.Wait.ProcessMessages();
}

void TNabtoDevice::btnPingClick() {
    const bool shown = Visible(); // the setup dialog pings too, while this form is hidden
    const std::string asked = device;
    memoDebug.Clear();
    const bool answered = Services.Nabto.ping(asked);
    // The event loop ran: who has closed the form, or the program, waits for no answer.
    if (!Services.Program.IsOpen() || (shown && !Visible()))
        return;
    if (!answered) {
        Services.Dialogs.ShowMessage("Device is not available");
        return;
    }
    memoDebug.Add("DeviceID: " + asked);
    memoDebug.Add("Ping Response: OK");
    if (!Services.Nabto.SlaveDeviceNum.empty() && !Services.Nabto.SlaveModel.empty())
        Services.Dialogs.ShowMessage("Gateway DeviceID: " + asked + "\rGateway Model: " +
                                     Services.Nabto.model + "\rGateway Number: " + Services.Nabto.varenummer +
                                     "\rGateway Version: " + Services.Nabto.GatewayVersion +
                                     "\rSlave Number: " + Services.Nabto.SlaveDeviceNum +
                                     "\rSlaveModel: " + Services.Nabto.SlaveModel);
    else
        Services.Dialogs.ShowMessage(
            "DeviceID: " + asked + "\rModel: " + Services.Nabto.model +
            "\rVarenummer: " + Services.Nabto.varenummer + "\rHP SW version: " + Services.Nabto.versionHP +
            "\rNP SW version: " + Services.Nabto.versionNP + "\rBT SW version: " + Services.Nabto.versionBT);
}

void TNabtoDevice::btnShowReadListClick() {
    for (const std::string& row : SplitLines(Services.Panel.CycleReadListGetListText()))
        memoDebug.Add(row);
}

void TNabtoDevice::butChangeDeviceIDClick() {
    Hide();
    OnSetup();
    if (Services.Program.IsOpen())
        Services.Dialogs.Show(*this);
}

void TNabtoDevice::ButErorlogClick() {
    TEepromReader::TResult read;
    {
        const TDeviceUse::THold hold(Use);
        if (!hold)
            return;
        ErrorLogNotice.Clear();
        read = Eeprom.ReadEeprom(static_cast<std::uint32_t>(Services.Profile.ErrorLogOffset), ErrorLogBytes);
    }
    if (!Services.Program.IsOpen())
        return;
    const bool whole = read.Report.Whole();
    const std::size_t events = WholeErrorEvents(read.Report.Came());
    std::string told;
    if (events == 0)
        told = FillText(DownloadTexts.NoErrorLog, {read.Report.Reason()});
    else if (!whole)
        told = FillText(DownloadTexts.ErrorLogPart,
                        {std::to_string(events), std::to_string(ErrorLogEvents), read.Report.Reason()});
    ErrorLogNotice.Show(told);
    if (!Services.Extensions.ServiceStrict)
        told.clear();
    else if (!whole)
        read.Words = ErrorLogOfEvents(read.Words, events);
    if (!read.Words.empty())
        OnErrorlog(read.Words, told);
    else if (!told.empty() && Visible())
        Services.Dialogs.ShowMessageBox(EMessageKind::Error, told, EButtons::Ok);
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
    if (Services.Program.IsOpen())
        Services.Dialogs.ShowMessage(success ? "Download success Device is online again"
                                             : "Error during update!");
}

void TNabtoDevice::FormShow() {
    Services.MemoEventLog.Add("Nabto form active");
    StatusBar.SetText(1, "Current DeviceID : " + device);
    LblNabto.SetCaption("ID : " + device);
    BtnUpdate.SetVisible(true);
    FlashDatalog.ButFlashDatalog.SetVisible(true);
    ButErorlog.SetVisible(Services.Profile.NabtoErrorlogEnable);
    butChangeDeviceID.SetVisible(ShowButtonDevid);
    ButContUpdate.SetVisible(EnableContineousUpdate);
    ServiceTools.ExtendedSystemVersion.SetVisible(Enable_debugShowExtendedVersionInfo);
}

void TNabtoDevice::FormCloseQuery(bool& mayClose) {
    if (UpdateStatus.Running() && Services.Program.IsOpen())
        mayClose = Services.Dialogs.ShowMessageBox(EMessageKind::Confirmation, UpdateStatus.Texts.CloseWindow,
                                                   EButtons::YesNo) == EModalResult::Yes;
    mayClose = mayClose && FlashDatalog.MayClose();
}

void TNabtoDevice::FormClose() {
    Services.MemoEventLog.Add("Nabto form closed");
    FlashDatalog.PanelFDDatalog.SetVisible(false);
}

} // namespace tidewell
