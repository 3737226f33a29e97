// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZDSPObject.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <cstdint>
#include <memory>

namespace orvane
{

/// Interface of a Fourier transform of N = 2^order samples in buffers. The forward transform
/// divides by N, the inverse does not scale: a sine of amplitude 1 at the centre of a bin has a
/// magnitude of 0.5, and forward followed by inverse gives the input. The transforms of this base
/// class throw ZException.
class ZFourierTransform : public ZDSPObject
{
public:
    static constexpr int kForward = 0;
    static constexpr int kInverse = 1;

    /// A transform that is ready to run. order: 1 to 24. direction: kForward or kInverse.
    /// realSignal: 1 for TransformReal, 0 for the two complex operations. Throws ZException for
    /// another order and kOutOfMemory when there is no memory. [setup]
    [[nodiscard]] static std::unique_ptr<ZFourierTransform> Create(int order, int direction,
                                                                   int realSignal);

    /// Allocates everything that the transforms use. Parameters as for Create. [setup]
    virtual void Init(int order, int direction, int realSignal);
    /// Forward: from N samples of time to bins 0 to N/2 in re and im. Shorter re and im get only
    /// the low bins, which costs less. Inverse: from N/2 + 1 bins of re and im to N samples of
    /// time; the imaginary parts of bins 0 and N/2 count as 0. The input is unchanged. [audio
    /// thread]
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
