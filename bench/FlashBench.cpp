// A whole flash ring, 6608 blocks of 4096 bytes, from what was read to the saved file, against a bare loop
// over the same values; and what it takes of the memory at most, from the first byte of the stream on.

#include "IdlePorts.h"
#include "core/DiskFiles.h"
#include "core/ports/ILibraryLoader.h"
#include "link/FlashBlocks.h"
#include "link/FlashRecords.h"
#include "link/NabtoLibrary.h"
#include "link/NabtoStream.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace tidewell {

namespace {

constexpr std::size_t ringBytes = std::size_t{FlashBlockCount} * FlashBlockSize;

// Values as a controller logs them: temperatures, percentages, counters.
std::vector<std::uint8_t> Ring() {
    std::vector<std::uint8_t> bytes(ringBytes);
    std::mt19937 random(1); // the same in each run
    for (std::size_t word = 0; word < ringBytes / 2; ++word) {
        const auto value = static_cast<std::uint16_t>(random() % 6500 - 500);
        bytes[2 * word] = static_cast<std::uint8_t>(value >> 8U);
        bytes[2 * word + 1] = static_cast<std::uint8_t>(value);
    }
    return bytes;
}

// Takes all and keeps nothing, so that the disk is not measured.
class TNoFiles : public TDiskFiles {
  public:
    std::unique_ptr<IFileWriter> Replace(const std::filesystem::path&) override {
        return std::make_unique<TWriter>();
    }

  private:
    class TWriter : public IFileWriter {
      public:
        void Write(std::string_view bytes) override { benchmark::DoNotOptimize(bytes.data()); }
        std::filesystem::path Commit() override { return {}; }
    };
};

// Most bytes of the process that were in memory since the last StartPeak.
std::size_t Peak() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmHWM:") {
            std::size_t kibibytes = 0;
            status >> kibibytes;
            return kibibytes * 1024;
        }
    std::abort();
}
void StartPeak() {
    ::malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
}

void BareLoop(benchmark::State& state) {
    const auto bytes = Ring();
    std::array<char, 1024> text{};
    for (auto step : state) {
        char* at = text.data();
        for (std::size_t i = 0; i < bytes.size(); i += 2) {
            if (i % TFlashRecords::RecordSize == 0)
                at = text.data();
            const auto value = static_cast<std::int16_t>(bytes[i] << 8U | bytes[i + 1]);
            at = std::to_chars(at, text.data() + text.size(), value).ptr;
            *at++ = ';';
        }
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(BareLoop)->Unit(benchmark::kMillisecond);

void DecodeAndSave(benchmark::State& state) { // under 3 times the bare loop
    const auto ring = Ring();
    TNoFiles none;
    TDiskFiles disk;
    const bool onDisk = state.range(0) != 0;
    const auto path = std::filesystem::temp_directory_path() / "flash_bench.csv";
    for (auto step : state) {
        state.PauseTiming();
        std::vector<std::uint8_t> read = ring;
        state.ResumeTiming();
        TFlashRecords records;
        records.Add(std::move(read), 1);
        records.Save(*(onDisk ? static_cast<IFiles&>(disk) : none).Replace(path),
                     ";[HeaderStart][HeaderEnd]");
    }
    std::filesystem::remove(path);
}
BENCHMARK(DecodeAndSave)->ArgName("disk")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Gives pieces of up to 64 KiB.
std::uint8_t ReadIntoBuf(void*, unsigned char* buffer, std::size_t capacity, std::size_t* got) {
    *got = std::min<std::size_t>(capacity, 65536);
    for (std::size_t i = 0; i < *got; ++i)
        buffer[i] = static_cast<unsigned char>(i * 7);
    return NABTO_OK;
}

class TStreamingDevice : public ILibraryLoader, public ILibrary {
  public:
    TLoadedLibrary Load(const std::string& name) override {
        return {std::make_unique<TStreamingDevice>(), name, {}};
    }
    void* Symbol(const std::string& name) const override {
        return name == "nabtoStreamReadIntoBuf" ? reinterpret_cast<void*>(&ReadIntoBuf) : nullptr;
    }
};

// memory_ratio is the peak to what the values of all rows take; under 1.5.
void ReadAndSave(benchmark::State& state) {
    constexpr std::size_t rows = ringBytes / TFlashRecords::RecordSize;
    TStreamingDevice device;
    const TNabtoLibrary library(device);
    TNoDialogs dialogs;
    TIdleTimers timers;
    TNoWait wait;
    TStreamProgress progress;
    TNabtoStream stream(library, dialogs, timers, wait, progress);
    TNoFiles files;
    double ratio = 0;
    for (auto step : state) {
        StartPeak();
        const std::size_t before = Peak();
        TFlashRecords records;
        auto bytes = stream.Read(ringBytes).AtLength(ringBytes);
        if (!bytes)
            std::abort();
        records.Add(*std::move(bytes), 1);
        records.Save(*files.Replace("flash_bench.csv"), ";[HeaderStart][HeaderEnd]");
        ratio = static_cast<double>(Peak() - before) / (rows * TFlashRecords::ValueCount * 2);
    }
    state.counters["rows"] = static_cast<double>(rows);
    state.counters["memory_ratio"] = ratio;
}
BENCHMARK(ReadAndSave)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace tidewell
