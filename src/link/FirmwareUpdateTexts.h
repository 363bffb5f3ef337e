#pragma once

#include "core/LanguageTexts.h"

namespace tidewell {

struct TFirmwareUpdateTexts : TOwnTexts {
    TFirmwareUpdateTexts() : TOwnTexts("FirmwareUpdate") {}
    // What an update does, and how it ended.
    TOwnText Asking{*this, "Asking", "Asking the device"};
    TOwnText Sending{*this, "Sending", "Sending the firmware"};
    TOwnText Restarting{*this, "Restarting", "Restarting the device in update mode"};
    TOwnText Waiting{*this, "Waiting", "Waiting for the device"};
    TOwnText Checking{*this, "Checking", "Checking the firmware"};
    TOwnText SendingAgain{*this, "SendingAgain", "Sending again"};
    TOwnText Succeeded{*this, "Succeeded", "Update succeeded"};
    TOwnText Failed{*this, "Failed", "Update failed"};
    TOwnText Stopped{*this, "Stopped", "Update stopped"};
    TOwnText File{*this, "File", "File %1 of %2: %3"};      // number, count, name
    TOwnText Elapsed{*this, "Elapsed", "Elapsed"};          // a time follows
    TOwnText Running{*this, "Running", "Firmware update:"}; // what it does follows
    TOwnText Show{*this, "Show", "Show"};
    // Questions before the window, or the program, is closed.
    TOwnText CloseWindow{*this, "CloseWindow",
                         "A firmware update is running. It goes on without this window. Close the window?"};
    TOwnText CloseProgram{*this, "CloseProgram",
                          "A firmware update is running. Closing the program ends it and can leave the "
                          "controller half updated. Close the program?"};
    // The button that leaves a run.
    TOwnText Stop{*this, "Stop", "Stop update"};
    TOwnText StopUpdate{*this, "StopUpdate",
                        "Stopping the update can leave the controller half updated. Stop it?"};
    TOwnText StoppedByUser{*this, "StoppedByUser", "The update was stopped by the user"};
    // Why a run has failed, or could not start.
    TOwnText RestartNotSeen{*this, "RestartNotSeen", "The restart of the controller was not seen"};
    TOwnText ResultUnknown{*this, "ResultUnknown",
                           "The controller did not tell the result of its firmware test, so it is not known "
                           "whether the firmware is good"};
    TOwnText NotTaken{*this, "NotTaken", "The controller did not take the whole of file %1"}; // number
    TOwnText NoUpdateStatus{*this, "NoUpdateStatus",
                            "The profile tells of no update status (DF_HPM_SETPKTNUM), so no update can run"};
    // What is wrong in a package; a line for each mistake follows the first.
    TOwnText BadPackage{*this, "BadPackage", "The firmware package is not in order, so nothing is sent:"};
    // Text, what, where.
    TOwnText NoNumber{*this, "NoNumber", "'%1' is not a valid integer value (%2, line %3 of %4)"};
    TOwnText NoFile{*this, "NoFile", "%1 names no file"};
    TOwnText NothingChosen{*this, "NothingChosen", "Number of files: '%1' chooses no file"}; // mask
    // Mask, count.
    TOwnText ChosenBeyond{*this, "ChosenBeyond", "Number of files: '%1' chooses a file beyond the %2"};
    TOwnText WrongSize{*this, "WrongSize", "%1 has %2 bytes, not %3"};
    TOwnText BadLine{*this, "BadLine", "Line %1 of %2 is not well formed: %3"};
    // The continuous test.
    TOwnText TestStopped{*this, "TestStopped",
                         "Continuous test stopped. Good: %1, bad: %2. There is no report to save"};
    TOwnText TestEnded{*this, "TestEnded", "The continuous test has ended: %1"}; // why
    TOwnText OtherDevice{*this, "OtherDevice", "another controller is in force"};
};

} // namespace tidewell
