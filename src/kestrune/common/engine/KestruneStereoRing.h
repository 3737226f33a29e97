// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

namespace orvane
{

/// Ring buffer of two channels. Positions are indices in [0, Length()); a run of samples may wrap
/// round the end and is at most Length() long.
class KestruneStereoRing
{
public:
    static constexpr int kChannels = 2;

    /// Allocates length samples per channel, all 0. [setup]
    void Allocate(int length);
    /// Sets all samples to 0. [audio thread]
    void Clear() noexcept;
    [[nodiscard]] int Length() const noexcept { return mLength; }
    /// Index of a stream position: its remainder by the length, never negative. [audio thread]
    [[nodiscard]] int Index(long long streamPos) const noexcept;

    /// Writes count samples of each of the two inputs at pos. Samples that are not finite or beyond
    /// +180 dB of full scale become 0, because their squares would overflow in the analysis.
    /// [audio thread]
    void Write(const float* const* inputs, int pos, int count) noexcept;
    /// Moves count samples from pos on to the two outputs and leaves zeros. [audio thread]
    void Take(float* const* outputs, int pos, int count) noexcept;
    /// Copies count samples of one channel from pos on to out. [audio thread]
    void Read(int channel, int pos, int count, float* out) const noexcept;
    /// Copies count samples from pos on as one channel: the left one for 0, the right one for 1,
    /// the sum of both for any other reference. [audio thread]
    void ReadMono(std::int16_t reference, int pos, int count, float* out) const noexcept;
    /// Adds count samples to those of one channel from pos on. [audio thread]
    void Add(int channel, int pos, int count, const float* samples) noexcept;

private:
    /// Adds count samples of one channel from pos on to those in out.
    void ReadAdd(int channel, int pos, int count, float* out) const noexcept;

    int mLength = 0;
    std::vector<float> mSamples[kChannels];
};

}  // namespace orvane
