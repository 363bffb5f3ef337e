#include "mainform/FormMain.h"

#include "core/LanguageTexts.h"
#include "link/UpdateStatus.h"
#include "setpoints/ReadBack.h"

#include <algorithm>

namespace tidewell {

TFormMain::TFormMain(const IApplication& application)
    : TForm("FormMain"),
      StatusBar(*this, "StatusBar", {{300, "", false}, {0, "", false}, {250, "", false}, {170, "", true}}),
      Application(application) {
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

    OnKeyDown = [this](EKey key, bool& handled) { FormKeyDown(key, handled); };
    TheTab.OnChange = [this] { TheTabChange(); };
    StartLog1.OnClick = [this] { TrafficButton.Click(); };
    WindowSetpoint1.OnClick = [this] { TheTab.SetActivePage(TabSetpoint); };
    WindowGraph1.OnClick = [this] { TheTab.SetActivePage(TabGraph); };
    Close1.OnClick = [this] { Close(); };
}

void TFormMain::TakeTexts(const TIniFile& language) {
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
               {Changelanguage1, "LanguageMenu_Setup"},
               {EditNotAllowed, "EditNotAllowed"}});
    ReadTexts(language, "Nabtodriver",
              {{DeviceID, "ButChangeID"}, {but_swupdate, "ButFWupdate"}, {but_errorlog, "ButErrorlog"}});
    std::string hideNotice = "Hide this line";
    ReadOwnTexts(language, "Notices", {{hideNotice, "Hide"}});
    for (TNotice* notice : Notices)
        notice->Hide.SetHint(hideNotice);
    ReadOwnTexts(language, "ReadBack", {{ButStopReadBack, "Stop"}});
}

void TFormMain::TheTabChange() {
    GraphControlsPanel.SetVisible(!TheTab.IsActive(TabSetpoint));
}

void TFormMain::FormResize() {
    int others = 0;
    for (const std::size_t panel : {PanelLink, PanelProgress, PanelVersion})
        others += StatusBar.Panels()[panel].Width;
    StatusBar.SetWidth(PanelUser, std::max(0, ClientWidth() - others));
}

void TFormMain::FormKeyDown(EKey key, bool& handled) {
    handled = true;
    const std::string pressed = ShortCutText(key);
    for (const TMenuItem& menu : MainMenu.Items)
        for (const TMenuItem& item : menu.Items)
            if (!pressed.empty() && item.ShortCut() == pressed)
                return item.Click();
    if (key == EKey::F1 && TheTab.IsActive(TabSetpoint))
        return OnHelp();
    handled = key == EKey::F1;
}

void TFormMain::LockForUpdate(bool running, const std::vector<TControl*>& others) {
    if (!running) {
        UpdateLock.Release();
        return;
    }
    std::vector<TControl*> controls{&TrafficButton, &DeviceID, &but_swupdate, &but_errorlog};
    controls.insert(controls.end(), others.begin(), others.end());
    for (const TMenuItem& menu : MainMenu.Items)
        for (TMenuItem& item : menu.Items)
            if (&item != &Nabtodebug1 && &item != &Close1) // Esc goes through Close1
                controls.push_back(&item);
    UpdateLock.Lock(controls);
}

void TFormMain::ShowUpdate(const TUpdateStatus& status) {
    std::string text = status.Texts.Running + " " + status.LabUpdatePhase.Caption();
    if (status.LabUpdateFile.Visible())
        text += ", " + status.LabUpdateFile.Caption();
    LblUpdate.SetCaption(text);
    ButShowUpdate.SetCaption(status.Texts.Show);
    UpdatePanel.SetVisible(status.Running());
    FileProgressBar.SetMax(status.UpdateProgress.Max());
    FileProgressBar.SetPosition(status.UpdateProgress.Position());
    FileProgressBar.SetVisible(status.Running() && status.UpdateProgress.Visible());
}

void TFormMain::ShowReadBack(const TReadBack& readBack) {
    LblReadBack.SetCaption(readBack.ProgressText());
    ReadBackPanel.SetVisible(readBack.Running());
    const auto progress = readBack.Progress();
    FileProgressBar.SetMax(progress.Max);
    FileProgressBar.SetPosition(progress.Position);
    FileProgressBar.SetVisible(readBack.Running());
}

} // namespace tidewell
