#pragma once

#include "core/IniFile.h"
#include "core/Paths.h"
#include "core/controls/Form.h"
#include "core/controls/Simple.h"
#include "mainform/Ports.h"

#include <string>

namespace tidewell {

// The picture of the start. It is created first and lives to the end, since it keeps the shared paths.
class TSplashscreen : public TForm {
  public:
    static constexpr int InitialWidth = 862; // pixels
    static constexpr int InitialHeight = 214;

    TSplashscreen(const TPorts& ports, const TStartOptions& options);

    // Finds the system and the language file, then fills the labels and the picture. What is missing is
    // shown, and asks the application to end.
    void FormCreate();
    void FormStringInit();

    // Offers to delete system logs of 30 days and more.
    void CleanUpLogFiles();

    TImage logo{*this, "logo"};
    TLabel ver_lab{*this, "ver_lab"};
    TLabel infostring{*this, "infostring"};

    TCurrentInifilesPath FCurrentInifilesPath;
    TIniFile Language{""}; // read by FormCreate
    struct {
        std::string MessageLogFileDeleted, MessageMainAppDone, MessageApplicationReady,
            MessageFileStructureMissing, VersionString;
    } Texts;

  private:
    const TPorts& Ports;
    const TStartOptions& Options;
};

} // namespace tidewell
