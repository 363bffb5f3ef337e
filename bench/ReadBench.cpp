// Opening datalogs beside a bare parser of the same bytes: read in blocks of 1 MiB, a hand-rolled digit loop,
// one column of 32-bit integers per value. And the export of 1,000,000 samples by 20 channels beside a bare
// loop that turns the values into text. Some 400 MB of files are written meanwhile.

#include "IdlePorts.h"
#include "core/DiskFiles.h"
#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "graph/GraphPage.h"
#include "logging/CsvExport.h"
#include "logging/DatalogLines.h"
#include "logging/LogBuffers.h"
#include "model/GraphRowParser.h"
#include "model/Profile.h"
#include "tests/rig/IdleProgram.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <system_error>
#include <vector>

namespace tidewell {

namespace {

constexpr std::size_t ChannelCount = 20;
constexpr std::size_t BlockSize = 1U << 20U;

// A folder of this run, in the one that TIDEWELL_BENCH_DIR names or the system's; gone at the end.
class TScratch {
  public:
    TScratch() {
        const char* const directory = std::getenv("TIDEWELL_BENCH_DIR");
        Path = (directory != nullptr ? directory : std::filesystem::temp_directory_path()) /
               ("tidewell_read_bench_" + std::to_string(::getpid()));
        std::filesystem::create_directories(Path);
    }
    ~TScratch() {
        std::error_code ignored;
        std::filesystem::remove_all(Path, ignored);
    }
    TScratch(const TScratch&) = delete;
    TScratch& operator=(const TScratch&) = delete;

    std::filesystem::path Path;
};

std::filesystem::path Folder() {
    static const TScratch scratch;
    return scratch.Path;
}

// A datalog of that many rows and values of one to five digits; made once.
const std::filesystem::path& Datalog(std::size_t rows, std::size_t values) {
    static std::map<std::pair<std::size_t, std::size_t>, std::filesystem::path> made;
    auto& path = made[{rows, values}];
    if (!path.empty())
        return path;
    path = Folder() / ("read_bench_" + std::to_string(rows) + ".csv");
    std::ofstream file(path, std::ios::binary);
    std::mt19937 random(1);
    std::string line;
    for (std::size_t row = 0; row < rows; ++row) {
        const auto second = [row](std::size_t divisor, std::size_t modulus) {
            return std::to_string(100 + row * 2 / divisor % modulus).substr(1);
        };
        line = std::to_string(row + 1) + ';' + std::to_string(10 + row * 2 / 86'400) + "-03-2026;" +
               second(3600, 24) + ':' + second(60, 60) + ':' + second(1, 60) + ';';
        for (std::size_t value = 0; value < values; ++value)
            line += std::to_string((static_cast<std::int32_t>(random() % 98'304) - 32'768) >> random() % 16) +
                    ';';
        file << line << "\r\n";
    }
    file << ";[HeaderStart]1;3;0;40;Air;Aria;1;profile.pls[HeaderEnd]\r\n";
    return path;
}

// What the bare parser makes of a datalog.
struct TBareColumns {
    std::vector<std::vector<std::int32_t>> Columns;
    std::size_t Rows = 0;
};

void ParseBare(const std::filesystem::path& path, std::size_t values, TBareColumns& columns) {
    columns.Columns.assign(values, {});
    columns.Rows = 0;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    std::vector<char> block(BlockSize);
    std::size_t field = 0;
    std::int32_t value = 0;
    bool negative = false;
    for (ssize_t got = 0; (got = ::read(file, block.data(), block.size())) > 0;) {
        for (const char* at = block.data(); at != block.data() + got; ++at) {
            const auto digit = static_cast<unsigned>(*at) - '0';
            if (digit < 10) {
                value = value * 10 + static_cast<std::int32_t>(digit);
            } else if (*at == ';') {
                if (field >= 3 && field - 3 < values)
                    columns.Columns[field - 3].push_back(negative ? -value : value);
                ++field;
                value = 0;
                negative = false;
            } else if (*at == '-') {
                negative = true;
            } else if (*at == '\n') {
                field = 0;
                value = 0;
                ++columns.Rows;
            }
        }
    }
    ::close(file);
}

// Chooses the one file, and saves to the other.
class TChoosingDialogs : public TNoDialogs {
  public:
    std::vector<std::filesystem::path> OpenFiles(const TFileDialog&) override { return {Chosen}; }
    std::optional<std::filesystem::path> SaveFile(const TFileDialog&, std::size_t&) override {
        return Target;
    }
    std::filesystem::path Chosen;
    std::filesystem::path Target = Folder() / "read_bench_export.csv";
};

class TGraphRig {
  public:
    explicit TGraphRig(std::size_t values) {
        const auto path = Folder() / "read_bench.pls";
        {
            std::ofstream file(path, std::ios::binary);
            file << "[GraphPoints]\n";
            for (std::size_t channel = 0; channel < ChannelCount; ++channel)
                file << "P" << channel << "=Channel " << channel << ";1;clBlue;"
                     << 3 + channel * values / ChannelCount << ";0;" << channel % 3 << ";"
                     << 100 + channel * 10 << ";;;;;;1;\n";
        }
        Profile.Open(path);
        std::filesystem::remove(path);
        Page.GraphInit(true);
    }
    void Open(const std::filesystem::path& path) {
        Dialogs.Chosen = path;
        TDatalogReader(Parts).OpenDatalogfile1Click();
    }
    void Export() { TCsvExport(Parts).Exportdatatocsv1Click(); }

    test::TIdleLog Log;
    test::TIdleProgram Program;
    TDiskFiles Files;
    TNoWait Wait;
    TChoosingDialogs Dialogs;
    TProfile Profile{Files};
    TMemo MemoEventLog{"MemoEventLog"};
    TProgressBar FileProgressBar{"FileProgressBar"};
    TLogBuffers Buffers;
    TForm Form{"FormMain"};
    TGraphPage Page{Form, {Profile, Buffers, Dialogs, Wait, MemoEventLog, FileProgressBar}};
    std::filesystem::path directorypath = Folder();
    TExclusiveUse Opening;
    TDatalogNeeds Parts{Log,  Program,      Dialogs,         Files,         Wait,   Profile,
                        Page, MemoEventLog, FileProgressBar, directorypath, Opening};
};

std::size_t HeapInUse() {
    const auto heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

void BareParser(benchmark::State& state) {
    const auto values = static_cast<std::size_t>(state.range(1));
    const auto& path = Datalog(static_cast<std::size_t>(state.range(0)), values);
    TBareColumns columns;
    for (auto step : state)
        ParseBare(path, values, columns);
}

// Every line split and its channels' fields parsed, nothing kept.
void ParseRows(benchmark::State& state) {
    const auto values = static_cast<std::size_t>(state.range(1));
    const auto& path = Datalog(static_cast<std::size_t>(state.range(0)), values);
    const TDiskFiles files;
    std::vector<TGraphPoint> points(values);
    for (std::size_t i = 0; i < values; ++i) {
        points[i].IsChannel = true;
        points[i].Structnumber = static_cast<std::int32_t>(i + 3);
    }
    for (auto step : state) {
        TGraphRowParser parser(points);
        TDatalogLineReader lines(files.Open(path));
        std::string_view line;
        while (lines.Next(line)) {
            parser.Parse(line);
            benchmark::DoNotOptimize(parser);
        }
    }
}

// From the dialog to a page that is ready to be painted. memory_ratio: what it took of the heap, to the bytes
// of the samples, and 4 for each time and date.
void OpenDatalog(benchmark::State& state) {
    const auto rows = static_cast<std::size_t>(state.range(0));
    const auto values = static_cast<std::size_t>(state.range(1));
    const auto& path = Datalog(rows, values);
    TGraphRig rig(values);
    const std::size_t before = HeapInUse();
    for (auto step : state)
        rig.Open(path);
    state.counters["memory_ratio"] =
        static_cast<double>(HeapInUse() - before) / static_cast<double>(rows * (ChannelCount * 8 + 8));
}

void BareExport(benchmark::State& state) {
    TGraphRig rig(40);
    rig.Open(Datalog(1'000'000, 40));
    for (auto step : state) {
        std::ofstream file(rig.Dialogs.Target, std::ios::binary);
        std::string block(BlockSize, '\0');
        std::size_t used = 0;
        for (std::size_t row = 0; row < rig.Page.GraphSampleCount(); ++row) {
            if (block.size() - used < 1024) {
                file.write(block.data(), static_cast<std::streamsize>(used));
                used = 0;
            }
            for (std::size_t channel = 0; channel < ChannelCount; ++channel) {
                const double value = rig.Page.DataLogDataValues.At(channel, row);
                char* const stop = std::to_chars(&block[used], block.data() + block.size(), value,
                                                 std::chars_format::fixed, 2)
                                       .ptr;
                *stop = ';';
                used = static_cast<std::size_t>(stop - block.data()) + 1;
            }
            block[used++] = '\r';
            block[used++] = '\n';
        }
        file.write(block.data(), static_cast<std::streamsize>(used));
    }
}

void Export(benchmark::State& state) {
    TGraphRig rig(40);
    rig.Open(Datalog(1'000'000, 40));
    for (auto step : state)
        rig.Export();
}

BENCHMARK(BareParser)->Args({1'000'000, 40})->Args({105'728, 126})->Unit(benchmark::kMillisecond);
BENCHMARK(ParseRows)->Args({1'000'000, 40})->Args({105'728, 126})->Unit(benchmark::kMillisecond);
BENCHMARK(OpenDatalog)->Args({1'000'000, 40})->Args({105'728, 126})->Unit(benchmark::kMillisecond);
BENCHMARK(BareExport)->Unit(benchmark::kMillisecond);
BENCHMARK(Export)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace tidewell
