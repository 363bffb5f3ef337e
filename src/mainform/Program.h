#pragma once

#include "cloud/NabtoLogOn.h"
#include "core/Extensions.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"
#include "link/SetupForm.h"
#include "mainform/FormMain.h"
#include "mainform/Languagedialog.h"
#include "mainform/Ports.h"
#include "mainform/Splashscreen.h"
#include "setpoints/InputDialog.h"
#include "setpoints/LoadSetpoints.h"

#include <memory>

namespace tidewell {

// The whole program without its windows. The members stand in the order of their making; each holds
// references to what it needs of the others.
class TProgram {
  public:
    TProgram(const TPorts& ports, TStartOptions options);

    // The entry sequence up to the message loop. False when the program ends before it starts one.
    bool Start();
    // After the message loop: closes the main form in the ordinary way if it is still open. When something
    // cannot be saved, the user may save the log elsewhere.
    void Finish();

    const TPorts Ports;
    TStartOptions Options;

    TSplashscreen Splashscreen;
    TExtensions Extensions; // read once the system file is found
    TUNabto Nabto;          // the one and only
    TFormMain FormMain;
    TNabtoDevice NabtoDevice;
    TNabtoLogOn NabtoLogOn;
    Tlanguagedialog languagedialog;
    TSetupForm SetupForm;
    TInputDialog InputDialog;
    TLoadSetpoints LoadSetpoints;

  private:
    void CreateForms();
};

// Wires the program to the outside world.
std::unique_ptr<TProgram> Build(const TPorts& ports, const TStartOptions& options);

} // namespace tidewell
