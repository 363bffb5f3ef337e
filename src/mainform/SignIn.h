#pragma once

#include "cloud/ApiClient.h"
#include "cloud/NabtoLogOn.h"
#include "core/LanguageTexts.h"
#include "core/Paths.h"
#include "link/NabtoDevice.h"
#include "mainform/CommandLine.h"
#include "mainform/FormMain.h"
#include "mainform/Ports.h"

#include <memory>
#include <string>

namespace tidewell {

// The user's account in the cloud: its client, the way in by the command line or the logon, and the
// keep-alive.
class TSignIn : private ICommandLineActions {
  public:
    struct TNeeds {
        TFormMain& Main;
        const TCurrentInifilesPath& Paths;
        TStartOptions& Options;
        TCommandLineParameters& Parameters;
        const TEventLogTexts& Texts;
        TApiClient& ApiClient;
        TNabtoLogOn& LogOn;
        TNabtoDevice& Device;
    };

    TSignIn(const TPorts& ports, TNeeds needs);

    // Brings the client to the service that the system file names.
    void MakeClient();
    // By the command line or by the logon. False when the program has to end. No password is left afterwards.
    bool Run();
    void ForgetPasswords();

    std::unique_ptr<ITimer> KeepAliveTimer; // 300000 ms
    TCommandLineTexts Texts;

  private:
    void KeepAliveTimerTimer();
    void InitDevice(const std::string& devid) override;
    void SetAccessToken(const std::string& jwt) override;
    void ShowEEpromPanel() override;
    void ShowFlashPanel() override;
    void EnableContineousUpdate() override;
    void EnableExtendedVersionInfo() override;
    void TellUnknownOption(const std::string& name) override;

    const TPorts& Ports;
    const TNeeds Needs;
    std::unique_ptr<IHttp> Http;
};

} // namespace tidewell
