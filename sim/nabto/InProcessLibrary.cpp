#include "sim/nabto/InProcessLibrary.h"

#include "sim/nabto/EntryPoints.h"

namespace tidewell {

class TInProcessLibrary::TLibrary : public ILibrary {
  public:
    TLibrary(TSimulatedNabto& nabto, const std::set<std::string>& missing) : Missing(missing) {
        BindEntryPoints(&nabto);
    }
    ~TLibrary() override { BindEntryPoints(nullptr); }
    TLibrary(const TLibrary&) = delete;
    TLibrary& operator=(const TLibrary&) = delete;

    void* Symbol(const std::string& name) const override {
        return Missing.contains(name) ? nullptr : FindEntryPoint(name);
    }

  private:
    const std::set<std::string>& Missing;
};

TInProcessLibrary::TInProcessLibrary(TSimulatedNabto& nabto) : Nabto(nabto) {
    Nabto.OnCall = [this](const std::string& call) { Calls.push_back(call); };
}

TInProcessLibrary::~TInProcessLibrary() {
    Nabto.OnCall = nullptr;
}

TLoadedLibrary TInProcessLibrary::Load(const std::string& name) {
    if (!Present || name != "nabto_client_api")
        return {nullptr, name, "there is none"};
    return {std::make_unique<TLibrary>(Nabto, Missing), name, {}};
}

} // namespace tidewell
