#include "link/ContinuousUpdate.h"

#include "core/DeviceId.h"
#include "core/Errors.h"
#include "core/Extensions.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Paths.h"
#include "core/TextFile.h"
#include "core/controls/Lists.h"
#include "core/controls/StatusBar.h"
#include "core/ports/IDialogs.h"
#include "link/DeviceServices.h"
#include "link/DeviceUse.h"
#include "link/DownloadFiles.h"
#include "link/FirmwarePackage.h"
#include "link/FirmwareUpdate.h"
#include "link/UpdateStatus.h"

#include <utility>

namespace tidewell {

namespace {
constexpr int interval = 60000; // ms
constexpr const char* savedText = "Continious test Stop result saved in userlog folder";
constexpr const char* listFileName = "filecontdnltest.fwc";
} // namespace

TContinuousUpdate::TContinuousUpdate(const TDeviceServices& services, TUpdateStatus& status,
                                     TFirmwareUpdate& update, TButton& butContUpdate)
    : TimerContUpdate(services.Timers.CreateTimer()), Services(services), Status(status), Update(update),
      ButContUpdate(butContUpdate) {
    TimerContUpdate->SetInterval(interval);
    TimerContUpdate->SetHandler([this] { TimerContUpdateTimer(); });
    Update.OnUpdateDone = [this](const TUpdateEnd& end) { UpdateDone(end); };
    FollowStatus = Status.Changed.Connect(
        [this] { ButContUpdate.SetEnabled(!Status.Running() || RPCEnableMultibleUpdate); });
}

bool TContinuousUpdate::Strict() const {
    return Services.Extensions.ServiceStrict;
}

void TContinuousUpdate::ButContUpdateClick() {
    if (RPCEnableMultibleUpdate && Strict()) {
        EndTest({});
    } else if (RPCEnableMultibleUpdate) {
        StopTest();
    } else if (!Services.Use.Taken()) {
        const TDeviceUse::TAction action(Services.Use);
        if (action)
            StartTest();
    }
}

void TContinuousUpdate::StartTest() {
    RPCEnableMultibleUpdate = true;
    ContUpdateACK = 0;
    ContUpdateNACK = 0;
    DateTimeStart = Services.Clock.Now();
    IdleCaption = ButContUpdate.Caption();
    ButContUpdate.SetCaption("Continuous RPC-Update started");
    Update.SelectConfigFile();
    TestedDevice = Services.device;
    UseMultibleFiles = false;
    if (Services.EnableContineousUpdate &&
        Services.CurrentUpdateSWFile.string().find(listFileName) != std::string::npos) {
        Services.memoDebug.Add("Contineous fileupload with multible files enabled");
        bool listed = false;
        try {
            listed = LoadList();
        } catch (const EInOutError& error) {
            if (!Strict())
                throw;
            UseMultibleFilesResultList.reset();
            return EndTest(error.what());
        }
        UseMultibleFiles = true;
        if (listed) {
            UseMultibleFilesActiveFileIndex = 1;
            Services.CurrentUpdateSWFile = ListedPath();
        }
    }
    Update.UpdateSW(Services.CurrentUpdateSWFile);
}

bool TContinuousUpdate::LoadList() {
    UseMultibleFilesResultList.emplace();
    UseMultibleFilesList.emplace();
    const auto lines = ReadLines(Services.Files, Services.CurrentUpdateSWFile);
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
    Services.Dialogs.ShowMessage(savedText);
    Services.StatusBar.SetText(0, "");
    ButContUpdate.SetCaption("Continuous RPC-Update stopped");
    const auto report = std::move(UseMultibleFilesResultList);
    RPCEnableMultibleUpdate = false;
    UseMultibleFiles = false;
    UseMultibleFilesList.reset();
    UseMultibleFilesResultList.reset();
    if (!report)
        throw EListError(
            "List index out of bounds (0): a continuous test without a list of packages has no report");
    SaveReport(*report);
}

void TContinuousUpdate::EndTest(const std::string& reason) {
    const TFirmwareUpdateTexts& texts = Status.Texts;
    TimerContUpdate->SetEnabled(false);
    Services.StatusBar.SetText(0, "");
    ButContUpdate.SetCaption(reason.empty() ? "Continuous RPC-Update stopped" : IdleCaption);
    auto report = std::exchange(UseMultibleFilesResultList, std::nullopt);
    RPCEnableMultibleUpdate = false;
    UseMultibleFiles = false;
    UseMultibleFilesList.reset();
    std::string text;
    if (!reason.empty())
        text = FillText(texts.TestEnded, {reason});
    else if (!report)
        text = FillText(texts.TestStopped, {std::to_string(ContUpdateACK), std::to_string(ContUpdateNACK)});
    if (report) {
        if (!text.empty())
            report->push_back(text);
        std::string saved = savedText;
        try {
            SaveReport(*std::move(report));
        } catch (const EInOutError& error) {
            saved = error.what();
        }
        text += (text.empty() ? "" : "\r\n") + saved;
    }
    Services.Dialogs.ShowMessage(text);
}

void TContinuousUpdate::SaveReport(std::vector<std::string> lines) {
    lines.emplace_back("Continuous test report");
    lines.push_back("Test results -> TestOk: " + std::to_string(ContUpdateACK) +
                    " TestBad: " + std::to_string(ContUpdateNACK));
    const auto directory = UpdateLogDirectory(Services.Paths);
    try {
        Services.Files.CreateDirectories(directory);
        const std::string device = DeviceIdOf(Strict() ? TestedDevice : Services.device);
        WriteLines(
            *Services.Files.Create(
                directory / ("Continious_test_log_" + DateTimeStamp(Services.Clock) + "_" + device + ".txt")),
            lines);
    } catch (const EInOutError&) {
        for (const std::string& line : lines) // there it is not lost
            Services.memoDebug.Add(line);
        throw;
    }
}

// A tick while the device is in use, or with ServiceStrict below a dialog, is put off to the next one.
void TContinuousUpdate::TimerContUpdateTimer() {
    if (Services.Use.Taken() || (Strict() && Services.Dialogs.IsModalOpen()))
        return;
    TimerContUpdate->SetEnabled(false);
    const TDeviceUse::TAction action(Services.Use);
    if (!action)
        return UpdateDone({});
    if (Strict() && Services.device != TestedDevice)
        return EndTest(Status.Texts.OtherDevice);
    if (UseMultibleFiles && UseMultibleFilesList && UseMultibleFilesResultList) {
        const auto& lines = Services.memoDebug.Lines();
        UseMultibleFilesResultList->insert(UseMultibleFilesResultList->end(), lines.begin(), lines.end());
        ++UseMultibleFilesActiveFileIndex;
        if (!UseMultibleFilesList->contains(std::to_string(UseMultibleFilesActiveFileIndex)))
            UseMultibleFilesActiveFileIndex = 1;
        Services.CurrentUpdateSWFile = ListedPath();
    }
    Update.UpdateSW(Services.CurrentUpdateSWFile);
}

void TContinuousUpdate::UpdateDone(const TUpdateEnd& end) {
    if (!RPCEnableMultibleUpdate)
        return;
    if (Strict() && !end.CannotStart.empty())
        return EndTest(end.CannotStart);
    ++(end.Success ? ContUpdateACK : ContUpdateNACK);
    Services.StatusBar.SetText(0, "Ctest result Ok->: " + std::to_string(ContUpdateACK) +
                                      "Bad->: " + std::to_string(ContUpdateNACK));
    TimerContUpdate->SetEnabled(true);
}

} // namespace tidewell
