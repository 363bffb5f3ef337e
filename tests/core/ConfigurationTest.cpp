#include "core/Configuration.h"

#include "core/Extensions.h"
#include "core/LanguageTexts.h"
#include "rig/Test.h"

namespace tidewell {
namespace {

using test::ExpectRows;

// All numbers and flags that were read, in the order of the sections, then what was replaced.
std::string Read(std::string_view rows) {
    const auto read = ReadConfiguration(TIniFile("[CommInitModbus]\nDebugEnable=0\n" + std::string(rows)));
    std::string text;
    for (const int value :
         {+read.PortScan.doPortScan, +read.AutoLoadProfile.doAutoloadProfile, +read.ErrorLog.doGetErrorlog,
          +read.ErrorLog.doIncludeValuesInFile, +read.LogAutoStart.doLogAutoStart, read.UpdateTimer.Time,
          read.UpdateTimer.XAxisJump, read.UpdateTimer.DatalogCount})
        text += std::to_string(value) + " ";
    for (const TReplacedNumber& number : read.Replaced)
        text += number.Where + number.Text + "=" + std::to_string(number.Used) + " ";
    return text;
}

TEST(Configuration, DefaultsAndManners) {
    for (const char* bytes : {"", "[CommInitModbus]\nDebugEnable=\n", "[CommInitModbus]\nDebugEnable=ja\n"})
        EXPECT_THROW(ReadConfiguration(TIniFile(bytes)), EConvertError) << bytes;
    EXPECT_TRUE(ReadConfiguration(TIniFile("[CommInitModbus]\nDebugEnable=1\n")).DebugEnable);
    const std::string timer = "[UpdateTimer] ";
    ExpectRows(Read,
               {"[UpdateTimer]\nTime=0\nXAxisJump=0 -> 0 0 1 0 0 1000 1000 50000 " + timer + "Time: 0=1000 " +
                    timer + "XAxisJump: 0=1000 ",
                "[UpdateTimer]\nTime=x\nDatalogCount=-1 -> 0 0 1 0 0 1000 1000 50000 " + timer +
                    "Time: x=1000 " + timer + "DatalogCount: -1=50000 ",
                "[UpdateTimer]\nTime=1\nXAxisJump=1\nDatalogCount=0 -> 0 0 1 0 0 1 1 0 ",
                "[UpdateTimer]\nTime=2147483647\nXAxisJump= -> 0 0 1 0 0 2147483647 1000 50000 ",
                // As "true" or not "false", each flag in its section.
                "[Port]\nPortScan=True\n[Profile]\nAutoloadProfile=1\n[ErrorLog]\nErrorLogEnable=FALSE\n"
                "DebugLog=true\n[LogAutoStart]\nEnabled=TRUE -> 1 0 0 1 1 1000 1000 50000 ",
                "[Port]\nPortScan=1\n[Profile]\nAutoloadProfile=TRUE\n[ErrorLog]\nErrorLogEnable=0\n"
                "DebugLog=1\n[LogAutoStart]\nEnabled=1 -> 0 1 1 0 0 1000 1000 50000 "});
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
        const std::string all = "[Extensions]\nAll=True\n";
        for (const auto& [bytes, isOn] :
             {std::pair{own + "TRUE\n", true}, {all, true}, {all + own + "\n", false}, {own + "1\n", false}})
            EXPECT_EQ(ReadExtensions(TIniFile(bytes)).*key.Flag, isOn) << bytes;
    }
}

TEST(Configuration, ReadsTheLink) {
    const auto read = [](std::string_view rows) {
        const auto link = ReadNabtoConfiguration(TIniFile("[CommInitNabto]\n" + std::string(rows)));
        return link.Name + "|" + link.LastLoginUser + "|" + link.LastLoginPW + "|" + link.Domain + "|" +
               std::to_string(link.DelayBetweenQuestions) + "|" + std::to_string(link.PauseTime) +
               (link.Enabled ? "|on" : "|off") +
               (link.Replaced.empty() ? "" : " " + LineOn(link.Replaced.front(), {}));
    };
    ExpectRows(
        read,
        {"PauseTime=abc -> [CommInitNabto] PauseTime: 'abc' is not a valid floating point value",
         "Enabled= -> [CommInitNabto] Enabled: '' is not a valid boolean value",
         " -> |||remote.tidewell.example|50|2000|off",
         "Name=n\nPauseTime=1\nEnabled=1\nLastLoginUser=u\nLastLoginPW=p\nDomain=\n -> n|u|p||50|1|on"});
    const std::string head = "Domain=d\nPauseTime=";
    const std::string replaced = "|off [CommInitNabto] PauseTime: ";
    ExpectRows(read, {head + "-5 -> |||d|50|1" + replaced + "'-5' is not possible, 1 is used",
                      head + "2147483648 -> |||d|50|2147483647" + replaced +
                          "'2147483648' is not possible, 2147483647 is used",
                      head + "0.5 -> |||d|50|1|off", head + "12.6 -> |||d|50|13|off",
                      head + "2147483647 -> |||d|50|2147483647|off"});
}

TEST(Configuration, ReadsTheCloud) {
    const auto read = [](std::string_view port) {
        const auto cloud = ReadCloudSettings(TIniFile("[Cloud]\nApiPort=" + std::string(port)), "/app");
        return std::to_string(cloud.ApiPort) + " " + std::to_string(cloud.Replaced.size());
    };
    ExpectRows(read, {"0 -> 4161 1", "-1 -> 4161 1", "65536 -> 4161 1", "x -> 4161 1", " -> 4161 0",
                      "1 -> 1 0", "65535 -> 65535 0"});
}

TEST(LanguageTexts, FillsInValues) {
    EXPECT_EQ(FillText("%2%1%3 %0 % %", {"a%2", "b"}), "ba%2%3 %0 % %");
}

} // namespace
} // namespace tidewell
