#pragma once

#include "core/DiskFiles.h"
#include "desktop/QtApplication.h"
#include "desktop/QtDialogs.h"
#include "desktop/QtPictures.h"
#include "desktop/QtProcess.h"
#include "desktop/QtTime.h"
#include "link/DynamicLibraryLoader.h"
#include "mainform/Ports.h"

#include <filesystem>

namespace tidewell {

class TProgram;

// The outside world of the program: this machine, its screen and its event loop. Must outlive the program.
class TDesktop {
  public:
    // The folder is the program's own, where its native library is looked up first.
    TDesktop(TQtApplication& application, const std::filesystem::path& folder);

    TPorts Ports();
    // Tells how each form of the program is shown.
    void RegisterViews(TProgram& program);
    // Ends the program in the ordinary way, whatever dialog is open.
    void Close(TProgram& program);
    // Paints the main window into a picture file, if it is shown; failure is told on standard error.
    void SaveScreenshot(const TProgram& program, const std::filesystem::path& file) const;

    TQtApplication& Application;
    TDeliveryHold Hold;
    TQtDialogs Dialogs;
    TQtTimers Timers{Hold, Dialogs};
    TQtWait Wait{Hold};
    TQtClock Clock;
    TDiskFiles Files;
    TDynamicLibraryLoader Libraries;
    TQtProcess Process;
    TQtPictures Pictures;
};

// Runs the program with its windows to its end; the process's exit code. An argument that only asks for a
// text is answered on standard output, without a display. The environment: TIDEWELL_HOME names the folder to
// work in, if it is not that of the executable; TIDEWELL_SCREENSHOT a file that gets a picture of the main
// window just before it closes, and at SIGUSR1.
int RunDesktop(int argc, char** argv, const Tsysteminfo& version);

} // namespace tidewell
