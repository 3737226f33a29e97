// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneStereoRing.h"

#include "zdsp/common/ZVectorClones.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr float kLargestSample = 1.0e9f;

/// The comparison is false for NaN too, and compiles without a branch.
float bounded(float sample)
{
    return std::fabs(sample) <= kLargestSample ? sample : 0.0f;
}

ORVANE_VECTOR_CLONES
void addTo(float* __restrict sum, const float* __restrict samples, int count)
{
    for (int i = 0; i < count; ++i)
        sum[i] += samples[i];
}

}  // namespace

void KestruneStereoRing::Allocate(int length)
{
    assert(length > 0);
    mLength = length;
    for (auto& channel : mSamples)
        channel.assign(static_cast<std::size_t>(length), 0.0f);
}

void KestruneStereoRing::Clear() noexcept
{
    for (auto& channel : mSamples)
        std::fill(channel.begin(), channel.end(), 0.0f);
}

int KestruneStereoRing::Index(long long streamPos) const noexcept
{
    const auto index = static_cast<int>(streamPos % mLength);
    return index < 0 ? index + mLength : index;
}

void KestruneStereoRing::Write(const float* const* inputs, int pos, int count) noexcept
{
    assert(count <= mLength && pos < mLength);
    const int first = std::min(count, mLength - pos);
    for (int channel = 0; channel < kChannels; ++channel) {
        const float* input = inputs[channel];
        float* ring = mSamples[channel].data();
        std::transform(input, input + first, ring + pos, bounded);
        std::transform(input + first, input + count, ring, bounded);
    }
}

void KestruneStereoRing::Take(float* const* outputs, int pos, int count) noexcept
{
    assert(count <= mLength && pos < mLength);
    const int first = std::min(count, mLength - pos);
    for (int channel = 0; channel < kChannels; ++channel) {
        float* ring = mSamples[channel].data();
        Read(channel, pos, count, outputs[channel]);
        std::fill_n(ring + pos, first, 0.0f);
        std::fill_n(ring, count - first, 0.0f);
    }
}

void KestruneStereoRing::Read(int channel, int pos, int count, float* out) const noexcept
{
    assert(count <= mLength && pos < mLength);
    const int first = std::min(count, mLength - pos);
    const float* ring = mSamples[channel].data();
    std::copy_n(ring + pos, first, out);
    std::copy_n(ring, count - first, out + first);
}

void KestruneStereoRing::ReadAdd(int channel, int pos, int count, float* out) const noexcept
{
    assert(count <= mLength && pos < mLength);
    const int first = std::min(count, mLength - pos);
    const float* ring = mSamples[channel].data();
    addTo(out, ring + pos, first);
    addTo(out + first, ring, count - first);
}

void KestruneStereoRing::ReadMono(std::int16_t reference, int pos, int count,
                                  float* out) const noexcept
{
    const bool oneChannel = reference == 0 || reference == 1;
    Read(oneChannel ? reference : 0, pos, count, out);
    if (!oneChannel)
        ReadAdd(1, pos, count, out);
}

void KestruneStereoRing::Add(int channel, int pos, int count, const float* samples) noexcept
{
    assert(count <= mLength && pos < mLength);
    const int first = std::min(count, mLength - pos);
    float* ring = mSamples[channel].data();
    addTo(ring + pos, samples, first);
    addTo(ring, samples + first, count - first);
}

}  // namespace orvane
