// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/sse/ZGainSSE.h"

#include <emmintrin.h>

#include <algorithm>
#include <cassert>

namespace orvane
{

namespace
{

constexpr std::uint32_t kLanes = 4;

// The second factor of the products: a call gives the values for the next four samples.

struct Constant
{
    __m128 gain;
    explicit Constant(float value) noexcept
        : gain(_mm_set1_ps(value))
    {
    }
    __m128 operator()() const noexcept { return gain; }
};

struct Rising
{
    __m128 gain;
    __m128 step;

    Rising(float start, float end, std::uint32_t count) noexcept
    {
        const float rise = count > 1 ? (end - start) / static_cast<float>(count - 1) : 0.0f;
        const float second = start + rise;
        const float third = second + rise;
        gain = _mm_setr_ps(start, second, third, third + rise);
        step = _mm_set1_ps(4.0f * rise);
    }
    __m128 operator()() noexcept
    {
        const __m128 now = gain;
        gain = _mm_add_ps(gain, step);
        return now;
    }
};

struct Samples
{
    const float* next;
    __m128 operator()() noexcept
    {
        const __m128 four = _mm_load_ps(next);
        next += kLanes;
        return four;
    }
};

/// All bits set in the lanes below count.
__m128 lanesBelow(std::uint32_t count) noexcept
{
    const __m128i lanes = _mm_setr_epi32(0, 1, 2, 3);
    const auto last = static_cast<int>(std::min(count, kLanes));
    return _mm_castsi128_ps(_mm_cmplt_epi32(lanes, _mm_set1_epi32(last)));
}

float largestLane(__m128 four) noexcept
{
    const __m128 two = _mm_max_ps(four, _mm_movehl_ps(four, four));
    return _mm_cvtss_f32(_mm_max_ss(two, _mm_shuffle_ps(two, two, 1)));
}

// Where a product goes.
enum class Target
{
    kReplace,
    kAdd
};

template <Target target, typename Factor>
__m128 step(const float* source, Factor& factor, const float* out) noexcept
{
    const __m128 product = _mm_mul_ps(_mm_load_ps(source), factor());
    return target == Target::kAdd ? _mm_add_ps(_mm_load_ps(out), product) : product;
}

/// source x factor to out, over the padded length. source may be out.
template <Target target, typename Factor>
void run(const ZBuffer& source, Factor factor, ZBuffer& out) noexcept
{
    assert(out.Allocated() >= source.Allocated());
    const float* const in = source.Data();
    float* const result = out.Data();
    for (std::uint32_t i = 0; i < source.Allocated(); i += kLanes)
        _mm_store_ps(result + i, step<target>(in + i, factor, result + i));
}

/// The same, with the largest absolute value written to samples in use.
template <Target target, typename Factor>
float runPeak(const ZBuffer& source, Factor factor, ZBuffer& out) noexcept
{
    assert(out.Allocated() >= source.Allocated());
    const __m128 magnitude = _mm_castsi128_ps(_mm_set1_epi32(0x7FFFFFFF));
    const float* const in = source.Data();
    float* const result = out.Data();
    __m128 peak = _mm_setzero_ps();
    for (std::uint32_t i = 0; i < source.Allocated(); i += kLanes) {
        const __m128 written = step<target>(in + i, factor, result + i);
        _mm_store_ps(result + i, written);
        const __m128 used = _mm_and_ps(magnitude, lanesBelow(source.Length() - i));
        peak =
            _mm_max_ps(_mm_and_ps(written, used), peak);  // in this order, so that NaN is ignored
    }
    return largestLane(peak);
}

}  // namespace

ZGainSSE::ZGainSSE()
    : ZGain("ZGainSSE")
{
}

void ZGainSSE::Ramp(ZBuffer& buffer, float start, float end) noexcept
{
    run<Target::kReplace>(buffer, Rising(start, end, buffer.Length()), buffer);
}

void ZGainSSE::Multiply(ZBuffer& buffer, const ZBuffer& other) noexcept
{
    run<Target::kReplace>(buffer, Samples{other.Data()}, buffer);
}

void ZGainSSE::Scale(ZBuffer& buffer, float gain) noexcept
{
    run<Target::kReplace>(buffer, Constant(gain), buffer);
}

void ZGainSSE::RampTo(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept
{
    run<Target::kReplace>(source, Rising(start, end, source.Length()), out);
}

void ZGainSSE::MultiplyTo(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept
{
    run<Target::kReplace>(a, Samples{b.Data()}, out);
}

void ZGainSSE::ScaleTo(const ZBuffer& source, float gain, ZBuffer& out) noexcept
{
    run<Target::kReplace>(source, Constant(gain), out);
}

void ZGainSSE::RampAdd(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept
{
    run<Target::kAdd>(source, Rising(start, end, source.Length()), out);
}

void ZGainSSE::MultiplyAdd(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept
{
    run<Target::kAdd>(a, Samples{b.Data()}, out);
}

void ZGainSSE::ScaleAdd(const ZBuffer& source, float gain, ZBuffer& out) noexcept
{
    run<Target::kAdd>(source, Constant(gain), out);
}

// The search runs sample by sample, because each step depends on all samples before.
void ZGainSSE::ScaleMinMax(ZBuffer& buffer, float gain, float& min, float& max) noexcept
{
    ZGainSSE::Scale(buffer, gain);
    FindMinMax(buffer, min, max);
}

float ZGainSSE::RampPeak(ZBuffer& buffer, float start, float end) noexcept
{
    return runPeak<Target::kReplace>(buffer, Rising(start, end, buffer.Length()), buffer);
}

float ZGainSSE::MultiplyPeak(ZBuffer& buffer, const ZBuffer& other) noexcept
{
    return runPeak<Target::kReplace>(buffer, Samples{other.Data()}, buffer);
}

float ZGainSSE::ScalePeak(ZBuffer& buffer, float gain) noexcept
{
    return runPeak<Target::kReplace>(buffer, Constant(gain), buffer);
}

float ZGainSSE::RampToPeak(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept
{
    return runPeak<Target::kReplace>(source, Rising(start, end, source.Length()), out);
}

float ZGainSSE::MultiplyToPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept
{
    return runPeak<Target::kReplace>(a, Samples{b.Data()}, out);
}

float ZGainSSE::ScaleToPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept
{
    return runPeak<Target::kReplace>(source, Constant(gain), out);
}

float ZGainSSE::RampAddPeak(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept
{
    return runPeak<Target::kAdd>(source, Rising(start, end, source.Length()), out);
}

float ZGainSSE::MultiplyAddPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept
{
    return runPeak<Target::kAdd>(a, Samples{b.Data()}, out);
}

float ZGainSSE::ScaleAddPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept
{
    return runPeak<Target::kAdd>(source, Constant(gain), out);
}

// Over the samples in use only: the padding of source would overlap samples of out in use.
void ZGainSSE::ScaleAddAt(const ZBuffer& source, float gain, ZBuffer& out,
                          std::uint32_t offset) noexcept
{
    assert(offset + source.Length() <= out.Length());
    const float* const in = source.Data();
    float* const result = out.Data() + offset;
    const __m128 factor = _mm_set1_ps(gain);
    std::uint32_t i = 0;
    for (; i + kLanes <= source.Length(); i += kLanes) {
        const __m128 product = _mm_mul_ps(_mm_load_ps(in + i), factor);
        _mm_storeu_ps(result + i, _mm_add_ps(_mm_loadu_ps(result + i), product));
    }
    for (; i < source.Length(); ++i)
        result[i] += in[i] * gain;
}

void ZGainSSE::GrowScratch(std::uint32_t length)
{
    if (length <= mScratchLength)
        return;
    assert(length > 0);
    mProduct = std::make_unique<ZBuffer>(length, "ZBuffer");
    mSum = std::make_unique<ZBuffer>(length, "ZBuffer");
    mScratchLength = length;
}

void ZGainSSE::ComplexMultiply(const ZBuffer& aRe, const ZBuffer& aIm, const ZBuffer& bRe,
                               const ZBuffer& bIm, ZBuffer& outRe, ZBuffer& outIm)
{
    // The scratch buffers may be longer than the arguments, so the sums have a count.
    const std::uint32_t count = outRe.Length();
    assert(aRe.Length() == count && aIm.Length() == count && bRe.Length() == count);
    assert(bIm.Length() == count && outIm.Length() == count);
    GrowScratch(count);
    MultiplyTo(aIm, bIm, *mProduct);
    MultiplyTo(aRe, bRe, *mSum);
    ScaleAddCount(*mProduct, -1.0f, *mSum, count);
    MultiplyTo(aIm, bRe, *mProduct);
    MultiplyTo(aRe, bIm, outIm);
    ScaleAddCount(*mProduct, 1.0f, outIm, count);
    outRe.CopyFrom(*mSum);
}

}  // namespace orvane
