// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZGain.h"

#include <cstdint>
#include <memory>

namespace orvane
{

/// The vector twin of ZGain, which processes four samples per step. It has no guard and runs over
/// the padded length of the buffers; only peaks ignore the padding. Operations that it does not
/// override are those of the plain form. [audio thread], made in [setup].
class ZGainSSE : public ZGain
{
public:
    ZGainSSE();

    void Ramp(ZBuffer& buffer, float start, float end) noexcept override;
    void Multiply(ZBuffer& buffer, const ZBuffer& other) noexcept override;
    void Scale(ZBuffer& buffer, float gain) noexcept override;
    void RampTo(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept override;
    void MultiplyTo(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept override;
    void ScaleTo(const ZBuffer& source, float gain, ZBuffer& out) noexcept override;
    void RampAdd(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept override;
    void MultiplyAdd(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept override;
    void ScaleAdd(const ZBuffer& source, float gain, ZBuffer& out) noexcept override;

    void ScaleMinMax(ZBuffer& buffer, float gain, float& min, float& max) noexcept override;
    float RampPeak(ZBuffer& buffer, float start, float end) noexcept override;
    float MultiplyPeak(ZBuffer& buffer, const ZBuffer& other) noexcept override;
    float ScalePeak(ZBuffer& buffer, float gain) noexcept override;
    float RampToPeak(const ZBuffer& source, float start, float end, ZBuffer& out) noexcept override;
    float MultiplyToPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept override;
    float ScaleToPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept override;
    float RampAddPeak(const ZBuffer& source, float start, float end,
                      ZBuffer& out) noexcept override;
    float MultiplyAddPeak(const ZBuffer& a, const ZBuffer& b, ZBuffer& out) noexcept override;
    float ScaleAddPeak(const ZBuffer& source, float gain, ZBuffer& out) noexcept override;
    void ScaleAddAt(const ZBuffer& source, float gain, ZBuffer& out,
                    std::uint32_t offset) noexcept override;

    void ComplexMultiply(const ZBuffer& aRe, const ZBuffer& aIm, const ZBuffer& bRe,
                         const ZBuffer& bIm, ZBuffer& outRe, ZBuffer& outIm) override;

private:
    void GrowScratch(std::uint32_t length);

    // Intermediate results of ComplexMultiply; they never shrink.
    std::unique_ptr<ZBuffer> mProduct;
    std::unique_ptr<ZBuffer> mSum;
    std::uint32_t mScratchLength = 0;
};

}  // namespace orvane
