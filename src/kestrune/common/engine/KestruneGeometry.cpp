// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneGeometry.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr float kLowestRate = 8000.0f;
constexpr float kHighestRate = 768000.0f;
constexpr float kLongestBlockSeconds = 0.1f;
constexpr double kLowestFormantRatio = 0.5;

}  // namespace

bool KestruneGeometry::Supports(float sampleRate, int blockSize)
{
    return sampleRate >= kLowestRate && sampleRate <= kHighestRate && blockSize >= 1 &&
           static_cast<float>(blockSize) <= sampleRate * kLongestBlockSeconds;
}

KestruneGeometry KestruneGeometry::For(float sampleRate, int blockSize)
{
    assert(Supports(sampleRate, blockSize));
    KestruneGeometry g;
    g.maxPeriod = 1 + static_cast<int>(std::floor(sampleRate / kLowestMinFrequency));
    const auto longest = static_cast<float>(g.maxPeriod);
    g.maxWindowLength = static_cast<int>(kWindowFactor * longest + 0.5f);
    g.grainCapacity = 2 * (static_cast<int>(kGrainFactor * longest) + 1);
    g.resampledCapacity = static_cast<int>(g.grainCapacity / kLowestFormantRatio) + 1;
    g.outputRingLength = g.resampledCapacity + 2 * blockSize + 1;

    g.lead = g.grainCapacity / 2 + kAnalysisLeadBlocks * blockSize;
    g.inputRingLength = std::max({g.lead + 2 * blockSize + g.resampledCapacity / 2,
                                  g.grainCapacity + blockSize, g.maxWindowLength});
    g.firstMark = g.resampledCapacity / 2;
    g.firstStreamPos = g.firstMark + blockSize;
    g.latency = g.lead + g.firstStreamPos;
    g.recordCount = g.inputRingLength / blockSize + 1;

    g.order = static_cast<int>(std::ceil(std::log2(static_cast<double>(g.maxWindowLength))));
    g.fftSize = 1 << g.order;
    const double top = kSpectrumTopFactor * kHighestMaxFrequency;
    g.spectrumBins = static_cast<int>(g.fftSize * top / sampleRate + 0.5) + 1;
    return g;
}

}  // namespace orvane
