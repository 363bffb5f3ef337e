#include "core/Configuration.h"

#include "core/DiskFiles.h"
#include "core/Errors.h"
#include "core/Extensions.h"
#include "core/LanguageTexts.h"
#include "core/Table.h"

#include <gmock/gmock.h>

namespace tidewell {
namespace {

// All that was read, in the order of the sections, then what was replaced.
std::string Read(std::string_view rows) {
    const auto read = ReadConfiguration(TIniFile("[CommInitModbus]\nDebugEnable=0\n" + std::string(rows)));
    std::string text;
    for (const int value :
         {+read.PortScan.doPortScan, +read.AutoLoadProfile.doAutoloadProfile, +read.ErrorLog.doGetErrorlog,
          +read.ErrorLog.doIncludeValuesInFile, +read.LogAutoStart.doLogAutoStart, read.UpdateTimer.Time,
          read.UpdateTimer.XAxisJump, read.UpdateTimer.DatalogCount})
        text += std::to_string(value) + " ";
    for (const TReplacedNumber& number : read.Replaced)
        text += LineOn(number, {}) + ". ";
    return text;
}

TEST(Configuration, DefaultsAndManners) {
    for (const char* bytes : {"", "[CommInitModbus]\nDebugEnable=\n", "[CommInitModbus]\nDebugEnable=ja\n"})
        EXPECT_THROW(ReadConfiguration(TIniFile(bytes)), EConvertError) << bytes;
    test::ExpectRows(
        Read,
        {"[UpdateTimer]\nTime=0\nXAxisJump=x\nDatalogCount=-1\n -> 0 0 1 0 0 1000 1000 50000 [UpdateTimer] "
         "Time: '0' is "
         "not possible, 1000 is used. [UpdateTimer] XAxisJump: 'x' is not possible, 1000 is used. "
         "[UpdateTimer] "
         "DatalogCount: '-1' is not possible, 50000 is used. ",
         "[UpdateTimer]\nXAxisJump=0\n -> 0 0 1 0 0 1000 1000 50000 [UpdateTimer] XAxisJump: '0' is not "
         "possible, 1000 "
         "is used. ",
         " -> 0 0 1 0 0 1000 1000 50000 ",
         "[UpdateTimer]\nTime=1\nXAxisJump=1\nDatalogCount=0\n -> 0 0 1 0 0 1 1 0 ",
         "[UpdateTimer]\nTime=2147483647\nXAxisJump=\n -> 0 0 1 0 0 2147483647 1000 50000 ",
         "[Port]\nPortScan=True\n[Profile]\nAutoloadProfile=1\n[ErrorLog]\nErrorLogEnable=FALSE\nDebugLog="
         "true\n"
         "[LogAutoStart]\nEnabled=TRUE\n -> 1 0 0 1 1 1000 1000 50000 ",
         "[Port]\nPortScan=1\n[Profile]\nAutoloadProfile=TRUE\n[ErrorLog]\nErrorLogEnable=0\nDebugLog=1\n"
         "[LogAutoStart]\nEnabled=1\n -> 0 1 1 0 0 1000 1000 50000 "});
    const auto rest =
        ReadConfiguration(TIniFile("[CommInitModbus]\nDebugEnable=1\n[ModelFamily]\n4711=north\n"
                                   "[ModelProfile]\nHV 20=Hush20\n[ErrorlogQestions]\nR1=1;3\n"));
    EXPECT_TRUE(rest.DebugEnable);
    EXPECT_EQ(rest.AutoLoadProfile.ItemNumber.Value("4711") + rest.AutoLoadProfile.Model.Value("hv 20") +
                  rest.ErrorLog.Qestion.ValueAt(0),
              "northHush201;3");
}

// Off unless named or set for all; the guide holds the table as it stands here.
TEST(Configuration, Extensions) {
    const std::string guide =
        TDiskFiles().Read(std::filesystem::path(TIDEWELL_SOURCE_DIR) / "docs/installation.md");
    for (const TExtensionKey& key : ExtensionKeys()) {
        const std::string section(key.Section);
        const std::string name(key.Key);
        EXPECT_THAT(guide, testing::HasSubstr("| `" + section + "` | `" + name + "` | " +
                                              std::string(key.What) + " |\n"));
        const std::string own = "[" + section + "]\n" + name + "=";
        const std::pair<std::string, bool> cases[] = {{"", false},
                                                      {"[Extensions]\nAll=True\n", true},
                                                      {"[Extensions]\nAll=1\n", false},
                                                      {own + "TRUE\n", true},
                                                      {"[Extensions]\nAll=True\n" + own + "false\n", false},
                                                      {"[Extensions]\nAll=True\n" + own + "\n", false}};
        for (const auto& [bytes, expected] : cases)
            EXPECT_EQ(ReadExtensions(TIniFile(bytes)).*key.Flag, expected) << bytes;
    }
}

TEST(Configuration, ReadsTheLink) {
    const auto read = [](std::string_view rows) {
        const auto link = ReadNabtoConfiguration(TIniFile("[CommInitNabto]\n" + std::string(rows)));
        return link.Name + "|" + link.LastLoginUser + "|" + link.LastLoginPW + "|" + link.Domain + "|" +
               std::to_string(link.DelayBetweenQuestions) + "|" + std::to_string(link.PauseTime) +
               (link.Enabled ? "|on" : "|off");
    };
    test::ExpectRows(
        read,
        {"PauseTime=abc -> [CommInitNabto] PauseTime: 'abc' is not a valid floating point value",
         "PauseTime= -> [CommInitNabto] PauseTime: '' is not a valid floating point value",
         "Enabled= -> [CommInitNabto] Enabled: '' is not a valid boolean value",
         " -> |||remote.tidewell.example|50|2000|off",
         "Name=n\nPauseTime=1\nEnabled=1\nLastLoginUser=u\nLastLoginPW=p\nDomain=\n -> n|u|p||50|1|on"});
    const auto interval = [](std::string_view text) {
        const auto link =
            ReadNabtoConfiguration(TIniFile("[CommInitNabto]\nDelayBetweenQuestions=" + std::string(text)));
        return link.Replaced.empty() ? std::to_string(link.DelayBetweenQuestions)
                                     : LineOn(link.Replaced.front(), {});
    };
    test::ExpectRows(interval,
                     {"-5 -> [CommInitNabto] DelayBetweenQuestions: '-5' is not possible, 1 is used",
                      "0.4 -> [CommInitNabto] DelayBetweenQuestions: '0.4' is not possible, 1 is used",
                      "2147483648 -> [CommInitNabto] DelayBetweenQuestions: '2147483648' is not possible, "
                      "2147483647 is used",
                      "0.5 -> 1", "1 -> 1", "12.6 -> 13", "2147483647 -> 2147483647"});
}

TEST(Configuration, ReadsTheCloud) {
    const auto read = [](std::string_view port) {
        const auto cloud = ReadCloudSettings(
            TIniFile("[Cloud]\nApiHost=api.example\nCaFile=cfg/ca.pem\nApiPort=" + std::string(port)),
            "/app");
        return cloud.ApiHost + " " + std::to_string(cloud.ApiPort) + " " + cloud.CaFile.string() + " " +
               std::to_string(cloud.Replaced.size());
    };
    const std::string bad = " -> api.example 4161 /app/cfg/ca.pem 1";
    for (const std::string port : {"0", "-1", "65536", "x"})
        test::ExpectRows(read, {port + bad});
    test::ExpectRows(read, {" -> api.example 4161 /app/cfg/ca.pem 0", "1 -> api.example 1 /app/cfg/ca.pem 0",
                            "65535 -> api.example 65535 /app/cfg/ca.pem 0"});
    EXPECT_EQ(ReadCloudSettings(TIniFile(""), "/app").CaFile, "");
}

TEST(LanguageTexts, FillsInValues) {
    EXPECT_EQ(FillText("%2%1%3 %0 % %", {"a%2", "b"}), "ba%2%3 %0 % %");
}

} // namespace
} // namespace tidewell
