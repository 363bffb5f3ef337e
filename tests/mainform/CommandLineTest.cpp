#include "mainform/CommandLine.h"

#include "rig/Test.h"

namespace tidewell::test {
namespace {

class TRecordedActions : public ICommandLineActions {
  public:
    void InitDevice(const std::string& devid) override { Calls += "init " + devid + ", "; }
    void SetAccessToken(const std::string& jwt) override { Calls += "token " + jwt + ", "; }
    void ShowEEpromPanel() override { Calls += "eeprom, "; }
    void ShowFlashPanel() override { Calls += "flash, "; }
    void EnableContineousUpdate() override { Calls += "continuous, "; }
    void EnableExtendedVersionInfo() override { Calls += "extended, "; }
    void TellUnknownOption(const std::string& name) override { Calls += "unknown " + name + ", "; }

    std::string Calls;
};

// Arguments between "|"; the result, and what was done for them, shown and kept.
std::string Evaluated(std::string_view input) {
    TCommandLineParameters kept;
    TRecordedActions actions;
    TFixedDialogs dialogs;
    const auto pieces = SplitStrictly(input, '|');
    const std::vector<std::string> arguments(pieces.begin(), pieces.end());
    const int result = EvalSystemParameters(arguments, kept, actions, dialogs);
    return std::to_string(result) + ", " + actions.Calls + Join(dialogs.Boxes, ", ") + kept.devid + "/" +
           kept.jwt + "/" + kept.UserNamePW + "/" + kept.debugShowEEPanel;
}

TEST(CommandLine, ActsInTheOrderGivenUpToTheFirstFailure) {
    const std::string digits = "The value for the -devid parameter must be exactly 12 digits.";
    // The device id is cleaned before it is measured: ten digits and two "-". Of an option that is not known
    // the value, which may hold a password, is not told.
    ExpectRows(
        Evaluated,
        {"-devid|1234567890123 -> -1, " + digits + "///",
         "-jwt| \t -> -1, A value for the parameter -jwt was not supplied///",
         "-jwt|a|-devid||-jwt|b -> -1, token a, " + digits + "/a//", " -> 0, ///", "-LoginUserPW -> 0, ///",
         "-debugContUpdate -> 0, ///", "-devid|x12-456y-890 12 -> 0, init 12-456-89012, 12-456-89012///",
         "-devid|410000000001|-lang|deutsch|-jwt| t |-LoginUserPW|me;secret -> 0, init 410000000001, token "
         " t , 410000000001/ t /me;secret/",
         "-debugShowFlashPanel|true|-debugShowEEPanel|True|-debugContUpdate|true|"
         "-debugShowExtendedVersionInfo|true -> 0, flash, continuous, extended, ///True",
         "-debugShowEEPanel|true -> 0, eeprom, ///true",
         "stray|--help|-lang|-jp|-LoginUserPw|me;secret|-LoginUserPW=me;s|-jwt|-x|-|-DEVID -> 0, unknown "
         "--help, unknown -LoginUserPw, unknown -LoginUserPW, token -x, unknown -, unknown -DEVID, /-x//"});
    std::vector<std::string> arguments{"-LoginUserPW", "me;secret;x", "-LoginUserPW",
                                       "me",           "a;b",         "-LoginUserPW"};
    ForgetPassword(arguments);
    EXPECT_EQ(Join(arguments, " "), "-LoginUserPW me -LoginUserPW me a;b -LoginUserPW");
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
