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

void ReadOwnTexts(const TIniFile& languageFile, std::string_view section,
                  std::initializer_list<TOwnText> texts) {
    const TIniSection rows = languageFile.ReadSection(section);
    for (const auto& [place, key] : texts)
        if (std::string value = rows.Value(key); !value.empty())
            place = std::move(value);
}

std::string FillText(std::string_view text, std::initializer_list<std::string_view> values) {
    std::string filled;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto number = text[i] == '%' && i + 1 < text.size() ? text[i + 1] - '1' : -1;
        if (number < 0 || static_cast<std::size_t>(number) >= values.size()) {
            filled += text[i];
        } else {
            filled += values.begin()[number];
            ++i;
        }
    }
    return filled;
}

TFirmwareUpdateTexts ReadFirmwareUpdateTexts(const TIniFile& languageFile) {
    TFirmwareUpdateTexts texts;
    ReadOwnTexts(languageFile, "FirmwareUpdate",
                 {{texts.Asking, "Asking"},
                  {texts.Sending, "Sending"},
                  {texts.Restarting, "Restarting"},
                  {texts.Waiting, "Waiting"},
                  {texts.Checking, "Checking"},
                  {texts.SendingAgain, "SendingAgain"},
                  {texts.Succeeded, "Succeeded"},
                  {texts.Failed, "Failed"},
                  {texts.Stopped, "Stopped"},
                  {texts.File, "File"},
                  {texts.Elapsed, "Elapsed"},
                  {texts.Running, "Running"},
                  {texts.Show, "Show"},
                  {texts.CloseWindow, "CloseWindow"},
                  {texts.CloseProgram, "CloseProgram"},
                  {texts.Stop, "Stop"},
                  {texts.StopUpdate, "StopUpdate"},
                  {texts.StoppedByUser, "StoppedByUser"},
                  {texts.RestartNotSeen, "RestartNotSeen"},
                  {texts.ResultUnknown, "ResultUnknown"},
                  {texts.NotTaken, "NotTaken"},
                  {texts.NoUpdateStatus, "NoUpdateStatus"},
                  {texts.BadPackage, "BadPackage"},
                  {texts.NoNumber, "NoNumber"},
                  {texts.NoFile, "NoFile"},
                  {texts.NothingChosen, "NothingChosen"},
                  {texts.ChosenBeyond, "ChosenBeyond"},
                  {texts.WrongSize, "WrongSize"},
                  {texts.BadLine, "BadLine"},
                  {texts.TestStopped, "TestStopped"},
                  {texts.TestEnded, "TestEnded"},
                  {texts.OtherDevice, "OtherDevice"}});
    return texts;
}

TEventLogTexts ReadEventLogTexts(const TIniFile& languageFile) {
    TEventLogTexts texts;
    ReadOwnTexts(languageFile, "EventLog",
                 {{texts.LibraryNotLoaded, "LibraryNotLoaded"},
                  {texts.InterfaceMissing, "InterfaceMissing"},
                  {texts.NoLibrary, "NoLibrary"},
                  {texts.NumberReplaced, "NumberReplaced"},
                  {texts.NoToken, "NoToken"},
                  {texts.NoConnection, "NoConnection"},
                  {texts.DeviceNotSaved, "DeviceNotSaved"}});
    return texts;
}

TLinkTexts ReadLinkTexts(const TIniFile& languageFile) {
    TLinkTexts texts;
    ReadOwnTexts(languageFile, "Link",
                 {{texts.NotLinked, "NotLinked"},
                  {texts.NotSignedIn, "NotSignedIn"},
                  {texts.NotLocal, "NotLocal"},
                  {texts.NoUserName, "NoUserName"},
                  {texts.InUse, "InUse"},
                  {texts.SessionLost, "SessionLost"},
                  {texts.SessionBack, "SessionBack"},
                  {texts.SessionNotBack, "SessionNotBack"},
                  {texts.NoAnswer, "NoAnswer"}});
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
