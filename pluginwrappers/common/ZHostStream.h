// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace orvane
{

class ZBuffer;
class ZSignalLooper;

/// The way of a host's blocks through the signal network: in by the FIFOs of its one end, as many
/// passes as that takes, out by those of the other. A block of n samples in gives n out.
class ZHostStream
{
public:
    static constexpr std::int32_t kChannels = 2;
    /// Samples in the longest block that can be announced: half a minute, far above any host's.
    static constexpr std::int32_t kMaxBlockSize = 1 << 20;

    enum class Output
    {
        kReplaced,
        kAdded,
    };

    ZHostStream();
    ~ZHostStream();

    /// Samples in the longest block to come, 1 to kMaxBlockSize. [setup]
    void SetBlockSize(std::int32_t frames);
    /// Runs one block of frames samples, at least 1. inputs, outputs: kChannels x frames; either
    /// may be null as a whole or for a channel, for silence and for nobody who listens; they may be
    /// the same. Before the first SetBlockSize the output is silence. Samples that are no number or
    /// are infinite count as 0: no listener wants them, and in a filter they would stay for ever.
    /// Throws ZException -1 for a block longer than announced, and what a bay throws, with the
    /// outputs as they were. [audio thread]
    void Run(ZSignalLooper& looper, const float* const* inputs, float* const* outputs,
             std::int32_t frames, Output output);

private:
    [[nodiscard]] std::span<const float> FiniteSamples(const float* input, std::uint32_t count);
    static void ReadChannel(ZSignalLooper& looper, std::int32_t channel, std::span<float> samples);
    void AddTo(float* output, std::uint32_t count) const;

    std::unique_ptr<ZBuffer> mTransfer;  // for what a channel of the host cannot hold; null before
                                         // SetBlockSize
};

}  // namespace orvane
