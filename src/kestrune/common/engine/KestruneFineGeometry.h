// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

struct KestruneGeometry;

/// Sizes of the fine tracking as functions of the sample rate and the engine's geometry. The pitch
/// is first looked for in a thinned signal of 11 to 22 kHz (coarse samples), then refined in one of
/// 44 to 88 kHz (middle samples). For 44100 Hz and blocks of 512 samples: factor 4, thin 1, longest
/// lag 550, half span 552, record delay 2240, depth 14.
struct KestruneFineGeometry
{
    /// Precondition: KestruneGeometry::Supports(sampleRate, blockSize). [any thread]
    [[nodiscard]] static KestruneFineGeometry For(float sampleRate, int blockSize,
                                                  const KestruneGeometry& geometry);

    float sampleRate = 0.0f;  // Hz
    int blockSize = 0;        // samples
    int factor = 0;           // samples for one coarse sample, a power of 2
    int thin = 0;             // samples for one middle sample, a power of 2
    float coarseRate = 0.0f;  // Hz
    float middleRate = 0.0f;  // Hz
    int filterDelay = 0;      // of the low pass before thinning, in samples
    int longestLag = 0;       // coarse samples
    int halfSpan = 0;         // coarse samples on either side of the point that is analysed
    int recordDelay = 0;      // from the analysed point to the newest input, in samples
    int coarseLength = 0;     // coarse samples that are kept
    int middleLength = 0;     // middle samples that are kept
    int longestPeriod = 0;    // samples, of the lowest frequency of all ranges
    /// Records from the newest to the one that is settled. The best path is found with that much
    /// look-ahead. Smaller than 14 for very long blocks only, so that a record is settled before a
    /// mark of the synthesis can reach it.
    int depth = 0;
};

}  // namespace orvane
