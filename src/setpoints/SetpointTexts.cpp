#include "setpoints/SetpointTexts.h"

namespace tidewell {

TSetpointFileTexts ReadSetpointFileTexts(const TIniFile& languageFile) {
    TSetpointFileTexts texts;
    ReadOwnTexts(languageFile, "SetpointFiles",
                 {{texts.NotSaved, "NotSaved"},
                  {texts.ResultNotSaved, "ResultNotSaved"},
                  {texts.NotStarted, "NotStarted"},
                  {texts.Ended, "Ended"},
                  {texts.Differed, "Differed"},
                  {texts.OtherProfile, "OtherProfile"},
                  {texts.UnknownDevice, "UnknownDevice"}});
    return texts;
}

} // namespace tidewell
