#pragma once

#include "cloud/ApiClient.h"
#include "core/Configuration.h"
#include "core/IniFile.h"
#include "core/LanguageTexts.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "core/controls/ExclusiveUse.h"
#include "core/controls/Notice.h"
#include "graph/GraphPage.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"
#include "mainform/FormMain.h"
#include "mainform/Ports.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "setpoints/SetpointPage.h"

#include <filesystem>
#include <string>

namespace tidewell {

// %1 is the file, %2 the reason.
struct TProfileTexts : TOwnTexts {
    TProfileTexts() : TOwnTexts("ProfileOpening") {}
    TOwnText Unreadable{*this, "Unreadable", "%1 could not be read, so nothing of it is shown: %2"};
    TOwnText NoProfile{*this, "NoProfile", "%1 holds nothing of a profile, so nothing of it is shown."};
};

// Chooses the profile, by the user or by the model that the device reports, and loads it into all that show
// it.
class TProfileOpening : public TControls {
  public:
    struct TNeeds {
        TFormMain& Main;
        TCurrentInifilesPath& Paths;
        TModbusPanel& Panel;
        TProfile& Profile;
        TSetpointPage& SetpointPage;
        TGraphPage& GraphPage;
        ILogControl& Log;
        TUNabto& Nabto;
        TNabtoDevice& Device;
        TApiClient& ApiClient;
        const TAutoLoadProfile& AutoLoad;
        TExclusiveUse& Opening; // of a file or a profile
    };

    TProfileOpening(const TPorts& ports, const TNeeds& needs)
        : TControls(needs.Main), Ports(ports), Needs(needs) {}

    void TakeTexts(const TIniFile& language);
    TProfileTexts Texts;
    TNotice NoticeProfile{*this, "NoticeProfile"}; // what is wrong with the file of the open profile

    TEvent<> OnOtherProfile; // another file than before is being opened

    void OpenProfile2Click();
    void OpenProfile(const std::filesystem::path& path);
    void OpenAndReload(const std::filesystem::path& path);
    // What is wrong with the file of the open profile, if anything: in the event log and on the form.
    void TellFault();
    // Asks for a file. A cancel leaves the program with no profile.
    void OpenFileProfile();
    // After OpenProfile: rebuilds devices, tree, poll questions, settings and graph from plsfile.
    void ReloadDeviceData();
    // Pings the device, and opens the profile of its model as the configuration tells.
    void TestProfileNabto();

  private:
    // Two pings when the first is answered, else three; the last one decides.
    bool DeviceAnswers();
    // The profile that belongs to what the device reports; empty if it is not known.
    std::filesystem::path ProfileOfDevice() const;
    void AskForProfile(const std::string& message);

    const TPorts& Ports;
    const TNeeds Needs;
    std::string MessageStopLog;           // question before a profile is opened
    std::string DialogOpenProfileCaption; // title of the file dialog
    TIniSection TestfileComport;          // messages of the language file, some of them by position
};

} // namespace tidewell
