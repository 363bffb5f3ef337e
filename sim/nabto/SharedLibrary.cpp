// What the shared library adds to the C functions: a simulation on this machine's files and time.

#include "core/DiskFiles.h"
#include "sim/nabto/EntryPoints.h"

#include <cstdio>
#include <cstdlib>

namespace {

using namespace tidewell;

class TLoadedLibrary {
  public:
    TLoadedLibrary() : Nabto(Files, Time) {
        if (const char* path = std::getenv("TIDEWELL_SIMULATION"))
            Nabto.SimulationFile = path;
        Nabto.OnReport = [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); };
        BindEntryPoints(&Nabto);
    }
    ~TLoadedLibrary() { BindEntryPoints(nullptr); }
    TLoadedLibrary(const TLoadedLibrary&) = delete;
    TLoadedLibrary& operator=(const TLoadedLibrary&) = delete;

  private:
    TDiskFiles Files;
    TRealTime Time;
    TSimulatedNabto Nabto;
};

const TLoadedLibrary loadedLibrary; // lives while the library is loaded

} // namespace
