// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZDSPObject.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <cstdint>
#include <memory>

namespace orvane
{

/// Vector arithmetic on sample buffers. This class is the plain form and the reference for its
/// vector twin, ZGainSSE. The two may differ in the last bits, in the padding and below the guard.
///
/// The first buffer argument gives the number of samples n unless there is a count. Every other
/// buffer must have as many samples from its offset on. out may be one of the inputs. A ramp is the
/// gain start + i x (end - start) / (n - 1), built by repeated addition. A peak is the largest
/// absolute value that is written.
///
/// Underflow guard: an operation that writes to another buffer takes a product as 0 when the
/// exponents of the factors show that it is below the normal numbers. The operations in place have
/// no guard.
///
/// Operations run on any thread, also the audio thread. One thread at a time uses an object.
class ZGain : public ZDSPObject
{
public:
    /// The vector twin if the processor supports it and forceGeneric is false, else the plain form.
    /// Throws ZException kOutOfMemory when there is no memory. [setup]
    [[nodiscard]] static std::unique_ptr<ZGain> Create(bool forceGeneric);

    /// buffer x ramp
    virtual void Ramp(ZBuffer& buffer, float start, float end) noexcept;
    /// buffer x other
    virtual void Multiply(ZBuffer& buffer, const ZBuffer& other) noexcept;
    /// buffer x gain
    virtual void Scale(ZBuffer& buffer, float gain) noexcept;
    /// buffer x other, over count. Returns the sum of the products.
    virtual float MultiplySum(ZBuffer& buffer, const ZBuffer& other, std::uint32_t count) noexcept;

    /// out = a x b, each from its offset, over count
    virtual void MultiplyRange(const ZBuffer& a, const ZBuffer& b, ZBuffer& out,
                               std::uint32_t aOffset, std::uint32_t outOffset,
                               std::uint32_t bOffset, std::uint32_t count) noexcept;
    /// out = source x ramp
    virtual void RampTo(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept;
    /// out = a x b
    virtual void MultiplyTo(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept;
    /// out = source x gain
    virtual void ScaleTo(const ZBuffer& source, float gain, ZBuffer& out) noexcept;
    /// out += source x ramp
    virtual void RampAdd(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept;
    /// out += a x b, over count
    virtual void MultiplyAddCount(const ZBuffer& a, const ZBuffer& b, ZBuffer& out,
                                  std::uint32_t count) noexcept;
    /// out += a x b
    virtual void MultiplyAdd(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept;
    /// out += source x gain, over count
    virtual void ScaleAddCount(const ZBuffer& source, float gain, ZBuffer& out,
                               std::uint32_t count) noexcept;
    /// out += source x gain
    virtual void ScaleAdd(const ZBuffer& source, float gain, ZBuffer& out) noexcept;

    /// buffer x gain. min and max start at 100 and -100. Each sample updates max if it is above
    /// max, else min if it is below min; so min stays at 100 when the samples only rise.
    virtual void ScaleMinMax(ZBuffer& buffer, float gain, float& min, float& max) noexcept;
    /// These return the peak of the operation that their name begins with.
    virtual float RampPeak(ZBuffer& buffer, float start, float end) noexcept;
    virtual float MultiplyPeak(ZBuffer& buffer, const ZBuffer& other) noexcept;
    virtual float ScalePeak(ZBuffer& buffer, float gain) noexcept;

    virtual float RampToPeak(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept;
    virtual float MultiplyToPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept;
    virtual float ScaleToPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept;
    /// The peak is that of the sums in out.
    virtual float RampAddPeak(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept;
    virtual float MultiplyAddPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept;
    virtual float ScaleAddPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept;
    /// out[offset + i] += source[i] x gain. Does not write the padding.
    virtual void ScaleAddAt(const ZBuffer& source, float gain, ZBuffer& out,
                            std::uint32_t offset) noexcept;

    /// x = 10 log10(x) if x is above 10^(floor / 10), else floor; floor in dB.
    virtual void PowerToDecibels(ZBuffer& buffer, float floor) noexcept;
    /// The same with a floor of -96 dB.
    virtual void PowerToDecibels96(ZBuffer& buffer) noexcept;
    /// x = 20 log10(x) if x is above 10^-4.8, else -96 dB.
    virtual void AmplitudeToDecibels96(ZBuffer& buffer) noexcept;
    /// out = a x b as complex numbers; all six buffers have the same length. The vector twin
    /// allocates when the buffers are longer than all before. [setup]
    virtual void ComplexMultiply(const ZBuffer& aRe, const ZBuffer& aIm, const ZBuffer& bRe,
                                 const ZBuffer& bIm, ZBuffer& outRe, ZBuffer& outIm);

protected:
    explicit ZGain(const char* name = "ZGain");

    /// The search of ScaleMinMax.
    static void FindMinMax(const ZBuffer& buffer, float& min, float& max) noexcept;
};

}  // namespace orvane
