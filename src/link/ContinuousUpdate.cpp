#include "link/ContinuousUpdate.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Paths.h"
#include "core/TextFile.h"
#include "core/controls/Lists.h"
#include "core/controls/StatusBar.h"
#include "core/ports/IDialogs.h"
#include "link/DeviceUse.h"
#include "link/FirmwarePackage.h"
#include "link/FirmwareUpdate.h"
#include "link/ServiceFiles.h"
#include "link/UpdateStatus.h"

namespace tidewell {

namespace {
constexpr int interval = 60000; // ms
constexpr const char* listFileName = "filecontdnltest.fwc";
} // namespace

TContinuousUpdate::TContinuousUpdate(const TParts& parts)
    : TimerContUpdate(parts.Timers.CreateTimer()), Parts(parts) {
    TimerContUpdate->SetInterval(interval);
    TimerContUpdate->SetHandler([this] { TimerContUpdateTimer(); });
    Parts.Update.OnUpdateDone = [this](bool success) {
        UpdateDone(success);
    };
    FollowStatus = Parts.Status.Changed.Connect(
        [this] { Parts.ButContUpdate.SetEnabled(!Parts.Status.Running() || RPCEnableMultibleUpdate); });
}

void TContinuousUpdate::ButContUpdateClick() {
    if (RPCEnableMultibleUpdate) {
        StopTest();
    } else if (!Parts.Use.Taken()) {
        const TDeviceUse::TAction action(Parts.Use);
        if (action)
            StartTest();
    }
}

void TContinuousUpdate::StartTest() {
    RPCEnableMultibleUpdate = true;
    ContUpdateACK = 0;
    ContUpdateNACK = 0;
    DateTimeStart = Parts.Clock.Now();
    Parts.ButContUpdate.SetCaption("Continuous RPC-Update started");
    Parts.Update.SelectConfigFile();
    UseMultibleFiles = false;
    if (Parts.EnableContineousUpdate &&
        Parts.CurrentUpdateSWFile.string().find(listFileName) != std::string::npos) {
        Parts.memoDebug.Add("Contineous fileupload with multible files enabled");
        const bool listed = LoadList();
        UseMultibleFiles = true;
        if (listed) {
            UseMultibleFilesActiveFileIndex = 1;
            Parts.CurrentUpdateSWFile = ListedPath();
        }
    }
    Parts.Update.UpdateSW(Parts.CurrentUpdateSWFile);
}

bool TContinuousUpdate::LoadList() {
    UseMultibleFilesResultList.emplace();
    UseMultibleFilesList.emplace();
    const auto lines = ReadLines(Parts.Files, Parts.CurrentUpdateSWFile);
    for (const std::string& line : lines)
        if (const auto end = line.find('='); end != std::string::npos)
            UseMultibleFilesList->emplace(line.substr(0, end), line.substr(end + 1));
    return !lines.empty();
}

std::filesystem::path TContinuousUpdate::ListedPath() const {
    if (!UseMultibleFilesList)
        return {};
    const auto entry = UseMultibleFilesList->find(std::to_string(UseMultibleFilesActiveFileIndex));
    return entry == UseMultibleFilesList->end() ? std::filesystem::path() : PathInPackage(entry->second);
}

void TContinuousUpdate::StopTest() {
    Parts.Dialogs.ShowMessage("Continious test Stop result saved in userlog folder");
    Parts.StatusBar.SetText(0, "");
    Parts.ButContUpdate.SetCaption("Continuous RPC-Update stopped");
    const auto report = std::move(UseMultibleFilesResultList);
    RPCEnableMultibleUpdate = false;
    UseMultibleFiles = false;
    UseMultibleFilesList.reset();
    UseMultibleFilesResultList.reset();
    if (!report)
        throw EListError(
            "List index out of bounds (0): a continuous test without a list of packages has no report");
    auto lines = *report;
    lines.emplace_back("Continuous test report");
    lines.push_back("Test results -> TestOk: " + std::to_string(ContUpdateACK) +
                    " TestBad: " + std::to_string(ContUpdateNACK));
    const auto directory = GetFlashLogLogpath(Parts.Paths);
    try {
        Parts.Files.CreateDirectories(directory);
        WriteLines(Parts.Files,
                   directory / ("Continious_test_log_" + DateTimeStamp(Parts.Clock) + "_" +
                                Parts.device.substr(0, 12) + ".txt"),
                   lines);
    } catch (const EInOutError&) {
        for (const std::string& line : lines) // there it is not lost
            Parts.memoDebug.Add(line);
        throw;
    }
}

// A tick while the device is in use is put off to the next one.
void TContinuousUpdate::TimerContUpdateTimer() {
    if (Parts.Use.Taken())
        return;
    TimerContUpdate->SetEnabled(false);
    if (UseMultibleFiles && UseMultibleFilesList && UseMultibleFilesResultList) {
        const auto& lines = Parts.memoDebug.Lines();
        UseMultibleFilesResultList->insert(UseMultibleFilesResultList->end(), lines.begin(), lines.end());
        ++UseMultibleFilesActiveFileIndex;
        if (!UseMultibleFilesList->contains(std::to_string(UseMultibleFilesActiveFileIndex)))
            UseMultibleFilesActiveFileIndex = 1;
        Parts.CurrentUpdateSWFile = ListedPath();
    }
    Parts.Update.UpdateSW(Parts.CurrentUpdateSWFile);
}

void TContinuousUpdate::UpdateDone(bool success) {
    if (!RPCEnableMultibleUpdate)
        return;
    ++(success ? ContUpdateACK : ContUpdateNACK);
    Parts.StatusBar.SetText(0, "Ctest result Ok->: " + std::to_string(ContUpdateACK) +
                                   "Bad->: " + std::to_string(ContUpdateNACK));
    TimerContUpdate->SetEnabled(true);
}

} // namespace tidewell
