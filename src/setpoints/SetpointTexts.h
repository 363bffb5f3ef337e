#pragma once

#include "core/IniFile.h"
#include "core/LanguageTexts.h"

#include <string>

namespace tidewell {

// The language texts that the setpoint page and its files read; filled when the main form is made.
struct TSetpointTexts {
    TSetpointHeadlines SetpointHeadline;
    TIniSection DataUnits; // unit code = unit text
    TIniSection UserUnits; // texts by position
    std::string DialogOpenProfileCaption;
    std::string DialogSaveDatalogFile;
    std::string SetpointFileRefused; // first line of section TestfileComport
};

} // namespace tidewell
