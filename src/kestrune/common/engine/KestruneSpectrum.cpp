// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneSpectrum.h"

#include "kestrune/common/engine/KestruneGeometry.h"
#include "kestrune/common/engine/KestruneLevelGate.h"
#include "kestrune/common/engine/KestruneStereoRing.h"
#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <memory>
#include <new>

namespace orvane
{

namespace
{

// A Hamming window over 1 .. length instead of 0 .. length - 1: its last sample is its minimum, its
// first one is not.
constexpr float kWindowMean = 0.54f;
constexpr float kWindowSwing = 0.46f;
constexpr float kTwoPi = 6.2831854820251465f;

// Variance of a normalised band: that of white noise, and the least of a clear voice.
constexpr float kNoiseVariance = 0.13f;
constexpr float kVoiceVariance = 0.18f;

/// Fails as the other containers of the engine do: throws std::bad_alloc when there is no memory.
std::unique_ptr<ZBuffer> allocateBuffer(std::uint32_t length)
{
    assert(length > 0);
    try {
        return std::make_unique<ZBuffer>(length, "ZBuffer");
    } catch (const ZException&) {
        throw std::bad_alloc();
    }
}

}  // namespace

void KestruneSpectrum::Allocate(const KestruneGeometry& geometry)
{
    const auto fftSize = static_cast<std::uint32_t>(geometry.fftSize);
    const auto bins = static_cast<std::uint32_t>(geometry.spectrumBins);
    mAnalysisWindow.assign(static_cast<std::size_t>(geometry.maxWindowLength), 0.0f);
    mFrameLength = 0;
    mGain = ZGain::Create(false);
    mFourier = ZFourierTransform::Create(geometry.order, 0, 1);
    mFrame = allocateBuffer(fftSize);
    mSpectrum = allocateBuffer(bins);
    mImaginary = allocateBuffer(bins);
}

void KestruneSpectrum::SetFrameLength(int length) noexcept
{
    assert(length > 0 && length <= static_cast<int>(mAnalysisWindow.size()));
    if (length == mFrameLength)
        return;
    mFrameLength = length;
    for (int i = 0; i < length; ++i) {
        const float angle = kTwoPi * static_cast<float>(i + 1) / static_cast<float>(length);
        mAnalysisWindow[static_cast<std::size_t>(i)] = kWindowMean - kWindowSwing * std::cos(angle);
    }
    mFrame->Clear();
}

void KestruneSpectrum::LoadFrame(const KestruneStereoRing& ring, int pos,
                                 std::int16_t reference) noexcept
{
    assert(mFrameLength > 0);
    float* frame = mFrame->Data();
    ring.ReadMono(reference, pos, mFrameLength, frame);

    double sum = 0.0;
    for (int i = 0; i < mFrameLength; ++i) {
        const float value = frame[i] * mAnalysisWindow[static_cast<std::size_t>(i)];
        frame[i] = value;
        sum += static_cast<double>(value) * value;
    }
    mFrameEnergy = static_cast<float>(sum / mFrameLength);
}

void KestruneSpectrum::Transform() noexcept
{
    mFourier->TransformReal(*mFrame, *mSpectrum, *mImaginary);
    mGain->Multiply(*mSpectrum, *mSpectrum);
    mGain->MultiplyAdd(*mImaginary, *mImaginary, *mSpectrum);
    mGain->PowerToDecibels96(*mSpectrum);
}

float KestruneSpectrum::NormalizeBand(Band band) noexcept
{
    assert(band.lo >= 0 && band.lo <= band.hi);
    assert(static_cast<std::uint32_t>(band.hi) < mSpectrum->Length());
    float* const first = mSpectrum->Data() + band.lo;
    float* const last = mSpectrum->Data() + band.hi + 1;
    const auto [smallest, largest] = std::minmax_element(first, last);
    const float span = *largest - *smallest;
    const float mid = (*largest + *smallest) * 0.5f;
    const float scale = span > 0.0f ? 2.0f / span : 1.0f;

    float sum = 0.0f;
    float squares = 0.0f;
    for (float* bin = first; bin != last; ++bin) {
        *bin = (*bin - mid) * scale;
        sum += *bin;
        squares += *bin * *bin;
    }
    const auto count = static_cast<float>(band.hi - band.lo + 1);
    const float mean = sum / count;
    const float variance = squares / count - mean * mean;
    return std::clamp((variance - kNoiseVariance) / (kVoiceVariance - kNoiseVariance), 0.0f, 1.0f);
}

float KestruneSpectrum::LevelGate() const noexcept
{
    constexpr float kEnergyFloor = 1.0e-10f;
    return kestruneLevelGate(10.0f * std::log10(mFrameEnergy + kEnergyFloor));
}

std::span<const float> KestruneSpectrum::Values() const noexcept
{
    return {mSpectrum->Data(), mSpectrum->Length()};
}

}  // namespace orvane
