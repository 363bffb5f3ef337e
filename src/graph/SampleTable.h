#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace tidewell {

// Numbers by channel and sample; all channels have the same count of samples. It grows in blocks that never
// move, inside which the samples of one channel lie side by side.
class TSampleTable {
  public:
    static constexpr std::size_t BlockSamples = 256;

    // Drops everything and sets the count of channels.
    void Reset(std::size_t channels);
    std::size_t Channels() const { return ChannelCount; }
    std::size_t Samples() const { return SampleCount; }

    // Cuts, or fills up with zeros.
    void Resize(std::size_t samples);
    void Set(std::size_t channel, std::size_t sample, double value); // throws EListError beyond the end
    double At(std::size_t channel, std::size_t sample) const;        // throws EListError beyond the end

    // The samples of a channel from first to the end of the block that holds it; empty beyond the end. Walks
    // a channel fast: for (n = 0; !(run = Run(c, n)).empty(); n += run.size()).
    std::span<const double> Run(std::size_t channel, std::size_t first) const;

  private:
    void Check(std::size_t channel, std::size_t sample) const;

    std::size_t ChannelCount = 0;
    std::size_t SampleCount = 0;
    std::vector<std::unique_ptr<double[]>> Blocks; // [channel * BlockSamples + sample % BlockSamples]
};

} // namespace tidewell
