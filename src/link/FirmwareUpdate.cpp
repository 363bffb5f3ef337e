#include "link/FirmwareUpdate.h"

#include "core/AtExit.h"
#include "core/DeviceId.h"
#include "core/Errors.h"
#include "core/Extensions.h"
#include "core/IniFile.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "core/TextFile.h"
#include "core/controls/Lists.h"
#include "core/ports/IDialogs.h"
#include "link/DeviceServices.h"
#include "link/DeviceUse.h"
#include "link/DownloadFiles.h"
#include "link/FileUpload.h"
#include "link/Nabto.h"
#include "link/UpdateRun.h"
#include "link/UpdateStatus.h"

#include <exception>

namespace tidewell {

namespace {

constexpr int mostRounds = 5;
constexpr int mostCrcReads = 4;
constexpr int restartPause = 10000; // ms, here and below
constexpr int pingPause = 500;
constexpr int pingPauses = 101; // of them between two pings
constexpr int crcPause = 5000;

constexpr std::uint32_t updateModeCommand = 42; // the file mask stands above its 16 bits
constexpr std::int32_t crcResultOffset = 3;     // from the base of the update status

std::uint32_t Number(const std::string& text) {
    return static_cast<std::uint32_t>(ToIntegerOr(text, 0));
}

} // namespace

TFirmwareUpdate::TFirmwareUpdate(const TDeviceServices& services, TUpdateRun& run, TUpdateStatus& status,
                                 TFileUpload& upload)
    : Services(services), Run(run), Status(status), Upload(upload) {
    Status.ButUpdateStop.OnClick = [this] { StopClick(); };
}

bool TFirmwareUpdate::Strict() const {
    return Services.Extensions.ServiceStrict;
}

// The event loop runs within the run, which so stands still as long as the question does.
void TFirmwareUpdate::StopClick() {
    if (Services.Dialogs.ShowMessageBox(EMessageKind::Confirmation, Status.Texts.StopUpdate,
                                        EButtons::YesNo) != EModalResult::Yes)
        return;
    Run.Stop();
    Status.ButUpdateStop.SetEnabled(false);
}

void TFirmwareUpdate::SelectConfigFile() {
    Services.CurrentUpdateSWFile.clear();
    TFileDialog dialog;
    dialog.Title = "Open";
    dialog.InitialDirectory = Services.Paths.directorypath; // which is the current one
    dialog.Filters = {{"Software Config File", Services.EnableContineousUpdate ? "*.fwc" : "config.fwc"}};
    dialog.FileMustExist = true;
    if (const auto path = Services.Dialogs.OpenFile(dialog))
        Services.CurrentUpdateSWFile = *path;
}

bool TFirmwareUpdate::UpdateSW(const std::filesystem::path& configFile) {
    if (!Services.Program.IsOpen() || Services.Use.Taken())
        return false;
    const TDeviceUse::THold hold(Services.Use);
    if (!hold) { // of which the user has been told; the continuous test counts it
        if (Services.Program.IsOpen())
            OnUpdateDone({});
        return false;
    }
    Status.Begin();
    EUpdatePhase phase = EUpdatePhase::Failed;
    const TAtExit end([this, &phase] {
        Run.Reset();
        Status.End(phase);
    });
    Sending = false;
    CannotStart.clear();
    std::optional<bool> result;
    try {
        result = Perform(configFile);
    } catch (const EUpdateEnded& ended) {
        Services.memoDebug.Add(ended.what());
        if (Services.Program.IsOpen())
            phase = EUpdatePhase::Stopped;
        result = false;
    } catch (const std::exception& error) {
        if (Sending) {
            Services.memoDebug.Add(error.what());
            SaveLog(false);
        }
        if (Strict() && Services.Program.IsOpen())
            OnUpdateDone({false, error.what()});
        throw;
    }
    if (!result && !Strict())
        return false;
    if (result)
        SaveLog(*result);
    const bool success = result.value_or(false);
    if (success)
        phase = EUpdatePhase::Succeeded;
    if (Services.Program.IsOpen())
        OnUpdateDone({success, CannotStart});
    return success;
}

std::optional<bool> TFirmwareUpdate::Perform(const std::filesystem::path& configFile) {
    if (!AskDevice())
        return false;
    StatusAddress =
        TIniFile(Services.Files, Services.Paths.plsfile).ReadInteger("NabtoSection", "DF_HPM_SETPKTNUM", 0);
    if (StatusAddress == 0) {
        if (Strict())
            Refuse({Status.Texts.NoUpdateStatus});
        return std::nullopt;
    }
    if (Services.CurrentUpdateSWFile.empty()) {
        CannotStart = "Unable to open file";
        Services.Dialogs.ShowMessage(CannotStart);
        return false;
    }
    return OpenPackage(configFile) && CheckModel() && SendFiles() && RestartAndVerify();
}

bool TFirmwareUpdate::AskDevice() {
    const std::string id = DeviceIdOf(Services.device);
    TMemo& memo = Services.memoDebug;
    memo.Clear();
    memo.Add(id);
    memo.Add("Ping..");
    Run.ProcessMessages();
    if (!Run.Ping()) {
        Services.Dialogs.ShowMessage(Services.Nabto.LastError());
        return false;
    }
    memo.Add("Ping Response: OK");
    memo.Add("DeviceID: " + id);
    memo.Add("Ping Response: OK");
    memo.Add("Model: " + Services.Nabto.model);
    memo.Add("Varenummer: " + Services.Nabto.varenummer);
    memo.Add("HP SW version: " + Services.Nabto.versionHP);
    memo.Add("NP SW version: " + Services.Nabto.versionNP);
    memo.Add("BT SW version: " + Services.Nabto.versionBT);
    return true;
}

bool TFirmwareUpdate::OpenPackage(const std::filesystem::path& configFile) {
    TMemo& memo = Services.memoDebug;
    memo.Add("Config File: " + configFile.string());
    Directory = configFile.parent_path();
    VersionMissing = false;
    VersionMismatch = false;
    std::vector<std::string> mistakes;
    try {
        if (Strict()) {
            auto checked = CheckFirmwarePackage(Services.Files, configFile, Status.Texts);
            Package = std::move(checked.Package);
            mistakes = std::move(checked.Mistakes);
        } else {
            Package = ReadFirmwarePackage(Services.Files, configFile);
        }
    } catch (const EInOutError& error) {
        Refuse({error.what()});
        return false;
    }
    Evidence = TUpdateEvidence(Package);
    memo.Add("Number of files: " + Package.FileMask);
    for (const TUpdateFile& file : Package.Files)
        memo.Add("Filename: " + file.filename + ", CRC32: " + std::to_string(file.crc) +
                 ", Filesize: " + std::to_string(file.filesize));
    for (std::size_t i = Package.FileMask.size(); i < Package.Files.size(); ++i)
        memo.Add("No digit for file " + std::to_string(i + 1) + ", it is left out");
    if (mistakes.empty())
        return true;
    if (const auto otherModel = Package.Files.empty() ? std::nullopt : OtherModel())
        mistakes.push_back(*otherModel);
    mistakes.insert(mistakes.begin(), Status.Texts.BadPackage);
    Refuse(mistakes);
    return false;
}

std::optional<std::string> TFirmwareUpdate::OtherModel() const {
    const std::string& filename = Package.Files.front().filename;
    if (filename.empty() || FitsModel(filename, Services.Nabto.model))
        return std::nullopt;
    return "Firmware filename and controller model are not equal Firmware download will abort\n\rModel : " +
           Services.Nabto.model + " Filename : " + filename;
}

bool TFirmwareUpdate::CheckModel() {
    if (Package.Files.empty())
        throw EListError("List index out of bounds (0): the package " +
                         Services.CurrentUpdateSWFile.string() + " names no file");
    const auto otherModel = OtherModel();
    if (otherModel) {
        CannotStart = *otherModel;
        Services.Dialogs.ShowMessage(*otherModel);
    }
    return !otherModel;
}

bool TFirmwareUpdate::SendFiles() {
    Status.SetPhase(EUpdatePhase::Sending);
    for (std::size_t i = 0; i < Package.Files.size(); ++i)
        if (Package.Sent(i) && !SendFile(i, FirstRoad(Package.Files[i])))
            return false;
    return true;
}

// An image that cannot be read is a transfer that failed.
bool TFirmwareUpdate::SendFile(std::size_t position, ERoad road) {
    if (road == ERoad::None)
        return true;
    std::size_t number = 0;
    std::size_t count = 0;
    for (std::size_t i = 0; i < Package.Files.size(); ++i) {
        if (Package.Sent(i))
            ++count;
        if (i == position)
            number = count;
    }
    Status.SetFile(number, count, Package.Files[position].filename);
    Sending = true;
    try {
        const bool success = Transfer(position, road);
        Evidence.NoteTaken(position, Upload.Taken());
        return success;
    } catch (const EInOutError& error) {
        TellAndLog({error.what()});
    }
    return false;
}

bool TFirmwareUpdate::Transfer(std::size_t position, ERoad road) {
    const TUpdateFile& file = Package.Files[position];
    const auto number = static_cast<std::uint32_t>(position + 1);
    const auto path = ImagePath(Directory, file.filename);
    TFileUpload& upload = Upload;
    switch (road) {
    case ERoad::PreEraseAndStream:
        if (!upload.RpcPreErase())
            return false;
        upload.StreamUpload(number, file.filesize, file.filename, file.crc); // what it says does not count
        break;
    case ERoad::Stream:
        return upload.StreamUpload(number, file.filesize, file.filename, file.crc);
    case ERoad::RpcMain:
        return upload.RpcUploadMain(number, file.filesize, path, file.crc);
    case ERoad::RpcDisplay:
        return upload.RpcUploadDisplay(number, file.filesize, path, file.crc);
    case ERoad::RpcTarget:
        return upload.RpcUploadTarget(number, file.filesize, path, file.crc);
    case ERoad::None:
        break;
    }
    return true;
}

bool TFirmwareUpdate::RestartAndVerify() {
    EUpdateVerdict verdict = EUpdateVerdict::RestartNotSeen;
    for (int round = 0; round < mostRounds && MayChange(verdict); ++round)
        verdict = RunRound();
    Services.memoDebug.Add("Update done!");
    const bool success = verdict == EUpdateVerdict::Good;
    if (success && VersionMissing)
        Tell("Some target software versions were missing, please verify manually after update");
    if (Strict())
        TellVerdict(verdict);
    return success;
}

EUpdateVerdict TFirmwareUpdate::RunRound() {
    Evidence.BeginRound();
    const bool answeredAtOnce = AwaitDevice(RestartInUpdateMode());
    if (Strict() && !Evidence.RestartSeen()) { // whatever could be read is the former software's
        Services.memoDebug.Add(Status.Texts.RestartNotSeen);
    } else {
        ReadCrcResult();
        if (Strict() && answeredAtOnce) { // perhaps it was not down yet, and told its former versions
            Services.Nabto.ForgetVersions();
            Run.Ping();
        }
        CheckFiles();
    }
    return Evidence.Judge(Strict());
}

std::string TFirmwareUpdate::RestartInUpdateMode() {
    Status.SetPhase(EUpdatePhase::Restarting);
    Services.memoDebug.Add("Everything OK");
    Services.memoDebug.Add("Restarting Device in Update mode");
    Run.Sleep(restartPause);
    const std::uint32_t command = Package.FileMaskBits << 16U | updateModeCommand;
    Sending = true;
    std::string reply = Run.SendQuery("admincmd.json", TUNabto::GetCMD(static_cast<std::int32_t>(command)));
    Services.memoDebug.Add("Update mode started, please wait...");
    return reply;
}

bool TFirmwareUpdate::AwaitDevice(const std::string& restartReply) {
    Status.SetPhase(EUpdatePhase::Waiting);
    if (Strict())
        Services.Nabto.ForgetVersions();
    const bool atOnce = Run.Ping();
    const TDeviceReply told = ParseReply(restartReply);
    const bool accepted = !told.Error && told.Status && told.Status->Bits() == 0U;
    Evidence.NoteRestart(accepted, atOnce);
    for (bool answers = atOnce; !answers; answers = Run.Ping())
        for (int i = 0; i < pingPauses; ++i) {
            Run.Sleep(pingPause);
            Run.ProcessMessages();
        }
    return atOnce;
}

// The last read counts; if it told nothing, with ServiceStrict the one before.
void TFirmwareUpdate::ReadCrcResult() {
    Status.SetPhase(EUpdatePhase::Checking);
    std::string address = std::to_string(std::int64_t{StatusAddress} + crcResultOffset);
    std::string object = "0";
    if (Services.Nabto.isGateway()) {
        object = "8";
    } else if (Services.Nabto.isZelt4()) {
        address = "39";
        object = "1";
    }
    for (int read = 0; read < mostCrcReads; ++read) {
        Run.Sleep(crcPause);
        std::string value = Services.Nabto.JsonToValue(
            Run.SendQuery("setpointReadValue.json", TUNabto::ValueToJson(address, "1", object)));
        if (const auto end = value.rfind(';'); end != std::string::npos)
            value.resize(end);
        Services.memoDebug.Add("CRC test resultat: " + value);
        const auto result = TryToInteger(value);
        if (result || !Strict())
            Evidence.NoteResult(result);
        if (result && (*result & 0xFF) == 0)
            break;
    }
}

// Compares the versions and sends again what failed. Without a result no file is sent.
void TFirmwareUpdate::CheckFiles() {
    for (std::size_t i = 0; i < Package.Files.size(); ++i) {
        if (!Package.Verified(i))
            continue;
        const auto expected = CheckVersion(i);
        if (expected) {
            VersionMismatch = !*expected;
            Evidence.NoteVersion(i, *expected);
        }
        if (VersionMismatch && (expected || !Strict()))
            Tell("Automatick Software verification failed, please verify manually");
        if (!Evidence.ResultKnown())
            Services.memoDebug.Add("CRC result of file " + std::to_string(i + 1) + " unknown");
        if (!Evidence.Failed(i))
            continue;
        Services.memoDebug.Add("CRC error in file " + std::to_string(i + 1) + " retrying");
        Status.SetPhase(EUpdatePhase::SendingAgain);
        SendFile(i, RepeatRoad(Package.Files[i])); // the next round tells how it went
    }
}

// What is not compared leaves the last comparison's outcome standing.
std::optional<bool> TFirmwareUpdate::CheckVersion(std::size_t position) {
    const TUpdateFile& file = Package.Files[position];
    if (file.swversion == 0) {
        VersionMissing = true;
        return std::nullopt;
    }
    const std::string* version = nullptr;
    if (Services.Nabto.isGateway()) {
        if (position != 0)
            return std::nullopt;
        version = &Services.Nabto.GatewayVersion;
    } else if (file.fileId == "VersionFName1") {
        version = &Services.Nabto.versionHP;
    } else if (file.fileId == "VersionFName2") {
        version = &Services.Nabto.versionNP;
    } else if (file.fileId == "VersionFName3") {
        version = &Services.Nabto.versionBT;
    } else {
        VersionMissing = true;
    }
    return version != nullptr && Number(*version) == file.swversion;
}

void TFirmwareUpdate::Tell(const std::string& text) {
    if (Services.EnableContineousUpdate)
        Services.memoDebug.Add(text);
    else
        Services.Dialogs.ShowMessage(text);
}

// The log keeps the reason.
void TFirmwareUpdate::TellAndLog(const std::vector<std::string>& lines) {
    for (const std::string& line : lines)
        Services.memoDebug.Add(line);
    if (!Services.EnableContineousUpdate)
        Services.Dialogs.ShowMessage(Join(lines, "\r\n"));
}

void TFirmwareUpdate::Refuse(const std::vector<std::string>& lines) {
    CannotStart = Join(lines, "\r\n");
    TellAndLog(lines);
}

void TFirmwareUpdate::TellVerdict(EUpdateVerdict verdict) {
    const TFirmwareUpdateTexts& texts = Status.Texts;
    if (verdict == EUpdateVerdict::RestartNotSeen)
        TellAndLog({texts.RestartNotSeen});
    else if (verdict == EUpdateVerdict::ResultUnknown)
        TellAndLog({texts.ResultUnknown});
    else if (verdict == EUpdateVerdict::ImageNotTaken)
        TellAndLog({FillText(texts.NotTaken, {std::to_string(Evidence.FirstNotTaken() + 1)})});
}

void TFirmwareUpdate::SaveLog(bool success) {
    const auto directory = UpdateLogDirectory(Services.Paths);
    const std::string name = std::string(success ? "FW-Update_OK_" : "FW-Update_Error_") +
                             DateTimeStamp(Services.Clock) + "_" + DeviceIdOf(Services.device) + ".log";
    try {
        Services.Files.CreateDirectories(directory);
        WriteLines(*Services.Files.Create(directory / name), Services.memoDebug.Lines());
    } catch (const EInOutError& error) {
        Tell(error.what());
    }
}

} // namespace tidewell
