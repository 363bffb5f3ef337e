#include "core/Configuration.h"

#include "Installation.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"

#include <gmock/gmock.h>

#include <map>

namespace tidewell::test {

namespace {

// Keys that the program looks up by name, apart by blanks.
const std::map<std::string, std::string> languageKeys = {
    {"Splashscreen", "MessageLogFileDeleted MessageMainAppDone MessageApplicationReady "
                     "MessageFileStructureMissing VersionString"},
    {"SetpointHeadlines", "Col0 Col1 Col2 Col3 Col4 Col5"},
    {"TestfileComport", "Erroritemnumberdoesnotmatch"},
    {"Language", "butsave header bulletheader restart"},
    {"Nabtodriver",
     "ButChangeID ButFWupdate ButErrorlog Butping ButFlashdatalog ButAccount ButGetFlashData labbegin "
     "labfinish labfrom labto questiondatalog adjustdays adjustdaysheader errorlogcounter"},
    {"CommDialog", "Header ButCommOk ButCommCancel LabNabtoDeviceSearch LabNabtoDeviceping TabsheetHeader"},
    {"InputDialog",
     "Header ButOk ButCancel DeviceLab AdressLab ValueLab ValueMinLab ValueMaxLab MessageWrongValue"},
    {"HeadAppl",
     "appl_title TabSetpoint TabGraph CategoryPanelSetpoint CategoryPanelEventlog MessageClearGraphData "
     "MessageLoggingStart MessageLoggingStop MessageStopLog EditNotAllowed ErrorMissingAdobe TrafficButtonON "
     "TrafficButtonOFF FileMenu_Caption FileMenu_OpenProfile FileMenu_OpenDatalogFile "
     "FileMenu_SaveUserDatalog FileMenu_Nabto FileMenu_StartLog FileMenu_CloseProgram "
     "FileMenu_Activepage_setpoint FileMenu_Activepage_graph ComportMenu_Caption ComportMenu_Setup "
     "Language_caption LanguageMenu_Setup PopupMenu_GraphToolbar PopupMenu_Hold PopupMenu_ZoomAll "
     "PopupMenu_ClearGraph PopupMenu_Exportdatatocsv DialogOpenProfileCaption DialogOpenDatalogFileCaption "
     "DialogSaveDatalogFile"}};

} // namespace

TEST(InstalledConfiguration, SystemFileIsTheOnlyOneAndWhole) {
    const TInstallation installation;
    ASSERT_FALSE(installation.SystemFile().empty());
    const TIniFile system(installation.Files, installation.SystemFile());
    const TConfiguration configuration = ReadConfiguration(system);
    EXPECT_TRUE(configuration.PortScan.doPortScan && configuration.AutoLoadProfile.doAutoloadProfile &&
                configuration.LogAutoStart.doLogAutoStart)
        << "the log would not start by itself";
    for (const auto& question : configuration.ErrorLog.Qestion.Rows())
        EXPECT_EQ(Fields(question.Value).size(), 5U) << question.Name;
}

TEST(InstalledConfiguration, LanguageFilesHoldEveryTextInTheSameOrder) {
    const TInstallation installation;
    const TIniFile english = installation.Ini("cfg/english.lng");
    const TIniFile german = installation.Ini("cfg/deutsch.lng");
    for (const TIniFile* file : {&english, &german}) {
        for (const auto& [section, keys] : languageKeys)
            for (const std::string_view key : SplitStrictly(keys, ' '))
                EXPECT_NE(file->ReadText(section, key), "") << file->Path() << " " << section << "/" << key;
        // Messages that are found by position.
        const TIniSection texts = file->ReadSection("TestfileComport");
        for (const std::size_t position : {0U, 4U, 5U}) {
            EXPECT_GT(texts.ValueAt(position).size(), 10U) << file->Path() << " row " << position;
            EXPECT_NE(texts.ValueAt(position), texts.Value("Erroritemnumberdoesnotmatch")) << file->Path();
        }
    }
    ExpectSameKeys(english, german);
    EXPECT_THAT(german.ReadText("SetpointHeadlines", "Col4"), "Größter"); // whatever the file's encoding
}

// Every unit code of a profile has its text, and every mode number a name that is reached.
TEST(InstalledConfiguration, UnitTextsCoverTheProfiles) {
    TInstallation installation;
    for (const std::string language : {"english", "deutsch"}) {
        const TIniFile texts = installation.Ini("cfg/" + language + ".lng");
        const TIniSection dataUnits = texts.ReadSection("DataUnits");
        const TIniSection userUnits = texts.ReadSection("UserUnits");
        for (const std::string profile : {"Aria450", "Loft120"})
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
