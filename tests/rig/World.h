#pragma once

#include "mainform/Program.h"
#include "rig/FakePorts.h"
#include "rig/Test.h"
#include "sim/cloud/SimulatedCloud.h"
#include "sim/nabto/InProcessLibrary.h"
#include "sim/nabto/SimulatedNabto.h"
#include "sim/nabto/SimulationTime.h"

namespace tidewell::test {

// The example installation below "/t", as it is on the disk.
const TMemoryFiles& Installation();

// What the program runs in: the example installation, laid out in memory below "/t" without our extensions,
// the simulated controllers and the cloud stand-in, in virtual time. Nothing of it is real, and nothing is
// shared between two worlds.
class TWorld {
  public:
    static constexpr const char* SystemFile = "/t/cfg/system_hushvane.inn";
    static constexpr const char* Simulation = "/t/nabto_config/simulation.ini";

    TWorld();

    // Builds the program on these dialogs, runs the entry sequence and the second stage of the start. For the
    // argument "[token1]" stands one that the cloud has given the user "service".
    void Start(IDialogs& dialogs, std::vector<std::string> arguments);
    // Closes the main form in the ordinary way, and ends what is left of the program.
    void Close();
    void End(); // without a close
    std::function<void()> OnBuilt, BeforeEnd;
    // Replaces the first occurrence in a file; false if it is not there.
    bool Edit(const std::filesystem::path& path, const std::string& from, const std::string& to);
    // Takes the simulation file as it stands now, with the sections of Simulated behind it.
    void Simulate();
    std::map<std::string, std::string> Simulated; // rows by section
    std::vector<TForm*> Forms() const;            // of the program

    TMemoryFiles Files;
    TVirtualTime Time;
    TFakeProcess Process;
    TFakeApplication Application;
    TFakePictures Pictures;
    TPortTime SimulationTime{Time, Time};
    TSimulatedNabto Nabto{Files, SimulationTime};
    TInProcessLibrary Libraries{Nabto};
    TFakeKHelper KHelper{&Libraries};
    std::unique_ptr<TSimulatedCloud> Cloud;
    bool Online = true;

    // A call to the library or an exchange with the cloud, in short: "ping 410000000001",
    // "POST /login service 200". What frees memory and reads streams tells nothing.
    std::function<void(const std::string&)> OnExchange;
    // Before an exchange with the cloud, or a query or stream of the library: may turn the weather.
    std::function<void()> BeforeExchange;

  private:
    std::string Request(const THttpRequest& request, const THttpReply& reply);
    std::string Call(const std::string& call) const;

    std::vector<std::string> Tokens; // in the order handed out since the start

  public:
    std::unique_ptr<TProgram> Program; // goes before all that it lives in
};

} // namespace tidewell::test
