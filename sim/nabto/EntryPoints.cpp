#include "sim/nabto/EntryPoints.h"

#include "sim/nabto/Status.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace tidewell;

namespace {

TSimulatedNabto* bound = nullptr;

void Log(TSimulatedNabto& nabto, std::string call, std::initializer_list<const char*> arguments) {
    if (nabto.OnCall) {
        for (const char* argument : arguments) {
            call += ' ';
            call += argument != nullptr ? argument : "(null)";
        }
        nabto.OnCall(call);
    }
}

// Runs the work on the bound library; no exception leaves it.
template <typename TWork>
std::uint8_t Guarded(TWork work) {
    if (bound == nullptr)
        return NABTO_API_NOT_INITIALIZED;
    try {
        return work(*bound);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "nabto_client_api: %s\n", error.what());
    } catch (...) {
        std::fputs("nabto_client_api: unknown failure\n", stderr);
    }
    return NABTO_FAILED;
}

} // namespace

extern "C" {

uint8_t NABTO_CALL nabtoStartup(const char* home) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoStartup", {home});
        return home == nullptr ? NABTO_ILLEGAL_PARAMETER : nabto.Startup(home);
    });
}

uint8_t NABTO_CALL nabtoShutdown(void) {
    return Guarded([](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoShutdown", {});
        return nabto.Shutdown();
    });
}

uint8_t NABTO_CALL nabtoOpenSession(void** session, const char* email, const char* password) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoOpenSession", {email, password});
        if (session == nullptr || email == nullptr || password == nullptr)
            return NABTO_ILLEGAL_PARAMETER;
        return nabto.OpenSession(email, password, *session);
    });
}

uint8_t NABTO_CALL nabtoCloseSession(void* session) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoCloseSession", {});
        return nabto.CloseSession(session);
    });
}

uint8_t NABTO_CALL nabtoCreateProfile(const char* email, const char* password) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoCreateProfile", {email, password});
        if (email == nullptr || password == nullptr)
            return NABTO_ILLEGAL_PARAMETER;
        return nabto.CreateProfile(email, password);
    });
}

uint8_t NABTO_CALL nabtoRpcSetDefaultInterface(void* session, const char* definition, char** error) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoRpcSetDefaultInterface", {definition});
        if (definition == nullptr || error == nullptr)
            return NABTO_ILLEGAL_PARAMETER;
        std::string reason;
        const TNabtoStatus status = nabto.RpcSetDefaultInterface(session, definition, reason);
        if (!reason.empty())
            *error = nabto.Memory.Text(reason);
        return status;
    });
}

uint8_t NABTO_CALL nabtoRpcInvoke(void* session, const char* url, char** response) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoRpcInvoke", {url});
        if (url == nullptr || response == nullptr)
            return NABTO_ILLEGAL_PARAMETER;
        std::optional<std::string> reply;
        const TNabtoStatus status = nabto.RpcInvoke(session, url, reply);
        if (reply)
            *response = nabto.Memory.Text(*reply);
        return status;
    });
}

uint8_t NABTO_CALL nabtoStreamOpen(void** stream, void* session, const char* device) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoStreamOpen", {device});
        if (stream == nullptr || device == nullptr)
            return NABTO_ILLEGAL_PARAMETER;
        return nabto.StreamOpen(session, device, *stream);
    });
}

uint8_t NABTO_CALL nabtoStreamClose(void* stream) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoStreamClose", {});
        return nabto.StreamClose(stream);
    });
}

uint8_t NABTO_CALL nabtoStreamReadIntoBuf(void* stream, unsigned char* buffer, size_t capacity, size_t* got) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoStreamReadIntoBuf", {std::to_string(capacity).c_str()});
        if (buffer == nullptr || got == nullptr)
            return NABTO_ILLEGAL_PARAMETER;
        std::string bytes;
        const TNabtoStatus status = nabto.StreamRead(stream, capacity, bytes);
        std::copy(bytes.begin(), bytes.end(), buffer);
        *got = bytes.size();
        return status;
    });
}

uint8_t NABTO_CALL nabtoStreamWrite(void* stream, const char* data, size_t length) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoStreamWrite", {std::to_string(length).c_str()});
        return data == nullptr ? NABTO_ILLEGAL_PARAMETER : nabto.StreamWrite(stream, {data, length});
    });
}

const char* NABTO_CALL nabtoStatusStr(uint8_t status) {
    return StatusText(status);
}

void NABTO_CALL nabtoFree(void* text) {
    Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoFree", {});
        nabto.Free(text);
        return NABTO_OK;
    });
}

uint8_t NABTO_CALL nabtoGetLocalDevices(char*** devices, int* count) {
    return Guarded([&](TSimulatedNabto& nabto) {
        Log(nabto, "nabtoGetLocalDevices", {});
        if (devices == nullptr || count == nullptr)
            return NABTO_ILLEGAL_PARAMETER;
        std::vector<std::string> ids;
        const TNabtoStatus status = nabto.GetLocalDevices(ids);
        if (status == NABTO_OK) {
            *devices = nabto.Memory.Texts(ids);
            *count = static_cast<int>(ids.size());
        }
        return status;
    });
}

} // extern "C"

namespace tidewell {

void BindEntryPoints(TSimulatedNabto* nabto) {
    bound = nabto;
}

void* FindEntryPoint(std::string_view name) {
    const std::array<std::pair<std::string_view, void*>, 14> entries{{
        {"nabtoStartup", reinterpret_cast<void*>(&nabtoStartup)},
        {"nabtoShutdown", reinterpret_cast<void*>(&nabtoShutdown)},
        {"nabtoOpenSession", reinterpret_cast<void*>(&nabtoOpenSession)},
        {"nabtoCloseSession", reinterpret_cast<void*>(&nabtoCloseSession)},
        {"nabtoCreateProfile", reinterpret_cast<void*>(&nabtoCreateProfile)},
        {"nabtoRpcSetDefaultInterface", reinterpret_cast<void*>(&nabtoRpcSetDefaultInterface)},
        {"nabtoRpcInvoke", reinterpret_cast<void*>(&nabtoRpcInvoke)},
        {"nabtoStreamOpen", reinterpret_cast<void*>(&nabtoStreamOpen)},
        {"nabtoStreamClose", reinterpret_cast<void*>(&nabtoStreamClose)},
        {"nabtoStreamReadIntoBuf", reinterpret_cast<void*>(&nabtoStreamReadIntoBuf)},
        {"nabtoStreamWrite", reinterpret_cast<void*>(&nabtoStreamWrite)},
        {"nabtoStatusStr", reinterpret_cast<void*>(&nabtoStatusStr)},
        {"nabtoFree", reinterpret_cast<void*>(&nabtoFree)},
        {"nabtoGetLocalDevices", reinterpret_cast<void*>(&nabtoGetLocalDevices)},
    }};
    for (const auto& [entry, function] : entries)
        if (entry == name)
            return function;
    return nullptr;
}

} // namespace tidewell
