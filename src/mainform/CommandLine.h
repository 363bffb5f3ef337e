#pragma once

#include "core/IniFile.h"
#include "core/LanguageTexts.h"
#include "core/Systeminfo.h"
#include "core/ports/IDialogs.h"

#include <functional>
#include <optional>
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

// What --help tells, and the line on an option that is not known.
struct TCommandLineTexts : TOwnTexts {
    TCommandLineTexts() : TOwnTexts("CommandLine") {}
    TOwnText Usage{*this, "Usage", "Usage: tidewell [option value]..."};
    TOwnText devid{*this, "devid", "the 12 digits of a controller; without it the program asks"};
    TOwnText LoginUserPW{*this, "LoginUserPW", "name;password, to sign in without the dialog"};
    TOwnText jwt{*this, "jwt", "a token of the cloud, in place of a sign-in"};
    TOwnText debugShowFlashPanel{*this, "debugShowFlashPanel",
                                 "true shows the reading of flash by address on the service form"};
    TOwnText debugShowEEPanel{*this, "debugShowEEPanel",
                              "true shows the reading of EEPROM by address on the service form"};
    TOwnText debugContUpdate{*this, "debugContUpdate",
                             "true shows the continuous update, a test that updates again and again"};
    TOwnText debugShowExtendedVersionInfo{*this, "debugShowExtendedVersionInfo",
                                          "true shows the request for extended versions"};
    TOwnText help{*this, "help", "as the first argument: shows this and ends"};
    TOwnText version{*this, "version", "as the first argument: shows the version and ends"};
    TOwnText UnknownOption{*this, "UnknownOption", "Unknown option: %1"};
};

// The text to show when the first argument asks for no more than a text; nothing if it does not.
std::optional<std::string> TextAskedFor(const std::vector<std::string>& arguments, const Tsysteminfo& version,
                                        const std::function<TIniFile()>& readLanguage);

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
    // Its name alone: what follows "=" or ";" may be a password.
    virtual void TellUnknownOption(const std::string& name) = 0;
};

// Walks the arguments and acts on each option in turn; 0 when all is well, -1 at the first that is wrong,
// which is shown. What is no option is passed over; if it begins with "-" and is no value, it is told.
int EvalSystemParameters(const std::vector<std::string>& arguments, TCommandLineParameters& parameters,
                         ICommandLineActions& actions, IDialogs& dialogs);

// Empties the password behind each -LoginUserPW; the name stays.
void ForgetPassword(std::vector<std::string>& arguments);

// For a start anew: a name without its password could only be refused.
std::vector<std::string> WithoutLogon(std::vector<std::string> arguments);

} // namespace tidewell
