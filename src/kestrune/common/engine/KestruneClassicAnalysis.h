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
class KestruneClassicAnalysis
{
public:
    /// Throws as KestruneSpectrum::Allocate; std::bad_alloc if memory is short. [setup]
    void Allocate(const KestruneGeometry& geometry, float sampleRate, int blockSize);
    /// Frequency range in Hz. What was heard stays. The block's work must be done. [audio thread]
    void SetRange(float lowHz, float highHz) noexcept;
    /// Forgets what was heard, but not the records. The block's work must be done. [audio thread]
    void Reset() noexcept;
    /// Sets all records to no voice, in the middle of the range. The block's work must be done.
    /// [audio thread]
    void ClearRecords() noexcept;

    /// Takes in the newest block of the input, which ends before the stream position end; the work
    /// of the block before must be done. reference: as in KestruneStereoRing::ReadMono. The input
    /// must not change until the work is done. [audio thread]
    void Begin(const KestruneStereoRing& input, std::int64_t end, std::int16_t reference) noexcept;
    /// Cost of the steps until the work of the block is done. [audio thread]
    [[nodiscard]] int WorkLeft() const noexcept { return mWorkLeft; }
    /// Cost of the next step; there must be work left. [audio thread]
    [[nodiscard]] int NextCost() const noexcept { return CostOf(mStep); }
    /// Does the next step; there must be work left. [audio thread]
    void Step() noexcept;

    [[nodiscard]] const KestruneRecordRing& Records() const noexcept { return mRecords; }

private:
    [[nodiscard]] int CostOf(int step) const noexcept;
    [[nodiscard]] int StepCount() const noexcept;
    /// Upper edge of the analysed band, in Hz.
    [[nodiscard]] float SpectrumTop() const noexcept;
    [[nodiscard]] KestruneSpectrum::Band Band() const noexcept;
    /// Does a part of the transform or, after the last, shapes the spectrum.
    void AnalyseSpectrum(int part) noexcept;
    void AddRecord() noexcept;

    float mSampleRate = 44100.0f;  // Hz
    int mBlockSize = 512;
    int mFftSize = 0;
    float mLowest = 100.0f;  // candidate, Hz
    float mHighest = 1300.0f;
    KestruneSpectrum mSpectrum;
    KestruneHarmonicComb mComb;
    KestruneRecordRing mRecords;

    const KestruneStereoRing* mInput = nullptr;  // while there is work left
    std::int64_t mEnd = 0;                       // of the block, a stream position
    std::int16_t mReference = 0;
    int mStep = 0;  // the next
    int mWorkLeft = 0;
    float mGate = 0.0f;     // of the frame's level, 0 .. 1
    float mVoicing = 0.0f;  // of the frame, 0 .. 1
};

}  // namespace orvane
