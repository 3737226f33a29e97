// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZDSPObject.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <cstdint>
#include <memory>

namespace orvane
{

/// Vector arithmetic on sample buffers: the plain form, which is also the reference of the vector
/// twin. The two may differ in the last bits, in samples of the padding, and below the guard.
///
/// Samples are counted by the first buffer argument unless a count is given, and every other
/// buffer must hold as many behind its offset. Out may be one of the inputs. A ramp is the gain
/// start + i x (end - start) / (n - 1), built by repeated addition. A peak is the largest absolute
/// value written, 0 at least.
///
/// Underflow guard: operations that write to another buffer take a product as 0 when the exponent
/// fields of its factors tell that it lies below the normal numbers. Those in place do not look.
///
/// Operations run on any thread, the audio thread included; one object serves one thread at a time.
class ZGain : public ZDSPObject
{
public:
    /// The vector twin where the processor has it, else or with forceGeneric the plain form.
    /// Throws ZException code 2 when there is no memory. [setup]
    [[nodiscard]] static std::unique_ptr<ZGain> Create(bool forceGeneric);

    /// buffer x ramp
    virtual void Ramp(ZBuffer& buffer, float start, float end) noexcept;
    /// buffer x other
    virtual void Multiply(ZBuffer& buffer, const ZBuffer& other) noexcept;
    /// buffer x gain
    virtual void Scale(ZBuffer& buffer, float gain) noexcept;
    /// buffer x other, over count; gives the sum of the products.
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

    /// buffer x gain. min and max start at 100 and -100, and each sample updates one of them: max
    /// when it is above it, else min when it is below. So a buffer that only rises leaves min.
    virtual void ScaleMinMax(ZBuffer& buffer, float gain, float& min, float& max) noexcept;
    virtual float RampPeak(ZBuffer& buffer, float start, float end) noexcept;
    virtual float MultiplyPeak(ZBuffer& buffer, const ZBuffer& other) noexcept;
    virtual float ScalePeak(ZBuffer& buffer, float gain) noexcept;

    virtual float RampToPeak(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept;
    virtual float MultiplyToPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept;
    virtual float ScaleToPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept;
    /// The peak is that of the sums.
    virtual float RampAddPeak(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept;
    virtual float MultiplyAddPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept;
    virtual float ScaleAddPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept;
    /// out[offset + i] += source[i] x gain. Writes nothing outside that run, not even padding.
    virtual void ScaleAddAt(const ZBuffer& source, float gain, ZBuffer& out,
                            std::uint32_t offset) noexcept;

    /// x = 10 log10(x) where x is above 10^(floor / 10), else floor, in dB.
    virtual void PowerToDecibels(ZBuffer& buffer, float floor) noexcept;
    /// The same with a floor of -96 dB.
    virtual void PowerToDecibels96(ZBuffer& buffer) noexcept;
    /// x = 20 log10(x) where x is above 10^-4.8, else -96 dB.
    virtual void AmplitudeToDecibels96(ZBuffer& buffer) noexcept;
    /// out = a x b as complex numbers, all six buffers of one length. The vector twin allocates
    /// when it meets its longest buffer so far.
    virtual void ComplexMultiply(const ZBuffer& aRe, const ZBuffer& aIm, const ZBuffer& bRe,
                                 const ZBuffer& bIm, ZBuffer& outRe, ZBuffer& outIm);

protected:
    explicit ZGain(const char* name = "ZGain");

    /// The search of ScaleMinMax.
    static void FindMinMax(const ZBuffer& buffer, float& min, float& max) noexcept;
};

}  // namespace orvane
