// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZGain.h"

#include "zdsp/common/ZVectorSupport.h"
#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cmath>
#include <limits>
#include <new>

namespace orvane
{

namespace
{

// Decibels of a factor of 2.
constexpr float kPowerOctave = 3.0102999566398120f;
constexpr float kAmplitudeOctave = 6.0205999132796239f;

constexpr float kFloorDecibels = -96.0f;
constexpr float kFloorPower = 2.5118864315095823e-10f;     // 10^-9.6
constexpr float kFloorAmplitude = 1.5848931924611134e-5f;  // 10^-4.8

std::uint32_t exponentField(float value) noexcept
{
    return std::bit_cast<std::uint32_t>(value) >> 23 & 0xFFu;
}

/// a x b, or 0 when the exponents sum to less than -126; each field has a bias of 127.
float guarded(float a, float b) noexcept
{
    return exponentField(a) + exponentField(b) < 128u ? 0.0f : a * b;
}

// The second factor of the products: a call gives the value for the next sample.

struct Constant
{
    float gain;
    float operator()() const noexcept { return gain; }
};

struct Rising
{
    float gain;
    float step;

    Rising(float start, float end, std::uint32_t count) noexcept
        : gain(start)
        , step(count > 1 ? (end - start) / static_cast<float>(count - 1) : 0.0f)
    {
    }
    float operator()() noexcept
    {
        const float now = gain;
        gain += step;
        return now;
    }
};

struct Samples
{
    const float* next;
    float operator()() noexcept { return *next++; }
};

template <typename Factor>
void multiply(float* samples, std::uint32_t count, Factor factor) noexcept
{
    for (std::uint32_t i = 0; i < count; ++i)
        samples[i] *= factor();
}

template <typename Factor>
void multiplyTo(const float* source, std::uint32_t count, Factor factor, float* out) noexcept
{
    for (std::uint32_t i = 0; i < count; ++i)
        out[i] = guarded(source[i], factor());
}

template <typename Factor>
void multiplyAdd(const float* source, std::uint32_t count, Factor factor, float* out) noexcept
{
    for (std::uint32_t i = 0; i < count; ++i)
        out[i] += guarded(source[i], factor());
}

float peakOf(const ZBuffer& buffer, std::uint32_t count) noexcept
{
    float peak = 0.0f;
    for (std::uint32_t i = 0; i < count; ++i)
        peak = std::max(peak, std::abs(buffer.Data()[i]));
    return peak;
}

/// log2 of a normal positive number, within 2 units in the last place. Compilers turn it into
/// vector code, which takes a tenth of the time of the C library's function. That matters, because
/// the engine calls it for each bin of a spectrum. x = m 2^e with m from sqrt(1/2) to sqrt(2), ln m
/// = 2 artanh((m - 1) / (m + 1)) by its series.
float logarithm2(float x) noexcept
{
    constexpr std::uint32_t kMantissa = 0x7FFFFFu;
    constexpr std::uint32_t kSqrtHalf = 0x3F3504F3u;  // bits of sqrt(1/2)
    constexpr float kTwoOverLn2 = 2.8853900817779268f;
    const std::uint32_t above = std::bit_cast<std::uint32_t>(x) - kSqrtHalf;
    const auto exponent = static_cast<float>(static_cast<std::int32_t>(above) >> 23);
    const float mantissa = std::bit_cast<float>((above & kMantissa) + kSqrtHalf);
    const float s = (mantissa - 1.0f) / (mantissa + 1.0f);
    const float s2 = s * s;
    const float series =
        s + s * s2 * (1.0f / 3 + s2 * (1.0f / 5 + s2 * (1.0f / 7 + s2 * (1.0f / 9))));
    return exponent + kTwoOverLn2 * series;
}

/// decibelsPerOctave: dB of a factor of 2. Numbers below the normal ones become floor.
void toDecibels(ZBuffer& buffer, float decibelsPerOctave, float above, float floor) noexcept
{
    const float least = std::max(above, std::numeric_limits<float>::min());
    float* const samples = buffer.Data();
    for (std::uint32_t i = 0; i < buffer.Length(); ++i) {
        const float decibels = decibelsPerOctave * logarithm2(samples[i]);
        samples[i] = samples[i] > least ? decibels : floor;
    }
}

}  // namespace

std::unique_ptr<ZGain> ZGain::Create(bool forceGeneric)
{
    std::unique_ptr<ZGain> gain;
    if (!forceGeneric && ZVectorSupport::ProcessorClass() == ZVectorSupport::kVector)
        gain = ZVectorSupport::CreateGain();
    else
        gain.reset(new (std::nothrow) ZGain);
    if (!gain)
        throw ZException(ZException::kOutOfMemory, "Could not create a ZGain object");
    return gain;
}

ZGain::ZGain(const char* name)
    : ZDSPObject(name)
{
}

void ZGain::Ramp(ZBuffer& buffer, float start, float end) noexcept
{
    multiply(buffer.Data(), buffer.Length(), Rising(start, end, buffer.Length()));
}

void ZGain::Multiply(ZBuffer& buffer, const ZBuffer& other) noexcept
{
    assert(other.Length() >= buffer.Length());
    multiply(buffer.Data(), buffer.Length(), Samples{other.Data()});
}

void ZGain::Scale(ZBuffer& buffer, float gain) noexcept
{
    multiply(buffer.Data(), buffer.Length(), Constant{gain});
}

float ZGain::MultiplySum(ZBuffer& buffer, const ZBuffer& other, std::uint32_t count) noexcept
{
    assert(buffer.Length() >= count && other.Length() >= count);
    multiply(buffer.Data(), count, Samples{other.Data()});
    float sum = 0.0f;
    for (std::uint32_t i = 0; i < count; ++i)
        sum += buffer.Data()[i];
    return sum;
}

void ZGain::MultiplyRange(const ZBuffer& a, const ZBuffer& b, ZBuffer& out, std::uint32_t aOffset,
                          std::uint32_t outOffset, std::uint32_t bOffset,
                          std::uint32_t count) noexcept
{
    assert(aOffset + count <= a.Length() && bOffset + count <= b.Length());
    assert(outOffset + count <= out.Length());
    multiplyTo(a.Data() + aOffset, count, Samples{b.Data() + bOffset}, out.Data() + outOffset);
}

void ZGain::RampTo(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept
{
    assert(out.Length() >= source.Length());
    const std::uint32_t count = source.Length();
    multiplyTo(source.Data(), count, Rising(start, end, count), out.Data());
}

void ZGain::MultiplyTo(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept
{
    assert(b.Length() >= a.Length() && out.Length() >= a.Length());
    multiplyTo(a.Data(), a.Length(), Samples{b.Data()}, out.Data());
}

void ZGain::ScaleTo(const ZBuffer& source, float gain, ZBuffer& out) noexcept
{
    assert(out.Length() >= source.Length());
    multiplyTo(source.Data(), source.Length(), Constant{gain}, out.Data());
}

void ZGain::RampAdd(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept
{
    assert(out.Length() >= source.Length());
    const std::uint32_t count = source.Length();
    multiplyAdd(source.Data(), count, Rising(start, end, count), out.Data());
}

void ZGain::MultiplyAddCount(const ZBuffer& a, const ZBuffer& b, ZBuffer& out,
                             std::uint32_t count) noexcept
{
    assert(a.Length() >= count && b.Length() >= count && out.Length() >= count);
    multiplyAdd(a.Data(), count, Samples{b.Data()}, out.Data());
}

void ZGain::MultiplyAdd(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept
{
    assert(b.Length() >= a.Length() && out.Length() >= a.Length());
    multiplyAdd(a.Data(), a.Length(), Samples{b.Data()}, out.Data());
}

void ZGain::ScaleAddCount(const ZBuffer& source, float gain, ZBuffer& out,
                          std::uint32_t count) noexcept
{
    assert(source.Length() >= count && out.Length() >= count);
    multiplyAdd(source.Data(), count, Constant{gain}, out.Data());
}

void ZGain::ScaleAdd(const ZBuffer& source, float gain, ZBuffer& out) noexcept
{
    assert(out.Length() >= source.Length());
    multiplyAdd(source.Data(), source.Length(), Constant{gain}, out.Data());
}

void ZGain::ScaleMinMax(ZBuffer& buffer, float gain, float& min, float& max) noexcept
{
    ZGain::Scale(buffer, gain);
    FindMinMax(buffer, min, max);
}

void ZGain::FindMinMax(const ZBuffer& buffer, float& min, float& max) noexcept
{
    min = 100.0f;
    max = -100.0f;
    for (std::uint32_t i = 0; i < buffer.Length(); ++i) {
        const float sample = buffer.Data()[i];
        if (sample > max)
            max = sample;
        else if (sample < min)
            min = sample;
    }
}

float ZGain::RampPeak(ZBuffer& buffer, float start, float end) noexcept
{
    ZGain::Ramp(buffer, start, end);
    return peakOf(buffer, buffer.Length());
}

float ZGain::MultiplyPeak(ZBuffer& buffer, const ZBuffer& other) noexcept
{
    ZGain::Multiply(buffer, other);
    return peakOf(buffer, buffer.Length());
}

float ZGain::ScalePeak(ZBuffer& buffer, float gain) noexcept
{
    ZGain::Scale(buffer, gain);
    return peakOf(buffer, buffer.Length());
}

float ZGain::RampToPeak(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept
{
    ZGain::RampTo(source, start, end, out);
    return peakOf(out, source.Length());
}

float ZGain::MultiplyToPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept
{
    ZGain::MultiplyTo(a, b, out);
    return peakOf(out, a.Length());
}

float ZGain::ScaleToPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept
{
    ZGain::ScaleTo(source, gain, out);
    return peakOf(out, source.Length());
}

float ZGain::RampAddPeak(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept
{
    ZGain::RampAdd(source, start, end, out);
    return peakOf(out, source.Length());
}

float ZGain::MultiplyAddPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept
{
    ZGain::MultiplyAdd(a, b, out);
    return peakOf(out, a.Length());
}

float ZGain::ScaleAddPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept
{
    ZGain::ScaleAdd(source, gain, out);
    return peakOf(out, source.Length());
}

void ZGain::ScaleAddAt(const ZBuffer& source, float gain, ZBuffer& out,
                       std::uint32_t offset) noexcept
{
    assert(offset + source.Length() <= out.Length());
    multiplyAdd(source.Data(), source.Length(), Constant{gain}, out.Data() + offset);
}

void ZGain::PowerToDecibels(ZBuffer& buffer, float floor) noexcept
{
    toDecibels(buffer, kPowerOctave, std::pow(10.0f, floor / 10.0f), floor);
}

void ZGain::PowerToDecibels96(ZBuffer& buffer) noexcept
{
    toDecibels(buffer, kPowerOctave, kFloorPower, kFloorDecibels);
}

void ZGain::AmplitudeToDecibels96(ZBuffer& buffer) noexcept
{
    toDecibels(buffer, kAmplitudeOctave, kFloorAmplitude, kFloorDecibels);
}

void ZGain::ComplexMultiply(const ZBuffer& aRe, const ZBuffer& aIm, const ZBuffer& bRe,
                            const ZBuffer& bIm, ZBuffer& outRe, ZBuffer& outIm)
{
    assert(aIm.Length() == aRe.Length() && bRe.Length() == aRe.Length());
    assert(bIm.Length() == aRe.Length() && outRe.Length() == aRe.Length());
    assert(outIm.Length() == aRe.Length());
    for (std::uint32_t i = 0; i < aRe.Length(); ++i) {
        const float re = aRe.Data()[i] * bRe.Data()[i] - aIm.Data()[i] * bIm.Data()[i];
        const float im = aRe.Data()[i] * bIm.Data()[i] + aIm.Data()[i] * bRe.Data()[i];
        outRe.Data()[i] = re;
        outIm.Data()[i] = im;
    }
}

}  // namespace orvane
