#include "setpoints/SetpointTexts.h"

namespace tidewell {

void TSetpointTexts::TakeTexts(const TIniFile& language) {
    for (std::size_t column = 0; column < SetpointHeadline.size(); ++column)
        SetpointHeadline[column] = language.ReadText("SetpointHeadlines", "Col" + std::to_string(column));
    DataUnits = language.ReadSection("DataUnits");
    UserUnits = language.ReadSection("UserUnits");
    SetpointFileRefused = language.ReadSection("TestfileComport").ValueAt(0);
    ReadTexts(language, "HeadAppl",
              {{DialogOpenProfileCaption, "DialogOpenProfileCaption"},
               {DialogSaveDatalogFile, "DialogSaveDatalogFile"}});
    Files.Read(language);
    ReadOwnTexts(language, "SetpointPage", {{RowsOfFormer, "RowsOfFormer"}});
}

} // namespace tidewell
