#include "mainform/ProgramTexts.h"

#include "mainform/Program.h"

namespace tidewell {

void ReadTexts(const TIniFile& language, TProgram& main) {
    main.EventLogTexts = ReadEventLogTexts(language);
    main.Texts = ReadHeadApplTexts(language);
    main.FormMain.ApplyTexts(main.Texts);
    main.SetpointPage.CategoryPanelSetpoints.SetCaption(main.Texts.CategoryPanelSetpoint);
    main.SetpointPage.CategoryPanelDebug.SetCaption(main.Texts.CategoryPanelEventlog);
    main.LoggingTexts = {main.Texts.MessageLoggingStart,   main.Texts.MessageLoggingStop,
                         main.Texts.MessageClearGraphData, main.Texts.TrafficButtonON,
                         main.Texts.TrafficButtonOFF,      main.Texts.DialogSaveDatalogFile};
    ReadOwnTexts(language, "LiveLog",
                 {{main.LoggingTexts.LogStopped, "LogStopped"},
                  {main.LoggingTexts.NoSession, "NoSession"},
                  {main.LoggingTexts.AutoStartSpared, "AutoStartSpared"},
                  {main.LoggingTexts.NoValues, "NoValues"}});
    main.ProfileOpening.Texts = ReadProfileTexts(language);
    main.ProfileOpening.DialogOpenProfileCaption = main.Texts.DialogOpenProfileCaption;
    main.GraphPage.Graphitems1.SetCaption(main.Texts.PopupMenu_GraphToolbar);
    main.GraphPage.Hold1.SetCaption(main.Texts.PopupMenu_Hold);
    main.GraphPage.zoomall1.SetCaption(main.Texts.PopupMenu_ZoomAll);
    main.GraphPage.Cleargraph1.SetCaption(main.Texts.PopupMenu_ClearGraph);
    main.GraphPage.Exportdatatocsv1.SetCaption(main.Texts.PopupMenu_Exportdatatocsv);
    main.DatalogReader.DialogOpenDatalogFileCaption = main.Texts.DialogOpenDatalogFileCaption;
    main.SdDatalogReader.MessageStopLog = main.Texts.MessageStopLog;
    main.SdDatalogReader.DialogOpenProfileCaption = main.Texts.DialogOpenProfileCaption;
    main.SdDatalogReader.DialogOpenDatalogFileCaption = main.Texts.DialogOpenDatalogFileCaption;
    main.CsvExport.DialogSaveDatalogFile = main.Texts.DialogSaveDatalogFile;
    const TUnitTexts units = ReadUnitTexts(language);
    main.ProfileOpening.TestfileComport = units.TestfileComport;
    main.SetpointTexts = {ReadSetpointHeadlines(language),
                          units.DataUnits,
                          units.UserUnits,
                          main.Texts.DialogOpenProfileCaption,
                          main.Texts.DialogSaveDatalogFile,
                          units.TestfileComport.ValueAt(0),
                          ReadSetpointFileTexts(language),
                          TSetpointTexts().RowsOfFormer};
    ReadOwnTexts(language, "SetpointPage", {{main.SetpointTexts.RowsOfFormer, "RowsOfFormer"}});
    ReadOwnTexts(language, "SdDatalog", {{main.SdDatalogReader.FileRefused, "FileRefused"}});
    const TNabtodriverTexts driver = ReadNabtodriverTexts(language);
    main.FormMain.DeviceID.SetCaption(driver.ButChangeID);
    main.FormMain.but_swupdate.SetCaption(driver.ButFWupdate);
    main.FormMain.but_errorlog.SetCaption(driver.ButErrorlog);
    main.SetpointPage.LblSetpointPageEmpty.SetCaption(language.ReadText("EmptyPages", "Setpoint"));
    main.GraphPage.LblGraphPageEmpty.SetCaption(language.ReadText("EmptyPages", "Graph"));
    std::string hideNotice = "Hide this line";
    ReadOwnTexts(language, "Notices", {{hideNotice, "Hide"}});
    for (TNotice* notice : main.FormMain.Notices)
        notice->Hide.SetHint(hideNotice);
    if (const std::string stop = language.ReadText("ReadBack", "Stop"); !stop.empty())
        main.FormMain.ButStopReadBack.SetCaption(stop);
}

} // namespace tidewell
