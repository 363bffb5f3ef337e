#include "graph/SampleTable.h"

#include "core/Errors.h"

#include <algorithm>
#include <string>

namespace tidewell {

void TSampleTable::Reset(std::size_t channels) {
    Blocks.clear();
    Blocks.shrink_to_fit();
    ChannelCount = channels;
    SampleCount = 0;
}

void TSampleTable::Resize(std::size_t samples) {
    const std::size_t blocks = (samples + BlockSamples - 1) / BlockSamples;
    if (samples < SampleCount) {
        Blocks.resize(std::min(blocks, Blocks.size()));
        // What the last block holds beyond the end must read 0 when it grows again.
        if (const std::size_t kept = samples % BlockSamples; kept != 0 && !Blocks.empty())
            for (std::size_t channel = 0; channel < ChannelCount; ++channel)
                std::fill_n(&Blocks.back()[channel * BlockSamples + kept], BlockSamples - kept, 0.0);
    }
    while (ChannelCount != 0 && Blocks.size() < blocks)
        Blocks.push_back(std::make_unique<double[]>(ChannelCount * BlockSamples));
    SampleCount = samples;
}

void TSampleTable::Check(std::size_t channel, std::size_t sample) const {
    if (channel >= ChannelCount || sample >= SampleCount)
        throw EListError("List index out of bounds (" +
                         std::to_string(channel >= ChannelCount ? channel : sample) + ")");
}

void TSampleTable::Set(std::size_t channel, std::size_t sample, double value) {
    Check(channel, sample);
    Blocks[sample / BlockSamples][channel * BlockSamples + sample % BlockSamples] = value;
}

double TSampleTable::At(std::size_t channel, std::size_t sample) const {
    Check(channel, sample);
    return Blocks[sample / BlockSamples][channel * BlockSamples + sample % BlockSamples];
}

std::span<const double> TSampleTable::Run(std::size_t channel, std::size_t first) const {
    if (channel >= ChannelCount || first >= SampleCount)
        return {};
    const std::size_t inside = first % BlockSamples;
    const std::size_t count = std::min(BlockSamples - inside, SampleCount - first);
    return {&Blocks[first / BlockSamples][channel * BlockSamples + inside], count};
}

} // namespace tidewell
