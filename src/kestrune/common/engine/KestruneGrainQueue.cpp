// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneGrainQueue.h"

#include "kestrune/common/engine/KestruneGeometry.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

/// Rounded down, and a sample earlier than the exact value for the ends of windows.
std::int64_t beginOf(const KestrunePlacedGrain& grain)
{
    const double before =
        grain.length > 0 ? static_cast<double>(grain.length / 2 + 1) : grain.flanks.left;
    const double reach = before / static_cast<double>(grain.formantFactor);
    return static_cast<std::int64_t>(std::floor(grain.outputMark - reach)) - 1;
}

}  // namespace

void KestruneGrainQueue::Allocate(const KestruneGeometry& geometry, int blockSize)
{
    assert(blockSize > 0);
    mBlockSize = blockSize;
    mGrain.Allocate(geometry.grainCapacity, geometry.resampledCapacity);
    mFlankedGrain.Allocate(geometry.maxPeriod);
    mPlaced.resize(kMost);
    Clear();
}

void KestruneGrainQueue::Clear() noexcept
{
    mCount = 0;
    mNext = 0;
    mWorkLeft = 0;
}

int KestruneGrainQueue::CostOf(const KestrunePlacedGrain& grain) const noexcept
{
    constexpr int kCostOfBlock = 8;
    const int length =
        grain.length > 0 ? grain.length : static_cast<int>(grain.flanks.left + grain.flanks.right);
    return 1 + kCostOfBlock * length / mBlockSize;
}

int KestruneGrainQueue::NextCost() const noexcept
{
    assert(Count() > 0);
    return CostOf(mPlaced[static_cast<std::size_t>(mNext)]);
}

void KestruneGrainQueue::Place(const KestrunePlacedGrain& grain, const KestruneStereoRing& input,
                               KestruneStereoRing& output) noexcept
{
    assert(!mPlaced.empty());
    while (mCount == kMost)
        SoundNext(input, output);
    mBegin = Count() == 0 ? beginOf(grain) : std::min(mBegin, beginOf(grain));
    mPlaced[static_cast<std::size_t>(mCount++)] = grain;
    mWorkLeft += CostOf(grain);
}

void KestruneGrainQueue::SoundNext(const KestruneStereoRing& input,
                                   KestruneStereoRing& output) noexcept
{
    assert(Count() > 0);
    const KestrunePlacedGrain grain = mPlaced[static_cast<std::size_t>(mNext++)];
    mWorkLeft -= CostOf(grain);
    if (mNext == mCount)
        Clear();
    if (grain.length == 0)
        return mFlankedGrain.Add(input, grain.inputMark, output, grain.outputMark, grain.flanks,
                                 grain.formantFactor);
    mGrain.Cut(input, grain.inputMark, grain.length);
    mGrain.AddTo(output, grain.outputMark, grain.formantFactor);
}

}  // namespace orvane
