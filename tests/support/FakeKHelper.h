#pragma once

#include "core/ports/ILibraryLoader.h"

#include <memory>
#include <string>

namespace tidewell::test {

// Gives the helper library "KHelper" of a machine with the key "0A12C00000000000", and asks another loader
// for the rest.
class TFakeKHelper : public ILibraryLoader {
  public:
    explicit TFakeKHelper(ILibraryLoader* others = nullptr) : Others(others) {}

    bool Present = true;
    bool HasFunction = true;
    int Loaded = 0; // at this time

    TLoadedLibrary Load(const std::string& name) override {
        if (name != "KHelper" && Others != nullptr)
            return Others->Load(name);
        if (name != "KHelper" || !Present)
            return {nullptr, name, "there is none"};
        return {std::make_unique<TLibrary>(*this), name, {}};
    }

  private:
    class TLibrary : public ILibrary {
      public:
        explicit TLibrary(TFakeKHelper& owner) : Owner(owner) { ++Owner.Loaded; }
        ~TLibrary() override { --Owner.Loaded; }
        TLibrary(const TLibrary&) = delete;
        TLibrary& operator=(const TLibrary&) = delete;
        void* Symbol(const std::string& name) const override {
            return Owner.HasFunction && name == "GetCPUIDasString" ? reinterpret_cast<void*>(&Text) : nullptr;
        }

      private:
        static const char* Text() { return "cpu 0A-1b2C"; }
        TFakeKHelper& Owner;
    };
    ILibraryLoader* Others;
};

} // namespace tidewell::test
