#include "FakeNabto.h"

#include "link/NabtoClientApi.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tidewell::test {

namespace {

// The entry points carry no object of their own.
TFakeNabto* active = nullptr;

int sessionHandle = 0;
int streamHandle = 0;

std::string Handle(const void* handle) {
    if (!handle)
        return "none";
    return handle == &sessionHandle ? "session" : handle == &streamHandle ? "stream" : "unknown";
}

std::uint8_t Startup(const char* home) {
    return active->Call("nabtoStartup", home);
}
std::uint8_t Shutdown() {
    return active->Call("nabtoShutdown");
}
std::uint8_t OpenSession(void** session, const char* email, const char* password) {
    const auto status = active->Call("nabtoOpenSession", std::string(email) + " " + password);
    if (status == NABTO_OK)
        *session = &sessionHandle;
    return status;
}
std::uint8_t CloseSession(void* session) {
    return active->Call("nabtoCloseSession", Handle(session));
}
std::uint8_t CreateProfile(const char* email, const char* password) {
    return active->Call("nabtoCreateProfile", std::string(email) + " " + password);
}
std::uint8_t SetInterface(void* session, const char* definition, char** error) {
    const auto status =
        active->Call("nabtoRpcSetDefaultInterface", Handle(session) + " " + std::string(definition));
    if (status != NABTO_OK && !active->InterfaceError.empty())
        *error = active->GiveText(active->InterfaceError);
    return status;
}
std::uint8_t RpcInvoke(void* session, const char* url, char** response) {
    const auto status = active->Call("nabtoRpcInvoke", Handle(session) + " " + url);
    if (const auto reply = active->Reply ? active->Reply(url) : std::nullopt)
        *response = active->GiveText(*reply);
    return status;
}
std::uint8_t StreamOpen(void** stream, void* session, const char* device) {
    *stream = &streamHandle;
    return active->Call("nabtoStreamOpen", Handle(session) + " " + device);
}
std::uint8_t StreamClose(void* stream) {
    return active->Call("nabtoStreamClose", Handle(stream));
}
std::uint8_t StreamRead(void* stream, unsigned char* buffer, std::size_t capacity, std::size_t* got) {
    const auto status =
        active->Call("nabtoStreamReadIntoBuf", Handle(stream) + " " + std::to_string(capacity));
    if (status == NABTO_OK && !active->Chunks.empty()) {
        const auto chunk = std::move(active->Chunks.front());
        active->Chunks.pop_front();
        *got = std::min(chunk.size(), capacity);
        std::copy_n(chunk.begin(), *got, buffer);
    }
    return status;
}
std::uint8_t StreamWrite(void* stream, const char* data, std::size_t length) {
    const auto status = active->Call("nabtoStreamWrite", Handle(stream) + " " + std::to_string(length));
    if (status == NABTO_OK)
        active->Written.insert(active->Written.end(), data, data + length);
    return status;
}
const char* StatusStr(std::uint8_t status) {
    static const char* const texts[] = {"ok", "no profile", "status 2", "status 3"};
    return status < 4 ? texts[status] : status == NABTO_STREAM_CLOSED ? "stream closed" : "failed";
}
void FreeText(void* text) {
    active->Free(text);
}
std::uint8_t LocalDevices(char*** devices, int* count) {
    const auto status = active->Call("nabtoGetLocalDevices");
    *devices = active->DeviceArray();
    *count = static_cast<int>(active->LocalDevices.size());
    return status;
}

template <class T>
void* Address(T* function) {
    return reinterpret_cast<void*>(function);
}

class TFakeLibrary : public ILibrary {
  public:
    void* Symbol(const std::string& name) const override {
        static const std::map<std::string, void*> symbols{
            {"nabtoStartup", Address<decltype(nabtoStartup)>(Startup)},
            {"nabtoShutdown", Address<decltype(nabtoShutdown)>(Shutdown)},
            {"nabtoOpenSession", Address<decltype(nabtoOpenSession)>(OpenSession)},
            {"nabtoCloseSession", Address<decltype(nabtoCloseSession)>(CloseSession)},
            {"nabtoCreateProfile", Address<decltype(nabtoCreateProfile)>(CreateProfile)},
            {"nabtoRpcSetDefaultInterface", Address<decltype(nabtoRpcSetDefaultInterface)>(SetInterface)},
            {"nabtoRpcInvoke", Address<decltype(nabtoRpcInvoke)>(RpcInvoke)},
            {"nabtoStreamOpen", Address<decltype(nabtoStreamOpen)>(StreamOpen)},
            {"nabtoStreamClose", Address<decltype(nabtoStreamClose)>(StreamClose)},
            {"nabtoStreamReadIntoBuf", Address<decltype(nabtoStreamReadIntoBuf)>(StreamRead)},
            {"nabtoStreamWrite", Address<decltype(nabtoStreamWrite)>(StreamWrite)},
            {"nabtoStatusStr", Address<decltype(nabtoStatusStr)>(StatusStr)},
            {"nabtoFree", Address<decltype(nabtoFree)>(FreeText)},
            {"nabtoGetLocalDevices", Address<decltype(nabtoGetLocalDevices)>(LocalDevices)},
        };
        const auto found = symbols.find(name);
        return found == symbols.end() || active->Missing.contains(name) ? nullptr : found->second;
    }
};

} // namespace

TFakeNabto::TFakeNabto() {
    active = this;
}

TFakeNabto::~TFakeNabto() {
    active = nullptr;
    EXPECT_TRUE(Given.empty() || Missing.contains("nabtoFree")) << "texts not freed";
}

TLoadedLibrary TFakeNabto::Load(const std::string& name) {
    EXPECT_EQ(name, "nabto_client_api");
    if (!Present)
        return {nullptr, name, "there is none"};
    return {std::make_unique<TFakeLibrary>(), name, {}};
}

std::uint8_t TFakeNabto::Call(const std::string& symbol, const std::string& arguments) {
    Calls.push_back(arguments.empty() ? symbol : symbol + " " + arguments);
    if (OnCall)
        OnCall();
    auto& results = Results[symbol];
    if (results.empty())
        return NABTO_OK;
    const auto result = results.front();
    results.pop_front();
    return result;
}

char* TFakeNabto::GiveText(const std::string& text) {
    auto copy = std::make_unique<std::string>(text);
    char* const address = copy->data();
    Given.emplace(address, std::move(copy));
    return address;
}

void TFakeNabto::Free(void* text) {
    EXPECT_EQ(Given.erase(text), 1U) << "freed what was not given out";
}

char** TFakeNabto::DeviceArray() {
    Devices.clear();
    for (auto& device : LocalDevices)
        Devices.push_back(device.data());
    return Devices.data();
}

} // namespace tidewell::test
