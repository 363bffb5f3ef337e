#pragma once

#include <memory>
#include <string>

namespace tidewell {

// A loaded native library; it is unloaded at destruction.
class ILibrary {
  public:
    virtual ~ILibrary() = default;
    // Address of the symbol, or nullptr.
    virtual void* Symbol(const std::string& name) const = 0;
};

// What came of loading a library.
struct TLoadedLibrary {
    std::unique_ptr<ILibrary> Library; // null when it could not be loaded
    std::string File;                  // that was tried
    std::string Failure;               // the platform's own reason; empty when it was loaded
};

class ILibraryLoader {
  public:
    virtual ~ILibraryLoader() = default;
    // The base name, such as "nabto_client_api"; prefix, ending and search path are the platform's. A file in
    // the program's own folder counts alone; only where there is none is the system's search path looked
    // through.
    virtual TLoadedLibrary Load(const std::string& name) = 0;
};

} // namespace tidewell
