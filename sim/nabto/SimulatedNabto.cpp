#include "sim/nabto/SimulatedNabto.h"

#include "core/Errors.h"
#include "core/Numbers.h"
#include "sim/controller/Requests.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tidewell {

namespace {

constexpr std::int64_t LookIntervalMs = 1000;
constexpr std::size_t IdLength = 12;

// A library encrypts; here it is enough that the profile tells one password from another.
std::string ProfileText(std::string_view email, std::string_view password) {
    std::uint64_t hash = 0xCBF29CE484222325ULL;
    for (const std::string_view part : {email, std::string_view("\n"), password})
        for (const char character : part)
            hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3ULL;
    return "simulated profile " + std::to_string(hash) + "\n";
}

// The parts of "nabto://<device>/<query>?json=<text>"; they point into the URL. The JSON text is taken as it
// stands, with no decoding.
struct TNabtoUrl {
    std::string_view Device;
    std::string_view Query;
    std::string_view Json;
};

// Nothing if the text has another form.
std::optional<TNabtoUrl> SplitUrl(std::string_view url) {
    constexpr std::string_view Scheme = "nabto://";
    constexpr std::string_view Argument = "?json=";
    if (!url.starts_with(Scheme))
        return std::nullopt;
    url.remove_prefix(Scheme.size());
    const std::size_t slash = url.find('/');
    const std::size_t argument = url.find(Argument);
    if (slash == std::string_view::npos || argument == std::string_view::npos || argument < slash)
        return std::nullopt;
    return TNabtoUrl{url.substr(0, slash), url.substr(slash + 1, argument - slash - 1),
                     url.substr(argument + Argument.size())};
}

// Whether the text can name a file inside a directory.
bool IsFileName(std::string_view text) {
    const bool plain = std::all_of(text.begin(), text.end(), [](char character) {
        return static_cast<unsigned char>(character) >= ' ' && character != '/' && character != '\\';
    });
    return plain && !text.empty() && text.size() < 200 && text != "." && text != "..";
}

TNabtoStatus Refuse(const std::string& why, std::optional<std::string>& response) {
    response = ErrorReply(why);
    return NABTO_FAILED_WITH_JSON_MESSAGE;
}

// nullptr if the handle is none of them.
template <typename T>
T* Find(const std::vector<std::unique_ptr<T>>& list, const void* handle) {
    const auto found = std::find_if(list.begin(), list.end(), [handle](const std::unique_ptr<T>& entry) {
        return entry.get() == handle;
    });
    return found == list.end() ? nullptr : found->get();
}

} // namespace

struct TSimulatedNabto::TController {
    explicit TController(const TControllerSetup& setup) : Setup(setup), Device(setup.Identity) {}

    TControllerSetup Setup;
    TSimulatedController Device;

    bool Accepts(const std::string& email) const {
        return Setup.Users.empty() ||
               std::find(Setup.Users.begin(), Setup.Users.end(), email) != Setup.Users.end();
    }
};

struct TSimulatedNabto::TSession {
    std::string Email;
    std::optional<TInterfaceDefinition> Interface;
};

struct TSimulatedNabto::TStream {
    const TSession* Session;
    TController* Controller;
};

TSimulatedNabto::TSimulatedNabto(IFiles& files, ISimulationTime& time) : Files(files), Time(time) {}

TSimulatedNabto::~TSimulatedNabto() = default;

void TSimulatedNabto::Configure(const TSimulation& simulation) {
    Streams.clear();
    Controllers.clear();
    Take(simulation);
    Configured = true;
}

void TSimulatedNabto::Take(const TSimulation& simulation) {
    for (const auto& controller : Controllers) {
        controller->Setup.Local = false;
        controller->Setup.Remote = false;
    }
    for (const TControllerSetup& setup : simulation.Controllers) {
        auto found = std::find_if(Controllers.begin(), Controllers.end(),
                                  [&](const auto& controller) { return controller->Setup.Id == setup.Id; });
        if (found == Controllers.end()) {
            Controllers.push_back(std::make_unique<TController>(setup));
            found = std::prev(Controllers.end());
            for (const TValueRun& run : setup.Values)
                (*found)->Device.Values.Add(run);
            (*found)->Device.Service.SetClock(Time.LocalMinutes() - NowMs() / 60000);
        }
        TController& controller = **found;
        controller.Setup = setup;
        controller.Device.WriteStatus = setup.WriteStatus;
        controller.Device.StreamPiece = setup.StreamPiece;
        controller.Device.Faults.Replace(setup.Faults);
        if (setup.Service)
            controller.Device.Service.Configure(*setup.Service, controller.Device.Values);
    }
    Setup = simulation;
    Setup.Controllers.clear();
}

TSimulatedController* TSimulatedNabto::FindController(std::string_view nameOrId) {
    for (const auto& controller : Controllers)
        if (controller->Setup.Name == nameOrId || controller->Setup.Id == nameOrId)
            return &controller->Device;
    return nullptr;
}

std::int64_t TSimulatedNabto::NowMs() const {
    return Epoch ? Time.NowMs() - *Epoch : 0;
}

std::optional<TNabtoStatus> TSimulatedNabto::Prevented(std::string_view function, bool needsStartup) {
    Refresh();
    TOccasion occasion;
    occasion.NowMs = NowMs();
    for (TLibraryFault& fault : Setup.LibraryFaults)
        if (fault.Function == function && fault.When.Strikes(occasion))
            return static_cast<TNabtoStatus>(fault.Status);
    if (needsStartup && !Started)
        return NABTO_API_NOT_INITIALIZED;
    return std::nullopt;
}

TNabtoStatus TSimulatedNabto::ReadFile() {
    FileInUse = SimulationFile.empty() ? Home / "simulation.ini" : SimulationFile;
    try {
        FileBytes = Files.Read(FileInUse);
        Configure(ParseSimulation(FileBytes, FileInUse.string()));
        return NABTO_OK;
    } catch (const TError& error) {
        OnReport(error.what());
        FileInUse.clear();
        return NABTO_ERROR_READING_CONFIG;
    }
}

void TSimulatedNabto::Refresh() {
    if (FileInUse.empty() || NowMs() - LastLookMs < LookIntervalMs)
        return;
    LastLookMs = NowMs();
    try {
        std::string bytes = Files.Read(FileInUse);
        if (bytes == FileBytes)
            return;
        FileBytes = std::move(bytes);
    } catch (const EInOutError&) {
        return; // an editor may be replacing it
    }
    try {
        Take(ParseSimulation(FileBytes, FileInUse.string()));
    } catch (const TError& error) {
        OnReport(error.what());
    }
}

TNabtoStatus TSimulatedNabto::Startup(const std::filesystem::path& home) {
    if (!Epoch)
        Epoch = Time.NowMs();
    if (!Configured) {
        Home = home;
        if (const TNabtoStatus status = ReadFile(); status != NABTO_OK)
            return status;
    }
    if (const auto prevented = Prevented("nabtoStartup", false))
        return *prevented;
    Home = home;
    Started = true;
    return NABTO_OK;
}

TNabtoStatus TSimulatedNabto::Shutdown() {
    if (const auto prevented = Prevented("nabtoShutdown", false))
        return *prevented;
    Streams.clear();
    Sessions.clear();
    Started = false;
    return NABTO_OK;
}

TNabtoStatus TSimulatedNabto::OpenSession(const std::string& email, const std::string& password,
                                          void*& session) {
    if (const auto prevented = Prevented("nabtoOpenSession"))
        return *prevented;
    if (!IsFileName(email))
        return NABTO_ILLEGAL_PARAMETER;
    if (!Files.FileExists(ProfilePath(email)))
        return NABTO_NO_PROFILE;
    try {
        if (Files.Read(ProfilePath(email)) != ProfileText(email, password))
            return NABTO_UNLOCK_PK_FAILED;
    } catch (const EInOutError&) {
        return NABTO_OPEN_CERT_OR_PK_FAILED;
    }
    Sessions.push_back(std::make_unique<TSession>(TSession{email, std::nullopt}));
    session = Sessions.back().get();
    return NABTO_OK;
}

TNabtoStatus TSimulatedNabto::CloseSession(const void* session) {
    if (const auto prevented = Prevented("nabtoCloseSession", false))
        return *prevented;
    if (session == nullptr)
        return NABTO_OK; // a program that never opened one closes it all the same
    if (Find(Sessions, session) == nullptr)
        return NABTO_INVALID_SESSION;
    std::erase_if(
        Streams, [session](const auto& stream) { return stream->Session == session; });
    std::erase_if(Sessions, [session](const auto& entry) { return entry.get() == session; });
    return NABTO_OK;
}

TNabtoStatus TSimulatedNabto::CreateProfile(const std::string& email, const std::string& password) {
    if (const auto prevented = Prevented("nabtoCreateProfile"))
        return *prevented;
    if (!IsFileName(email))
        return NABTO_ILLEGAL_PARAMETER;
    const auto user = Setup.Users.find(email);
    if (!Setup.AnyUser && (user == Setup.Users.end() || user->second != password))
        return NABTO_PORTAL_LOGIN_FAILURE;
    try {
        Files.CreateDirectories(Home / "users");
        const std::unique_ptr<IFileWriter> writer = Files.Replace(ProfilePath(email));
        writer->Write(ProfileText(email, password));
        writer->Commit();
    } catch (const EInOutError& error) {
        OnReport(error.what());
        return NABTO_CERT_SAVING_FAILURE;
    }
    return NABTO_OK;
}

TSimulatedNabto::TController* TSimulatedNabto::Reach(std::string_view device) const {
    const std::string_view id = device.substr(0, IdLength);
    const std::string_view rest = device.substr(id.size());
    for (const auto& controller : Controllers) {
        const TControllerSetup& setup = controller->Setup;
        if (setup.Id == id) {
            const bool domain = rest.starts_with(".") && SameText(rest.substr(1), Setup.Domain);
            const bool reached = rest.empty() ? setup.Local : domain && (setup.Local || setup.Remote);
            return reached ? controller.get() : nullptr;
        }
    }
    return nullptr;
}

TNabtoStatus TSimulatedNabto::RpcSetDefaultInterface(const void* session, std::string_view definition,
                                                     std::string& error) {
    if (const auto prevented = Prevented("nabtoRpcSetDefaultInterface")) {
        error = "Interface definition refused";
        return *prevented;
    }
    TSession* const found = Find(Sessions, session);
    if (found == nullptr)
        return NABTO_INVALID_SESSION;
    try {
        found->Interface = TInterfaceDefinition(definition); // a refused one leaves the old one
        return NABTO_OK;
    } catch (const TError& refused) {
        error = refused.what();
        return NABTO_FAILED;
    }
}

TNabtoStatus TSimulatedNabto::RpcInvoke(const void* session, std::string_view url,
                                        std::optional<std::string>& response) {
    if (const auto prevented = Prevented("nabtoRpcInvoke"))
        return *prevented;
    if (Prevented(EndSessionsFault, false)) {
        Streams.clear();
        Sessions.clear();
    }
    const TSession* const found = Find(Sessions, session);
    if (found == nullptr)
        return NABTO_INVALID_SESSION;
    const std::optional<TNabtoUrl> parts = SplitUrl(url);
    if (!parts)
        return NABTO_INVALID_RESOURCE;
    const std::string queryName(parts->Query);
    const TInterfaceDefinition::TQuery* const query =
        found->Interface ? found->Interface->Find(queryName) : nullptr;
    if (query == nullptr)
        return Refuse("the interface definition in force has no query " + queryName, response);
    if (const auto name = query->UndeclaredMember(parts->Json))
        return Refuse("query " + queryName + " has no request member " + *name, response);
    TController* const controller = Reach(parts->Device);
    if (controller == nullptr) {
        WaitAnswerTimeout();
        return NABTO_CONNECT_TO_HOST_FAILED;
    }
    if (!controller->Accepts(found->Email))
        return Refuse("access denied for " + found->Email, response);
    TControllerReply reply = controller->Device.Query(queryName, parts->Json, NowMs());
    if (!reply.Answered) {
        WaitAnswerTimeout();
        return NABTO_CONNECT_TO_HOST_FAILED;
    }
    const TInterfaceDefinition::TQuery declared = *query;
    if (reply.DelayMs > 0)
        Time.Sleep(reply.DelayMs);
    response = declared.Declared(std::move(reply.Text));
    return NABTO_OK;
}

TNabtoStatus TSimulatedNabto::GetLocalDevices(std::vector<std::string>& ids) {
    if (const auto prevented = Prevented("nabtoGetLocalDevices"))
        return *prevented;
    for (const auto& controller : Controllers)
        if (controller->Setup.Local)
            ids.push_back(controller->Setup.Id);
    return NABTO_OK;
}

void TSimulatedNabto::Free(const void* memory) {
    if (!Memory.Free(memory))
        OnReport("nabtoFree: memory that the library did not give out, or that was freed before");
}

TNabtoStatus TSimulatedNabto::StreamOpen(const void* session, std::string_view device, void*& stream) {
    if (const auto prevented = Prevented("nabtoStreamOpen"))
        return *prevented;
    const TSession* const found = Find(Sessions, session);
    if (found == nullptr)
        return NABTO_INVALID_SESSION;
    TController* const controller = Reach(device);
    if (controller == nullptr || !controller->Accepts(found->Email) ||
        !controller->Device.OpenStream(NowMs())) {
        WaitAnswerTimeout();
        return NABTO_CONNECT_TO_HOST_FAILED;
    }
    Streams.push_back(std::make_unique<TStream>(TStream{found, controller}));
    stream = Streams.back().get();
    return NABTO_OK;
}

TNabtoStatus TSimulatedNabto::StreamClose(const void* stream) {
    if (const auto prevented = Prevented("nabtoStreamClose"))
        return *prevented;
    const std::size_t closed =
        std::erase_if(Streams, [stream](const auto& entry) { return entry.get() == stream; });
    return closed == 1 ? NABTO_OK : NABTO_INVALID_STREAM;
}

TNabtoStatus TSimulatedNabto::StreamRead(const void* stream, std::size_t capacity, std::string& bytes) {
    if (const auto prevented = Prevented("nabtoStreamReadIntoBuf"))
        return *prevented;
    const TStream* const found = Find(Streams, stream);
    if (found == nullptr)
        return NABTO_INVALID_STREAM;
    TStreamPiece piece = found->Controller->Device.ReadStream(capacity, NowMs());
    if (piece.DelayMs > 0)
        Time.Sleep(piece.DelayMs);
    if (piece.Outcome == EStreamOutcome::Silent) {
        WaitAnswerTimeout();
        return NABTO_STREAM_CLOSED;
    }
    if (piece.Outcome == EStreamOutcome::Closed)
        return NABTO_STREAM_CLOSED;
    bytes = std::move(piece.Bytes);
    return NABTO_OK;
}

TNabtoStatus TSimulatedNabto::StreamWrite(const void* stream, std::string_view bytes) {
    if (const auto prevented = Prevented("nabtoStreamWrite"))
        return *prevented;
    const TStream* const found = Find(Streams, stream);
    if (found == nullptr)
        return NABTO_INVALID_STREAM;
    const TStreamPiece piece = found->Controller->Device.WriteStream(bytes, NowMs());
    if (piece.DelayMs > 0)
        Time.Sleep(piece.DelayMs);
    if (piece.Outcome == EStreamOutcome::Full)
        return NABTO_BUFFER_FULL;
    return piece.Outcome == EStreamOutcome::Done ? NABTO_OK : NABTO_STREAM_CLOSED;
}

} // namespace tidewell
