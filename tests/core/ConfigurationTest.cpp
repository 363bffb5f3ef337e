#include "core/Configuration.h"

#include "core/Errors.h"
#include "core/LanguageTexts.h"
#include "support/MemoryFiles.h"

#include <gmock/gmock.h>

namespace tidewell {
namespace {

TEST(Configuration, DefaultsAndManners) {
    const auto bare = ReadConfiguration(TIniFile("[CommInitModbus]\nDebugEnable=0\n"));
    EXPECT_FALSE(bare.PortScan.doPortScan);
    EXPECT_FALSE(bare.AutoLoadProfile.doAutoloadProfile);
    EXPECT_TRUE(bare.ErrorLog.doGetErrorlog);
    EXPECT_FALSE(bare.ErrorLog.doIncludeValuesInFile);
    EXPECT_FALSE(bare.LogAutoStart.doLogAutoStart);
    EXPECT_FALSE(bare.DebugEnable);
    EXPECT_EQ(bare.UpdateTimer.Time, 1000);
    EXPECT_EQ(bare.UpdateTimer.XAxisJump, 1000);
    EXPECT_EQ(bare.UpdateTimer.DatalogCount, 50000);

    const auto full = ReadConfiguration(TIniFile("[Port]\nPortScan=True\n"
                                                 "[Profile]\nAutoloadProfile=1\n"
                                                 "[ModelFamily]\n4711=north\n"
                                                 "[ModelProfile]\nHV 20=Hush20\n"
                                                 "[ErrorLog]\nErrorLogEnable=FALSE\nDebugLog=true\n"
                                                 "[ErrorlogQuestions]\nR1=1;3\n"
                                                 "[LogAutoStart]\nEnabled=TRUE\n"
                                                 "[CommInitModbus]\nDebugEnable=TRUE\n"
                                                 "[UpdateTimer]\nTime=ten\nXAxisJump=5\nDatalogCount=0\n"));
    EXPECT_TRUE(full.PortScan.doPortScan);
    EXPECT_FALSE(full.AutoLoadProfile.doAutoloadProfile);
    EXPECT_EQ(full.AutoLoadProfile.ItemNumber.Value("4711"), "north");
    EXPECT_EQ(full.AutoLoadProfile.Model.Value("hv 20"), "Hush20");
    EXPECT_FALSE(full.ErrorLog.doGetErrorlog);
    EXPECT_TRUE(full.ErrorLog.doIncludeValuesInFile);
    EXPECT_EQ(full.ErrorLog.Qestion.ValueAt(0), "1;3");
    EXPECT_TRUE(full.LogAutoStart.doLogAutoStart);
    EXPECT_TRUE(full.DebugEnable);
    EXPECT_EQ(full.UpdateTimer.Time, 1000);
    EXPECT_EQ(full.UpdateTimer.XAxisJump, 5);
    EXPECT_EQ(full.UpdateTimer.DatalogCount, 0);
}

TEST(Configuration, BadValuesAreNamed) {
    const std::pair<const char*, const char*> table[] = {
        {"PauseTime=abc\n", "/s.inn: [CommInitNabto] PauseTime: 'abc' is not a valid floating point value"},
        {"PauseTime=\n", "/s.inn: [CommInitNabto] PauseTime: '' is not a valid floating point value"},
        {"PauseTime=0\n", "/s.inn: [CommInitNabto] PauseTime: '0' is not a valid interval in milliseconds"},
        {"PauseTime=1e300\n",
         "/s.inn: [CommInitNabto] PauseTime: '1e300' is not a valid interval in milliseconds"},
        {"DelayBetweenQuestions=-5\n",
         "/s.inn: [CommInitNabto] DelayBetweenQuestions: '-5' is not a valid interval in milliseconds"},
        {"Enabled=\n", "/s.inn: [CommInitNabto] Enabled: '' is not a valid boolean value"},
    };
    for (const auto& [row, message] : table) {
        test::TMemoryFiles files;
        files.Put("/s.inn", std::string("[CommInitNabto]\n") + row);
        try {
            ReadNabtoConfiguration(TIniFile(files, "/s.inn"));
            ADD_FAILURE() << row;
        } catch (const EConvertError& error) {
            EXPECT_STREQ(error.what(), message);
        }
    }
    for (const char* bytes : {"", "[CommInitModbus]\nDebugEnable=\n", "[CommInitModbus]\nDebugEnable=ja\n"})
        EXPECT_THROW(ReadConfiguration(TIniFile(bytes)), EConvertError) << bytes;
}

TEST(Configuration, LinkAndCloud) {
    const auto bare = ReadNabtoConfiguration(TIniFile(""));
    EXPECT_EQ(bare.DelayBetweenQuestions, 50);
    EXPECT_EQ(bare.PauseTime, 2000);
    EXPECT_FALSE(bare.Enabled);
    EXPECT_EQ(bare.Domain, "remote.tidewell.example");
    const auto set = ReadNabtoConfiguration(
        TIniFile("[CommInitNabto]\nName=n\nDelayBetweenQuestions= 12.6\nPauseTime=1\nEnabled=1\n"
                 "LastLoginUser=u\nLastLoginPW=p\nDomain=\n"));
    EXPECT_EQ(set.DelayBetweenQuestions, 13);
    EXPECT_EQ(set.PauseTime, 1);
    EXPECT_TRUE(set.Enabled);
    EXPECT_EQ(set.Name + set.LastLoginUser + set.LastLoginPW, "nup");
    EXPECT_EQ(set.Domain, "");

    EXPECT_EQ(ReadCloudSettings(TIniFile(""), "/app").ApiPort, 4161);
    EXPECT_EQ(ReadCloudSettings(TIniFile(""), "/app").CaFile, "");
    for (const char* port : {"0", "-1", "65536", "x", ""})
        EXPECT_EQ(ReadCloudSettings(TIniFile(std::string("[Cloud]\nApiPort=") + port), "/app").ApiPort, 4161);
    const auto cloud = ReadCloudSettings(
        TIniFile("[Cloud]\nApiHost=api.example\nApiPort=8443\nCaFile=cfg/ca.pem\n"), "/app");
    EXPECT_EQ(cloud.ApiHost, "api.example");
    EXPECT_EQ(cloud.ApiPort, 8443);
    EXPECT_EQ(cloud.CaFile, "/app/cfg/ca.pem");
}

TEST(LanguageTexts, MissingTextsAreEmpty) {
    const TIniFile file("[headappl]\nappl_title=Title\nPopupMenu_Exportdatatocsv=Export = csv; all\n"
                        "[SetpointHeadlines]\nCol0=No\nCol5=Unit\n"
                        "[TestfileComport]\na=1\nb=2\nc=3\nd=4\ne=5\n[UserUnits]\n0=Off\n");
    const auto head = ReadHeadApplTexts(file);
    EXPECT_EQ(head.appl_title, "Title");
    EXPECT_EQ(head.PopupMenu_Exportdatatocsv, "Export = csv; all");
    EXPECT_EQ(head.TrafficButtonON, "");
    EXPECT_THAT(ReadSetpointHeadlines(file), testing::ElementsAre("No", "", "", "", "", "Unit"));
    EXPECT_EQ(ReadUnitTexts(file).TestfileComport.ValueAt(4), "5");
    EXPECT_EQ(ReadUnitTexts(file).UserUnits.ValueAt(0), "Off");
    EXPECT_EQ(ReadSplashscreenTexts(file).VersionString, "");
    EXPECT_EQ(ReadNabtodriverTexts(file).errorlogcounter, "");
    EXPECT_EQ(ReadLanguageTexts(file).restart, "");
}

} // namespace
} // namespace tidewell
