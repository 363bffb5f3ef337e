// The setpoint page without its painting: a data line, a click on a group, a key in the filter, and the texts
// of the rows that a screen shows.

#include "SetpointRig.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

namespace tidewell {

namespace {

constexpr int screenRows = 60;

void FormatLine(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    std::vector<std::string> paraIds;
    std::vector<std::string> texts;
    std::vector<TListRow> rows;
    rows.reserve(static_cast<std::size_t>(count));
    for (int row = 0; row < count; ++row)
        rows.push_back(ParseListRow(FormatRowLimits(std::to_string(row) + ";" + ListRow(row), paraIds)));
    const std::string line = DataLine(count);
    for (auto pass : state)
        FormatListValues(line, texts, rows);
    if (texts.size() != rows.size())
        std::abort();
}
BENCHMARK(FormatLine)->Arg(500)->Arg(2000)->Unit(benchmark::kMicrosecond);

void ApplyLine(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    TPageRig rig(count);
    const std::string line = DataLine(count);
    for (auto pass : state)
        rig.Page.ApplyDataLine(line);
}
BENCHMARK(ApplyLine)->Arg(2000)->Unit(benchmark::kMicrosecond);

void ClickGroup(benchmark::State& state) {
    TPageRig rig(static_cast<int>(state.range(0)));
    for (auto pass : state)
        rig.Page.SetpointTreeView.OnClick();
}
BENCHMARK(ClickGroup)->Arg(2000)->Unit(benchmark::kMicrosecond);

void TypeInFilter(benchmark::State& state) {
    TPageRig rig(static_cast<int>(state.range(0)));
    constexpr std::array<const char*, 4> texts{"1", "19", "199", "temp"};
    std::size_t key = 0;
    for (auto pass : state)
        rig.Page.SetpointFilter.Enter(texts[key++ % texts.size()]);
}
BENCHMARK(TypeInFilter)->Arg(2000)->Unit(benchmark::kMicrosecond);

void DrawScreen(benchmark::State& state) {
    TPageRig rig(static_cast<int>(state.range(0)));
    rig.Page.ApplyDataLine(DataLine(static_cast<int>(state.range(0))));
    std::size_t characters = 0;
    for (auto pass : state)
        for (int row = 0; row <= screenRows; ++row)
            for (int column = 0; column < 5; ++column)
                characters += rig.Page.SetpointGrid.OnDrawCell(column, row).Text.size();
    benchmark::DoNotOptimize(characters);
}
BENCHMARK(DrawScreen)->Arg(2000)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace tidewell
