// A whole flash ring, 6608 blocks of 4096 bytes, from what was read to the saved file, against a bare loop
// over the same values.

#include "core/DiskFiles.h"
#include "link/FlashBlocks.h"
#include "link/FlashRecords.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <random>
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
        void Commit() override {}
    };
};

std::size_t HeapInUse() {
    const auto heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
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

// memory_ratio is what the rows take of the heap at most, to the bytes of their words.
void DecodeAndSave(benchmark::State& state) {
    const auto ring = Ring();
    TNoFiles none;
    TDiskFiles disk;
    const bool onDisk = state.range(0) != 0;
    const auto path = std::filesystem::temp_directory_path() / "flash_bench.csv";
    double ratio = 0;
    for (auto step : state) {
        state.PauseTiming();
        std::vector<std::uint8_t> read = ring;
        state.ResumeTiming();
        const std::size_t before = HeapInUse() - read.capacity();
        TFlashRecords records;
        records.Add(std::move(read), 1);
        records.Save(onDisk ? static_cast<IFiles&>(disk) : none, path, ";[HeaderStart][HeaderEnd]");
        ratio = static_cast<double>(HeapInUse() - before) / static_cast<double>(ringBytes);
    }
    std::filesystem::remove(path);
    state.counters["rows"] = static_cast<double>(ringBytes / TFlashRecords::RecordSize);
    state.counters["memory_ratio"] = ratio;
}
BENCHMARK(DecodeAndSave)->ArgName("disk")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace tidewell
