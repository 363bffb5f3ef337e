#pragma once

#include "core/controls/ExclusiveUse.h"
#include "core/ports/IDialogs.h"

#include <filesystem>
#include <string>

namespace tidewell {

class TApiClient;
class TErrorLog;
class TFlashDatalogOpening;
class TFormMain;
class TLiveLog;
class TNabtoDevice;
class TNabtoUserFolder;
class TSetupForm;

// The ways from the main form to the device: its dialogs, and what is read from it and shown on the main
// form.
class TDeviceActions {
  public:
    struct TNeeds {
        IDialogs& Dialogs;
        TFormMain& FormMain;
        TNabtoDevice& Device;
        TSetupForm& SetupForm;
        const TApiClient& ApiClient;
        TLiveLog& LiveLog;
        TErrorLog& ErrorLog;
        TFlashDatalogOpening& FlashDatalogOpening;
        TNabtoUserFolder& UserFolder;
        TExclusiveUse& Opening; // of a file or a profile
    };
    explicit TDeviceActions(const TNeeds& needs) : Needs(needs) {}

    void Setup1Click();
    void Nabtodebug1Click();
    void but_swupdateClick();
    void but_errorlogClick();
    void FlasDatalog1Click();
    // Those that the service form begins, too.
    void StopRunningLog(); // nothing when none runs
    void ShowFlashDatalog(const std::filesystem::path& profile, const std::filesystem::path& file);
    void ShowErrorlog(const std::string& wordList, const std::string& remark);

  private:
    const TNeeds Needs;
};

} // namespace tidewell
