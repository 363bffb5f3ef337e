#pragma once

#include "core/controls/Control.h"
#include "core/ports/IFiles.h"
#include "link/NabtoClientApi.h"
#include "sim/controller/SimulatedController.h"
#include "sim/nabto/HandedOut.h"
#include "sim/nabto/InterfaceDefinition.h"
#include "sim/nabto/SimulationFile.h"
#include "sim/nabto/SimulationTime.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// The native library over simulated controllers. Its operations are those of the C functions of the same
// names; handles are opaque and may be anything. A simulation told by a file is read at the first Startup and
// again whenever the file changes, where controllers that were there keep identity and values and those that
// are gone cannot be reached any more; Configure takes the place of the file.
class TSimulatedNabto {
  public:
    TSimulatedNabto(IFiles& files, ISimulationTime& time);
    ~TSimulatedNabto();
    TSimulatedNabto(const TSimulatedNabto&) = delete;
    TSimulatedNabto& operator=(const TSimulatedNabto&) = delete;

    // Read instead of simulation.ini in the home directory, unless empty.
    std::filesystem::path SimulationFile;
    // Takes one line for each mistake in the file, and for each wrong Free.
    TEvent<const std::string&> OnReport;
    // Takes each call with its arguments, handles left out, before it is carried out:
    // "nabtoOpenSession a@example.com secret".
    TEvent<const std::string&> OnCall;
    // Texts and arrays given out and not freed.
    THandedOut Memory;

    void Configure(const TSimulation& simulation);
    // By name or id; nullptr if there is none, or before the file was read.
    TSimulatedController* FindController(std::string_view nameOrId);
    // Ms since the first Startup, the time in which values and faults live.
    std::int64_t NowMs() const;
    std::size_t OpenSessions() const { return Sessions.size(); }
    std::size_t OpenStreams() const { return Streams.size(); }

    TNabtoStatus Startup(const std::filesystem::path& home);
    TNabtoStatus Shutdown();
    TNabtoStatus OpenSession(const std::string& email, const std::string& password, void*& session);
    TNabtoStatus CloseSession(const void* session);
    TNabtoStatus CreateProfile(const std::string& email, const std::string& password);
    // error takes the reason when the definition is refused.
    TNabtoStatus RpcSetDefaultInterface(const void* session, std::string_view definition, std::string& error);
    TNabtoStatus RpcInvoke(const void* session, std::string_view url, std::optional<std::string>& response);
    TNabtoStatus StreamOpen(const void* session, std::string_view device, void*& stream);
    TNabtoStatus StreamClose(const void* stream);
    TNabtoStatus StreamRead(const void* stream, std::size_t capacity, std::string& bytes);
    TNabtoStatus StreamWrite(const void* stream, std::string_view bytes);
    TNabtoStatus GetLocalDevices(std::vector<std::string>& ids);
    void Free(const void* memory);

  private:
    struct TController;
    struct TSession;
    struct TStream;

    // What a call ends with before it has begun: a fault of the library, or no start-up. Looks at the file.
    std::optional<TNabtoStatus> Prevented(std::string_view function, bool needsStartup = true);
    TNabtoStatus ReadFile();
    void Refresh();
    void Take(const TSimulation& simulation);
    void WaitAnswerTimeout() { Time.Sleep(Setup.AnswerTimeoutMs); }

    // The controller that an address reaches; nullptr if it reaches none.
    TController* Reach(std::string_view device) const;
    std::filesystem::path ProfilePath(const std::string& email) const { return Home / "users" / email; }

    IFiles& Files;
    ISimulationTime& Time;
    bool Started = false;
    bool Configured = false;
    std::optional<std::int64_t> Epoch; // of the first start
    std::filesystem::path Home;
    std::filesystem::path FileInUse; // empty: none
    std::string FileBytes;           // as last seen
    std::int64_t LastLookMs = 0;
    TSimulation Setup; // without the controllers, which live below
    std::vector<std::unique_ptr<TController>> Controllers;
    std::vector<std::unique_ptr<TSession>> Sessions;
    std::vector<std::unique_ptr<TStream>> Streams;
};

} // namespace tidewell
