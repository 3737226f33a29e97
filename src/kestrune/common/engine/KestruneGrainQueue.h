// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneFlankedGrain.h"
#include "kestrune/common/engine/KestruneGrain.h"

#include <cstdint>
#include <vector>

namespace orvane
{

class KestruneStereoRing;
struct KestruneGeometry;

/// A grain that has its place: where it is cut, and where and how it sounds.
struct KestrunePlacedGrain
{
    double inputMark = 0.0;  // stream positions, in samples
    double outputMark = 0.0;
    float formantFactor = 1.0f;
    int length = 0;  // samples of a KestruneGrain; 0 for a KestruneFlankedGrain
    KestruneFlankedGrain::Flanks flanks{};
};

/// Grains between placing and sounding. To place a grain takes the settings and the pitch of the
/// moment and costs nothing; to cut it and add it to the output is the dear part, which can wait
/// until the output is taken from the ring. Grains sound in the order in which they are placed.
class KestruneGrainQueue
{
public:
    /// Throws std::bad_alloc if memory is short. [setup]
    void Allocate(const KestruneGeometry& geometry, int blockSize);
    /// Drops all grains. [audio thread]
    void Clear() noexcept;

    /// Adds a grain. When there is no room for it those before it sound first. [audio thread]
    void Place(const KestrunePlacedGrain& grain, const KestruneStereoRing& input,
               KestruneStereoRing& output) noexcept;
    /// Number of grains that have not sounded yet. [audio thread]
    [[nodiscard]] int Count() const noexcept { return mCount - mNext; }
    /// Cost of the grains that have not sounded, and of the next of them, which there must be, in
    /// the units of KestruneClassicAnalysis. [audio thread]
    [[nodiscard]] int WorkLeft() const noexcept { return mWorkLeft; }
    [[nodiscard]] int NextCost() const noexcept;
    /// A stream position that no grain in the queue begins before; the queue must not be empty.
    /// [audio thread]
    [[nodiscard]] std::int64_t Begin() const noexcept { return mBegin; }
    /// Cuts the next grain and adds it to the output; there must be one. [audio thread]
    void SoundNext(const KestruneStereoRing& input, KestruneStereoRing& output) noexcept;

private:
    /// More than the grains of a block, but for the highest voices moved up an octave.
    static constexpr int kMost = 32;

    [[nodiscard]] int CostOf(const KestrunePlacedGrain& grain) const noexcept;

    int mBlockSize = 0;
    KestruneGrain mGrain;
    KestruneFlankedGrain mFlankedGrain;
    std::vector<KestrunePlacedGrain> mPlaced;
    int mCount = 0;
    int mNext = 0;
    int mWorkLeft = 0;
    std::int64_t mBegin = 0;
};

}  // namespace orvane
