#pragma once

#include "core/IniFile.h"
#include "core/LanguageTexts.h"

#include <string>

namespace tidewell {

// What the event log tells of files of setpoints. A text that is missing keeps the English one.
struct TSetpointFileTexts {
    std::string NotSaved = "Setpoints not saved: %1"; // one of the reasons, or a failure
    std::string ResultNotSaved = "Result of the setpoint write not saved: %1";
    std::string NotStarted = "the log did not start";
    std::string Ended = "the reading was ended";
    std::string Differed = "the poll cycles differed three times";
    std::string OtherProfile = "another profile was opened";
    std::string UnknownDevice = "the device is not in the profile";
};
TSetpointFileTexts ReadSetpointFileTexts(const TIniFile& languageFile);

// The language texts that the setpoint page and its files read; filled when the main form is made.
struct TSetpointTexts {
    TSetpointHeadlines SetpointHeadline;
    TIniSection DataUnits; // unit code = unit text
    TIniSection UserUnits; // texts by position
    std::string DialogOpenProfileCaption;
    std::string DialogSaveDatalogFile;
    std::string SetpointFileRefused; // first line of section TestfileComport
    TSetpointFileTexts Files;
    // Line above the grid. A text that is missing keeps the English one; the names of two profiles.
    std::string RowsOfFormer = "These rows are of the former profile %1. Choose a group to see those of %2.";
};

} // namespace tidewell
