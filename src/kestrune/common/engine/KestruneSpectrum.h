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

/// The log-power spectrum of the newest frame of input, and the voicing that it shows. LoadFrame,
/// MeasureFrame, the parts of the transform and NormalizeBand are called in this order, once a
/// block.
///
/// One transform of the whole frame would be a third of a block's work in one piece. With R parts
/// of every R-th sample (decimation in time), part r having the spectrum F_r, the low bins are
/// X[k] = sum of exp(-2 pi i k r / N) F_r[k] (J. Cooley and J. Tukey, Math. Comp. 19, 1965); they
/// need no other bins of the parts.
class KestruneSpectrum
{
public:
    /// The analysed band: the bins lo to hi, both included.
    struct Band
    {
        int lo = 0;
        int hi = 0;
    };

    /// Throws ZException when a buffer or the transform cannot be made. [setup]
    void Allocate(const KestruneGeometry& geometry, int blockSize);
    /// Sets the frame's length in samples, at most the geometry's maxWindowLength.
    /// [audio thread]
    void SetFrameLength(int length) noexcept;
    [[nodiscard]] int FrameLength() const noexcept { return mFrameLength; }

    /// Copies the frame that begins at pos and multiplies it by the window. reference: 0 left,
    /// 1 right, any other value the sum of both. [audio thread]
    void LoadFrame(const KestruneStereoRing& ring, int pos, std::int16_t reference) noexcept;
    /// Measures the level of the frame. [audio thread]
    void MeasureFrame() noexcept;
    /// Number of parts that the transform is divided into. [audio thread]
    [[nodiscard]] int PartCount() const noexcept
    {
        return 2 * static_cast<int>(mThinned.size()) + 2;
    }
    /// Cost of a part, in the units of KestruneClassicAnalysis. [audio thread]
    [[nodiscard]] int CostOf(int part) const noexcept;
    /// After the last part, which follow in rising order, there is the power of the frame's bins in
    /// dB, -96 at least. [audio thread]
    void TransformPart(int part) noexcept;
    /// Scales the band to -1 .. +1. Returns the voicing that its shape shows, 0 .. 1: clear peaks
    /// over a low floor have a high variance, noise a low one. [audio thread]
    [[nodiscard]] float NormalizeBand(Band band) noexcept;
    /// Factor of the voicing for the frame's level: 0 up to -60 dB, 1 from -50 dB on.
    /// [audio thread]
    [[nodiscard]] float LevelGate() const noexcept;

    /// Values by bin: normalised inside the band, dB outside. [audio thread]
    [[nodiscard]] std::span<const float> Values() const noexcept;

private:
    /// Bins of every R-th sample of the frame, and the factors that turn them into their share of
    /// the frame's bins.
    struct Thinned
    {
        std::unique_ptr<ZBuffer> re;
        std::unique_ptr<ZBuffer> im;
        std::vector<float> cosine;
        std::vector<float> sine;
    };

    void ThinFrame(int first) noexcept;
    void AddUp() noexcept;
    void ToDecibels() noexcept;

    int mBlockSize = 512;
    std::vector<float> mAnalysisWindow;  // its first mFrameLength values are in use
    int mFrameLength = 0;
    float mFrameEnergy = 0.0f;  // mean square of the windowed frame
    std::unique_ptr<ZGain> mGain;
    std::unique_ptr<ZFourierTransform> mFourier;
    std::vector<float> mFrame;  // windowed frame, and zeros up to the end
    std::unique_ptr<ZBuffer> mThinnedFrame;
    std::vector<Thinned> mThinned;  // R, by the first sample
    // Bins up to the top of the widest band; higher ones are not computed.
    std::unique_ptr<ZBuffer> mSpectrum;  // real part, then power, then dB, then normalised
    std::unique_ptr<ZBuffer> mImaginary;
};

}  // namespace orvane
