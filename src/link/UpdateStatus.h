#pragma once

#include "core/controls/Signal.h"
#include "core/controls/Simple.h"
#include "link/FirmwareUpdateTexts.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace tidewell {

class IClock;

enum class EUpdatePhase {
    Asking,
    Sending,
    Restarting,
    Waiting,
    Checking,
    SendingAgain,
    Succeeded,
    Failed,
    Stopped
};

// How far a firmware update is, for the screen: what it does, which file it sends and how much of that, and
// how long it has been running. PanelUpdate holds the other controls; it is hidden before the first update.
// The lamp is yellow during an update, and green or red by its end; the button that leaves a run is there
// while one runs.
class TUpdateStatus : public TControls {
  public:
    TUpdateStatus(TForm& form, const IClock& clock);

    TPanel PanelUpdate{*this, "PanelUpdate"};
    TALed LedUpdate{*this, "LedUpdate"};
    TLabel LabUpdatePhase{*this, "LabUpdatePhase"};
    TLabel LabUpdateFile{*this, "LabUpdateFile"};         // shown while a file is sent, and so is
    TProgressBar UpdateProgress{*this, "UpdateProgress"}; // its percentage
    TLabel LabUpdateElapsed{*this, "LabUpdateElapsed"};
    TButton ButUpdateStop{*this, "ButUpdateStop"};

    TFirmwareUpdateTexts Texts;

    bool Running() const { return IsRunning; }
    TSignal<> Changed; // of Running

    void Begin();
    void End(EUpdatePhase end); // one of the last three
    void SetPhase(EUpdatePhase phase);
    // File number of count, from 1.
    void SetFile(std::size_t number, std::size_t count, const std::string& name);
    void SetProgress(std::uint32_t bytes, std::uint32_t length);
    // Brings the elapsed time up to date. Cheap.
    void Tick();

  private:
    const std::string& TextOf(EUpdatePhase phase) const;
    std::string ElapsedText() const;

    const IClock& Clock;
    bool IsRunning = false;
    std::chrono::milliseconds Started{};
    std::chrono::seconds Shown{};
};

} // namespace tidewell
