#include "mainform/CommandLine.h"

#include "core/KvSupport.h"
#include "core/Numbers.h"

#include <optional>
#include <unordered_map>

namespace tidewell {

namespace {

constexpr std::size_t deviceIdLength = 12;

class TEvaluation {
  public:
    TEvaluation(TCommandLineParameters& parameters, ICommandLineActions& actions, IDialogs& dialogs)
        : Parameters(parameters), Actions(actions), Dialogs(dialogs) {}

    using TOption = bool (TEvaluation::*)(const std::optional<std::string>& value);

    static TOption Find(const std::string& argument) {
        static const std::unordered_map<std::string, TOption> options{
            {"-devid", &TEvaluation::DeviceId},
            {"-jwt", &TEvaluation::Token},
            {"-LoginUserPW", &TEvaluation::UserNamePassword},
            {"-debugShowEEPanel", &TEvaluation::EEpromPanel},
            {"-debugShowFlashPanel", &TEvaluation::FlashPanel},
            {"-debugContUpdate", &TEvaluation::ContineousUpdate},
            {"-debugShowExtendedVersionInfo", &TEvaluation::ExtendedVersionInfo},
            {"-lang", &TEvaluation::Language},
        };
        const auto found = options.find(argument);
        return found == options.end() ? nullptr : found->second;
    }

  private:
    bool Fail(const std::string& text) {
        Dialogs.ShowMessage(text);
        return false;
    }

    bool DeviceId(const std::optional<std::string>& value) {
        if (!value)
            return Fail("A value for the parameter -devid was not supplied");
        const std::string devid = DigitsOnly(*value);
        if (devid.size() != deviceIdLength)
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

    bool Debug(std::string& kept, const std::optional<std::string>& value,
               void (ICommandLineActions::*action)()) {
        kept = value.value_or("");
        if (kept == "true")
            (Actions.*action)();
        return true;
    }
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

    TCommandLineParameters& Parameters;
    ICommandLineActions& Actions;
    IDialogs& Dialogs;
};

} // namespace

int EvalSystemParameters(const std::vector<std::string>& arguments, TCommandLineParameters& parameters,
                         ICommandLineActions& actions, IDialogs& dialogs) {
    TEvaluation evaluation(parameters, actions, dialogs);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto option = TEvaluation::Find(arguments[i]);
        if (option == nullptr)
            continue;
        std::optional<std::string> value;
        if (i + 1 < arguments.size())
            value = arguments[i + 1];
        if (!(evaluation.*option)(value))
            return -1;
    }
    return 0;
}

} // namespace tidewell
