#include "mainform/FormMainTexts.h"

#include "mainform/FormMain.h"

namespace tidewell {

void ReadTexts(const TIniFile& language, TFormMain& main) {
    main.TakeTexts(language);
    ReadTexts(language, "HeadAppl",
              {{main.Texts.MessageStopLog, "MessageStopLog"},
               {main.Texts.EditNotAllowed, "EditNotAllowed"},
               {main.Texts.ErrorMissingAdobe, "ErrorMissingAdobe"}});
    main.EventLogTexts.Read(language);
    main.SignIn.Texts.Read(language);
    main.SetpointTexts.Read(language);
    main.SetpointPage.TakeTexts(language);
    main.LiveLog.TakeTexts(language);
    main.ProfileOpening.TakeTexts(language);
    main.GraphPage.TakeTexts(language);
    main.DatalogReader.TakeTexts(language);
    main.SdDatalogReader.TakeTexts(language);
    main.CsvExport.TakeTexts(language);
    std::string hideNotice = "Hide this line";
    ReadOwnTexts(language, "Notices", {{hideNotice, "Hide"}});
    for (TNotice* notice : main.Notices())
        notice->Hide.SetHint(hideNotice);
}

} // namespace tidewell
