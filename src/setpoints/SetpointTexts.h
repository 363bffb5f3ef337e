#pragma once

#include "core/IniFile.h"
#include "core/LanguageTexts.h"

#include <array>
#include <string>

namespace tidewell {

// What the event log tells of files of setpoints.
struct TSetpointFileTexts : TOwnTexts {
    TSetpointFileTexts() : TOwnTexts("SetpointFiles") {}
    TOwnText NotSaved{*this, "NotSaved", "Setpoints not saved: %1"}; // one of the reasons, or a failure
    TOwnText ResultNotSaved{*this, "ResultNotSaved", "Result of the setpoint write not saved: %1"};
    TOwnText NotStarted{*this, "NotStarted", "the log did not start"};
    TOwnText Ended{*this, "Ended", "the reading was ended"};
    TOwnText Differed{*this, "Differed", "the poll cycles differed three times"};
    TOwnText OtherProfile{*this, "OtherProfile", "another profile was opened"};
    TOwnText UnknownDevice{*this, "UnknownDevice", "the device is not in the profile"};
};

// Column headings of the setpoint grid.
using TSetpointHeadlines = std::array<std::string, 6>;

// The language texts that the setpoint page and its files share.
struct TSetpointTexts {
    TSetpointHeadlines SetpointHeadline;
    TIniSection DataUnits; // unit code = unit text
    TIniSection UserUnits; // texts by position
    std::string DialogOpenProfileCaption;
    std::string DialogSaveDatalogFile;
    std::string SetpointFileRefused; // first line of section TestfileComport
    TSetpointFileTexts Files;
    // Line above the grid; the names of two profiles.
    std::string RowsOfFormer = "These rows are of the former profile %1. Choose a group to see those of %2.";

    void TakeTexts(const TIniFile& language);
};

} // namespace tidewell
