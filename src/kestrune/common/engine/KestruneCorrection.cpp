// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneCorrection.h"

#include "zlib/common/buffers/ZBuffer.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr float kSemitones = 12.0f;

float octavesBetween(float frequency, float reference)
{
    return std::log10(frequency / reference) / std::log10(2.0f);
}

}  // namespace

void KestruneCorrection::SetReferenceFrequency(float hz) noexcept
{
    mReferenceFrequency = hz > 0.0f ? hz : kDefaultReferenceHz;
}

void KestruneCorrection::SetTones(const float* tones, int count) noexcept
{
    assert(tones || count <= 0);
    mToneCount = std::clamp(count, 0, kMaxTones);
    std::copy_n(tones, mToneCount, mScaleTones.begin());
}

float KestruneCorrection::Advance(float frequency, float hold) noexcept
{
    const float octaves = octavesBetween(frequency, mReferenceFrequency);
    const float semitones = kSemitones * octaves - kSemitones * std::floor(octaves);
    float wanted = 1.0f;
    if (hold != 0.0f && !IsIgnored(semitones))
        wanted = std::exp2((NearestTarget(semitones) - semitones) / kSemitones);
    return mGlide.Step(wanted);
}

float KestruneCorrection::NearestTarget(float semitones) const noexcept
{
    // The root is a target at both ends of the octave, whether or not the scale holds it. Of equal
    // distances the root wins, then the lowest tone.
    const float upperRoot = std::floor(semitones / kSemitones + 0.5f);
    float target = kSemitones * upperRoot;
    float best = (semitones - target) * (semitones - target);
    for (int i = 0; i < mToneCount; ++i) {
        const float tone = mScaleTones[static_cast<std::size_t>(i)];
        const float distance = (semitones - tone) * (semitones - tone);
        if (distance < best) {
            best = distance;
            target = tone;
        }
    }
    return target;
}

bool KestruneCorrection::IsIgnored(float semitones) const noexcept
{
    if (!mIgnoredNotes)
        return false;
    const auto degree = static_cast<std::size_t>(semitones + 0.5f) % 12;
    // The interface thread may be writing the flags.
    return std::atomic_ref(mIgnoredNotes->Data()[degree]).load(std::memory_order_relaxed) == 1.0f;
}

}  // namespace orvane
