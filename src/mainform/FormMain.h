#pragma once

#include "core/Configuration.h"
#include "core/Extensions.h"
#include "core/controls/ControlLock.h"
#include "core/controls/Notice.h"
#include "errorlog/ErrorLog.h"
#include "graph/GraphPage.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"
#include "link/SetupForm.h"
#include "logging/CsvExport.h"
#include "logging/DatalogReader.h"
#include "logging/LiveLog.h"
#include "logging/LogBuffers.h"
#include "logging/SdDatalogReader.h"
#include "mainform/CommandLine.h"
#include "mainform/ContextHelp.h"
#include "mainform/FlashView.h"
#include "mainform/FormMainControls.h"
#include "mainform/FormMainHosts.h"
#include "mainform/Languagedialog.h"
#include "mainform/LinkedDevice.h"
#include "mainform/Ports.h"
#include "mainform/ProfileOpening.h"
#include "mainform/SignIn.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "setpoints/InputDialog.h"
#include "setpoints/LoadSetpoints.h"
#include "setpoints/ReadBack.h"
#include "setpoints/SetpointFiles.h"
#include "setpoints/SetpointPage.h"
#include "setpoints/SetpointTexts.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tidewell {

// The main form: owner of the open profile, the log, the graph and the cloud client, and the one that passes
// between them. What each of them does is told by its own class.
class TFormMain : public TFormMainControls {
  public:
    // The other forms; they may be made after this one.
    struct TForms {
        TNabtoDevice& NabtoDevice;
        TNabtoLogOn& NabtoLogOn;
        Tlanguagedialog& languagedialog;
        TSetupForm& SetupForm;
        TInputDialog& InputDialog;
        TLoadSetpoints& LoadSetpoints;
    };

    TFormMain(const TPorts& ports, TStartOptions& options, TCurrentInifilesPath& paths,
              const TExtensions& extensions, TUNabto& nabto, const TForms& forms);

    // First stage of the start. Throws EConvertError for a key of the system file that is no boolean.
    void FormCreate(const TIniFile& language);
    // Second stage, 200 ms after the message loop has started.
    void InitTimerTimer();
    void DoPortScanMode();

    void StartLog(bool questionEnable, bool clearData) { LiveLog.StartLog(questionEnable, clearData); }
    void StopLog() { LiveLog.StopLog(); }
    void UpdateTimerTimer() { LiveLog.UpdateTimerTimer(); }
    void SaveDataLogFile(const std::filesystem::path& path) { LiveLog.SaveDataLogFile(path); }

    void OpenProfile2Click();
    void Setup1Click();
    void Close1Click() { Close(); }
    void Changelanguage1Click();
    void Nabtodebug1Click();
    void but_swupdateClick();
    void but_errorlogClick();
    void FlasDatalog1Click();
    void ShowInFront() { Ports.Dialogs.Show(*this); }
    void NabtoDeleteUsersTimer();
    void DeleteNabtoUserFolder();
    void TheTabChange();
    void FormResize();
    void FormKeyDown(EKey key, bool& handled);
    // Asks before a firmware update is cut off by the close.
    void FormCloseQuery(bool& mayClose);
    void FormClose();
    // The view tells the sizes, in pixels, that the setpoint page has got.
    void SetpointPageResized(int gridClientWidth, int groupClientHeight);

    // The lines of our rooms, shown above the status bar in this order.
    std::vector<TNotice*> Notices() {
        return {&ProfileOpening.NoticeProfile, &LiveLog.NoticeNoValues, &LiveLog.LogNotice,
                &Forms.NabtoDevice.ErrorLogNotice};
    }

    TApiClient& Client() { return SignIn.Client(); } // from FormCreate on
    TNabtoDevice& Device() { return Forms.NabtoDevice; }

    TConfiguration Configuration;
    struct {
        std::string MessageStopLog; // question before a profile is opened
        std::string EditNotAllowed; // shown nowhere
        std::string ErrorMissingAdobe;
    } Texts;
    TSetpointTexts SetpointTexts;
    TEventLogTexts EventLogTexts;
    TCommandLineParameters _commandLineParameters;
    bool ShowButtonDevid = false;
    bool AskBeforeClose = true; // false when nobody is there to answer
    bool IsOpen() const override { return Visible() && !Ports.Application.Terminated(); }

    TFormMainHosts Hosts{*this};

  private:
    const TPorts& Ports;
    TStartOptions& Options;
    TForms Forms;

  public:
    TCurrentInifilesPath& FCurrentInifilesPath;
    const TExtensions& Extensions;
    TSignIn SignIn;
    TLinkedDevice LinkedDevice;
    TModbusPanel ModbusPanel;
    TProfile Profile;
    TContextHelp ContextHelp;
    TSetpointPage SetpointPage;
    TLogBuffers LogBuffers;
    TGraphPage GraphPage;
    TExclusiveUse Opening; // of a file or a profile
    TLiveLog LiveLog;
    TDatalogReader DatalogReader;
    TSdDatalogReader SdDatalogReader;
    TCsvExport CsvExport;
    TProfileOpening ProfileOpening;
    TErrorLog ErrorLog;
    TFlashView FlashView;
    TReadBack ReadBack;
    TSetpointFiles SetpointFiles;

    std::unique_ptr<ITimer> InitTimer;        // 200 ms, once
    std::unique_ptr<ITimer> NabtoDeleteUsers; // 30000 ms, once, after the setup dialog
    std::unique_ptr<ITimer> CloseAgain;       // 60000 ms, once, after a close that could not save

  private:
    void ReadSystemFile();
    void ConnectControls();
    void ConnectUpdate();
    void ConnectService();
    // While a firmware update runs, all but the way to its form and the close.
    void LockForUpdate(bool running);
    void ShowUpdate();
    TDatalogParts DatalogParts();
    void ShowReadBack();
    void ForgetValues();
    void CreateDirectories();
    // Sign-in and profile, with the link enabled. False when the program is about to end.
    bool StartLink();
    // What is kept at the close, in order. Each may throw.
    std::vector<std::function<void()>> ClosingSaves();

    TConnection ReadBackChanged;
    TControlLock UpdateLock;
    std::vector<TConnection> FollowUpdate;
    int GridClientWidth = 0;
    int GroupClientHeight = 0;
};

} // namespace tidewell
