#pragma once

#include "cloud/ApiClient.h"
#include "core/Extensions.h"
#include "core/LanguageTexts.h"
#include "core/Paths.h"
#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/ports/IDialogs.h"
#include "core/ports/ITimers.h"
#include "core/ports/IWait.h"
#include "link/DeviceServices.h"
#include "link/Nabto.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "tests/rig/IdleProgram.h"

#include <string>
#include <utility>

namespace tidewell::test {

// What a driver is given of a program that does nothing by itself.
struct TIdleSurroundings {
    TIdleSurroundings(IDialogs& dialogs, ITimers& timers, IWait& wait, IFiles& files, const IClock& clock,
                      ILibraryLoader& libraries, TCurrentInifilesPath paths)
        : Paths(std::move(paths)), ApiClient(Program, dialogs),
          Nabto(Program, libraries, dialogs, timers, wait, files, Paths.directorypath), Panel(files, wait),
          Profile(files), Needs{dialogs, timers,       wait,          files,     clock, Program,
                                Main,    Paths,        Extensions,    ApiClient, Nabto, Panel,
                                Profile, MemoEventLog, EventLogTexts, devid} {}

    TIdleProgram Program;
    TForm Main{"FormMain"};
    TCurrentInifilesPath Paths;
    TExtensions Extensions;
    TApiClient ApiClient;
    TUNabto Nabto;
    TModbusPanel Panel;
    TProfile Profile;
    TMemo MemoEventLog{"MemoEventLog"};
    TEventLogTexts EventLogTexts;
    std::string devid;
    const TDeviceNeeds Needs;
};

} // namespace tidewell::test
