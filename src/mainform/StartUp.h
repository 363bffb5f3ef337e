#pragma once

#include "core/Configuration.h"
#include "mainform/Ports.h"

#include <memory>

namespace tidewell {

class TDeviceActions;
class TFormMain;
class TGraphPage;
class TLiveLog;
class TModbusPanel;
class TNabtoDevice;
class TNabtoUserFolder;
class TProfileOpening;
class TSetpointPage;
class TSignIn;
struct TCommandLineParameters;
struct TCurrentInifilesPath;
struct TEventLogTexts;

// What the main form does by itself at the start: readies the rooms, then signs in, links to the device and
// opens its profile.
class TStartUp {
  public:
    struct TNeeds {
        const TStartOptions& Options;
        const TCurrentInifilesPath& Paths;
        TConfiguration& Configuration; // read here
        const TCommandLineParameters& Parameters;
        const TEventLogTexts& Texts;
        TFormMain& FormMain;
        TSignIn& SignIn;
        TNabtoDevice& Device;
        TNabtoUserFolder& UserFolder;
        TModbusPanel& Panel;
        TLiveLog& LiveLog;
        TGraphPage& GraphPage;
        TSetpointPage& SetpointPage;
        TProfileOpening& ProfileOpening;
        TDeviceActions& DeviceActions;
    };
    TStartUp(const TPorts& ports, const TNeeds& needs);

    // First stage. Throws EConvertError for a key of the system file that is no boolean.
    void FormCreate();
    // The message loop begins with the first showing.
    void FormShow();
    // Second stage, 200 ms after the message loop has started.
    void InitTimerTimer();
    void DoPortScanMode();

    std::unique_ptr<ITimer> InitTimer; // 200 ms, once

  private:
    void ReadSystemFile();
    void CreateDirectories();
    // Sign-in and profile, with the link enabled. False when the program is about to end.
    bool StartLink();

    const TPorts& Ports;
    const TNeeds Needs;
};

} // namespace tidewell
