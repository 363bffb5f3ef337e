#include "mainform/CommandLine.h"

#include "core/DeviceId.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace tidewell {

namespace {

class TEvaluation {
  public:
    TEvaluation(TCommandLineParameters& parameters, ICommandLineActions& actions, IDialogs& dialogs)
        : Parameters(parameters), Actions(actions), Dialogs(dialogs) {}

    using TAction = bool (TEvaluation::*)(const std::optional<std::string>& value);

    bool DeviceId(const std::optional<std::string>& value) {
        if (!value)
            return Fail("A value for the parameter -devid was not supplied");
        const std::string devid = DigitsOnly(*value);
        if (devid.size() != DeviceIdLength)
            return Fail("The value for the -devid parameter must be exactly 12 digits.");
        Parameters.devid = devid;
        Actions.InitDevice(devid);
        return true;
    }

    bool Token(const std::optional<std::string>& value) {
        if (!value || Trim(*value).empty())
            return Fail("A value for the parameter -jwt was not supplied");
        Parameters.jwt = *value;
        Actions.SetAccessToken(*value);
        return true;
    }

    bool UserNamePassword(const std::optional<std::string>& value) {
        Parameters.UserNamePW = value.value_or("");
        return true;
    }

    bool Language(const std::optional<std::string>&) { return true; }

    bool EEpromPanel(const std::optional<std::string>& value) {
        return Debug(Parameters.debugShowEEPanel, value, &ICommandLineActions::ShowEEpromPanel);
    }
    bool FlashPanel(const std::optional<std::string>& value) {
        return Debug(Parameters.debugShowFlashPanel, value, &ICommandLineActions::ShowFlashPanel);
    }
    bool ContineousUpdate(const std::optional<std::string>& value) {
        return Debug(Parameters.debugContUpdate, value, &ICommandLineActions::EnableContineousUpdate);
    }
    bool ExtendedVersionInfo(const std::optional<std::string>& value) {
        return Debug(Parameters.debugShowExtendedVersionInfo, value,
                     &ICommandLineActions::EnableExtendedVersionInfo);
    }

  private:
    bool Fail(const std::string& text) {
        Dialogs.ShowMessage(text);
        return false;
    }
    bool Debug(std::string& kept, const std::optional<std::string>& value,
               void (ICommandLineActions::*action)()) {
        kept = value.value_or("");
        if (kept == "true")
            (Actions.*action)();
        return true;
    }

    TCommandLineParameters& Parameters;
    ICommandLineActions& Actions;
    IDialogs& Dialogs;
};

struct TOption {
    std::string_view Name;
    TEvaluation::TAction Action;
    std::string_view Value;            // as --help shows it
    TOwnText TCommandLineTexts::*Help; // null: not shown
};

constexpr std::string_view userNamePassword = "-LoginUserPW";
constexpr std::array options{
    TOption{"-devid", &TEvaluation::DeviceId, "410000000001", &TCommandLineTexts::devid},
    TOption{userNamePassword, &TEvaluation::UserNamePassword, "\"name;password\"",
            &TCommandLineTexts::LoginUserPW},
    TOption{"-jwt", &TEvaluation::Token, "token", &TCommandLineTexts::jwt},
    TOption{"-debugShowFlashPanel", &TEvaluation::FlashPanel, "true",
            &TCommandLineTexts::debugShowFlashPanel},
    TOption{"-debugShowEEPanel", &TEvaluation::EEpromPanel, "true", &TCommandLineTexts::debugShowEEPanel},
    TOption{"-debugContUpdate", &TEvaluation::ContineousUpdate, "true", &TCommandLineTexts::debugContUpdate},
    TOption{"-debugShowExtendedVersionInfo", &TEvaluation::ExtendedVersionInfo, "true",
            &TCommandLineTexts::debugShowExtendedVersionInfo},
    TOption{"-lang", &TEvaluation::Language, "", nullptr},
};

const TOption* FindOption(std::string_view argument) {
    const auto found = std::ranges::find(options, argument, &TOption::Name);
    return found == options.end() ? nullptr : &*found;
}

std::string HelpText(const TCommandLineTexts& texts) {
    std::string text = texts.Usage + "\n";
    const auto add = [&text](std::string_view option, std::string_view value, const std::string& help) {
        text.append("\n  ").append(option).append(value.empty() ? "" : " ").append(value);
        text.append("\n      ").append(help).append("\n");
    };
    for (const TOption& option : options)
        if (option.Help != nullptr)
            add(option.Name, option.Value, texts.*option.Help);
    add("--help", "", texts.help);
    add("--version", "", texts.version);
    return text;
}

} // namespace

std::optional<std::string> TextAskedFor(const std::vector<std::string>& arguments, const Tsysteminfo& version,
                                        const std::function<TIniFile()>& readLanguage) {
    if (arguments.empty())
        return std::nullopt;
    if (arguments.front() == "--help") {
        TCommandLineTexts texts;
        texts.Read(readLanguage());
        return HelpText(texts);
    }
    if (arguments.front() == "--version")
        return "Tidewell " + version.Text() + "\n";
    return std::nullopt;
}

int EvalSystemParameters(const std::vector<std::string>& arguments, TCommandLineParameters& parameters,
                         ICommandLineActions& actions, IDialogs& dialogs) {
    TEvaluation evaluation(parameters, actions, dialogs);
    const TOption* before = nullptr;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const TOption* const option = FindOption(arguments[i]);
        const bool isValue = std::exchange(before, option) != nullptr;
        if (option == nullptr) {
            if (!isValue && arguments[i].starts_with('-'))
                actions.TellUnknownOption(arguments[i].substr(0, arguments[i].find_first_of("=;")));
            continue;
        }
        std::optional<std::string> value;
        if (i + 1 < arguments.size())
            value = arguments[i + 1];
        if (!(evaluation.*option->Action)(value))
            return -1;
    }
    return 0;
}

void ForgetPassword(std::vector<std::string>& arguments) {
    for (std::size_t i = 1; i < arguments.size(); ++i)
        if (arguments[i - 1] == userNamePassword)
            arguments[i].erase(std::min(arguments[i].find(';'), arguments[i].size()));
}

std::vector<std::string> WithoutLogon(std::vector<std::string> arguments) {
    for (auto at = arguments.begin();
         (at = std::find(at, arguments.end(), userNamePassword)) != arguments.end();)
        at = arguments.erase(at, arguments.end() - at > 1 ? at + 2 : at + 1);
    return arguments;
}

} // namespace tidewell
