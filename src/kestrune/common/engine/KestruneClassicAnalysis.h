// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneHarmonicComb.h"
#include "kestrune/common/engine/KestruneRecordRing.h"
#include "kestrune/common/engine/KestruneSpectrum.h"

#include <cstdint>

namespace orvane
{

class KestruneStereoRing;
struct KestruneGeometry;

/// The listening half of the classic tracking: finds the pitch of the newest frame in its spectrum
/// and writes a record of it, then repairs the record that is four blocks old.
///
/// A block is taken in by Begin and worked off in steps, whose cost is counted in units of about a
/// thousand processor instructions in blocks of 512 samples; all costs grow with the block.
///
/// Its records are needed some blocks later only. Whoever has other work for a while can have it
/// fall behind the input and make up for that afterwards; the records are the same.
class KestruneClassicAnalysis
{
public:
    /// What Begin adds to the work of a block.
    enum class Pace
    {
        kFull,     // a frame, and half a frame more while it is behind
        kReduced,  // so much less that after kReducedBlocks it is as far behind as the records
                   // allow
    };
    static constexpr int kReducedBlocks = 19;

    /// Throws as KestruneSpectrum::Allocate; std::bad_alloc if memory is short. [setup]
    void Allocate(const KestruneGeometry& geometry, float sampleRate, int blockSize);
    /// Frequency range in Hz. What was heard stays; the frame that is begun is finished.
    /// [audio thread]
    void SetRange(float lowHz, float highHz) noexcept;
    /// Forgets what was heard and what waits to be listened to, but not the records.
    /// [audio thread]
    void Reset() noexcept;
    /// Sets all records to no voice, in the middle of the range. Nothing must wait. [audio thread]
    void ClearRecords() noexcept;

    /// Takes in the newest block of the input, which ends before the stream position end; the work
    /// of the block before must be done. reference: as in KestruneStereoRing::ReadMono. The input
    /// must keep the frames that wait. [audio thread]
    void Begin(const KestruneStereoRing& input, std::int64_t end, std::int16_t reference,
               Pace pace) noexcept;
    /// Cost of the steps until the work of the block is done. [audio thread]
    [[nodiscard]] int WorkLeft() const noexcept { return mWorkLeft; }
    /// Cost of the next step; something must wait. [audio thread]
    [[nodiscard]] int NextCost() const noexcept { return mNextCost; }
    /// Does the next step; something must wait. [audio thread]
    void Step() noexcept;
    /// Whether frames wait, of this block or of earlier ones. [audio thread]
    [[nodiscard]] bool IsBehind() const noexcept { return mFrameWork > 0 || mWaitingFrames > 0; }

    [[nodiscard]] const KestruneRecordRing& Records() const noexcept { return mRecords; }

private:
    [[nodiscard]] int CostOf(int step) const noexcept;
    [[nodiscard]] int StepCount() const noexcept;
    void BeginFrame() noexcept;
    void Do(int step) noexcept;
    /// Begins anew with the next block.
    void DropFrames() noexcept;
    void CountWork() noexcept;
    /// Upper edge of the analysed band, in Hz.
    [[nodiscard]] float SpectrumTop() const noexcept;
    [[nodiscard]] KestruneSpectrum::Band Band() const noexcept;
    /// Does a part of the transform or, after the last, shapes the spectrum.
    void AnalyseSpectrum(int part) noexcept;
    void AddRecord() noexcept;

    float mSampleRate = 44100.0f;  // Hz
    int mBlockSize = 512;
    int mFftSize = 0;
    int mLead = 0;           // of the newest input before the synthesis, in samples
    float mLowest = 100.0f;  // candidate, Hz
    float mHighest = 1300.0f;
    KestruneSpectrum mSpectrum;
    KestruneHarmonicComb mComb;
    KestruneRecordRing mRecords;

    const KestruneStereoRing* mInput = nullptr;  // while frames wait
    std::int64_t mNewest = 0;                    // end of the newest block, a stream position
    std::int16_t mReference = 0;
    int mFrameCost = 0;
    int mMostBehind = 0;     // frames
    int mWaitingFrames = 0;  // that are not begun
    int mMayWait = 0;        // cost that need not be done with this block

    std::int64_t mEnd = 0;  // of the frame, a stream position
    int mStep = 0;          // the next
    int mFrameWork = 0;     // cost of its steps that are left
    int mNextCost = 0;
    int mWorkLeft = 0;
    float mGate = 0.0f;     // of the frame's level, 0 .. 1
    float mVoicing = 0.0f;  // of the frame, 0 .. 1
};

}  // namespace orvane
