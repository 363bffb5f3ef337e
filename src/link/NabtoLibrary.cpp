#include "link/NabtoLibrary.h"

#include "core/TextFile.h"
#include "core/ports/IDialogs.h"

namespace tidewell {

namespace {

// The name of an entry point as the platform's library bears it. argumentBytes: their size on the stack.
std::string SymbolName(const char* name, [[maybe_unused]] int argumentBytes) {
#if defined(_WIN32) && !defined(_WIN64)
    return "_" + std::string(name) + "@" + std::to_string(argumentBytes);
#else
    return name;
#endif
}

} // namespace

TNabtoLibrary::TNabtoLibrary(ILibraryLoader& loader) : Module(loader.Load("nabto_client_api")) {
    if (!Module.Library)
        return;
    const auto find = [this]<class T>(T*& entry, const char* name, int argumentBytes) {
        entry = reinterpret_cast<T*>(Module.Library->Symbol(SymbolName(name, argumentBytes)));
    };
    find(NabtoStartUp, "nabtoStartup", 4);
    find(NabtoShutdown, "nabtoShutdown", 0);
    find(NabtoOpenSession, "nabtoOpenSession", 12);
    find(NabtoCloseSession, "nabtoCloseSession", 4);
    find(NabtoVersionString, "nabtoVersionString", 4);
    find(NabtoRpcSetDefaultInterface, "nabtoRpcSetDefaultInterface", 12);
    find(NabtoRpcSetInterface, "nabtoRpcSetInterface", 16);
    find(NabtoRpcInvoke, "nabtoRpcInvoke", 12);
    find(NabtoStreamOpen, "nabtoStreamOpen", 12);
    find(NabtoStreamClose, "nabtoStreamClose", 4);
    find(NabtoStreamRead, "nabtoStreamRead", 12);
    find(NabtoStreamReadIntoBuf, "nabtoStreamReadIntoBuf", 16);
    find(NabtoStreamWrite, "nabtoStreamWrite", 12);
    find(NabtoStatusStr, "nabtoStatusStr", 4);
    find(NabtoCreateProfile, "nabtoCreateProfile", 8);
    find(nabtoCreateSelfSignedProfile, "nabtoCreateSelfSignedProfile", 8);
    find(NabtoFree, "nabtoFree", 4);
    find(NabtoGetLocalDevices, "nabtoGetLocalDevices", 8);
}

std::optional<std::string> TNabtoLibrary::StatusText(TNabtoStatus status) const {
    if (!NabtoStatusStr)
        return std::nullopt;
    return Copy(NabtoStatusStr(status));
}

std::string TNabtoLibrary::Take(char* text) const {
    std::string copy = Copy(text);
    if (text && NabtoFree)
        NabtoFree(text);
    return copy;
}

std::string TNabtoLibrary::Copy(const char* text) {
    if (!text)
        return {};
    EEncoding encoding = EEncoding::Utf8;
    return DecodeText(text, encoding);
}

void ShowNabtoStatus(const TNabtoLibrary& library, IDialogs& dialogs, TNabtoStatus status) {
    dialogs.ShowMessage(library.StatusText(status).value_or("No NabtoStatusStr Function Loaded"));
}

} // namespace tidewell
