#pragma once

#include "core/controls/Signal.h"
#include "core/controls/Simple.h"
#include "core/ports/IClock.h"
#include "core/ports/ITimers.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

class TFirmwareUpdate;
class TUpdateStatus;
struct TDeviceServices;
struct TUpdateEnd;

// The continuous test: updates a device again and again, a minute apart, and counts the results. Its button
// starts and stops it. With a list of packages (a file of lines "1=path", "2=path", ...) it takes them in
// turn and leaves a report. With ServiceStrict it ends by itself when it cannot go on, and says why.
class TContinuousUpdate {
  public:
    TContinuousUpdate(const TDeviceServices& services, TUpdateStatus& status, TFirmwareUpdate& update,
                      TButton& butContUpdate);

    // Throws EListError when a test without a list of packages is stopped, unless ServiceStrict is set: it
    // has no report.
    void ButContUpdateClick();
    void TimerContUpdateTimer();

    bool RPCEnableMultibleUpdate = false; // the test runs
    int ContUpdateACK = 0;                // good updates
    int ContUpdateNACK = 0;
    TTime DateTimeStart{};
    bool UseMultibleFiles = false;
    std::optional<std::map<std::string, std::string>> UseMultibleFilesList; // number = path
    std::size_t UseMultibleFilesActiveFileIndex = 0;                        // from 1
    std::optional<std::vector<std::string>> UseMultibleFilesResultList;     // lines of the report
    std::unique_ptr<ITimer> TimerContUpdate; // 60000 ms; a stop leaves it armed, for one more update, unless
                                             // ServiceStrict is set

  private:
    void StartTest();
    void StopTest();
    bool Strict() const;
    // With ServiceStrict: ends the test, and says so; reason: why it cannot go on, empty for the user's stop.
    void EndTest(const std::string& reason);
    void SaveReport(std::vector<std::string> lines);
    bool LoadList();                          // false when it has no line
    std::filesystem::path ListedPath() const; // of the active number; empty if there is none
    void UpdateDone(const TUpdateEnd& end);

    const TDeviceServices& Services;
    TUpdateStatus& Status;
    TFirmwareUpdate& Update;
    TButton& ButContUpdate;
    std::string TestedDevice;
    std::string IdleCaption;  // of the button, before the test
    TConnection FollowStatus; // a running update that is not the test's cannot be joined
};

} // namespace tidewell
