#pragma once

#include "core/ports/ILibraryLoader.h"
#include "sim/nabto/SimulatedNabto.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace tidewell {

// Gives the native library inside the program: the C functions, working on a given simulation. At most one
// library of this kind can be loaded at a time, and it must be unloaded before this object goes.
class TInProcessLibrary : public ILibraryLoader {
  public:
    explicit TInProcessLibrary(TSimulatedNabto& nabto);
    ~TInProcessLibrary() override;
    TInProcessLibrary(const TInProcessLibrary&) = delete;
    TInProcessLibrary& operator=(const TInProcessLibrary&) = delete;

    bool Present = true;           // false: there is no such library
    std::set<std::string> Missing; // symbols that it lacks
    // The calls in order, with arguments: "nabtoOpenSession a@example.com secret", "nabtoFree".
    std::vector<std::string> Calls;

    TLoadedLibrary Load(const std::string& name) override;

  private:
    class TLibrary;
    TSimulatedNabto& Nabto;
};

} // namespace tidewell
