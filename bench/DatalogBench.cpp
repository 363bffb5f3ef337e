// Writing a datalog of 1,000,000 rows by 40 values of one to five digits, beside a bare loop that only turns
// the values into text. Each with and without waiting until the disk has it. Files go to the current
// directory, or to TIDEWELL_BENCH_DIR.

#include "core/DiskFiles.h"
#include "graph/TextColumn.h"
#include "logging/DatalogWriter.h"
#include "logging/LogBuffers.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace tidewell {

namespace {

constexpr std::size_t RowCount = 1'000'000;
constexpr std::size_t ValueCount = 40;
constexpr std::size_t BlockSize = 256 * 1024;

std::filesystem::path Target(const std::string& name) {
    const char* const directory = std::getenv("TIDEWELL_BENCH_DIR");
    return std::filesystem::path(directory != nullptr ? directory : ".") / name;
}

// Writes in place and does not wait for the disk.
class TPlainWriter : public IFileWriter {
  public:
    explicit TPlainWriter(const std::filesystem::path& path)
        : Descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644)) {}
    TPlainWriter(const TPlainWriter&) = delete;
    TPlainWriter& operator=(const TPlainWriter&) = delete;
    ~TPlainWriter() override { ::close(Descriptor); }
    void Write(std::string_view bytes) override {
        if (::write(Descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
            std::abort();
    }
    std::filesystem::path Commit() override { return {}; }
    void Sync() const { ::fsync(Descriptor); }

  private:
    int Descriptor;
};

class TPlainFiles : public TDiskFiles {
  public:
    std::unique_ptr<IFileWriter> Replace(const std::filesystem::path& path) override {
        return std::make_unique<TPlainWriter>(path);
    }
};

// From -32768 to 65535, all numbers of digits about as often.
std::int32_t AnyValue(std::mt19937& random) {
    const auto value = static_cast<std::int32_t>(random() % 98'304) - 32'768;
    return value >> random() % 16;
}

struct TSampleLog {
    TSampleLog() {
        std::mt19937 random(1); // the same values in each run
        Bare.reserve(RowCount * ValueCount);
        std::vector<std::int32_t> row(ValueCount + 1, 0); // the last column is the blank behind the last ";"
        for (std::size_t i = 0; i < RowCount; ++i) {
            for (std::size_t column = 0; column < ValueCount; ++column)
                row[column] = AnyValue(random);
            Bare.insert(Bare.end(), row.begin(), row.end() - 1);
            Values.SetRow(i, row);
            const auto second = [i](std::size_t divisor, std::size_t modulus) {
                return std::to_string(100 + i * 2 / divisor % modulus).substr(1);
            };
            Times.Add(second(3600, 24) + ':' + second(60, 60) + ':' + second(1, 60));
            Dates.Add(std::to_string(10 + i * 2 / 86'400) + "-03-2026");
        }
    }
    std::vector<std::int32_t> Bare;
    TRawLog Values;
    TTextColumn Times;
    TTextColumn Dates;
};

const TSampleLog& SampleLog() {
    static const TSampleLog log;
    return log;
}

void WriteBare(const std::filesystem::path& path, bool sync) {
    const std::vector<std::int32_t>& values = SampleLog().Bare;
    TPlainWriter file(path);
    std::string block(BlockSize, '\0');
    std::size_t used = 0;
    for (std::size_t i = 0; i < values.size();) {
        if (block.size() - used < ValueCount * 12 + 2) {
            file.Write({block.data(), used});
            used = 0;
        }
        for (const std::size_t end = i + ValueCount; i < end; ++i) {
            char* const stop = std::to_chars(&block[used], block.data() + block.size(), values[i]).ptr;
            *stop = ';';
            used = static_cast<std::size_t>(stop - block.data()) + 1;
        }
        block[used++] = '\r';
        block[used++] = '\n';
    }
    file.Write({block.data(), used});
    if (sync)
        file.Sync();
}

template <class TAction>
double Seconds(TAction action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// The two take turns, so that both see the same state of the machine. The counters hold the best pass of
// each, and their ratio.
void Datalog(benchmark::State& state, IFiles& files, bool sync) {
    const TSampleLog& log = SampleLog();
    const auto barePath = Target("bare.csv");
    const auto path = Target("datalog.csv");
    double bestBare = std::numeric_limits<double>::max();
    double best = bestBare;
    for (auto pass : state) {
        bestBare = std::min(bestBare, Seconds([&] { WriteBare(barePath, sync); }));
        const double seconds = Seconds([&] {
            WriteDatalog(*files.Replace(path), {RowCount, log.Dates, log.Times, log.Values},
                         ";[HeaderStart][HeaderEnd]");
        });
        best = std::min(best, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["bare_ms"] = bestBare * 1000;
    state.counters["datalog_ms"] = best * 1000;
    state.counters["ratio"] = best / bestBare;
    std::filesystem::remove(barePath);
    std::filesystem::remove(path);
}

void DatalogPlain(benchmark::State& state) {
    TPlainFiles files;
    Datalog(state, files, false);
}
void DatalogSynced(benchmark::State& state) {
    TDiskFiles files;
    Datalog(state, files, true);
}
BENCHMARK(DatalogPlain)->Iterations(15)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(DatalogSynced)->Iterations(15)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace tidewell
