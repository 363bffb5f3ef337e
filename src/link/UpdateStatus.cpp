#include "link/UpdateStatus.h"

#include "core/ports/IClock.h"

#include <algorithm>

namespace tidewell {

namespace {

std::string TwoDigits(std::chrono::seconds::rep number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string ElapsedText(std::chrono::seconds elapsed) {
    const auto seconds = elapsed.count();
    return "Elapsed " + std::to_string(seconds / 3600) + ":" + TwoDigits(seconds / 60 % 60) + ":" +
           TwoDigits(seconds % 60);
}

} // namespace

TUpdateStatus::TUpdateStatus(const IClock& clock) : Clock(clock) {
    PanelUpdate.SetVisible(false);
}

void TUpdateStatus::Begin() {
    IsRunning = true;
    Started = Clock.Monotonic();
    Shown = {};
    LabUpdateElapsed.SetCaption(ElapsedText(Shown));
    SetPhase("Asking the device");
    PanelUpdate.SetVisible(true);
    Changed.Emit();
}

void TUpdateStatus::End(bool success) {
    Tick();
    SetPhase(success ? "Update succeeded" : "Update failed");
    IsRunning = false;
    Changed.Emit();
}

void TUpdateStatus::SetPhase(const std::string& phase) {
    LabUpdatePhase.SetCaption(phase);
    LabUpdateFile.SetVisible(false);
    UpdateProgress.SetVisible(false);
}

void TUpdateStatus::SetFile(std::size_t number, std::size_t count, const std::string& name) {
    LabUpdateFile.SetCaption("File " + std::to_string(number) + " of " + std::to_string(count) + ": " + name);
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
    LabUpdateElapsed.SetCaption(ElapsedText(Shown));
}

} // namespace tidewell
