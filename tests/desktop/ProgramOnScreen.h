#pragma once

#include "desktop/Desktop.h"
#include "mainform/Program.h"
#include "sim/cloud/SimulatedCloud.h"
#include "sim/nabto/InProcessLibrary.h"
#include "sim/nabto/SimulatedNabto.h"
#include "sim/nabto/SimulationTime.h"
#include "support/FakeKHelper.h"
#include "support/FakePorts.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tidewell::test {

// The whole program with its real windows, on the example installation, laid out in memory below
// "/opt/tidewell", against the simulated controllers and the cloud stand-in. Time is virtual: it moves only
// by Advance.
class TProgramOnScreen {
  public:
    TProgramOnScreen();
    ~TProgramOnScreen();
    TProgramOnScreen(const TProgramOnScreen&) = delete;
    TProgramOnScreen& operator=(const TProgramOnScreen&) = delete;

    // Builds the program and runs the entry sequence; the second stage of the start, with the logon, comes
    // with the next 200 ms.
    TProgram& Build();
    void Advance(int milliseconds) { Time.Advance(milliseconds); }
    // Replaces the first occurrence in the system file.
    void EditSystemFile(const std::string& from, const std::string& to);

    static constexpr const char* SystemFile = "/opt/tidewell/cfg/system_hushvane.inn";

    std::vector<std::string> Arguments;
    TMemoryFiles Files;
    TVirtualTime Time;
    TDesktop Desktop;
    TFakeApplication Application; // whose end does not end the real one
    TFakeProcess Process;
    TPortTime SimulationTime{Time, Time};
    TSimulatedNabto Nabto{Files, SimulationTime};
    TInProcessLibrary Libraries{Nabto};
    TFakeKHelper KHelper{&Libraries};
    std::unique_ptr<TSimulatedCloud> Cloud;
    std::unique_ptr<TProgram> Program;
};

} // namespace tidewell::test
