#pragma once

#include "mainform/Ports.h"

#include <functional>
#include <memory>
#include <vector>

namespace tidewell {

class TFormMain;
class TGraphPage;
class TLiveLog;
class TModbusPanel;
class TNabtoDevice;
class TNabtoUserFolder;
class TProfile;
struct TConfiguration;
struct TCurrentInifilesPath;
struct TExtensions;
struct TEventLogTexts;

// The close of the main form: what is kept, and the end of all that runs.
class TCloseDown {
  public:
    struct TNeeds {
        const TCurrentInifilesPath& Paths;
        const TConfiguration& Configuration;
        const TExtensions& Extensions;
        const TEventLogTexts& Texts;
        TFormMain& FormMain;
        TNabtoDevice& Device;
        TNabtoUserFolder& UserFolder;
        TModbusPanel& Panel;
        TProfile& Profile;
        const TGraphPage& GraphPage;
        TLiveLog& LiveLog;
        std::vector<ITimer*> Timers; // besides those of the driver, which it ends itself
    };
    TCloseDown(const TPorts& ports, TNeeds needs);

    // Asks before a firmware update is cut off by the close, and, with the key, before rows are lost.
    void FormCloseQuery(bool& mayClose);
    // The first failure to save keeps the form open, so that the log can be saved elsewhere; a second close
    // within a minute saves what it can and ends. Rows that have no file then go to the first place that
    // takes them, together with the event log.
    void FormClose();

    bool AskBeforeClose = true; // false when nobody is there to answer

  private:
    // What is kept, in order. Each may throw.
    std::vector<std::function<void()>> ClosingSaves();

    bool MayAskForPlace() const;
    void SaveGraphSettings();
    void SaveElsewhere();

    const TPorts& Ports;
    const TNeeds Needs;
    std::unique_ptr<ITimer> CloseAgain; // 60000 ms, once, after a close that could not save
};

} // namespace tidewell
