// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneSpectrum.h"

#include "kestrune/common/engine/KestruneGeometry.h"
#include "kestrune/common/engine/KestruneLevelGate.h"
#include "kestrune/common/engine/KestruneStereoRing.h"
#include "zdsp/common/ZVectorClones.h"
#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <iterator>
#include <memory>
#include <new>
#include <numbers>
#include <numeric>
#include <utility>

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

/// log2 of the number of parts: as many as keep the bins of the spectrum among those that a part
/// has, but not more than make the parts as cheap as the other steps of a block.
int thinningOrder(const KestruneGeometry& geometry)
{
    constexpr int kMostOrder = 2;
    int order = 0;
    while (order < kMostOrder && geometry.spectrumBins <= (geometry.fftSize >> (order + 2)) + 1)
        ++order;
    return order;
}

ORVANE_VECTOR_CLONES
void scale(float* __restrict samples, const float* __restrict factors, int count)
{
    for (int i = 0; i < count; ++i)
        samples[i] *= factors[i];
}

/// Several sums side by side: the compiler may not change the order of one sum by itself.
ORVANE_VECTOR_CLONES
double sumOfSquares(const float* samples, int count)
{
    constexpr int kLanes = 8;
    double sums[kLanes] = {};
    int i = 0;
    for (; i + kLanes <= count; i += kLanes)
        for (int lane = 0; lane < kLanes; ++lane)
            sums[lane] +=
                static_cast<double>(samples[i + lane]) * static_cast<double>(samples[i + lane]);
    double sum = 0.0;
    for (; i < count; ++i)
        sum += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
    return std::accumulate(std::begin(sums), std::end(sums), sum);
}

struct TurnedBins
{
    const float* re;
    const float* im;
    const float* cosine;
    const float* sine;
};

/// Adds bins times exp(-i angle).
ORVANE_VECTOR_CLONES
void addTurned(float* __restrict re, float* __restrict im, const TurnedBins& bins,
               std::size_t count)
{
    for (std::size_t k = 0; k < count; ++k) {
        re[k] += bins.re[k] * bins.cosine[k] + bins.im[k] * bins.sine[k];
        im[k] += bins.im[k] * bins.cosine[k] - bins.re[k] * bins.sine[k];
    }
}

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

void KestruneSpectrum::Allocate(const KestruneGeometry& geometry, int blockSize)
{
    assert(blockSize > 0);
    mBlockSize = blockSize;
    const auto fftSize = static_cast<std::uint32_t>(geometry.fftSize);
    const auto bins = static_cast<std::uint32_t>(geometry.spectrumBins);
    const int order = thinningOrder(geometry);
    const std::uint32_t parts = 1u << order;
    mAnalysisWindow.assign(static_cast<std::size_t>(geometry.maxWindowLength), 0.0f);
    mFrameLength = 0;
    mGain = ZGain::Create(false);
    mFourier = ZFourierTransform::Create(geometry.order - order, 0, 1);
    mFrame.assign(static_cast<std::size_t>(geometry.maxWindowLength) + parts, 0.0f);
    mThinnedFrame = allocateBuffer(fftSize / parts);
    mThinned.clear();
    for (std::uint32_t first = 0; first < parts; ++first) {
        Thinned thinned{allocateBuffer(bins), allocateBuffer(bins), {}, {}};
        for (std::uint32_t k = 0; k < bins; ++k) {
            // The transform of a part divides by its length, which is shorter.
            const double angle = 2.0 * std::numbers::pi * first * k / fftSize;
            thinned.cosine.push_back(static_cast<float>(std::cos(angle) / parts));
            thinned.sine.push_back(static_cast<float>(std::sin(angle) / parts));
        }
        mThinned.push_back(std::move(thinned));
    }
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
    std::fill(mFrame.begin(), mFrame.end(), 0.0f);
    mThinnedFrame->Clear();
}

void KestruneSpectrum::LoadFrame(const KestruneStereoRing& ring, int pos,
                                 std::int16_t reference) noexcept
{
    assert(mFrameLength > 0);
    float* const frame = mFrame.data();
    ring.ReadMono(reference, pos, mFrameLength, frame);
    scale(frame, mAnalysisWindow.data(), mFrameLength);
}

void KestruneSpectrum::MeasureFrame() noexcept
{
    mFrameEnergy = static_cast<float>(sumOfSquares(mFrame.data(), mFrameLength) / mFrameLength);
}

void KestruneSpectrum::TransformPart(int part) noexcept
{
    assert(part >= 0 && part < PartCount());
    if (part == PartCount() - 1)
        return ToDecibels();
    if (part == PartCount() - 2)
        return AddUp();
    const int first = part / 2;
    if (part % 2 == 0)
        return ThinFrame(first);
    const Thinned& bins = mThinned[static_cast<std::size_t>(first)];
    mFourier->TransformReal(*mThinnedFrame, *bins.re, *bins.im);
}

int KestruneSpectrum::CostOf(int part) const noexcept
{
    assert(part >= 0 && part < PartCount());
    constexpr int kTransformCost = 14;
    constexpr int kAddCost = 4;
    constexpr int kDecibelsCost = 4;
    if (part == PartCount() - 1)
        return kDecibelsCost;
    if (part == PartCount() - 2)
        return kAddCost;
    return part % 2 == 0 ? 1 + mFrameLength / (3 * mBlockSize) : kTransformCost;
}

void KestruneSpectrum::ThinFrame(int first) noexcept
{
    const auto parts = static_cast<int>(mThinned.size());
    // As many for every part, so that none leaves a sample for the next: zeros follow the frame.
    const int count = (mFrameLength + parts - 1) / parts;
    const float* const frame = mFrame.data() + first;
    float* const thinned = mThinnedFrame->Data();
#pragma GCC unroll 8
    for (int i = 0; i < count; ++i)
        thinned[i] = frame[i * parts];
}

void KestruneSpectrum::AddUp() noexcept
{
    const std::size_t bins = mSpectrum->Length();
    float* const re = mSpectrum->Data();
    float* const im = mImaginary->Data();
    std::fill_n(re, bins, 0.0f);
    std::fill_n(im, bins, 0.0f);
    for (const Thinned& part : mThinned)
        addTurned(re, im, {part.re->Data(), part.im->Data(), part.cosine.data(), part.sine.data()},
                  bins);
}

void KestruneSpectrum::ToDecibels() noexcept
{
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
