// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace orvane
{

/// Two channels of samples in a circle of one length. Positions are indices in [0, Length());
/// runs may cross the end, but are never longer than the circle.
class KestruneStereoRing
{
public:
    static constexpr int kChannels = 2;

    /// All samples 0. [setup]
    void Allocate(int length);
    void Clear() noexcept;
    [[nodiscard]] int Length() const noexcept { return mLength; }
    /// Index of a stream position, which may be negative by less than the length.
    [[nodiscard]] int Index(long long streamPos) const noexcept;

    /// Puts count samples of each of the two inputs at pos. Samples that are not finite or beyond
    /// +180 dB of full scale become 0, for their squares would end in the analysis as infinities.
    /// [audio thread]
    void Write(const float* const* inputs, int pos, int count) noexcept;
    /// Copies count samples from pos to the two outputs and clears them here. [audio thread]
    void Take(float* const* outputs, int pos, int count) noexcept;
    /// Copies count samples of one channel from pos. [audio thread]
    void Read(int channel, int pos, int count, float* out) const noexcept;
    /// The same, added to what out holds. [audio thread]
    void ReadAdd(int channel, int pos, int count, float* out) const noexcept;
    /// Adds count samples to one channel from pos on. [audio thread]
    void Add(int channel, int pos, int count, const float* samples) noexcept;

private:
    int mLength = 0;
    std::vector<float> mSamples[kChannels];
};

}  // namespace orvane
