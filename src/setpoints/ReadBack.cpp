#include "setpoints/ReadBack.h"

#include "core/AtExit.h"
#include "core/Errors.h"
#include "core/ProgramState.h"
#include "link/NabtoDevice.h"

#include <algorithm>

namespace tidewell {

namespace {

constexpr int snapshotReady = 3;
constexpr int snapshotFailed = 3; // mismatches
constexpr int round = 1;          // ms
constexpr int cycles = 3;         // the first is only waited for

} // namespace

TDeviceUse& TReadBack::Use() const {
    return Device.Use;
}

TReadBack::EResult TReadBack::Run() {
    if (IsRunning)
        throw TError("The setpoints are being read already");
    IsRunning = true;
    Changed.Emit();
    const TAtExit ended([this] {
        IsRunning = false;
        IsWaiting = false;
        Changed.Emit();
    });
    Cancelled = false;
    Device.Snapshot.SetDatapointList.clear(); // what an earlier order has left
    const TDeviceUse::TAction action(Device.Use);
    if (!action)
        return EResult::NotStarted;
    Log.StartLog(false, true);
    Device.Snapshot.SetDatapointListCount = 0;
    Device.Snapshot.Error_SetDatapointListCount = 0;
    IsWaiting = true;
    Changed.Emit();
    const EResult result = WaitForSnapshot(action);
    Log.StopLog();
    return result;
}

TReadBack::EResult TReadBack::WaitForSnapshot(const TDeviceUse::TAction& action) {
    if (Program.IsOpen() && !Device.Cycle.Dologging)
        return EResult::NotStarted;
    std::string shown = ProgressText();
    while (Device.Snapshot.SetDatapointListCount < snapshotReady) {
        if (Cancelled || !Program.IsOpen() || !action.Kept())
            return EResult::Ended;
        Wait.ProcessMessages();
        Wait.Sleep(round);
        if (std::string text = ProgressText();
            text != shown && Device.Snapshot.SetDatapointListCount < snapshotReady) {
            shown = std::move(text);
            Changed.Emit();
        }
    }
    return Device.Snapshot.Error_SetDatapointListCount >= snapshotFailed ? EResult::Failed : EResult::Done;
}

std::string TReadBack::ProgressText() const {
    if (!IsRunning)
        return {};
    if (!IsWaiting)
        return "Reading the device: the log starts";
    const TPollCycle& cycle = Device.Cycle;
    if (!cycle.Dologging || !(cycle.timerLogger->Enabled() || cycle.timerQuery->Enabled()))
        return "Reading the device: the log is stopped"; // by the user, or by a row that cannot be shown
    const std::size_t questions = cycle.Questions.Count();
    std::string text = "Reading the device: cycle " +
                       std::to_string(std::min(Device.Snapshot.SetDatapointListCount + 1, cycles)) + " of " +
                       std::to_string(cycles) + ", question " +
                       std::to_string(std::min(cycle.queryCounter + 1, questions)) + " of " +
                       std::to_string(questions);
    if (const int retries = Device.Snapshot.Error_SetDatapointListCount; retries > 0)
        text += ", retry " + std::to_string(retries);
    return text;
}

TReadBack::TProgress TReadBack::Progress() const {
    if (!IsWaiting)
        return {};
    const auto questions = static_cast<int>(Device.Cycle.Questions.Count());
    const int max = cycles * questions;
    return {std::min(Device.Snapshot.SetDatapointListCount * questions +
                         static_cast<int>(Device.Cycle.queryCounter),
                     max),
            max};
}

std::string TReadBack::SnapshotRow(std::size_t row) const {
    const auto& rows = Device.Snapshot.SetDatapointList;
    return row < rows.size() ? rows[row] : std::string();
}

} // namespace tidewell
