#include "graph/GraphPage.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/controls/Lists.h"
#include "model/ColorText.h"
#include "model/Profile.h"
#include "model/ValueCodec.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tidewell {

namespace {

constexpr std::int32_t BinaryType = 100;

// Colours for graph rows that name none, by channel.
constexpr std::array<TColor, 8> Palette{{{0x00B47744},
                                         {0x000E7FFF},
                                         {0x002CA02C},
                                         {0x002827D6},
                                         {0x00BD6794},
                                         {0x004B568C},
                                         {0x00C277E3},
                                         {0x00CFBE17}}};

// All digits of a whole number, never in scientific notation.
std::string PlainText(double value) {
    std::array<char, 400> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return {text.data(), end.ptr};
}

} // namespace

TGraphPage::TGraphPage(TProfile& profile, ILog& log, TMemo& memoEventLog)
    : Profile(profile), Log(log), MemoEventLog(memoEventLog) {}

void TGraphPage::GraphInit(bool rebuild) {
    SetAxes();
    const std::string error = rebuild ? RebuildChannels() : std::string();
    ClearGraphPage();
    if (!error.empty())
        throw EConvertError(error);
}

void TGraphPage::SetAxes() {
    const auto set = [](TSLScopeAxis& axis, double min, double max) {
        axis.Min.SetBoth(min);
        axis.Max.SetBoth(max);
        axis.Min.SetAutoScale(false);
        axis.Max.SetAutoScale(false);
    };
    set(graph.YAxis, -40, 100);
    set(graph.YAxis.AdditionalAxes[0].Axis, 0, 4096);
    set(graph.YAxis.AdditionalAxes[1].Axis, 0, 2);
    set(graph.XAxis, 0, static_cast<double>(GraphSpan()));
}

std::string TGraphPage::RebuildChannels() {
    std::string error;
    graph.Channels.Clear();
    Sources.clear();
    for (std::size_t row = 0; row < Profile.GraphPoints.size(); ++row) {
        if (!Profile.GraphPoints[row].IsChannel)
            continue;
        const std::string& text = Profile.GraphValues[row];
        const auto color = TryColorFromText(Trim(GetRowField(text, 2)));
        const std::size_t number = Sources.size();
        Sources.push_back({std::string(Trim(GetRowField(text, 0))), color.has_value(),
                           color.value_or(Palette[number % Palette.size()])});

        TSLDisplayChannel& channel = graph.Channels.Add();
        channel.SetName(Sources.back().Name);
        channel.SetColor(Sources.back().Color);
        channel.SetYAxisIndex(ToIntegerOr(DigitsOnly(GetRowField(text, 1)), 0) - 1);
        if (number >= Profile.VisibleGraph.Count())
            continue;
        const auto& entry = Profile.VisibleGraph.Rows()[number];
        try {
            channel.SetVisible(ToBoolean(entry.Value));
        } catch (const EConvertError& cause) {
            error =
                Profile.currentprofilefile.string() + ": [VisibleGraph] " + entry.Name + ": " + cause.what();
        }
    }
    return error;
}

void TGraphPage::ClearGraphPage() {
    for (TSLDisplayChannel& channel : graph.Channels)
        channel.Data.Clear();
    DataLogDataValues.Reset(Profile.GraphEnableCount);
    GraphDataLabelsTimeText.Clear();
    GraphDataLabelsDateText.Clear();
    Log.ClearLog();
    SetView(0, GraphSpan());
    graph.Invalidate();
    MemoEventLog.Add("Clear Graph execute");
    DatalogFileOpen = false;
    UpdateGraphScrollBar();
}

void TGraphPage::ExtendGraph(std::string_view line) {
    const std::size_t sample = GraphSampleCount();
    if (graph.XAxis.Max.Value() > static_cast<double>(sample)) {
        AddGraphSample(line, sample);
        return;
    }
    MemoEventLog.Add("extend graph Datavalue->" + PlainText(graph.XAxis.Max.DataValue()) + "Value" +
                     PlainText(graph.XAxis.Max.Value()));
    UpdateGraphScrollBar();
    AddGraphSample(line, sample);
    if (GraphScroll.Position() == GraphScroll.Max())
        UpdateTestData(GraphScroll.Position());
}

void TGraphPage::AddGraphSample(std::string_view line, std::size_t sampleIndex) {
    DataLogDataValues.Resize(sampleIndex + 1);
    const TSplitLine fields(line);
    const auto x = static_cast<double>(sampleIndex);
    const bool drawn = x <= graph.XAxis.Max.DataValue() &&
                       sampleIndex % static_cast<std::size_t>(std::max(GraphZoomFactor, 1)) == 0;
    std::size_t number = 0;
    for (const TGraphPoint& point : Profile.GraphPoints) {
        if (!point.IsChannel)
            continue;
        const double value = CalculateDatapointValue(point, fields).Value;
        DataLogDataValues.Set(number, sampleIndex, value);
        TSLDisplayChannel& channel = graph.Channels[number];
        if (drawn)
            channel.Data.AddXYPoint(x, value);
        if (point.Type == BinaryType)
            channel.ShowBits(Sources.at(number).Name, value);
        else
            channel.ShowValue(value);
        ++number;
    }
}

void TGraphPage::UpdateTestData(int position) {
    const std::int64_t span = std::int64_t{XAxisJump} * GraphZoomFactor;
    const std::int64_t start = span * position;
    const std::int64_t end = start + static_cast<std::int64_t>(std::floor(static_cast<double>(span) * 1.1));
    SetView(start, end);
    for (std::size_t channel = 0; channel < graph.Channels.Count(); ++channel) {
        graph.Channels[channel].Data.Clear();
        DrawChannel(channel, start, end);
    }
}

void TGraphPage::DrawChannel(std::size_t channel, std::int64_t start, std::int64_t end) {
    if (start < 0 || end < start)
        return;
    const auto step = static_cast<std::size_t>(std::max(GraphZoomFactor, 1));
    const std::size_t stop = std::min(static_cast<std::size_t>(end) + 1, GraphSampleCount());
    TSLChannelData& data = graph.Channels[channel].Data;
    for (std::size_t x = static_cast<std::size_t>(start); x < stop;) {
        const auto run = DataLogDataValues.Run(channel, x);
        if (run.empty())
            return;
        const std::size_t last = std::min(x + run.size(), stop);
        for (const std::size_t first = x; x < last; x += step)
            data.AddXYPoint(static_cast<double>(x), run[x - first]);
    }
}

void TGraphPage::UpdateGraphScrollBar() {
    const bool atEnd = GraphScroll.Position() == GraphScroll.Max();
    const std::int64_t jump = XAxisJump;
    const std::int64_t zoom = GraphZoomFactor;
    if (jump * zoom == 0)
        throw TError("Division by zero: [UpdateTimer] XAxisJump is 0");
    // In tenths, so that the tenth of a jump is exact. A negative result counts as 0, and so does a rounding
    // of it toward 0.
    const std::int64_t tenths = 10 * (static_cast<std::int64_t>(GraphSampleCount()) - zoom) - jump;
    const auto maximum = static_cast<int>(std::max<std::int64_t>(tenths / (10 * jump * zoom), 0));
    const bool enabled = maximum >= 1;
    GraphScroll.SetEnabled(enabled);
    GraphScroll.SetPageSize(enabled ? 1 : 0);
    GraphScroll.SetMax(maximum);
    if (!enabled || atEnd || maximum < GraphScroll.Position())
        GraphScroll.SetPosition(maximum);
}

void TGraphPage::DropSamplesFrom(std::size_t sample) {
    GraphDataLabelsTimeText.Truncate(sample);
    GraphDataLabelsDateText.Truncate(sample);
    if (DataLogDataValues.Samples() > sample)
        DataLogDataValues.Resize(sample);
}

std::size_t TGraphPage::GraphSampleCount() const {
    return DataLogDataValues.Channels() == 0 ? 0 : DataLogDataValues.Samples();
}

std::int64_t TGraphPage::GraphSpan() const {
    return std::llrint(XAxisJump * 1.1 * GraphZoomFactor);
}

std::vector<TGraphChannelSettings> TGraphPage::ChannelSettings() const {
    std::vector<TGraphChannelSettings> settings;
    settings.reserve(graph.Channels.Count());
    for (const TSLDisplayChannel& channel : graph.Channels) {
        const TSource& source = Sources.at(settings.size());
        // A text that names no colour stands for UnknownColor, and is kept while nobody chose another.
        const bool untouched = !source.HasOwnColor && channel.Color() == source.Color;
        settings.push_back({channel.Name(), channel.Visible(), untouched ? UnknownColor : channel.Color(),
                            channel.YAxisIndex()});
    }
    return settings;
}

void TGraphPage::SetView(std::int64_t min, std::int64_t max) {
    graph.XAxis.Max.SetBoth(static_cast<double>(max));
    graph.XAxis.Min.SetBoth(static_cast<double>(min));
}

} // namespace tidewell
