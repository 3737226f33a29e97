// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// The range, in Hz, of either end of the engine's frequency range. All sizes follow from the
/// lowest frequency, so that a change of range never allocates.
inline constexpr float kLowestMinFrequency = 20.0f;
inline constexpr float kHighestMinFrequency = 400.0f;
inline constexpr float kLowestMaxFrequency = 300.0f;
inline constexpr float kHighestMaxFrequency = 1500.0f;
/// Upper end of the analysed band as a multiple of the highest pitch candidate.
inline constexpr float kSpectrumTopFactor = 1.5f;
/// Length of the analysis frame, in periods of the lowest frequency.
inline constexpr float kWindowFactor = 2.0f;
/// Length of a grain, in periods.
inline constexpr float kGrainFactor = 2.0f;
/// Blocks by which the synthesis follows the analysis: the median over records needs them.
inline constexpr int kAnalysisLeadBlocks = 9;

/// Sizes and starting positions of the pitch engine as functions of sample rate and block size, in
/// samples unless stated otherwise. For 44100 Hz and 512 samples: longest period 2206, transform
/// 8192, input ring 18871, output ring 18678, 37 records, latency 18359.
struct KestruneGeometry
{
    /// Whether the engine takes a rate and a block size: 8000 to 768000 Hz, so that the analysed
    /// band stays below half the rate, and blocks of 1 sample to a tenth of a second.
    /// [any thread]
    [[nodiscard]] static bool Supports(float sampleRate, int blockSize);
    /// Precondition: Supports(sampleRate, blockSize). [any thread]
    [[nodiscard]] static KestruneGeometry For(float sampleRate, int blockSize);

    int maxPeriod = 0;          // one more than the period of the lowest frequency
    int maxWindowLength = 0;    // longest analysis frame: 2 maxPeriod
    int grainCapacity = 0;      // grain stretched to twice its length, with closing zeros
    int resampledCapacity = 0;  // the longest grain, resampled for formants an octave down
    int outputRingLength = 0;
    int inputRingLength = 0;
    int lead = 0;            // from the synthesis horizon to the newest input
    int firstMark = 0;       // start of the input mark and of the output mark
    int firstStreamPos = 0;  // start of the synthesis horizon
    int latency = 0;         // from input to output; also the input's first write position
    int recordCount = 0;     // analysis records in the ring
    int order = 0;           // log2 of fftSize
    int fftSize = 0;
    int spectrumBins = 0;  // bins up to the top of the widest band; higher ones are not computed
};

}  // namespace orvane
