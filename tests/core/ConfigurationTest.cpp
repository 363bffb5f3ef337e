#include "core/Configuration.h"

#include "core/DiskFiles.h"
#include "core/Errors.h"
#include "core/Extensions.h"
#include "core/LanguageTexts.h"
#include "core/controls/Simple.h"
#include "support/MemoryFiles.h"

#include <gmock/gmock.h>

namespace tidewell {
namespace {

using testing::ElementsAre;
using testing::ThrowsMessage;

// Flags in the order of the sections, then the numbers of the timer.
std::vector<int> Settings(const TConfiguration& read) {
    const auto& log = read.ErrorLog;
    std::vector<int> result{read.PortScan.doPortScan, read.AutoLoadProfile.doAutoloadProfile};
    result.insert(result.end(), {log.doGetErrorlog, log.doIncludeValuesInFile});
    result.insert(result.end(), {read.LogAutoStart.doLogAutoStart, read.DebugEnable, read.UpdateTimer.Time});
    result.insert(result.end(), {read.UpdateTimer.XAxisJump, read.UpdateTimer.DatalogCount});
    return result;
}

template <class TRead>
std::vector<std::string> Told(const TRead& read) {
    std::vector<std::string> lines;
    for (const TReplacedNumber& number : read.Replaced)
        lines.push_back(LineOn(number, {}));
    return lines;
}

TEST(Configuration, DefaultsAndManners) {
    EXPECT_THAT(Settings(ReadConfiguration(TIniFile("[CommInitModbus]\nDebugEnable=0\n"))),
                ElementsAre(0, 0, 1, 0, 0, 0, 1000, 1000, 50000));
    const auto full = ReadConfiguration(TIniFile("[Port]\nPortScan=True\n"
                                                 "[Profile]\nAutoloadProfile=1\n"
                                                 "[ModelFamily]\n4711=north\n[ModelProfile]\nHV 20=Hush20\n"
                                                 "[ErrorLog]\nErrorLogEnable=FALSE\nDebugLog=true\n"
                                                 "[ErrorlogQestions]\nR1=1;3\n"
                                                 "[LogAutoStart]\nEnabled=TRUE\n"
                                                 "[CommInitModbus]\nDebugEnable=TRUE\n"
                                                 "[UpdateTimer]\nTime=ten\nXAxisJump=5\nDatalogCount=0\n"));
    EXPECT_THAT(Told(full), ElementsAre("[UpdateTimer] Time: 'ten' is not possible, 1000 is used"));
    const auto low =
        ReadConfiguration(TIniFile("[CommInitModbus]\nDebugEnable=0\n"
                                   "[UpdateTimer]\nTime=0\nXAxisJump=-1\nDatalogCount=99999999999\n"));
    EXPECT_THAT(Settings(low), ElementsAre(0, 0, 1, 0, 0, 0, 1000, 1000, 50000));
    EXPECT_EQ(Told(low).size(), 3u);
    EXPECT_THAT(Settings(full), ElementsAre(1, 0, 0, 1, 1, 1, 1000, 5, 0));
    EXPECT_EQ(full.AutoLoadProfile.ItemNumber.Value("4711"), "north");
    EXPECT_EQ(full.AutoLoadProfile.Model.Value("hv 20"), "Hush20");
    EXPECT_EQ(full.ErrorLog.Qestion.ValueAt(0), "1;3");
    for (const char* bytes : {"", "[CommInitModbus]\nDebugEnable=\n", "[CommInitModbus]\nDebugEnable=ja\n"})
        EXPECT_THROW(ReadConfiguration(TIniFile(bytes)), EConvertError) << bytes;
}

// Off unless named or set for all; the guide holds the table as it stands here.
TEST(Configuration, Extensions) {
    const std::string guide =
        TDiskFiles().Read(std::filesystem::path(TIDEWELL_SOURCE_DIR) / "docs/installation.md");
    const auto on = [](const std::string& bytes, const TExtensionKey& key) {
        return ReadExtensions(TIniFile(bytes)).*key.Flag;
    };
    for (const TExtensionKey& key : ExtensionKeys()) {
        const std::string section = "[" + std::string(key.Section) + "]\n" + std::string(key.Key) + "=";
        EXPECT_THAT(guide,
                    testing::HasSubstr("| `" + std::string(key.Section) + "` | `" + std::string(key.Key) +
                                       "` | " + std::string(key.What) + " |\n"));
        const std::pair<std::string, bool> cases[] = {
            {"", false},
            {"[Extensions]\nAll=True\n", true},
            {"[Extensions]\nAll=1\n", false},
            {section + "TRUE\n", true},
            {"[Extensions]\nAll=True\n" + section + "false\n", false},
            {"[Extensions]\nAll=True\n" + section + "\n", false}};
        for (const auto& [bytes, expected] : cases)
            EXPECT_EQ(on(bytes, key), expected) << bytes;
    }
}

TEST(Configuration, ReadsTheLink) {
    const auto shown = [](const TNabtoConfiguration& read) {
        return read.Name + "|" + read.LastLoginUser + "|" + read.LastLoginPW + "|" + read.Domain + "|" +
               std::to_string(read.DelayBetweenQuestions) + "|" + std::to_string(read.PauseTime) +
               (read.Enabled ? "|on" : "|off");
    };
    EXPECT_EQ(shown(ReadNabtoConfiguration(TIniFile(""))), "|||remote.tidewell.example|50|2000|off");
    EXPECT_EQ(shown(ReadNabtoConfiguration(
                  TIniFile("[CommInitNabto]\nName=n\nDelayBetweenQuestions= 12.6\nPauseTime=1\nEnabled=1\n"
                           "LastLoginUser=u\nLastLoginPW=p\nDomain=\n"))),
              "n|u|p||13|1|on");
    const std::pair<std::string, const char*> bad[] = {
        {"PauseTime=abc", "PauseTime: 'abc' is not a valid floating point value"},
        {"PauseTime=", "PauseTime: '' is not a valid floating point value"},
        {"Enabled=", "Enabled: '' is not a valid boolean value"}};
    for (const auto& [row, message] : bad) {
        test::TMemoryFiles files;
        files.Put("/s.inn", "[CommInitNabto]\n" + row);
        EXPECT_THAT([&] { ReadNabtoConfiguration(TIniFile(files, "/s.inn")); },
                    ThrowsMessage<EConvertError>(std::string("/s.inn: [CommInitNabto] ") + message));
    }
    test::TMemoryFiles files;
    files.Put("/s.inn", "[CommInitNabto]\nDelayBetweenQuestions=-5\nPauseTime=1e300\n");
    const auto nearest = ReadNabtoConfiguration(TIniFile(files, "/s.inn"));
    EXPECT_EQ(shown(nearest), "|||remote.tidewell.example|1|2147483647|off");
    EXPECT_THAT(
        Told(nearest),
        ElementsAre("/s.inn: [CommInitNabto] DelayBetweenQuestions: '-5' is not possible, 1 is used",
                    "/s.inn: [CommInitNabto] PauseTime: '1e300' is not possible, 2147483647 is used"));
}

TEST(Configuration, ReadsTheCloud) {
    for (const char* port : {"", "ApiPort=0", "ApiPort=-1", "ApiPort=65536", "ApiPort=x", "ApiPort=8443"}) {
        const auto cloud = ReadCloudSettings(
            TIniFile(std::string("[Cloud]\nApiHost=api.example\nCaFile=cfg/ca.pem\n") + port), "/app");
        EXPECT_EQ(cloud.ApiPort, std::string_view(port) == "ApiPort=8443" ? 8443 : 4161) << port;
        EXPECT_EQ(Told(cloud).empty(), cloud.ApiPort == 8443 || port[0] == '\0');
        EXPECT_EQ(cloud.ApiHost, "api.example");
        EXPECT_EQ(cloud.CaFile, "/app/cfg/ca.pem");
    }
    EXPECT_EQ(ReadCloudSettings(TIniFile(""), "/app").CaFile, "");
}

TEST(LanguageTexts, MissingTextsAreEmptyButForOurOwn) {
    const TIniFile file("[headappl]\nPopupMenu_Exportdatatocsv=Export = csv; all\nempty=\n");
    TLabel caption("caption", "here");
    std::string missing = "here";
    std::string kept = "here";
    ReadTexts(file, "HeadAppl", {{caption, "PopupMenu_Exportdatatocsv"}, {missing, "TrafficButtonON"}});
    EXPECT_EQ(caption.Caption(), "Export = csv; all");
    EXPECT_EQ(missing, "");
    ReadOwnTexts(file, "HeadAppl", {{kept, "empty"}, {missing, "PopupMenu_Exportdatatocsv"}});
    EXPECT_EQ(kept, "here");
    EXPECT_EQ(missing, caption.Caption());
}

} // namespace
} // namespace tidewell
