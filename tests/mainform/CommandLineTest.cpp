#include "mainform/CommandLine.h"

#include "core/DiskFiles.h"
#include "core/KvSupport.h"
#include "core/TextFile.h"
#include "support/ScriptedDialogs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

using testing::ElementsAre;

class TRecordedActions : public ICommandLineActions {
  public:
    void InitDevice(const std::string& devid) override { Calls.push_back("init " + devid); }
    void SetAccessToken(const std::string& jwt) override { Calls.push_back("token " + jwt); }
    void ShowEEpromPanel() override { Calls.emplace_back("eeprom"); }
    void ShowFlashPanel() override { Calls.emplace_back("flash"); }
    void EnableContineousUpdate() override { Calls.emplace_back("continuous"); }
    void EnableExtendedVersionInfo() override { Calls.emplace_back("extended"); }
    void TellUnknownOption(const std::string& name) override { Calls.push_back("unknown " + name); }

    std::vector<std::string> Calls;
};

struct TCommandLine : testing::Test {
    int Evaluate(const std::vector<std::string>& arguments) {
        return EvalSystemParameters(arguments, Parameters, Actions, Dialogs);
    }
    TCommandLineParameters Parameters;
    TRecordedActions Actions;
    TScriptedDialogs Dialogs;
};

TEST_F(TCommandLine, RefusesMissingAndWrongValues) {
    struct TCase {
        std::vector<std::string> Arguments;
        std::string Message;
    };
    const TCase cases[] = {
        {{"-devid"}, "A value for the parameter -devid was not supplied"},
        {{"-devid", "12345678901"}, "The value for the -devid parameter must be exactly 12 digits."},
        {{"-devid", "1234567890123"}, "The value for the -devid parameter must be exactly 12 digits."},
        {{"-devid", ""}, "The value for the -devid parameter must be exactly 12 digits."},
        {{"-jwt"}, "A value for the parameter -jwt was not supplied"},
        {{"-jwt", " \t"}, "A value for the parameter -jwt was not supplied"},
    };
    for (const auto& test : cases) {
        Dialogs.ExpectMessage(test.Message);
        EXPECT_EQ(Evaluate(test.Arguments), -1) << test.Message;
    }
    EXPECT_THAT(Actions.Calls, ElementsAre());
}

TEST_F(TCommandLine, StopsAtTheFirstFailure) {
    Dialogs.ExpectMessage("The value for the -devid parameter must be exactly 12 digits.");
    EXPECT_EQ(Evaluate({"-jwt", "a", "-devid", "1", "-jwt", "b"}), -1);
    EXPECT_THAT(Actions.Calls, ElementsAre("token a"));
}

TEST_F(TCommandLine, CleansTheDeviceIdBeforeItIsMeasured) {
    EXPECT_EQ(Evaluate({"-devid", "x12-456y-890 12"}), 0); // ten digits and two "-"
    EXPECT_EQ(Parameters.devid, "12-456-89012");
    EXPECT_THAT(Actions.Calls, ElementsAre("init 12-456-89012"));
}

TEST_F(TCommandLine, ActsInTheOrderGiven) {
    EXPECT_EQ(Evaluate({"-devid", "410000000001", "-lang", "deutsch", "-jwt", " t ", "-debugShowFlashPanel",
                        "true", "-debugShowEEPanel", "True", "-debugContUpdate", "true",
                        "-debugShowExtendedVersionInfo", "true", "-DEVID", "x", "-LoginUserPW", "me;secret"}),
              0);
    EXPECT_THAT(Actions.Calls, ElementsAre("init 410000000001", "token  t ", "flash", "continuous",
                                           "extended", "unknown -DEVID"));
    EXPECT_EQ(Parameters.jwt, " t ");
    EXPECT_EQ(Parameters.UserNamePW, "me;secret");
    EXPECT_EQ(Parameters.debugShowEEPanel, "True");
}

TEST_F(TCommandLine, TakesSomeOptionsWithoutValue) {
    EXPECT_EQ(Evaluate({}), 0);
    EXPECT_EQ(Evaluate({"-debugContUpdate"}), 0);
    EXPECT_EQ(Evaluate({"-LoginUserPW"}), 0);
    EXPECT_EQ(Parameters.UserNamePW, "");
    EXPECT_THAT(Actions.Calls, ElementsAre());
}

// Their values, which may hold a password, are not.
TEST_F(TCommandLine, TellsOptionsThatItDoesNotKnow) {
    EXPECT_EQ(Evaluate({"stray", "--help", "-lang", "-jp", "-LoginUserPw", "me;secret", "-LoginUserPW=me;s",
                        "-jwt", "-x", "-"}),
              0);
    EXPECT_THAT(Actions.Calls, ElementsAre("unknown --help", "unknown -LoginUserPw", "unknown -LoginUserPW",
                                           "token -x", "unknown -"));
    std::vector<std::string> arguments{"-LoginUserPW", "me;secret;x", "-LoginUserPW", "me", "a;b"};
    ForgetPassword(arguments);
    EXPECT_THAT(arguments, ElementsAre("-LoginUserPW", "me", "-LoginUserPW", "me", "a;b"));
}

TEST(CommandLineHelp, NamesTheOptionsOfTheGuide) {
    const auto text = [](const std::vector<std::string>& arguments) {
        return TextAskedFor(arguments, {1, 2, 3, 4}, [] { return TIniFile(""); });
    };
    const std::string help = text({"--help", "-devid"}).value_or("");
    std::size_t options = 0;
    for (const std::string& line :
         ReadLines(TDiskFiles(), std::filesystem::path(TIDEWELL_SOURCE_DIR) / "README.md")) {
        const auto pieces = SplitStrictly(line, '`');
        for (std::size_t i = 1; line.starts_with("| `-") && i < pieces.size(); i += 2)
            if (pieces[i].starts_with('-')) {
                EXPECT_THAT(help, testing::HasSubstr("\n  " + std::string(pieces[i])));
                ++options;
            }
    }
    EXPECT_EQ(options, 9u); // with --help and --version
    EXPECT_EQ(text({"--version"}), "Tidewell 1.2.3 Build: 4\n");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{}, {"-devid", "--help"}, {"--Help"}})
        EXPECT_EQ(text(arguments), std::nullopt);
}

} // namespace
} // namespace tidewell::test
