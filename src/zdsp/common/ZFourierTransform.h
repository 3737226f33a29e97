// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZDSPObject.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <cstdint>
#include <memory>

namespace orvane
{

/// Interface to a power-of-two Fourier transform on sample buffers. The forward transform divides
/// by N and the inverse by nothing, so a sine of amplitude 1 at a bin centre has a magnitude of
/// 0.5, and forward then inverse gives the input back. This class itself can transform nothing.
class ZFourierTransform : public ZDSPObject
{
public:
    static constexpr int kForward = 0;
    static constexpr int kInverse = 1;

    /// A transform of 2^order samples, ready to run: order 1 to 24, direction kForward or kInverse,
    /// realSignal 1 for TransformReal, 0 for the two complex operations. Throws ZException: code 2
    /// without memory, else -1. [setup]
    [[nodiscard]] static std::unique_ptr<ZFourierTransform> Create(int order, int direction,
                                                                   int realSignal);

    /// Does all set-up, so that a transform allocates nothing; parameters as in Create. [setup]
    virtual void Init(int order, int direction, int realSignal);
    /// Forward: from N samples of time, which stay, to re and im, bins 0 to N/2. Where re and im
    /// are shorter they get their low bins alone, which is cheaper. Inverse: from N/2 + 1 bins of
    /// re and im, which stay, to N samples of time; the imaginary parts of bins 0 and N/2 count
    /// as 0. [audio thread]
    virtual void TransformReal(ZBuffer& time, ZBuffer& re, ZBuffer& im);
    /// Transforms N complex values from one pair of buffers to another. [audio thread]
    virtual void TransformComplex(const ZBuffer& inRe, const ZBuffer& inIm, ZBuffer& outRe,
                                  ZBuffer& outIm);
    /// Transforms N complex values in place. [audio thread]
    virtual void TransformInPlace(ZBuffer& re, ZBuffer& im);

protected:
    explicit ZFourierTransform(const char* name = "ZFourierTransform");

    std::uint32_t mLength = 0;  // N
    int mDirection = kForward;
    int mRealSignal = 1;
};

}  // namespace orvane
