#include "graph/GraphTimeLabels.h"

#include "core/Errors.h"
#include "graph/TextColumn.h"

#include <cmath>
#include <string>

namespace tidewell {

namespace {

constexpr int labelAxis = 2;
constexpr double timeHeight = 0.05;
constexpr double dateHeight = 0.02;
constexpr double leastRange = 10; // samples of a zoomed view that still get labels of their own

} // namespace

void TGraphTimeLabels::SetVisible(const TPair& pair, bool visible) {
    if (pair.Time == nullptr)
        return;
    pair.Time->SetVisible(visible);
    pair.Date->SetVisible(visible);
}

void TGraphTimeLabels::Rebuild() {
    graph.Labels.Clear();
    const auto add = [this](TPair& pair) {
        pair = {&graph.Labels.Add(), &graph.Labels.Add()};
        SetVisible(pair, false);
    };
    add(GraphScrollInfoLabel);
    for (TPair& pair : GraphDataLabels)
        add(pair);
}

void TGraphTimeLabels::Empty(const TPair& pair) {
    SetVisible(pair, false);
    if (pair.Time == nullptr)
        return;
    pair.Time->SetName({});
    pair.Date->SetName({});
}

void TGraphTimeLabels::Blank() {
    for (const TPair& pair : GraphDataLabels)
        Empty(pair);
}

void TGraphTimeLabels::Place(const TPair& pair, double x, std::size_t sample) {
    if (pair.Time == nullptr)
        return;
    const auto place = [x](TSLScopeTextLabel& label, std::string_view text, double height) {
        label.SetName(std::string(text));
        label.SetYAxisIndex(labelAxis);
        label.SetPosition({x, height});
        label.SetVisible(true);
    };
    place(*pair.Time, TimeText.At(sample), timeHeight);
    place(*pair.Date, DateText.At(sample), dateHeight);
}

void TGraphTimeLabels::UpdateGraphTimeLabels(std::int64_t sampleCount, std::int64_t zoom) {
    if (ScrollingActive)
        return;
    const double min = graph.XAxis.Min.DataValue();
    const double max = graph.XAxis.Max.DataValue();
    for (std::size_t i = 0; i < GraphDataLabels.size(); ++i) {
        const double x = std::floor((0.2 * static_cast<double>(i) + 0.1) * (max - min) + min);
        if (static_cast<double>(sampleCount - zoom) > x && x >= 0)
            Place(GraphDataLabels[i], x, static_cast<std::size_t>(x));
        else
            SetVisible(GraphDataLabels[i], false);
    }
}

void TGraphTimeLabels::Track(std::size_t sample) {
    if (!ScrollingActive) {
        for (const TPair& pair : GraphDataLabels)
            SetVisible(pair, false);
        ScrollingActive = true;
    }
    const double min = graph.XAxis.Min.DataValue();
    Place(GraphScrollInfoLabel, min + std::floor((graph.XAxis.Max.DataValue() - min) / 10), sample);
}

// A pair that kept its place would be found when labels are chosen for a zoomed view.
void TGraphTimeLabels::EndTracking() {
    Empty(GraphScrollInfoLabel);
    if (GraphScrollInfoLabel.Time == nullptr)
        return;
    GraphScrollInfoLabel.Time->SetPosition({});
    GraphScrollInfoLabel.Date->SetPosition({});
}

void TGraphTimeLabels::ClearTracking() {
    EndTracking();
    ScrollingActive = false;
}

void TGraphTimeLabels::AdjustNumberOfLabelsToScreen() {
    for (TSLScopeTextLabel& label : graph.Labels)
        label.SetVisible(false);
    const TSLRange shown = graph.XAxis.Shown();
    const double range = shown.Upper > shown.Lower ? shown.Upper - shown.Lower : 0;
    const double step = range > leastRange ? range / 5 : 0;
    const double margin = std::floor(std::floor(range) / 10);
    for (int k = 0; k < 5; ++k) {
        const double threshold = shown.Lower + k * step + margin;
        for (std::size_t i = 0; i < graph.Labels.Count(); ++i) {
            if (!(graph.Labels[i].Position().X > threshold))
                continue;
            graph.Labels[i].SetVisible(true);
            if (i + 1 < graph.Labels.Count())
                graph.Labels[i + 1].SetVisible(true);
            break;
        }
    }
}

} // namespace tidewell
