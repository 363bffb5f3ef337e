#pragma once

#include "core/controls/Control.h"
#include "link/FirmwarePackage.h"
#include "link/UpdateEvidence.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

class EInOutError;
class TFileUpload;
class TUpdateRun;
class TUpdateStatus;
struct TDeviceServices;

// How a run of an update ended.
struct TUpdateEnd {
    bool Success = false;
    std::string CannotStart; // why it can never run as it stands
};

// The update of a device's firmware from a package: sends the images, restarts the device into its update
// mode, waits for it, asks which images failed, sends those again, and leaves a log of the whole run. With
// ServiceStrict it succeeds only by what the device said.
class TFirmwareUpdate {
  public:
    // The services' memoDebug becomes the log of a run.
    TFirmwareUpdate(const TDeviceServices& services, TUpdateRun& run, TUpdateStatus& status,
                    TFileUpload& upload);
    TFirmwareUpdate(const TFirmwareUpdate&) = delete;
    TFirmwareUpdate& operator=(const TFirmwareUpdate&) = delete;

    // Puts the user's choice, or nothing, into CurrentUpdateSWFile.
    void SelectConfigFile();
    // True when all went well. Does nothing while the device is in use, as by an update that runs. Throws
    // EConvertError for a package with a bad number, EListError for one that names no file; once the device
    // has been sent anything, the log is saved all the same.
    bool UpdateSW(const std::filesystem::path& configFile);
    // After each run that got as far as its log, with ServiceStrict after each; not when the program was
    // closed.
    TEvent<const TUpdateEnd&> OnUpdateDone;

  private:
    // Nothing when the profile tells of no update status, which ends the run without a log.
    std::optional<bool> Perform(const std::filesystem::path& configFile);
    bool Strict() const;
    void StopClick();
    bool AskDevice();
    bool OpenPackage(const std::filesystem::path& configFile);
    // What there is to say if the first image is for another model.
    std::optional<std::string> OtherModel() const;
    bool CheckModel();
    bool SendFiles();
    bool SendFile(std::size_t position, ERoad road);
    bool Transfer(std::size_t position, ERoad road);
    bool RestartAndVerify();
    EUpdateVerdict RunRound();
    std::string RestartInUpdateMode(); // the reply
    // Whether it answered the first ping.
    bool AwaitDevice(const std::string& restartReply);
    void ReadCrcResult();
    void CheckFiles();
    // Whether the device reports the expected version; nothing when there is none to compare.
    std::optional<bool> CheckVersion(std::size_t position);
    void Tell(const std::string& text);
    void TellAndLog(const std::vector<std::string>& lines);
    void Refuse(const std::vector<std::string>& lines); // the run cannot start
    void TellVerdict(EUpdateVerdict verdict);
    void SaveLog(bool success);

    const TDeviceServices& Services;
    TUpdateRun& Run;
    TUpdateStatus& Status;
    TFileUpload& Upload;
    // Of the running update.
    TFirmwarePackage Package;
    TUpdateEvidence Evidence;
    std::string CannotStart;
    std::filesystem::path Directory; // of the package
    std::int32_t StatusAddress = 0;  // base address of the device's update status
    bool Sending = false;            // the device may have got something
    bool VersionMissing = false;
    bool VersionMismatch = false; // of the last comparison
};

} // namespace tidewell
