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

class ILibraryLoader {
  public:
    virtual ~ILibraryLoader() = default;
    // The base name, such as "nabto_client_api"; prefix, ending and search path are the platform's. The
    // program's own folder comes first, then the system's search path. nullptr when there is none.
    virtual std::unique_ptr<ILibrary> Load(const std::string& name) = 0;
};

} // namespace tidewell
