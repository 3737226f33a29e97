// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZFourierTransform.h"
#include "zdsp/common/ZGain.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace orvane
{

class KestruneStereoRing;
struct KestruneGeometry;

/// The log-power spectrum of the newest stretch of input, and how much of a voice it looks like.
/// Calls come in the order LoadFrame, Transform, NormalizeBand, once a block.
class KestruneSpectrum
{
public:
    /// Bins of the analysed band, both ends included.
    struct Band
    {
        int lo = 0;
        int hi = 0;
    };

    /// Throws ZException when a buffer or the transform cannot be made. [setup]
    void Allocate(const KestruneGeometry& geometry);
    /// Frame length in samples, at most the geometry's longest. [audio thread]
    void SetFrameLength(int length) noexcept;
    [[nodiscard]] int FrameLength() const noexcept { return mFrameLength; }

    /// Cuts the frame that begins at pos and windows it. reference: 0 left, 1 right, any other
    /// value both summed with no halving. [audio thread]
    void LoadFrame(const KestruneStereoRing& ring, int pos, std::int16_t reference) noexcept;
    /// Power in dB of the bins up to the top of the widest band, floor -96. [audio thread]
    void Transform() noexcept;
    /// Spreads the band to -1 .. +1. Gives the voicing that its shape tells, 0 .. 1: clear peaks
    /// over a low floor have a high variance, noise a low one. [audio thread]
    [[nodiscard]] float NormalizeBand(Band band) noexcept;
    /// Share of the voicing that the frame's level lets through: 0 up to -60 dB, 1 from -50 dB.
    [[nodiscard]] float LevelGate() const noexcept;

    /// Normalised inside the band, dB outside.
    [[nodiscard]] std::span<const float> Values() const noexcept;

private:
    std::vector<float> mAnalysisWindow;  // capacity of the longest frame
    int mFrameLength = 0;
    float mFrameEnergy = 0.0f;  // mean square of the windowed frame
    std::unique_ptr<ZGain> mGain;
    std::unique_ptr<ZFourierTransform> mFourier;
    std::unique_ptr<ZBuffer> mFrame;  // windowed, zeros behind
    // Bins up to the top of the widest band; those above are never computed.
    std::unique_ptr<ZBuffer> mSpectrum;  // real part, then power, then dB, then normalised
    std::unique_ptr<ZBuffer> mImaginary;
};

}  // namespace orvane
