// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace orvane
{

class ZBuffer;
class ZSignalLooper;

/// Moves the host's blocks through the signal network: writes a block to the FIFOs of the looper's
/// input, runs the passes that it takes, and reads as many samples from the FIFOs of its output.
class ZHostStream
{
public:
    static constexpr std::int32_t kChannels = 2;
    /// Upper limit of the block size in samples: half a minute, far above any host's.
    static constexpr std::int32_t kMaxBlockSize = 1 << 20;

    enum class Output
    {
        kReplaced,
        kAdded,
    };

    ZHostStream();
    ~ZHostStream();

    /// Sets the length of the longest block to come, 1 to kMaxBlockSize samples. [setup]
    void SetBlockSize(std::int32_t frames);
    /// Runs one block; frames >= 1. inputs, outputs: kChannels x frames, may be the same arrays.
    /// Either may be null, as a whole or for one channel: a missing input counts as silence, a
    /// missing output is skipped. Before the first SetBlockSize the output is silence. NaN and
    /// infinite samples count as 0, since a filter would hold them for ever.
    /// Throws ZException for a block longer than announced, and what a bay throws; the outputs
    /// are then unchanged. [audio thread]
    void Run(ZSignalLooper& looper, const float* const* inputs, float* const* outputs,
             std::int32_t frames, Output output);

private:
    [[nodiscard]] std::span<const float> FiniteSamples(const float* input, std::uint32_t count);
    static void ReadChannel(ZSignalLooper& looper, std::int32_t channel, std::span<float> samples);
    void AddTo(float* output, std::uint32_t count) const;

    // Holds one channel where the host's array cannot be used in place; null before SetBlockSize.
    std::unique_ptr<ZBuffer> mTransfer;
};

}  // namespace orvane
