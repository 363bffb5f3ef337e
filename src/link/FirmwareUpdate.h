#pragma once

#include "core/controls/Control.h"
#include "link/FirmwarePackage.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace tidewell {

class EInOutError;
class IClock;
class IDialogs;
class IFiles;
class TDeviceUse;
class TFileUpload;
class TMemo;
class TUNabto;
class TUpdateRun;
class TUpdateStatus;
struct TCurrentInifilesPath;

// The update of a device's firmware from a package: sends the images, restarts the device into its update
// mode, waits for it, asks which images failed, sends those again, and leaves a log of the whole run.
class TFirmwareUpdate {
  public:
    struct TParts {
        IDialogs& Dialogs;
        IFiles& Files;
        const IClock& Clock;
        const TCurrentInifilesPath& Paths;
        TUNabto& Nabto;
        TDeviceUse& Use;
        TUpdateRun& Run;
        TUpdateStatus& Status;
        TFileUpload& Upload;
        TMemo& memoDebug; // becomes the log
        const std::string& device;
        const bool& EnableContineousUpdate; // what is only to be verified is a line then, not a box
        std::filesystem::path& CurrentUpdateSWFile;
    };
    explicit TFirmwareUpdate(const TParts& parts) : Parts(parts) {}

    // Puts the user's choice, or nothing, into CurrentUpdateSWFile.
    void SelectConfigFile();
    // True when all went well. Does nothing while the device is in use, as by an update that runs. Throws
    // EConvertError for a package with a bad number, EListError for one that names no file; once the device
    // has been sent anything, the log is saved all the same.
    bool UpdateSW(const std::filesystem::path& configFile);
    // After each run that got as far as its log, with the result; not when the program was closed.
    TEvent<bool> OnUpdateDone;

  private:
    // Nothing when the profile tells of no update status, which ends the run without a log.
    std::optional<bool> Perform(const std::filesystem::path& configFile);
    bool AskDevice();
    bool OpenPackage(const std::filesystem::path& configFile);
    bool CheckModel();
    bool SendFiles();
    bool SendFile(std::size_t position, ERoad road);
    bool Transfer(std::size_t position, ERoad road);
    bool RestartAndVerify();
    void RestartInUpdateMode();
    void AwaitDevice();
    // A bit per file that failed; nothing when it cannot be read.
    std::optional<std::int32_t> ReadCrcResult();
    bool CheckFiles(std::optional<std::int32_t> crcResult);
    void CheckVersion(std::size_t position);
    void Tell(const std::string& text);
    void TellUnreadable(const EInOutError& error);
    void SaveLog(bool success);

    const TParts Parts;
    // Of the running update.
    TFirmwarePackage Package;
    std::filesystem::path Directory; // of the package
    std::int32_t StatusAddress = 0;  // base address of the device's update status
    bool Sending = false;            // the device may have got something
    bool VersionMissing = false;
    bool VersionMismatch = false; // of the last comparison
};

} // namespace tidewell
