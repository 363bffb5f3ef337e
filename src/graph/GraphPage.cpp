#include "graph/GraphPage.h"

#include "core/AtExit.h"
#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "core/TextFile.h"
#include "core/controls/Lists.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IWait.h"
#include "model/GraphRowParser.h"
#include "model/Profile.h"
#include "model/ValueCodec.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace tidewell {

namespace {

constexpr double NoValue = -1; // a value of -1 counts as none too

// All digits of a whole number, never in scientific notation.
std::string PlainText(double value) {
    std::array<char, 400> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return {text.data(), end.ptr};
}

// A text of a file: bytes that are no valid UTF-8 are Windows-1252.
std::string Decoded(std::string_view text) {
    EEncoding encoding{};
    return DecodeText(text, encoding);
}

void AddText(TTextColumn& column, std::string_view text) {
    const bool plain =
        std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (plain)
        column.Add(text);
    else
        column.Add(Decoded(text));
}

} // namespace

TGraphPage::TGraphPage(TForm& form, const TNeeds& needs)
    : TControls(form), NamedBits(needs.Profile, needs.MemoEventLog), Needs(needs),
      ProfileChannels(graph.Channels, needs.Profile) {
    ConnectSurface();
    ConnectMenu();
}

void TGraphPage::ConnectSurface() {
    // The axis of the labels never zooms.
    auto& labelAxis = graph.YAxis.AdditionalAxes[1].Axis.ToolBar.Buttons;
    for (TSLAxisToolBarButton* button : {&labelAxis.ZoomIn, &labelAxis.ZoomOut, &labelAxis.ZoomOff})
        button->Visible = false;
    graph.OnZoomChanged = [this](const TSLZoomRect&, const TSLZoomRect&) {
        graph.YAxis.AdditionalAxes[1].Axis.ToolBar.Buttons.ZoomOff.PerformClick();
        TimeLabels.AdjustNumberOfLabelsToScreen();
    };
    graph.OnContextPopup = [this](int, int) { Needs.Dialogs.Popup(PopupMenu); };
    graph.OnOverChannel = [this](std::size_t index, const TSLPoint&) { CurrentChannelindex = index; };
    graph.Legend.Channels.OnItemClick = [this](std::size_t index, bool& handled) {
        handled = true;
        graphLegendChannelsItemClick(index);
    };
    graph.Channels.OnClick = [this](std::size_t index, bool& handled, const TSLPoint& point) {
        handled = true;
        graphChannelsClick(index, point);
    };
    graph.Cursors.OnPositionChange = [this](std::size_t, const TSLPoint& position) {
        graphCursorsPositionChange(position);
    };
    graph.OnCustomMouseHitLabel = [this](std::string& text, double value) {
        graphCustomMouseHitLabel(text, value);
    };
}

void TGraphPage::ConnectMenu() {
    PopupMenu.Items = {Graphitems1, Hold1, zoomall1, Cleargraph1, Exportdatatocsv1};
    GraphBinaryPopup.Items = {binaryview1};
    Graphitems1.SetCheckable(true);
    Hold1.SetCheckable(true);
    Graphitems1.OnClick = [this] {
        graph.ToolBar.SetVisible(!graph.ToolBar.Visible());
        Graphitems1.SetChecked(!Graphitems1.Checked());
    };
    Hold1.OnClick = [this] {
        Hold1.SetChecked(!Hold1.Checked());
        graph.SetHold(Hold1.Checked());
    };
    zoomall1.OnClick = [this] {
        graph.ZoomOff();
        graph.SetHold(false);
    };
    Cleargraph1.OnClick = [this] { ClearGraphPage(); };
    GraphScroll.OnScroll = [this](EScrollCode code, int position) { GraphScrollScroll(code, position); };
    GraphZoomPlusButton.OnClick = [this] { GraphZoomPlusButtonClick(); };
    GraphZoomMinusButton.OnClick = [this] { GraphZoomMinusButtonClick(); };
}

void TGraphPage::TakeTexts(const TIniFile& language) {
    ReadTexts(language, "HeadAppl",
              {{Graphitems1, "PopupMenu_GraphToolbar"},
               {Hold1, "PopupMenu_Hold"},
               {zoomall1, "PopupMenu_ZoomAll"},
               {Cleargraph1, "PopupMenu_ClearGraph"},
               {Exportdatatocsv1, "PopupMenu_Exportdatatocsv"}});
    ReadTexts(language, "EmptyPages", {{LblGraphPageEmpty, "Graph"}});
}

void TGraphPage::GraphInit(bool rebuild) {
    TimeLabels.ClearTracking();
    SetAxes();
    std::string error;
    if (rebuild) {
        TimeLabels.Rebuild();
        error = ProfileChannels.Rebuild();
        LblGraphPageEmpty.SetVisible(graph.Channels.Count() == 0);
    }
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
        axis.AutoScaling = {false, false};
    };
    set(graph.YAxis, -40, 100);
    set(graph.YAxis.AdditionalAxes[0].Axis, 0, 4096);
    set(graph.YAxis.AdditionalAxes[1].Axis, 0, 2);
    set(graph.XAxis, 0, static_cast<double>(GraphSpan()));
}

void TGraphPage::ClearGraphPage() {
    Needs.Log.ClearLog();
    for (TSLDisplayChannel& channel : graph.Channels)
        channel.Data.Clear();
    TimeLabels.Blank();
    DataLogDataValues.Reset(Needs.Profile.GraphEnableCount);
    GraphDataLabelsTimeText.Clear();
    GraphDataLabelsDateText.Clear();
    FileRows = 0;
    graph.ZoomOff();
    SetView(0, GraphSpan());
    graph.Invalidate();
    Needs.MemoEventLog.Add("Clear Graph execute");
    DatalogFileOpen = false;
    DatalogLastLineSetpoint.clear();
    UpdateGraphScrollBar();
}

void TGraphPage::ExtendGraph(std::string_view line) {
    const std::size_t sample = GraphSampleCount();
    if (graph.XAxis.Max.Value() > static_cast<double>(sample)) {
        AddGraphSample(line, sample);
        UpdateGraphTimeLabels();
        return;
    }
    Needs.MemoEventLog.Add("extend graph Datavalue->" + PlainText(graph.XAxis.Max.DataValue()) + "Value" +
                           PlainText(graph.XAxis.Max.Value()));
    UpdateGraphScrollBar();
    AddGraphSample(line, sample);
    if (GraphScroll.Position() == GraphScroll.Max())
        UpdateTestData(GraphScroll.Position());
    UpdateGraphTimeLabels();
}

void TGraphPage::AddGraphSample(std::string_view line, std::size_t sampleIndex) {
    DataLogDataValues.Resize(sampleIndex + 1);
    const TSplitLine fields(line);
    const bool drawn = IsDrawn(sampleIndex);
    std::size_t number = 0;
    std::string fault; // of one curve, which must not cost the others their value
    for (const TGraphPoint& point : Needs.Profile.GraphPoints) {
        if (!point.IsChannel)
            continue;
        const std::size_t channel = number++;
        if (!point.Error.empty()) {
            fault = fault.empty() ? point.Error : fault;
            continue;
        }
        const double value = CalculateDatapointValue(point, fields).Value;
        DataLogDataValues.Set(channel, sampleIndex, value);
        if (drawn)
            graph.Channels[channel].Data.AddXYPoint(static_cast<double>(sampleIndex), value);
        ProfileChannels.ShowValue(channel, point.Type, value);
    }
    if (!fault.empty())
        throw EConvertError(fault);
}

bool TGraphPage::IsDrawn(std::size_t sample) const {
    return static_cast<double>(sample) <= graph.XAxis.Max.DataValue() &&
           sample % static_cast<std::size_t>(std::max(GraphZoomFactor, 1)) == 0;
}

void TGraphPage::UpdateTestData(int position) {
    const std::int64_t span = std::int64_t{XAxisJump} * GraphZoomFactor;
    const std::int64_t start = span * position;
    const std::int64_t end = start + static_cast<std::int64_t>(std::floor(static_cast<double>(span) * 1.1));
    SetView(start, end);
    graph.XAxis.ToolBar.Buttons.ZoomOff.PerformClick();
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

void TGraphPage::UpdateGraphTimeLabels() {
    TimeLabels.UpdateGraphTimeLabels(static_cast<std::int64_t>(GraphSampleCount()), GraphZoomFactor);
}

void TGraphPage::GraphScrollScroll(EScrollCode code, int position) {
    if (code == EScrollCode::Track) {
        const std::int64_t sample = std::int64_t{position} * XAxisJump * GraphZoomFactor;
        TimeLabels.Track(static_cast<std::size_t>(std::max<std::int64_t>(sample, 0)));
    } else if (code == EScrollCode::End) {
        TimeLabels.EndTracking();
        UpdateTestData(position);
        TimeLabels.ClearTracking();
        UpdateGraphTimeLabels();
    }
}

void TGraphPage::GraphZoomPlusButtonClick() {
    Rezoom(GraphZoomFactor + 1);
}

void TGraphPage::GraphZoomMinusButtonClick() {
    Rezoom(std::max(GraphZoomFactor - 1, 1));
}

void TGraphPage::Rezoom(int factor) {
    GraphZoomFactor = factor;
    GraphZoomLevelLabel.SetCaption("Zoom: " + std::to_string(factor));
    UpdateGraphScrollBar();
    UpdateTestData(GraphScroll.Position());
    UpdateGraphTimeLabels();
}

void TGraphPage::DrawGraphDatafromList(IDataLines& lines) {
    const std::size_t count = lines.Count();
    TProgressBar& bar = Needs.FileProgressBar;
    bar.SetMax(static_cast<int>(count + count / 10));
    if (count < 2)
        throw EListError("List index out of bounds (" + std::to_string(static_cast<int>(count) - 2) + ")");
    const std::size_t drawn = count - 1;
    const std::size_t stepOfBar = std::max<std::size_t>(count / 100, 1);
    bar.SetVisible(true);
    const TAtExit hideBar([&bar] { bar.SetVisible(false); });
    TGraphRowParser parser(Needs.Profile.GraphPoints);
    std::string_view line;
    for (std::size_t i = 0; i < drawn; ++i) {
        if (i % stepOfBar == 0) {
            bar.SetPosition(static_cast<int>(i));
            Needs.Wait.Sleep(0);
        }
        line = lines.Next();
        parser.Parse(line);
        if (i == 0)
            CurrentLogStartDate = Decoded(parser.Date());
        FileRows = i + 1;
        AddText(GraphDataLabelsTimeText, parser.Time());
        AddText(GraphDataLabelsDateText, parser.Date());
        AddParsedSample(parser, i);
    }
    RenewNames(parser);
    DatalogLastLineSetpoint = line;
    UpdateGraphScrollBar();
    UpdateTestData(GraphScroll.Position());
    UpdateGraphTimeLabels();
}

void TGraphPage::AddParsedSample(const TGraphRowParser& parser, std::size_t sampleIndex) {
    DataLogDataValues.Resize(sampleIndex + 1);
    const bool drawn = IsDrawn(sampleIndex);
    for (std::size_t channel = 0; channel < parser.Channels(); ++channel) {
        const double value = parser.Value(channel);
        DataLogDataValues.Set(channel, sampleIndex, value);
        if (drawn)
            graph.Channels[channel].Data.AddXYPoint(static_cast<double>(sampleIndex), value);
    }
}

void TGraphPage::RenewNames(const TGraphRowParser& parser) {
    std::size_t number = 0;
    for (const TGraphPoint& point : Needs.Profile.GraphPoints) {
        if (!point.IsChannel)
            continue;
        ProfileChannels.ShowValue(number, point.Type, parser.Value(number));
        ++number;
    }
}

void TGraphPage::ShowBinaryPopup(double value) {
    NamedBits.PrepareBinaryView(Truncated(value));
    Needs.Dialogs.Popup(GraphBinaryPopup);
}

void TGraphPage::graphLegendChannelsItemClick(std::size_t index) {
    const TSLDisplayChannel& channel = graph.Channels[index];
    const std::size_t size = channel.Data.GetSize();
    if (size <= 1 || !NamedBits.ChannelIsBinary(channel.Name()))
        return;
    const double value = GetChannelYValue(size - 1, channel);
    if (value != NoValue)
        ShowBinaryPopup(value);
}

void TGraphPage::graphChannelsClick(std::size_t index, const TSLPoint& point) {
    if (NamedBits.ChannelIsBinary(graph.Channels[index].Name()))
        ShowBinaryPopup(point.Y);
}

void TGraphPage::graphCustomMouseHitLabel(std::string& text, double value) {
    if (CurrentChannelindex < graph.Channels.Count() &&
        NamedBits.ChannelIsBinary(graph.Channels[CurrentChannelindex].Name()))
        text = BinaryString(Truncated(value) & 0xFFFF, 16).insert(8, "  ");
}

double TGraphPage::GetChannelYValue(std::size_t index, const TSLDisplayChannel& channel) {
    if (index > channel.Data.GetSize())
        return NoValue;
    Needs.MemoEventLog.Add("Get Y-value");
    if (index == channel.Data.GetSize())
        return NoValue;
    const double value = channel.Data.Points()[index].Y;
    Needs.MemoEventLog.Add("XPoint " + std::to_string(index) + " YPoint " + FixedText(value, 2));
    return value;
}

void TGraphPage::graphCursorsPositionChange(const TSLPoint& position) {
    if (!(position.X > -1))
        return; // no point lies there
    const auto x = static_cast<std::size_t>(Truncated(position.X));
    for (TSLDisplayChannel& channel : graph.Channels) {
        if (!channel.Visible())
            continue;
        const double value = GetChannelYValue(x, channel);
        if (value != NoValue)
            channel.ShowValue(value);
    }
}

void TGraphPage::DropSamplesFrom(std::size_t sample) {
    GraphDataLabelsTimeText.Truncate(sample);
    GraphDataLabelsDateText.Truncate(sample);
    if (DataLogDataValues.Samples() > sample)
        DataLogDataValues.Resize(sample);
    for (TSLDisplayChannel& channel : graph.Channels)
        channel.Data.DropFrom(static_cast<double>(sample));
}

std::size_t TGraphPage::GraphSampleCount() const {
    return DataLogDataValues.Channels() == 0 ? 0 : DataLogDataValues.Samples();
}

std::int64_t TGraphPage::GraphSpan() const {
    return std::llrint(XAxisJump * 1.1 * GraphZoomFactor);
}

void TGraphPage::SetView(std::int64_t min, std::int64_t max) {
    graph.XAxis.Max.SetBoth(static_cast<double>(max));
    graph.XAxis.Min.SetBoth(static_cast<double>(min));
}

} // namespace tidewell
