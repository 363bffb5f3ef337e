// The host's own work in a firmware upload: a packet, the CRC, and an image of 2 MiB over each road, with a
// device that answers at once and waits that take no time.

#include "IdlePorts.h"
#include "bench/IdleSurroundings.h"
#include "core/Crc16.h"
#include "core/DiskFiles.h"
#include "core/Extensions.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "core/controls/StatusBar.h"
#include "core/ports/ILibraryLoader.h"
#include "link/DeviceUse.h"
#include "link/FileUpload.h"
#include "link/Nabto.h"
#include "link/ReadReport.h"
#include "link/UpdateRun.h"
#include "link/UpdateStatus.h"

#include <benchmark/benchmark.h>
#include <string.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <random>
#include <string_view>
#include <vector>

namespace tidewell {

namespace {

constexpr std::size_t imageSize = std::size_t{2} << 20U;
constexpr std::size_t crcSize = std::size_t{1} << 20U;

std::vector<std::uint8_t> Image(std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    std::mt19937 random(1); // the same in each run
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

class TOneFile : public TDiskFiles {
  public:
    TOneFile() {
        const auto bytes = Image(imageSize);
        Content.assign(bytes.begin(), bytes.end());
    }
    std::string Read(const std::filesystem::path&) const override { return Content; }

  private:
    std::string Content;
};

// Accepts every packet and every piece of a stream. One reply at a time.
std::array<char, 64> reply;
int stream = 0;

std::uint8_t Invoke(void*, const char* url, char** response) {
    constexpr std::string_view start = R"({"response":{"status":)";
    constexpr std::string_view member = R"("blocknumber":)";
    constexpr std::size_t head = 160; // the members before the bytes
    const std::string_view request(url, strnlen(url, head));
    std::uint32_t status = request.find("prepareUpdate") != std::string_view::npos ? 131072 : 0;
    if (request.find("NostreamV2") != std::string_view::npos) {
        const char* const number = request.data() + request.find(member) + member.size();
        std::from_chars(number, request.data() + request.size(), status);
        status <<= 16U;
    }
    char* end = std::ranges::copy(start, reply.begin()).out;
    end = std::to_chars(end, reply.data() + reply.size(), status).ptr;
    *std::ranges::copy(std::string_view("}}"), end).out = '\0';
    *response = reply.data();
    return NABTO_OK;
}
std::uint8_t StreamOpen(void** handle, void*, const char*) {
    *handle = &stream;
    return NABTO_OK;
}
std::uint8_t StreamClose(void*) {
    return NABTO_OK;
}
std::uint8_t StreamWrite(void*, const char* data, std::size_t) {
    benchmark::DoNotOptimize(data);
    return NABTO_OK;
}
void Free(void*) {}

class TGoodDevice : public ILibraryLoader, public ILibrary {
  public:
    TLoadedLibrary Load(const std::string& name) override {
        return {std::make_unique<TGoodDevice>(), name, {}};
    }
    void* Symbol(const std::string& name) const override {
        if (name == "nabtoRpcInvoke")
            return reinterpret_cast<void*>(&Invoke);
        if (name == "nabtoStreamOpen")
            return reinterpret_cast<void*>(&StreamOpen);
        if (name == "nabtoStreamClose")
            return reinterpret_cast<void*>(&StreamClose);
        if (name == "nabtoStreamWrite")
            return reinterpret_cast<void*>(&StreamWrite);
        if (name == "nabtoFree")
            return reinterpret_cast<void*>(&Free);
        return nullptr;
    }
};

// An upload with what the form shows of it.
struct TUploadRig {
    TUploadRig() {
        streamDelayEdit.SetText("10");
        Nabto.FOnUpdateProgress = [this](TStreamProgress& progress) {
            const std::uint64_t done = progress.currentstreamprogress;
            StatusBar.SetText(0,
                              "progress " + std::to_string(done * 100 / progress.currentstreamlength) + " %");
            Status.SetProgress(progress.currentstreamprogress, progress.currentstreamlength);
            Wait.ProcessMessages();
        };
        Status.Begin();
    }

    TOneFile Files;
    TBenchClock Clock;
    TIdleTimers Timers;
    TNoWait Wait;
    TNoDialogs Dialogs;
    TGoodDevice Library;
    test::TIdleSurroundings World{Dialogs, Timers, Wait, Files, Clock, Library, {{}, {}, {}, {}, "/"}};
    TUNabto& Nabto = World.Nabto;
    TForm Form{"NabtoDevice"};
    TMemo memoDebug{"memoDebug"};
    TEdit streamDelayEdit{"streamDelayEdit"};
    TStatusBar StatusBar{Form, "StatusBar", {{200, {}, false}}};
    std::string Device = "410000000001.remote.example";
    std::filesystem::path CurrentUpdateSWFile = "/config.fwc";
    bool EnableContineousUpdate = false;
    TDeviceUse Use;
    TDownloadTexts DownloadTexts;
    const TDeviceServices Services{World.Needs,        Form,   Use,           memoDebug,
                                   StatusBar,          Device, DownloadTexts, EnableContineousUpdate,
                                   CurrentUpdateSWFile};
    TUpdateStatus Status{Form, Clock};
    TUpdateRun Run{Services, Status};
    TFileUpload Upload{Services, Run, streamDelayEdit};
};

void BuildPacket(benchmark::State& state) { // under 5 us
    const auto bytes = Image(256);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            V2prepareFlashWriteNostream(8, 12345, Crc16(Crc16Start, bytes, true), bytes));
}
BENCHMARK(BuildPacket)->Unit(benchmark::kMicrosecond);

void CrcOfAMebibyte(benchmark::State& state) { // within 1.5 times the bare loop
    const auto bytes = Image(crcSize);
    for (auto _ : state)
        benchmark::DoNotOptimize(Crc16(Crc16Start, bytes, true));
}
BENCHMARK(CrcOfAMebibyte)->Unit(benchmark::kMillisecond);

void BareTableLoop(benchmark::State& state) {
    const auto bytes = Image(crcSize);
    std::array<std::uint16_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const std::uint8_t byte = static_cast<std::uint8_t>(i);
        table[i] = Crc16(0, {&byte, 1}, false);
    }
    for (auto _ : state) {
        std::uint16_t crc = Crc16Start;
        for (const std::uint8_t byte : bytes)
            crc = static_cast<std::uint16_t>(crc >> 8U ^ table[(crc ^ byte) & 0xFFU]);
        benchmark::DoNotOptimize(crc);
    }
}
BENCHMARK(BareTableLoop)->Unit(benchmark::kMillisecond);

void UploadInPackets(benchmark::State& state) { // under 0.5 s
    TUploadRig rig;
    for (auto _ : state)
        if (!rig.Upload.RpcUploadTarget(1, imageSize, "/image.bin", 1))
            std::abort();
}
BENCHMARK(UploadInPackets)->Unit(benchmark::kMillisecond);

void UploadByStream(benchmark::State& state) { // under 0.1 s
    TUploadRig rig;
    for (auto _ : state)
        if (!rig.Upload.StreamUpload(1, imageSize, "image.bin", 1))
            std::abort();
}
BENCHMARK(UploadByStream)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace tidewell
