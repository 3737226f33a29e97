// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZFourierTransformSSE.h"

#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numbers>

namespace orvane
{

namespace
{

constexpr int kMinOrder = 1;
constexpr int kMaxOrder = 24;

std::unique_ptr<ZBuffer> makeWork(std::uint32_t length)
{
    try {
        return std::make_unique<ZBuffer>(length, "ZBuffer");
    } catch (const ZException&) {
        throw ZException("Unable to Create a Working Buffer.");
    }
}

// Four bins at once, in the compiler's vector type, which it can translate for every processor.
using Four [[gnu::vector_size(16)]] = float;
constexpr std::size_t kLanes = 4;

Four load(const float* from) noexcept
{
    Four four;
    std::memcpy(&four, from, sizeof four);
    return four;
}

void store(const Four& four, float* to) noexcept
{
    std::memcpy(to, &four, sizeof four);
}

/// One bin, or four, of the spectrum of the N/2 values, with its mirror bin and twiddle factor.
template <typename Value>
struct Halves
{
    Value lowRe, lowIm, highRe, highIm, cosine, sine;

    /// The real part of the signal's bin, times 2.
    Value Re() const noexcept
    {
        return (lowRe + highRe) + (cosine * (lowIm + highIm) - sine * (lowRe - highRe));
    }
    /// The imaginary part, times 2.
    Value Im() const noexcept
    {
        return (lowIm - highIm) - (cosine * (lowRe - highRe) + sine * (lowIm + highIm));
    }
};

}  // namespace

ZFourierTransformSSE::ZFourierTransformSSE()
    : ZFourierTransform("ZFourierTransformSSE")
{
}

void ZFourierTransformSSE::Init(int order, int direction, int realSignal)
{
    if (order < kMinOrder || order > kMaxOrder)
        throw ZException("Fourier Transform order must lie between 1 and 24.");
    assert(direction == kForward || direction == kInverse);
    assert(realSignal == 0 || realSignal == 1);
    mLength = 1u << order;
    mDirection = direction;
    mRealSignal = realSignal;
    const std::uint32_t complexLength = realSignal ? mLength / 2 : mLength;
    mPacked = std::make_unique<ZBuffer>(2 * complexLength, "ZBuffer");
    mTransform = std::make_unique<ZComplexTransform>(
        complexLength, direction == kForward ? ZComplexTransform::Direction::kForward
                                             : ZComplexTransform::Direction::kInverse);
    if (realSignal)
        MakeTwiddles();
    else
        mWork = makeWork(2 * complexLength);
}

void ZFourierTransformSSE::MakeTwiddles()
{
    const std::uint32_t half = mLength / 2;
    mCosine = std::make_unique<ZBuffer>(half + 1, "ZBuffer");
    mSine = std::make_unique<ZBuffer>(half + 1, "ZBuffer");
    for (std::uint32_t k = 0; k <= half; ++k) {
        const double angle = std::numbers::pi * k / half;
        mCosine->Data()[k] = static_cast<float>(std::cos(angle));
        mSine->Data()[k] = static_cast<float>(std::sin(angle));
    }
}

void ZFourierTransformSSE::TransformReal(ZBuffer& time, ZBuffer& re, ZBuffer& im) noexcept
{
    assert(mRealSignal && time.Length() >= mLength);
    if (mDirection == kForward) {
        mTransform->Run(time.Data(), mPacked->Data());
        Split(re, im);
    } else {
        Join(re, im);
        mTransform->Run(mPacked->Data(), time.Data());
    }
}

// With M = N / 2, z[n] = x[2n] + i x[2n+1] and Z its transform, the even and odd samples have the
// spectra E = (Z[k] + Z*[M-k]) / 2 and O = (Z[k] - Z*[M-k]) / 2i, and X[k] = E + exp(-i pi k/M) O.
// (Press et al., Numerical Recipes in C, 2nd ed. 1992, section 12.3.)
void ZFourierTransformSSE::Split(ZBuffer& reBuffer, ZBuffer& imBuffer) const noexcept
{
    const std::size_t half = mLength / 2;
    const std::size_t bins =
        std::min<std::size_t>({reBuffer.Length(), imBuffer.Length(), half + 1});
    const float* const z = mPacked->Data();
    const float* const cosine = mCosine->Data();
    const float* const sine = mSine->Data();
    float* const re = reBuffer.Data();
    float* const im = imBuffer.Data();
    const float scale = 1.0f / static_cast<float>(mLength);

    assert(bins >= 1);
    const std::size_t end = std::min(bins, half);
    std::size_t k = 1;
    for (; k + kLanes <= end; k += kLanes) {
        const Four low = load(z + 2 * k);
        const Four next = load(z + 2 * k + 4);
        const Four high = load(z + 2 * (half - k) - 2);
        const Four before = load(z + 2 * (half - k) - 6);
        const Halves<Four> halves{__builtin_shufflevector(low, next, 0, 2, 4, 6),
                                  __builtin_shufflevector(low, next, 1, 3, 5, 7),
                                  __builtin_shufflevector(high, before, 2, 0, 6, 4),
                                  __builtin_shufflevector(high, before, 3, 1, 7, 5),
                                  load(cosine + k),
                                  load(sine + k)};
        store(0.5f * scale * halves.Re(), re + k);
        store(0.5f * scale * halves.Im(), im + k);
    }
    for (; k < end; ++k) {
        const float* const low = z + 2 * k;
        const float* const high = z + 2 * (half - k);
        const Halves<float> halves{low[0], low[1], high[0], high[1], cosine[k], sine[k]};
        re[k] = 0.5f * scale * halves.Re();
        im[k] = 0.5f * scale * halves.Im();
    }
    re[0] = scale * (z[0] + z[1]);
    im[0] = 0.0f;
    if (bins > half) {
        re[half] = scale * (z[0] - z[1]);
        im[half] = 0.0f;
    }
}

// The inverse of Split: 2 (E + i O). The factor 2 leaves the inverse transform unscaled.
void ZFourierTransformSSE::Join(const ZBuffer& reBuffer, const ZBuffer& imBuffer) noexcept
{
    const std::size_t half = mLength / 2;
    assert(reBuffer.Length() > half && imBuffer.Length() > half);
    const float* const re = reBuffer.Data();
    const float* const im = imBuffer.Data();
    float* const z = mPacked->Data();
    z[0] = re[0] + re[half];
    z[1] = re[0] - re[half];
    for (std::size_t k = 1; k < half; ++k) {
        const float differenceRe = re[k] - re[half - k];
        const float differenceIm = im[k] + im[half - k];
        const float cosine = mCosine->Data()[k];
        const float sine = mSine->Data()[k];
        const float oddRe = cosine * differenceRe - sine * differenceIm;
        const float oddIm = cosine * differenceIm + sine * differenceRe;
        z[2 * k] = re[k] + re[half - k] - oddIm;
        z[2 * k + 1] = im[k] - im[half - k] + oddRe;
    }
}

void ZFourierTransformSSE::TransformComplex(const ZBuffer& inRe, const ZBuffer& inIm,
                                            ZBuffer& outRe, ZBuffer& outIm) noexcept
{
    assert(inRe.Length() >= mLength && inIm.Length() >= mLength);
    outRe.CopyFrom(inRe);
    outIm.CopyFrom(inIm);
    TransformInPlace(outRe, outIm);
}

void ZFourierTransformSSE::TransformInPlace(ZBuffer& re, ZBuffer& im) noexcept
{
    assert(!mRealSignal && re.Length() >= mLength && im.Length() >= mLength);
    for (std::size_t k = 0; k < mLength; ++k) {
        mPacked->Data()[2 * k] = re.Data()[k];
        mPacked->Data()[2 * k + 1] = im.Data()[k];
    }
    mTransform->Run(mPacked->Data(), mWork->Data());
    const float scale = mDirection == kForward ? 1.0f / static_cast<float>(mLength) : 1.0f;
    for (std::size_t k = 0; k < mLength; ++k) {
        re.Data()[k] = scale * mWork->Data()[2 * k];
        im.Data()[k] = scale * mWork->Data()[2 * k + 1];
    }
}

}  // namespace orvane
