// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneFineGeometry.h"

#include "kestrune/common/engine/KestruneGeometry.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr float kLowestCoarseRate = 11025.0f;
constexpr int kMostDepth = 14;
constexpr int kLeastDepth = 4;  // the clarity of three newer records decides on one

}  // namespace

KestruneFineGeometry KestruneFineGeometry::For(float sampleRate, int blockSize,
                                               const KestruneGeometry& geometry)
{
    assert(KestruneGeometry::Supports(sampleRate, blockSize));
    KestruneFineGeometry g;
    g.sampleRate = sampleRate;
    g.blockSize = blockSize;
    g.factor = 1;
    while (sampleRate >= kLowestCoarseRate * static_cast<float>(2 * g.factor))
        g.factor *= 2;
    g.thin = std::max(1, g.factor / 4);
    g.coarseRate = sampleRate / static_cast<float>(g.factor);
    g.middleRate = sampleRate / static_cast<float>(g.thin);
    g.filterDelay = 8 * g.factor;
    g.longestLag = geometry.maxPeriod / g.factor - 1;
    g.halfSpan = g.longestLag + 2;
    g.recordDelay = g.halfSpan * g.factor + g.filterDelay;
    g.coarseLength = 2 * g.halfSpan + 3;
    g.middleLength = geometry.inputRingLength / g.thin;
    g.longestPeriod = geometry.maxPeriod;

    const int lead = geometry.lead + blockSize;
    g.depth = std::min(kMostDepth, (lead - g.recordDelay - g.factor) / blockSize);
    assert(g.depth >= kLeastDepth && g.depth < geometry.recordCount);
    return g;
}

}  // namespace orvane
