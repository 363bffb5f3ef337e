#pragma once

#include "core/ports/ILibraryLoader.h"
#include "link/NabtoClientApi.h"

#include <optional>
#include <string>

namespace tidewell {

class IDialogs;

// The entry points of nabto_client_api. Each is looked up on its own and is null when the library lacks it,
// or when there is no library at all; who calls one looks first.
class TNabtoLibrary {
  public:
    explicit TNabtoLibrary(ILibraryLoader& loader);

    decltype(&nabtoStartup) NabtoStartUp = nullptr;
    decltype(&nabtoShutdown) NabtoShutdown = nullptr;
    decltype(&nabtoOpenSession) NabtoOpenSession = nullptr;
    decltype(&nabtoCloseSession) NabtoCloseSession = nullptr;
    decltype(&nabtoRpcSetDefaultInterface) NabtoRpcSetDefaultInterface = nullptr;
    decltype(&nabtoRpcInvoke) NabtoRpcInvoke = nullptr;
    decltype(&nabtoStreamOpen) NabtoStreamOpen = nullptr;
    decltype(&nabtoStreamClose) NabtoStreamClose = nullptr;
    decltype(&nabtoStreamReadIntoBuf) NabtoStreamReadIntoBuf = nullptr;
    decltype(&nabtoStreamWrite) NabtoStreamWrite = nullptr;
    decltype(&nabtoStatusStr) NabtoStatusStr = nullptr;
    decltype(&nabtoCreateProfile) NabtoCreateProfile = nullptr;
    decltype(&nabtoFree) NabtoFree = nullptr;
    decltype(&nabtoGetLocalDevices) NabtoGetLocalDevices = nullptr;
    // Looked up with the others, and never called.
    void* NabtoVersionString = nullptr;
    void* NabtoRpcSetInterface = nullptr;
    void* NabtoStreamRead = nullptr;
    void* nabtoCreateSelfSignedProfile = nullptr;

    // Readable text of the status; nothing when the library has no such entry point.
    std::optional<std::string> StatusText(TNabtoStatus status) const;
    // A text that the library gave out, copied and freed. Empty for null.
    std::string Take(char* text) const;
    // The same for a text that stays with the library.
    static std::string Copy(const char* text);

    const TLoadedLibrary Module;
};

// Shows the status's text in a message box.
void ShowNabtoStatus(const TNabtoLibrary& library, IDialogs& dialogs, TNabtoStatus status);

} // namespace tidewell
