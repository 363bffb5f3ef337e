#pragma once

#include "core/controls/Color.h"
#include "model/Profile.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tidewell {

class TSLDisplayChannels;

// Makes the curves of the plot surface from the graph points of the open profile, and tells what the user has
// made of them.
class TProfileChannels {
  public:
    TProfileChannels(TSLDisplayChannels& channels, const TProfile& profile)
        : Channels(channels), Profile(profile) {}

    // Gives what is wrong with the profile, if anything: a visibility that is no boolean.
    std::string Rebuild();
    // In the channel's name; type is that of its graph point.
    void ShowValue(std::size_t channel, std::int32_t type, double value);
    // What the user made of each channel, in order; Name still bears its value.
    std::vector<TGraphChannelSettings> Settings() const;
    // Makes it so again, of the same profile.
    void Apply(const std::vector<TGraphChannelSettings>& settings);

  private:
    // Where a channel comes from.
    struct TSource {
        std::string Name;        // of the graph row, as first shown
        bool HasOwnColor = true; // the graph row names a colour
        TColor Color;            // as first shown
    };

    TSLDisplayChannels& Channels;
    const TProfile& Profile;
    std::vector<TSource> Sources; // one per channel
};

} // namespace tidewell
