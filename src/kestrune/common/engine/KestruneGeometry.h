// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// Lowest and highest limits of the engine's frequency range, in Hz. The geometry rests on the
/// lowest of all, so that a change of range never reallocates.
inline constexpr float kLowestMinFrequency = 20.0f;
inline constexpr float kHighestMinFrequency = 400.0f;
inline constexpr float kLowestMaxFrequency = 300.0f;
inline constexpr float kHighestMaxFrequency = 1500.0f;
/// The analysed band reaches up to this multiple of the highest candidate.
inline constexpr float kSpectrumTopFactor = 1.5f;
/// Analysis frame and grain, in periods.
inline constexpr float kWindowFactor = 2.0f;
inline constexpr float kGrainFactor = 2.0f;
/// Blocks by which the synthesis lies behind the analysis: the time the median repair needs.
inline constexpr int kAnalysisLeadBlocks = 9;

/// Sizes and starting positions of the pitch engine, all in samples but where a name says
/// otherwise, as they follow from sample rate and block. For 44100 Hz and 512 samples: longest
/// period 2206, transform 8192, input ring 18871, output ring 18678, 37 records, latency 18359.
struct KestruneGeometry
{
    /// True for rates and blocks that the engine takes: 8000 to 768000 Hz, so that the analysed
    /// band stays under half the rate; blocks of 1 sample to a tenth of a second.
    [[nodiscard]] static bool Supports(float sampleRate, int blockSize);
    /// Precondition: Supports(sampleRate, blockSize).
    [[nodiscard]] static KestruneGeometry For(float sampleRate, int blockSize);

    int maxPeriod = 0;          // N: one more than the period of the lowest frequency
    int maxWindowLength = 0;    // longest analysis frame, 2 N
    int grainCapacity = 0;      // G: grain stretched to twice its length, with closing zeros
    int resampledCapacity = 0;  // Q: such a grain an octave of formants down
    int outputRingLength = 0;
    int inputRingLength = 0;
    int firstMark = 0;       // where both marks start
    int firstStreamPos = 0;  // where the synthesis horizon starts
    int latency = 0;         // input to output; the input's first write position too
    int recordCount = 0;     // analysis records in the ring
    int order = 0;           // the transform has 2^order samples
    int fftSize = 0;
    int spectrumBins = 0;  // bins up to the top of the widest band, which are all that is read
};

}  // namespace orvane
