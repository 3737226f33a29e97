// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZComplexTransform.h"
#include "zdsp/common/ZFourierTransform.h"

#include <memory>

namespace orvane
{

/// The working transform, by a complex transform of a Fourier library that brings vector code.
///
/// A real signal of N samples goes through it as N/2 complex values, even samples real and odd
/// ones imaginary, and the spectrum of the two halves is taken apart after. That halves the work,
/// and bins that nobody asks for cost nothing in the second step.
class ZFourierTransformSSE : public ZFourierTransform
{
public:
    ZFourierTransformSSE();

    void Init(int order, int direction, int realSignal) override;
    void TransformReal(ZBuffer& time, ZBuffer& re, ZBuffer& im) noexcept override;
    void TransformComplex(const ZBuffer& inRe, const ZBuffer& inIm, ZBuffer& outRe,
                          ZBuffer& outIm) noexcept override;
    void TransformInPlace(ZBuffer& re, ZBuffer& im) noexcept override;

private:
    void MakeTwiddles();
    void Split(ZBuffer& re, ZBuffer& im) const noexcept;
    void Join(const ZBuffer& re, const ZBuffer& im) noexcept;

    std::unique_ptr<ZComplexTransform> mTransform;  // of N/2 values for a real signal, else N
    std::unique_ptr<ZBuffer> mPacked;  // interleaved: spectrum of the halves; complex input
    std::unique_ptr<ZBuffer> mWork;    // complex output, interleaved; none for a real signal
    std::unique_ptr<ZBuffer> mCosine;  // of 2 pi k / N, k = 0 .. N/2; none for a complex signal
    std::unique_ptr<ZBuffer> mSine;
};

}  // namespace orvane
