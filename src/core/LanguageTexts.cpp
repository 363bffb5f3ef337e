#include "core/LanguageTexts.h"

namespace tidewell {

TSplashscreenTexts ReadSplashscreenTexts(const TIniFile& languageFile) {
    const TIniSection texts = languageFile.ReadSection("Splashscreen");
    return {
        .MessageLogFileDeleted = texts.Value("MessageLogFileDeleted"),
        .MessageMainAppDone = texts.Value("MessageMainAppDone"),
        .MessageApplicationReady = texts.Value("MessageApplicationReady"),
        .MessageFileStructureMissing = texts.Value("MessageFileStructureMissing"),
        .VersionString = texts.Value("VersionString"),
    };
}

THeadApplTexts ReadHeadApplTexts(const TIniFile& languageFile) {
    const TIniSection texts = languageFile.ReadSection("HeadAppl");
    return {
        .appl_title = texts.Value("appl_title"),
        .TabSetpoint = texts.Value("TabSetpoint"),
        .TabGraph = texts.Value("TabGraph"),
        .CategoryPanelSetpoint = texts.Value("CategoryPanelSetpoint"),
        .CategoryPanelEventlog = texts.Value("CategoryPanelEventlog"),
        .MessageClearGraphData = texts.Value("MessageClearGraphData"),
        .MessageLoggingStart = texts.Value("MessageLoggingStart"),
        .MessageLoggingStop = texts.Value("MessageLoggingStop"),
        .MessageStopLog = texts.Value("MessageStopLog"),
        .EditNotAllowed = texts.Value("EditNotAllowed"),
        .ErrorMissingAdobe = texts.Value("ErrorMissingAdobe"),
        .TrafficButtonON = texts.Value("TrafficButtonON"),
        .TrafficButtonOFF = texts.Value("TrafficButtonOFF"),
        .FileMenu_Caption = texts.Value("FileMenu_Caption"),
        .FileMenu_OpenProfile = texts.Value("FileMenu_OpenProfile"),
        .FileMenu_OpenDatalogFile = texts.Value("FileMenu_OpenDatalogFile"),
        .FileMenu_SaveUserDatalog = texts.Value("FileMenu_SaveUserDatalog"),
        .FileMenu_Nabto = texts.Value("FileMenu_Nabto"),
        .FileMenu_StartLog = texts.Value("FileMenu_StartLog"),
        .FileMenu_CloseProgram = texts.Value("FileMenu_CloseProgram"),
        .FileMenu_Activepage_setpoint = texts.Value("FileMenu_Activepage_setpoint"),
        .FileMenu_Activepage_graph = texts.Value("FileMenu_Activepage_graph"),
        .ComportMenu_Caption = texts.Value("ComportMenu_Caption"),
        .ComportMenu_Setup = texts.Value("ComportMenu_Setup"),
        .Language_caption = texts.Value("Language_caption"),
        .LanguageMenu_Setup = texts.Value("LanguageMenu_Setup"),
        .PopupMenu_GraphToolbar = texts.Value("PopupMenu_GraphToolbar"),
        .PopupMenu_Hold = texts.Value("PopupMenu_Hold"),
        .PopupMenu_ZoomAll = texts.Value("PopupMenu_ZoomAll"),
        .PopupMenu_ClearGraph = texts.Value("PopupMenu_ClearGraph"),
        .PopupMenu_Exportdatatocsv = texts.Value("PopupMenu_Exportdatatocsv"),
        .DialogOpenProfileCaption = texts.Value("DialogOpenProfileCaption"),
        .DialogOpenDatalogFileCaption = texts.Value("DialogOpenDatalogFileCaption"),
        .DialogSaveDatalogFile = texts.Value("DialogSaveDatalogFile"),
    };
}

TLanguageTexts ReadLanguageTexts(const TIniFile& languageFile) {
    const TIniSection texts = languageFile.ReadSection("Language");
    return {
        .butsave = texts.Value("butsave"),
        .header = texts.Value("header"),
        .bulletheader = texts.Value("bulletheader"),
        .restart = texts.Value("restart"),
    };
}

TNabtodriverTexts ReadNabtodriverTexts(const TIniFile& languageFile) {
    const TIniSection texts = languageFile.ReadSection("Nabtodriver");
    return {
        .ButChangeID = texts.Value("ButChangeID"),
        .ButFWupdate = texts.Value("ButFWupdate"),
        .ButErrorlog = texts.Value("ButErrorlog"),
        .Butping = texts.Value("Butping"),
        .ButFlashdatalog = texts.Value("ButFlashdatalog"),
        .ButAccount = texts.Value("ButAccount"),
        .ButGetFlashData = texts.Value("ButGetFlashData"),
        .labbegin = texts.Value("labbegin"),
        .labfinish = texts.Value("labfinish"),
        .labfrom = texts.Value("labfrom"),
        .labto = texts.Value("labto"),
        .questiondatalog = texts.Value("questiondatalog"),
        .adjustdays = texts.Value("adjustdays"),
        .adjustdaysheader = texts.Value("adjustdaysheader"),
        .errorlogcounter = texts.Value("errorlogcounter"),
    };
}

TFirmwareUpdateTexts ReadFirmwareUpdateTexts(const TIniFile& languageFile) {
    const TIniSection section = languageFile.ReadSection("FirmwareUpdate");
    TFirmwareUpdateTexts texts;
    const auto read = [&section](const char* key, std::string& text) {
        if (std::string value = section.Value(key); !value.empty())
            text = std::move(value);
    };
    read("Asking", texts.Asking);
    read("Sending", texts.Sending);
    read("Restarting", texts.Restarting);
    read("Waiting", texts.Waiting);
    read("Checking", texts.Checking);
    read("SendingAgain", texts.SendingAgain);
    read("Succeeded", texts.Succeeded);
    read("Failed", texts.Failed);
    read("File", texts.File);
    read("Elapsed", texts.Elapsed);
    read("Running", texts.Running);
    read("Show", texts.Show);
    read("CloseWindow", texts.CloseWindow);
    read("CloseProgram", texts.CloseProgram);
    return texts;
}

TSetpointHeadlines ReadSetpointHeadlines(const TIniFile& languageFile) {
    TSetpointHeadlines result;
    for (std::size_t column = 0; column < result.size(); ++column)
        result[column] = languageFile.ReadText("SetpointHeadlines", "Col" + std::to_string(column));
    return result;
}

TUnitTexts ReadUnitTexts(const TIniFile& languageFile) {
    return {.DataUnits = languageFile.ReadSection("DataUnits"),
            .UserUnits = languageFile.ReadSection("UserUnits"),
            .TestfileComport = languageFile.ReadSection("TestfileComport")};
}

} // namespace tidewell
