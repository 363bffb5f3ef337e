#pragma once

#include "core/IniFile.h"

#include <array>
#include <initializer_list>
#include <string>
#include <string_view>

// Captions and messages of the language file, one struct per section with its keys as members. A missing text
// is empty. They are read once, at start-up.
namespace tidewell {

// Words of our own: a key that is missing or empty leaves the English text that stands in the place.
struct TOwnText {
    std::string& Place;
    std::string_view Key;
};
void ReadOwnTexts(const TIniFile& languageFile, std::string_view section,
                  std::initializer_list<TOwnText> texts);
// The text with the first value in place of "%1", and so on.
std::string FillText(std::string_view text, std::initializer_list<std::string_view> values);

struct TSplashscreenTexts {
    std::string MessageLogFileDeleted;
    std::string MessageMainAppDone;
    std::string MessageApplicationReady;
    std::string MessageFileStructureMissing;
    std::string VersionString;
};

struct THeadApplTexts {
    std::string appl_title; // caption of the main form until a profile is open
    std::string TabSetpoint;
    std::string TabGraph;
    std::string CategoryPanelSetpoint;
    std::string CategoryPanelEventlog;
    std::string MessageClearGraphData; // question of a log start
    std::string MessageLoggingStart;
    std::string MessageLoggingStop;
    std::string MessageStopLog; // question before a profile or datalog is opened
    std::string EditNotAllowed; // shown nowhere
    std::string ErrorMissingAdobe;
    std::string TrafficButtonON;
    std::string TrafficButtonOFF;
    std::string FileMenu_Caption;
    std::string FileMenu_OpenProfile;
    std::string FileMenu_OpenDatalogFile;
    std::string FileMenu_SaveUserDatalog;
    std::string FileMenu_Nabto;
    std::string FileMenu_StartLog;
    std::string FileMenu_CloseProgram;
    std::string FileMenu_Activepage_setpoint;
    std::string FileMenu_Activepage_graph;
    std::string ComportMenu_Caption;
    std::string ComportMenu_Setup;
    std::string Language_caption;
    std::string LanguageMenu_Setup;
    std::string PopupMenu_GraphToolbar;
    std::string PopupMenu_Hold;
    std::string PopupMenu_ZoomAll;
    std::string PopupMenu_ClearGraph;
    std::string PopupMenu_Exportdatatocsv;
    std::string DialogOpenProfileCaption;
    std::string DialogOpenDatalogFileCaption;
    std::string DialogSaveDatalogFile;
};

struct TLanguageTexts {
    std::string butsave;
    std::string header;
    std::string bulletheader;
    std::string restart;
};

struct TNabtodriverTexts {
    std::string ButChangeID;
    std::string ButFWupdate;
    std::string ButErrorlog;
    std::string Butping;
    std::string ButFlashdatalog;
    std::string ButAccount;
    std::string ButGetFlashData;
    std::string labbegin;
    std::string labfinish;
    std::string labfrom;
    std::string labto;
    std::string questiondatalog;
    std::string adjustdays;
    std::string adjustdaysheader;
    std::string errorlogcounter;
};

// A text that is missing keeps the English one.
struct TFirmwareUpdateTexts {
    // What an update does, and how it ended.
    std::string Asking = "Asking the device";
    std::string Sending = "Sending the firmware";
    std::string Restarting = "Restarting the device in update mode";
    std::string Waiting = "Waiting for the device";
    std::string Checking = "Checking the firmware";
    std::string SendingAgain = "Sending again";
    std::string Succeeded = "Update succeeded";
    std::string Failed = "Update failed";
    std::string Stopped = "Update stopped";
    std::string File = "File %1 of %2: %3";   // number, count, name
    std::string Elapsed = "Elapsed";          // a time follows
    std::string Running = "Firmware update:"; // what it does follows
    std::string Show = "Show";
    // Questions before the window, or the program, is closed.
    std::string CloseWindow =
        "A firmware update is running. It goes on without this window. Close the window?";
    std::string CloseProgram = "A firmware update is running. Closing the program ends it and can leave the "
                               "controller half updated. Close the program?";
    // The button that leaves a run.
    std::string Stop = "Stop update";
    std::string StopUpdate = "Stopping the update can leave the controller half updated. Stop it?";
    std::string StoppedByUser = "The update was stopped by the user";
    // Why a run has failed, or could not start.
    std::string RestartNotSeen = "The restart of the controller was not seen";
    std::string ResultUnknown = "The controller did not tell the result of its firmware test, so it is not "
                                "known whether the firmware is good";
    std::string NotTaken = "The controller did not take the whole of file %1"; // number
    std::string NoUpdateStatus = "The profile tells of no update status (DF_HPM_SETPKTNUM), so no update can "
                                 "run";
    // What is wrong in a package.
    std::string BadPackage = "The firmware package is not in order, so nothing is sent:"; // a line each
    std::string NoNumber = "'%1' is not a valid integer value (%2, line %3 of %4)";       // text, what, where
    std::string NoFile = "%1 names no file";
    std::string NothingChosen = "Number of files: '%1' chooses no file";             // mask
    std::string ChosenBeyond = "Number of files: '%1' chooses a file beyond the %2"; // mask, count
    std::string WrongSize = "%1 has %2 bytes, not %3";
    std::string BadLine = "Line %1 of %2 is not well formed: %3";
    // The continuous test.
    std::string TestStopped = "Continuous test stopped. Good: %1, bad: %2. There is no report to save";
    std::string TestEnded = "The continuous test has ended: %1"; // why
    std::string OtherDevice = "another controller is in force";
};

// What the event log tells of libraries, files and the service. A text that is missing keeps the English one.
struct TEventLogTexts {
    std::string LibraryNotLoaded = "Library %1 not loaded: %2";               // file, reason
    std::string InterfaceMissing = "Interface file missing: %1";              // path
    std::string NoLibrary = "the library or one of its functions is missing"; // why there is no session
    std::string NumberReplaced = "%1'%2' is not possible, %3 is used";        // place, text, number
    std::string NoToken = "Signed in, but the service gave no token";
    std::string NoConnection = "No connection: %1";         // reason
    std::string DeviceNotSaved = "Device %1 not saved: %2"; // id, reason
};

// Lines of the event log about the link. A text that is missing keeps the English one.
struct TLinkTexts {
    std::string NotLinked = "No link to the device"; // its address and the cause follow
    std::string NotSignedIn = "nobody is signed in";
    std::string NotLocal = "in an offline session it must have been found on the local network";
    std::string NoUserName = "the service gave no user name";
    std::string InUse = "a running action keeps another device";
    std::string SessionLost = "The session has ended and is opened anew"; // the library's reason follows
    std::string SessionBack = "The session is open again";
    std::string SessionNotBack = "The session cannot be opened"; // likewise; it is tried again
    std::string NoAnswer = "the device does not answer";
};

// Column headings of the setpoint grid, `Col0` to `Col5`.
using TSetpointHeadlines = std::array<std::string, 6>;

// Sections that are read whole.
struct TUnitTexts {
    TIniSection DataUnits;       // unit code = unit text
    TIniSection UserUnits;       // texts by position
    TIniSection TestfileComport; // messages, by name or by position
};

TSplashscreenTexts ReadSplashscreenTexts(const TIniFile& languageFile);
THeadApplTexts ReadHeadApplTexts(const TIniFile& languageFile);
TLanguageTexts ReadLanguageTexts(const TIniFile& languageFile);
TNabtodriverTexts ReadNabtodriverTexts(const TIniFile& languageFile);
TFirmwareUpdateTexts ReadFirmwareUpdateTexts(const TIniFile& languageFile);
TEventLogTexts ReadEventLogTexts(const TIniFile& languageFile);
TLinkTexts ReadLinkTexts(const TIniFile& languageFile);
TSetpointHeadlines ReadSetpointHeadlines(const TIniFile& languageFile);
TUnitTexts ReadUnitTexts(const TIniFile& languageFile);

} // namespace tidewell
