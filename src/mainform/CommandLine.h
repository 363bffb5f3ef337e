#pragma once

#include "core/ports/IDialogs.h"

#include <string>
#include <vector>

namespace tidewell {

struct TCommandLineParameters {
    std::string devid;
    std::string jwt;
    std::string UserNamePW; // name, ";", password
    std::string debugShowEEPanel;
    std::string debugShowFlashPanel;
    std::string debugContUpdate;
    std::string debugShowExtendedVersionInfo;
};

// What an option does at once, besides being kept.
class ICommandLineActions {
  public:
    virtual ~ICommandLineActions() = default;
    virtual void InitDevice(const std::string& devid) = 0;
    virtual void SetAccessToken(const std::string& jwt) = 0;
    virtual void ShowEEpromPanel() = 0;
    virtual void ShowFlashPanel() = 0;
    virtual void EnableContineousUpdate() = 0;
    virtual void EnableExtendedVersionInfo() = 0;
};

// Walks the arguments and acts on each option in turn; 0 when all is well, -1 at the first that is wrong,
// which is shown. What is no option is passed over.
int EvalSystemParameters(const std::vector<std::string>& arguments, TCommandLineParameters& parameters,
                         ICommandLineActions& actions, IDialogs& dialogs);

} // namespace tidewell
