#pragma once

#include "cloud/ApiClient.h"
#include "cloud/NabtoLogOn.h"
#include "core/Configuration.h"
#include "core/Extensions.h"
#include "core/controls/ExclusiveUse.h"
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
#include "mainform/CloseDown.h"
#include "mainform/CommandLine.h"
#include "mainform/ContextHelp.h"
#include "mainform/DeviceActions.h"
#include "mainform/DevicePolling.h"
#include "mainform/FlashDatalogOpening.h"
#include "mainform/FormMain.h"
#include "mainform/Languagedialog.h"
#include "mainform/NabtoUserFolder.h"
#include "mainform/Ports.h"
#include "mainform/ProfileOpening.h"
#include "mainform/SignIn.h"
#include "mainform/Splashscreen.h"
#include "mainform/StartUp.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "setpoints/Finputdialog.h"
#include "setpoints/LoadSetpointToDevice.h"
#include "setpoints/ReadBack.h"
#include "setpoints/SetpointFiles.h"
#include "setpoints/SetpointPage.h"

#include <memory>
#include <vector>

namespace tidewell {

// The whole program without its windows: owner of all its parts, which stand in the order of their making.
// Each holds references to what it needs of those before it; what they tell one another upward is wired here.
class TProgram {
  public:
    TProgram(const TPorts& ports, TStartOptions options);

    // The entry sequence up to the message loop. False when the program ends before it starts one.
    bool Start();
    // After the message loop: closes the main form in the ordinary way if it is still open. When something
    // cannot be saved, the user may save the log elsewhere.
    void Finish();

    const TPorts Ports;
    TStartOptions Options;

    TSplashscreen Splashscreen;
    TCurrentInifilesPath& Paths; // of the splash screen
    TExtensions Extensions;      // read once the system file is found
    TConfiguration Configuration;
    TSetpointTexts SetpointTexts;
    TEventLogTexts EventLogTexts;
    TCommandLineParameters _commandLineParameters;

    TFormMain FormMain;
    TExclusiveUse Opening; // of a file or a profile
    TModbusPanel ModbusPanel;
    TProfile Profile;
    TContextHelp ContextHelp;
    TUNabto Nabto; // the one and only; at its end, of which it may show messages, the main form is hidden
    TApiClient ApiClient;
    TNabtoDevice NabtoDevice;
    TDevicePolling Polling;

    TLogBuffers LogBuffers;
    TGraphPage GraphPage;
    TLiveLog LiveLog;
    TDatalogReader DatalogReader;
    TSdDatalogReader SdDatalogReader;
    TCsvExport CsvExport;

    TInputDialog InputDialog;
    TSetpointPage SetpointPage;
    TReadBack ReadBack;
    TLoadSetpoints LoadSetpoints;
    TSetpointFiles SetpointFiles;

    TErrorLog ErrorLog;
    TProfileOpening ProfileOpening;
    TFlashDatalogOpening FlashDatalogOpening;
    TNabtoLogOn NabtoLogOn;
    TSignIn SignIn;
    Tlanguagedialog languagedialog;
    TSetupForm SetupForm;
    TNabtoUserFolder UserFolder;
    TDeviceActions DeviceActions;
    TStartUp StartUp;
    TCloseDown CloseDown;

  private:
    TDatalogNeeds DatalogNeeds();
    void ConnectMainForm();
    void ConnectDevice();
    void ConnectUpdate();
    void CreateForms();
    void TakeTexts();
    // Those of another device, or another profile, must not stand beside what is shown now.
    void ForgetValues();
    void ShowReadBack();
    void OpenRecovered(const TRecoveredLog& log);

    std::vector<TConnection> Connections;
};

// Wires the program to the outside world.
std::unique_ptr<TProgram> Build(const TPorts& ports, const TStartOptions& options);

} // namespace tidewell
