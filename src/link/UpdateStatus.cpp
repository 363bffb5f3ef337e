#include "link/UpdateStatus.h"

#include "core/Numbers.h"
#include "core/ports/IClock.h"

#include <algorithm>

namespace tidewell {

namespace {

constexpr TColor yellow{0x0000C8FF};

} // namespace

TUpdateStatus::TUpdateStatus(TForm& form, const IClock& clock) : TControls(form), Clock(clock) {
    PanelUpdate.SetVisible(false);
    ButUpdateStop.SetVisible(false);
}

void TUpdateStatus::Begin() {
    IsRunning = true;
    Started = Clock.Monotonic();
    Shown = {};
    LabUpdateElapsed.SetCaption(ElapsedText());
    LedUpdate.SetTrueColor(yellow);
    LedUpdate.SetValue(true);
    SetPhase(EUpdatePhase::Asking);
    ButUpdateStop.SetCaption(Texts.Stop);
    ButUpdateStop.SetEnabled(true);
    ButUpdateStop.SetVisible(true);
    PanelUpdate.SetVisible(true);
    Changed.Emit();
}

void TUpdateStatus::End(EUpdatePhase end) {
    Tick();
    LedUpdate.SetTrueColor(end == EUpdatePhase::Succeeded ? TALed::Green : TALed::Red);
    SetPhase(end);
    ButUpdateStop.SetVisible(false);
    IsRunning = false;
    Changed.Emit();
}

void TUpdateStatus::SetPhase(EUpdatePhase phase) {
    LabUpdatePhase.SetCaption(TextOf(phase));
    LabUpdateFile.SetVisible(false);
    UpdateProgress.SetVisible(false);
}

void TUpdateStatus::SetFile(std::size_t number, std::size_t count, const std::string& name) {
    LabUpdateFile.SetCaption(FillText(Texts.File, {std::to_string(number), std::to_string(count), name}));
    LabUpdateFile.SetVisible(true);
    UpdateProgress.SetPosition(0);
    UpdateProgress.SetVisible(true);
}

void TUpdateStatus::SetProgress(std::uint32_t bytes, std::uint32_t length) {
    const std::uint64_t percent = length == 0 ? 0 : std::uint64_t{bytes} * 100 / length;
    UpdateProgress.SetPosition(static_cast<int>(std::min<std::uint64_t>(percent, 100)));
    Tick();
}

void TUpdateStatus::Tick() {
    const auto elapsed = std::chrono::floor<std::chrono::seconds>(Clock.Monotonic() - Started);
    if (elapsed == Shown)
        return;
    Shown = elapsed;
    LabUpdateElapsed.SetCaption(ElapsedText());
}

const std::string& TUpdateStatus::TextOf(EUpdatePhase phase) const {
    switch (phase) {
    case EUpdatePhase::Asking:
        return Texts.Asking;
    case EUpdatePhase::Sending:
        return Texts.Sending;
    case EUpdatePhase::Restarting:
        return Texts.Restarting;
    case EUpdatePhase::Waiting:
        return Texts.Waiting;
    case EUpdatePhase::Checking:
        return Texts.Checking;
    case EUpdatePhase::SendingAgain:
        return Texts.SendingAgain;
    case EUpdatePhase::Succeeded:
        return Texts.Succeeded;
    case EUpdatePhase::Stopped:
        return Texts.Stopped;
    case EUpdatePhase::Failed:
        break;
    }
    return Texts.Failed;
}

std::string TUpdateStatus::ElapsedText() const {
    const auto seconds = Shown.count();
    return Texts.Elapsed + " " + std::to_string(seconds / 3600) + ":" + PaddedText(seconds / 60 % 60, 2) +
           ":" + PaddedText(seconds % 60, 2);
}

} // namespace tidewell
