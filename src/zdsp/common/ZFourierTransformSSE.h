// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZComplexTransform.h"
#include "zdsp/common/ZFourierTransform.h"

#include <memory>

namespace orvane
{

/// The implementation of ZFourierTransform, by the complex transform of a Fourier library that has
/// vector code.
///
/// A real signal of N samples is transformed as N/2 complex values, with even samples as real and
/// odd ones as imaginary parts. A second step separates the two spectra. That halves the work, and
/// the second step computes only the bins that the caller wants.
/// [audio thread], made in [setup].
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

    std::unique_ptr<ZComplexTransform> mTransform;  // of N/2 values for a real signal, else of N
    std::unique_ptr<ZBuffer> mPacked;  // interleaved spectrum of the N/2 values; else the input
    std::unique_ptr<ZBuffer> mWork;    // interleaved output; null for a real signal
    std::unique_ptr<ZBuffer> mCosine;  // of 2 pi k / N, k = 0 .. N/2; null for a complex signal
    std::unique_ptr<ZBuffer> mSine;
};

}  // namespace orvane
