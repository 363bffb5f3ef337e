#pragma once

#include "core/LanguageTexts.h"
#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Notice.h"
#include "core/controls/Simple.h"
#include "core/controls/StatusBar.h"
#include "link/ContinuousUpdate.h"
#include "link/DeviceInForce.h"
#include "link/DeviceServices.h"
#include "link/DeviceUse.h"
#include "link/EepromReader.h"
#include "link/FileUpload.h"
#include "link/FirmwareUpdate.h"
#include "link/FlashDatalog.h"
#include "link/IdentityPanel.h"
#include "link/PollCycle.h"
#include "link/ReadBackSnapshot.h"
#include "link/ServiceTools.h"
#include "link/SessionKeeper.h"
#include "link/UpdateRun.h"
#include "link/UpdateStatus.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tidewell {

class TApiClient;
struct TCredentials;

// The driver between the main form and one controller, and the service form of the link. Order of calls:
// FormCreate, then init, then startLog; FOnCycleDone is fired for each whole poll cycle. LblNabto, LedNabto
// and lblConnectedUser are shown in the main form's status bar.
class TNabtoDevice : public TForm {
  public:
    explicit TNabtoDevice(const TDeviceNeeds& needs);
    ~TNabtoDevice() override;

    // Reads language texts and configuration. Throws EConvertError for a boolean or an interval that is none;
    // the settings then keep their defaults, and all else is in place.
    void FormCreate(const TIniFile& language);

    // Takes the device (an empty id keeps the one in force) and opens the session if none stands. 0: go on,
    // even if the library failed, which the first ping then shows; -2 not logged in; -3 refused; 1030 a
    // device that is not local in an offline session; -4 another device than that of an action which has it
    // for itself. The event log says why not.
    int init(const std::string& deviceid, TApiClient& apiClient);
    // The same without a line, for who is not signed in yet.
    int Link(const std::string& deviceid, TApiClient& apiClient);
    // Key Enabled, read afresh. Throws EConvertError.
    bool isEnabled() const;
    void startLog(); // nothing before a successful init
    void stopLog() { Cycle.stopLog(); }
    void ResetLogVariables() { Cycle.ResetLogVariables(); }
    // Takes the poll questions of the profile.
    void SetNabtoQuestion(const std::filesystem::path& path);
    // Part of the contract, like GetDataList and TryPing: nothing here calls it.
    std::string Showquestions() const; // name=value, each ended by CR LF

    // Raw replies. CMD 3 reads a setpoint, 4 a datapoint, any other nothing; obj above 10 counts as 0.
    std::string ReadValue(int CMD, int address, int obj);
    // Writes to the device of that action, which must have one.
    std::string SendValue(const TDeviceUse::TAction& action, int value, int address, int obj);
    std::string GetDataList(const std::string& s);
    std::int32_t GetResponsstatus(const std::string& s);
    bool TryPing();
    void GetLocalDevices(TComboBox& sender);
    void SaveSetDatapointstringToStringlist();
    // Reads the device's error log and has it shown.
    void ButErorlogClick();
    // Asks for a package and updates the device from it.
    void BtnUpdateClick();
    const std::string& NabtoResultstring() const { return Cycle.NabtoResultstring; }

    TEvent<> FOnCycleDone; // a whole cycle stands in NabtoResultstring
    TEvent<> OnSetup;      // the user wants another device
    // The error log was read: its words, and a remark to be shown below them, if there is one.
    TEvent<const std::string&, const std::string&> OnErrorlog;
    std::string device; // 12-digit id, for a remote device with "." and Domain
    std::string name;
    std::string Domain;
    std::string LastUser, LastPW;
    bool enabled = false;
    bool initialized = false;     // a session stands
    bool IsLocalDevice = false;   // the id is in the list of local devices; set before init
    bool ShowButtonDevid = false; // the user chose the device in the setup dialog, and may choose another
    bool EnableContineousUpdate = false;
    bool Enable_debugShowExtendedVersionInfo = false;

    const TDeviceServices Services; // which the tasks below share

    // On the main form.
    TLabel LblNabto{Services.MainForm, "LblNabto"};
    TALed LedNabto{Services.MainForm, "LedNabto"};
    TLabel lblConnectedUser{Services.MainForm, "lblConnectedUser"};
    TNotice ErrorLogNotice{Services.MainForm, "ErrorLogNotice"}; // of the error log that was asked for last

    TButton btnPing{*this, "btnPing", "Ping"};
    TButton BtnUpdate{*this, "BtnUpdate", "Update Firmware"};
    TButton ButErorlog{*this, "ButErorlog", "Read Errorlog"};
    TButton ButAccount{*this, "ButAccount", "Account specific"};
    TButton butChangeDeviceID{*this, "butChangeDeviceID", "Change DeviceID"};
    TPanel Paneldebug{*this, "Paneldebug"};
    TMemo memoDebug{*this, "memoDebug"};
    TButton btnClearLog{*this, "btnClearLog", "Clear Log"};
    TButton btnShowReadList{*this, "btnShowReadList", "Show Read List"};
    TButton ButContUpdate{*this, "ButContUpdate", "Cont. Update"};
    TEdit streamDelayEdit{*this, "streamDelayEdit"};
    TLabel LabStreamDelay{*this, "LabStreamDelay", "Stream Write Delay"};
    TLabel LabStreamDelayUnit{*this, "LabStreamDelayUnit", "ms"};
    TStatusBar StatusBar{*this, "StatusBar", {{200, {}, false}, {340, {}, false}, {200, {}, false}}};

    std::filesystem::path CurrentUpdateSWFile; // the package in force
    TDeviceUse Use;
    TDownloadTexts DownloadTexts;

    TIdentityPanel Identity;
    TReadBackSnapshot Snapshot;
    TPollCycle Cycle;
    TDeviceInForce InForce;
    TUpdateStatus UpdateStatus;
    TUpdateRun UpdateRun;
    TFileUpload Upload;
    TFirmwareUpdate Update;
    TContinuousUpdate ContinuousUpdate;
    TEepromReader Eeprom;
    TFlashDatalog FlashDatalog;
    TServiceTools ServiceTools;

  private:
    void InitControls();
    void FormShow();
    void FormCloseQuery(bool& mayClose);
    void FormClose();
    void btnPingClick();
    void btnShowReadListClick();
    void butChangeDeviceIDClick();
    void ReadLanguage(const TIniFile& language);
    void ReadConfiguration();
    void SaveDevice();
    int GetCredentials(TApiClient& apiClient, TCredentials& credentials);
    int NoLink(int result, const std::string& cause);
    void CycleDone();
    void ShowProgress();

    TLinkTexts LinkTexts;
    std::string NoLinkCause; // of the last refusal
    TSessionKeeper SessionKeeper;
};

} // namespace tidewell
