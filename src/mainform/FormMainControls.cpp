#include "mainform/FormMainControls.h"

#include "core/LanguageTexts.h"

namespace tidewell {

TFormMainControls::TFormMainControls()
    : TForm("FormMain"),
      StatusBar("StatusBar", {{300, "", false}, {0, "", false}, {250, "", false}, {170, "", true}}) {
    filemenu.Items = {OpenProfile2, OpenDatalogfile1, Open_sd_datalog, SaveUserDatalog1,
                      Nabtodebug1,  StartLog1,        WindowSetpoint1, WindowGraph1,
                      Errorlog1,    FlasDatalog1,     Close1};
    CommPort1.Items = {Setup1};
    Language1.Items = {Changelanguage1};
    MainMenu.Items = {filemenu, CommPort1, Language1};

    OpenProfile2.SetShortCut("F2");
    OpenDatalogfile1.SetShortCut("F3");
    SaveUserDatalog1.SetShortCut("F4");
    StartLog1.SetShortCut("F5");
    WindowSetpoint1.SetShortCut("F6");
    WindowGraph1.SetShortCut("F7");
    Setup1.SetShortCut("F8");
    Nabtodebug1.SetShortCut("F11");
    Changelanguage1.SetShortCut("F12");
    Close1.SetShortCut("Esc");

    Open_sd_datalog.SetVisible(false); // nothing shows it
    Errorlog1.SetVisible(false);       // nothing shows it
    FlasDatalog1.SetVisible(false);    // until a profile with a flash datalog is open

    TheTab.Pages = {TabSetpoint, TabGraph};
    FileProgressBar.SetVisible(false);
    ReadBackPanel.SetVisible(false);
    UpdatePanel.SetVisible(false);
}

void TFormMainControls::TakeTexts(const TIniFile& language) {
    ReadTexts(language, "HeadAppl",
              {{*this, "appl_title"},
               {TabSetpoint, "TabSetpoint"},
               {TabGraph, "TabGraph"},
               {filemenu, "FileMenu_Caption"},
               {OpenProfile2, "FileMenu_OpenProfile"},
               {OpenDatalogfile1, "FileMenu_OpenDatalogFile"},
               {SaveUserDatalog1, "FileMenu_SaveUserDatalog"},
               {Nabtodebug1, "FileMenu_Nabto"},
               {StartLog1, "FileMenu_StartLog"},
               {Close1, "FileMenu_CloseProgram"},
               {WindowSetpoint1, "FileMenu_Activepage_setpoint"},
               {WindowGraph1, "FileMenu_Activepage_graph"},
               {CommPort1, "ComportMenu_Caption"},
               {Setup1, "ComportMenu_Setup"},
               {Language1, "Language_caption"},
               {Changelanguage1, "LanguageMenu_Setup"}});
    ReadTexts(language, "Nabtodriver",
              {{DeviceID, "ButChangeID"}, {but_swupdate, "ButFWupdate"}, {but_errorlog, "ButErrorlog"}});
    ReadOwnTexts(language, "ReadBack", {{ButStopReadBack, "Stop"}});
}

} // namespace tidewell
