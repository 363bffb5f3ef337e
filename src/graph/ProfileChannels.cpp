#include "graph/ProfileChannels.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "graph/ChannelPalette.h"
#include "graph/SLScope.h"
#include "model/ColorText.h"

#include <algorithm>
#include <limits>

namespace tidewell {

namespace {

constexpr std::int32_t BinaryType = 100;

// Index of the axis that field 1 of a graph row numbers from 1.
int AxisIndexOf(std::string_view field) {
    const std::int32_t number = ToIntegerOr(DigitsOnly(field), 0);
    return std::max(number, std::numeric_limits<std::int32_t>::min() + 1) - 1;
}

} // namespace

std::string TProfileChannels::Rebuild() {
    std::string error;
    Channels.Clear();
    Sources.clear();
    for (std::size_t row = 0; row < Profile.GraphPoints.size(); ++row) {
        if (!Profile.GraphPoints[row].IsChannel)
            continue;
        const std::string& text = Profile.GraphValues[row];
        const auto color = TryColorFromText(Trim(GetRowField(text, 2)));
        const std::size_t number = Sources.size();
        Sources.push_back({std::string(Trim(GetRowField(text, 0))), color.has_value(),
                           color.value_or(ChannelPalette[number % ChannelPalette.size()])});

        TSLDisplayChannel& channel = Channels.Add();
        channel.SetName(Sources.back().Name);
        channel.SetColor(Sources.back().Color);
        channel.SetYAxisIndex(AxisIndexOf(GetRowField(text, 1)));
        if (number >= Profile.VisibleGraph.Count())
            continue;
        const auto& entry = Profile.VisibleGraph.Rows()[number];
        try {
            channel.SetVisible(ToBoolean(entry.Value));
        } catch (const EConvertError& cause) {
            if (error.empty())
                error = Profile.currentprofilefile.string() + ": [VisibleGraph] " + entry.Name + ": " +
                        cause.what();
        }
    }
    return error;
}

void TProfileChannels::ShowValue(std::size_t channel, std::int32_t type, double value) {
    if (type == BinaryType)
        Channels[channel].ShowBits(Sources.at(channel).Name, value);
    else
        Channels[channel].ShowValue(value);
}

std::vector<TGraphChannelSettings> TProfileChannels::Settings() const {
    std::vector<TGraphChannelSettings> settings;
    settings.reserve(Channels.Count());
    for (const TSLDisplayChannel& channel : Channels) {
        const TSource& source = Sources.at(settings.size());
        // A text that names no colour stands for UnknownColor, and is kept while nobody chose another.
        const bool untouched = !source.HasOwnColor && channel.Color() == source.Color;
        settings.push_back({channel.Name(), channel.Visible(), untouched ? UnknownColor : channel.Color(),
                            channel.YAxisIndex()});
    }
    return settings;
}

void TProfileChannels::Apply(const std::vector<TGraphChannelSettings>& settings) {
    for (std::size_t i = 0; i < std::min(settings.size(), Channels.Count()); ++i) {
        TSLDisplayChannel& channel = Channels[i];
        channel.SetVisible(settings[i].Visible);
        channel.SetYAxisIndex(settings[i].YAxisIndex);
        if (settings[i].Color != UnknownColor)
            channel.SetColor(settings[i].Color);
    }
}

} // namespace tidewell
