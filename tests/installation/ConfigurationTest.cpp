#include "core/Configuration.h"

#include "Installation.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"

#include <gmock/gmock.h>

#include <map>

namespace tidewell::test {

namespace {

using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using TKeys = std::map<std::string, std::vector<std::string>>;

// Keys that the program looks up by name.
const TKeys languageKeys = {{"Splashscreen",
                             {"MessageLogFileDeleted", "MessageMainAppDone", "MessageApplicationReady",
                              "MessageFileStructureMissing", "VersionString"}},
                            {"SetpointHeadlines", {"Col0", "Col1", "Col2", "Col3", "Col4", "Col5"}},
                            {"TestfileComport", {"Erroritemnumberdoesnotmatch"}},
                            {"Language", {"butsave", "header", "bulletheader", "restart"}},
                            {"Nabtodriver",
                             {"ButChangeID", "ButFWupdate", "ButErrorlog", "Butping", "ButFlashdatalog",
                              "ButAccount", "ButGetFlashData", "labbegin", "labfinish", "labfrom", "labto",
                              "questiondatalog", "adjustdays", "adjustdaysheader", "errorlogcounter"}},
                            {"CommDialog",
                             {"Header", "ButCommOk", "ButCommCancel", "LabNabtoDeviceSearch",
                              "LabNabtoDeviceping", "TabsheetHeader"}},
                            {"InputDialog",
                             {"Header", "ButOk", "ButCancel", "DeviceLab", "AdressLab", "ValueLab",
                              "ValueMinLab", "ValueMaxLab", "MessageWrongValue"}},
                            {"HeadAppl",
                             {"appl_title",
                              "TabSetpoint",
                              "TabGraph",
                              "CategoryPanelSetpoint",
                              "CategoryPanelEventlog",
                              "MessageClearGraphData",
                              "MessageLoggingStart",
                              "MessageLoggingStop",
                              "MessageStopLog",
                              "EditNotAllowed",
                              "ErrorMissingAdobe",
                              "TrafficButtonON",
                              "TrafficButtonOFF",
                              "FileMenu_Caption",
                              "FileMenu_OpenProfile",
                              "FileMenu_OpenDatalogFile",
                              "FileMenu_SaveUserDatalog",
                              "FileMenu_Nabto",
                              "FileMenu_StartLog",
                              "FileMenu_CloseProgram",
                              "FileMenu_Activepage_setpoint",
                              "FileMenu_Activepage_graph",
                              "ComportMenu_Caption",
                              "ComportMenu_Setup",
                              "Language_caption",
                              "LanguageMenu_Setup",
                              "PopupMenu_GraphToolbar",
                              "PopupMenu_Hold",
                              "PopupMenu_ZoomAll",
                              "PopupMenu_ClearGraph",
                              "PopupMenu_Exportdatatocsv",
                              "DialogOpenProfileCaption",
                              "DialogOpenDatalogFileCaption",
                              "DialogSaveDatalogFile"}}};

const TKeys systemKeys = {{"System", {"LanguageFile_Current"}},
                          {"Port", {"PortScan"}},
                          {"Profile", {"AutoloadProfile"}},
                          {"ErrorLog", {"ErrorLogEnable", "DebugLog"}},
                          {"LogAutoStart", {"Enabled"}},
                          {"CommInitModbus", {"DebugEnable"}},
                          {"UpdateTimer", {"Time", "XAxisJump", "DatalogCount"}},
                          {"CommInitNabto",
                           {"Enabled", "Name", "Device", "DelayBetweenQuestions", "PauseTime",
                            "LastLoginUser", "LastLoginPW", "Domain"}},
                          {"Cloud", {"ApiHost", "ApiPort", "CaFile"}}};

} // namespace

TEST(InstalledConfiguration, SystemFileIsTheOnlyOneAndWhole) {
    const TInstallation installation;
    ASSERT_FALSE(installation.SystemFile().empty());
    const TIniFile system(installation.Files, installation.SystemFile());
    for (const auto& [section, keys] : systemKeys)
        for (const std::string& key : keys)
            EXPECT_TRUE(system.Find(section, key)) << section << "/" << key;

    const TConfiguration configuration = ReadConfiguration(system);
    EXPECT_TRUE(configuration.PortScan.doPortScan && configuration.AutoLoadProfile.doAutoloadProfile &&
                configuration.LogAutoStart.doLogAutoStart)
        << "the log would not start by itself";
    EXPECT_GT(configuration.UpdateTimer.DatalogCount, 0);
    const TNabtoConfiguration nabto = ReadNabtoConfiguration(system);
    EXPECT_TRUE(nabto.Enabled);
    EXPECT_THAT(nabto.Domain, Not(IsEmpty()));
    EXPECT_FALSE(ReadCloudSettings(system, installation.Directory).ApiHost.empty());
    EXPECT_TRUE(installation.Files.FileExists(
        GetLanguageFile(installation.Files, installation.SystemFile(), installation.Directory)));
    for (const auto& question : configuration.ErrorLog.Qestion.Rows())
        EXPECT_EQ(Fields(question.Value).size(), 5U) << question.Name;
}

TEST(InstalledConfiguration, LanguageFilesHoldEveryTextInTheSameOrder) {
    const TInstallation installation;
    const TIniFile english = installation.Ini("cfg/english.lng");
    const TIniFile german = installation.Ini("cfg/deutsch.lng");
    for (const TIniFile* file : {&english, &german})
        for (const auto& [section, keys] : languageKeys)
            for (const std::string& key : keys)
                EXPECT_NE(file->ReadText(section, key), "") << file->Path() << " " << section << "/" << key;

    ASSERT_EQ(english.SectionNames(), german.SectionNames());
    for (const std::string& section : english.SectionNames()) {
        const TIniSection a = english.ReadSection(section);
        const TIniSection b = german.ReadSection(section);
        ASSERT_EQ(a.Count(), b.Count()) << section;
        for (std::size_t row = 0; row < a.Count(); ++row)
            EXPECT_EQ(a.Rows()[row].Name, b.Rows()[row].Name) << section;
    }
    EXPECT_TRUE(IsValidUtf8(installation.Files.Read(german.Path())));
    EXPECT_THAT(german.ReadText("SetpointHeadlines", "Col4"), "Größter");
}

TEST(InstalledConfiguration, MessagesFoundByPositionStandWhereTheyAreLookedFor) {
    const TInstallation installation;
    for (const char* name : {"cfg/english.lng", "cfg/deutsch.lng"}) {
        const TIniSection texts = installation.Ini(name).ReadSection("TestfileComport");
        for (const std::size_t position : {0U, 4U, 5U}) {
            EXPECT_GT(texts.ValueAt(position).size(), 10U) << name << " row " << position;
            EXPECT_NE(texts.ValueAt(position), texts.Value("Erroritemnumberdoesnotmatch")) << name;
        }
    }
}

TEST(InstalledConfiguration, LogoIsAPictureOfTheSplashFormsSize) {
    const TInstallation installation;
    const std::string bytes = installation.Files.Read(installation.Directory / "cfg/logo.png");
    const std::string head("\x89PNG\r\n\x1a\n\0\0\0\x0DIHDR\0\0\x03\x5E\0\0\0\xD6", 24); // 862 x 214
    EXPECT_THAT(bytes, StartsWith(head));
}

// Every unit code of a profile has its text, and every mode number a name that is reached.
TEST(InstalledConfiguration, UnitTextsCoverTheProfiles) {
    TInstallation installation;
    for (const auto& [language, profiles] : std::map<std::string, std::vector<std::string>>{
             {"english", {"Aria450", "Loft120"}}, {"deutsch", {"Aria450", "Loft120"}}}) {
        const TIniFile texts = installation.Ini("cfg/" + language + ".lng");
        const TIniSection dataUnits = texts.ReadSection("DataUnits");
        const TIniSection userUnits = texts.ReadSection("UserUnits");
        for (const std::string& profile : profiles)
            for (const TListRow& row :
                 TInstalledProfile(installation, profile + "_" + language + ".pls").Rows) {
                const std::string& code = row.Fields.at(9);
                EXPECT_TRUE(code == "0" || !dataUnits.Value(code).empty())
                    << row.Name() << " unit code " << code;
                if (code != "7" && code != "10")
                    continue;
                std::string text;
                UnitText(row.Fields.at(4), code, dataUnits, text, userUnits);
                EXPECT_NE(text, row.Fields.at(4)) << row.Name() << " has no text for its largest value";
            }
    }
}

} // namespace tidewell::test
