#include "link/Nabto.h"

#include "core/Errors.h"
#include "core/Numbers.h"
#include "core/TextFile.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IFiles.h"
#include "core/ports/IWait.h"

#include <algorithm>
#include <utility>

namespace tidewell {

namespace {

constexpr const char* homeDirectory = "nabto_config";
constexpr const char* standaloneQueries = "standalone.xml";
constexpr const char* gatewayQueries = "gateway.xml";

TNabtoStatus Status(std::uint8_t status) {
    return static_cast<TNabtoStatus>(status);
}

void CopyNumber(const std::optional<TDeviceReply::TNumber>& number, std::string& field) {
    if (number)
        field = number->Text;
}

} // namespace

TUNabto::TUNabto(const IProgramState& program, ILibraryLoader& loader, IDialogs& dialogs, ITimers& timers,
                 IWait& wait, const IFiles& files, std::filesystem::path directory)
    : queriesFile(standaloneQueries), Program(program), Library(loader), Dialogs(dialogs), Wait(wait),
      Files(files), Directory(std::move(directory)), Streams(Library, dialogs, timers, wait, *this) {}

TUNabto::~TUNabto() {
    Close();
}

int TUNabto::Init(const std::string& user, const std::string& password) {
    if (!Library.NabtoStartUp || !Library.NabtoOpenSession) {
        Dialogs.ShowMessage("No NabtoStartUp/NabtoOpenSession Function Loaded");
        return -1;
    }
    if (const auto status = Library.NabtoStartUp(homeDirectory); status != NABTO_OK)
        return status;
    if (std::exchange(queriesFile, standaloneQueries) != standaloneQueries)
        Described.emplace_back(); // the new session begins with the interface of another kind of device
    if (const TNabtoStatus status = OpenSession(user, password); status != NABTO_OK) {
        if (Library.NabtoCreateProfile)
            ShowError(status);
        else
            Dialogs.ShowMessage("No NabtoCreateProfile Function Loaded");
        return status;
    }
    setQueriesFile(queriesFile);
    return 0;
}

TNabtoStatus TUNabto::OpenSession(const std::string& user, const std::string& password) {
    const auto open = [&] {
        return Status(Library.NabtoOpenSession(&Session, user.c_str(), password.c_str()));
    };
    TNabtoStatus status = open();
    if (status == NABTO_OK || !Library.NabtoCreateProfile)
        return status;
    status = Status(Library.NabtoCreateProfile(user.c_str(), password.c_str()));
    return status == NABTO_OK ? open() : status;
}

TNabtoStatus TUNabto::Reopen(const std::string& user, const std::string& password) {
    if (!Library.NabtoStartUp || !Library.NabtoOpenSession)
        return NABTO_API_NOT_INITIALIZED;
    if (Library.NabtoCloseSession && Session)
        Library.NabtoCloseSession(Session); // which may know nothing of it any more
    Session = nullptr;
    if (const TNabtoStatus status = Status(Library.NabtoStartUp(homeDirectory)); status != NABTO_OK)
        return status;
    const TNabtoStatus status = OpenSession(user, password);
    if (status == NABTO_OK)
        setQueriesFile(queriesFile);
    return status;
}

void TUNabto::Close() {
    if (!Library.NabtoCloseSession)
        Dialogs.ShowMessage("No NabtoCloseSession Function Loaded");
    else if (const auto status = Status(Library.NabtoCloseSession(Session)); status != NABTO_OK)
        ShowError(status);
    Session = nullptr;
    if (!Library.NabtoShutdown)
        Dialogs.ShowMessage("No NabtoShutdown Function Loaded");
    else if (const auto status = Status(Library.NabtoShutdown()); status != NABTO_OK)
        ShowError(status);
}

bool TUNabto::setQueriesFile(const std::string& fileName) {
    if (!Library.NabtoRpcSetDefaultInterface)
        return false;
    const auto directory = Directory / homeDirectory;
    const auto path = directory / fileName;
    if (!Files.DirectoryExists(directory) || !Files.FileExists(path)) {
        OnInterfaceMissing(path);
        return false;
    }
    std::string definition;
    try {
        for (const auto& line : ReadLines(Files, path))
            definition += line;
    } catch (const EInOutError& error) {
        Dialogs.ShowMessage(error.what());
        return false;
    }
    char* error = nullptr;
    const auto status = Status(Library.NabtoRpcSetDefaultInterface(Session, definition.c_str(), &error));
    const std::string reason = Library.Take(error);
    if (status == NABTO_OK)
        return true;
    if (reason.empty())
        ShowError(status);
    else
        Dialogs.ShowMessage(reason);
    return false;
}

std::vector<std::string> TUNabto::GetLocal() {
    std::vector<std::string> ids;
    if (!Library.NabtoStartUp || Library.NabtoStartUp(homeDirectory) != NABTO_OK ||
        !Library.NabtoGetLocalDevices)
        return ids;
    char** devices = nullptr;
    int count = 0;
    if (Library.NabtoGetLocalDevices(&devices, &count) != NABTO_OK || !devices)
        return ids;
    for (int i = 0; i < count; ++i)
        ids.push_back(TNabtoLibrary::Copy(devices[i]));
    return ids;
}

std::string TUNabto::GetNabtoStatusStr(TNabtoStatus status) {
    const auto text = Library.StatusText(status);
    if (!text)
        Dialogs.ShowMessage("No NabtoStatusStr Function Loaded");
    return text.value_or(std::string());
}

std::string TUNabto::StatusText(int status) const {
    const auto text = Library.StatusText(static_cast<TNabtoStatus>(status));
    return text && !text->empty() ? *text : std::to_string(status);
}

std::string TUNabto::SendQuery(const std::string& device, const std::string& request, const std::string& data,
                               const std::function<bool()>& stillWanted) {
    if (device.empty() || request.empty() || data.empty())
        return {};
    const std::string url = QueryUrl(device, request, data);
    Wait.ProcessMessages();
    if (!Program.IsOpen() || (stillWanted && !stillWanted()))
        return {};
    char* response = nullptr;
    TNabtoStatus status = NABTO_OK;
    if (Library.NabtoRpcInvoke)
        status = Status(Library.NabtoRpcInvoke(Session, url.c_str(), &response));
    std::string reply = Library.Take(response);
    if (status == NABTO_INVALID_SESSION || status == NABTO_API_NOT_INITIALIZED)
        OnSessionGone(status);
    Wait.ProcessMessages();
    return reply;
}

bool TUNabto::ping(const std::string& device) {
    if (!device.empty()) {
        std::erase(Described, device);
        Described.push_back(device);
    }
    // A device that changed its kind at each answer would otherwise switch the interface for ever.
    for (int level = 0; level < 3; ++level) {
        if (getpingResponse(SendQuery(device, "ping.json", PingRequest())) != PongWord)
            return false;
        Described = {device};
        const char* fitting = isGateway() ? gatewayQueries : standaloneQueries;
        if (isGateway() == (queriesFile == gatewayQueries))
            return true;
        queriesFile = fitting;
        setQueriesFile(queriesFile);
    }
    return true;
}

void TUNabto::ForgetVersions() {
    for (std::string* version : {&versionHP, &versionNP, &versionBT, &GatewayVersion})
        version->clear();
}

bool TUNabto::MayDescribeAnother(const std::string& device) const {
    return !std::ranges::all_of(
        Described, [&device](const std::string& pinged) { return SameText(pinged, device); });
}

bool TUNabto::isGateway() const {
    return model == "30011" || model == "30012" || model == "30013" || model == "30014";
}

std::string TUNabto::V2prepareFlashWriteNostream(std::uint32_t state, std::uint32_t blocknumber,
                                                 std::uint32_t blockcrc,
                                                 std::span<const std::uint8_t> payload) {
    std::string request = tidewell::V2prepareFlashWriteNostream(state, blocknumber, blockcrc, payload);
    if (state != 15)
        DoUpdateProgress();
    return request;
}

TValueList TUNabto::ReadValueList(const std::string& json) {
    TDeviceReply reply = ParseReply(json);
    if (!reply.IsObject)
        return {"No JS\r\n" + json, false};
    if (reply.Error) {
        errormessage = *reply.Error;
        return {"error", false};
    }
    if (!reply.HasResponse)
        return {};
    if (!reply.Values)
        return {json, false};
    return {std::move(*reply.Values), true};
}

std::int32_t TUNabto::getResponseStatus(const std::string& json) {
    const TDeviceReply reply = ParseReply(json);
    if (reply.Error)
        errormessage = *reply.Error;
    if (!reply.IsObject || reply.Error)
        return 1;
    const auto bits = reply.Status ? reply.Status->Bits() : std::nullopt;
    return bits ? static_cast<std::int32_t>(*bits) : -1;
}

std::uint32_t TUNabto::getpingResponse(const std::string& json) {
    SlaveDeviceNum.clear();
    SlaveModel.clear();
    GatewayVersion.clear();
    const TDeviceReply reply = ParseReply(json);
    if (reply.Error)
        errormessage = *reply.Error;
    if (!reply.IsObject || reply.Error)
        return 1;
    CopyNumber(reply.Devicenumber, varenummer);
    CopyNumber(reply.Model, model);
    CopyNumber(reply.VersionHP, versionHP);
    CopyNumber(reply.VersionNP, versionNP);
    CopyNumber(reply.VersionHBDE, versionBT);
    CopyNumber(reply.SlaveDevicenumber, SlaveDeviceNum);
    CopyNumber(reply.SlaveModel, SlaveModel);
    CopyNumber(reply.Version, GatewayVersion);
    return reply.Pong ? reply.Pong->Bits().value_or(0) : 0;
}

} // namespace tidewell
