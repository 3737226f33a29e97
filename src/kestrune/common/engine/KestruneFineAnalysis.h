// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneFineGeometry.h"
#include "kestrune/common/engine/KestruneListener.h"
#include "kestrune/common/engine/KestruneNoteChoice.h"
#include "kestrune/common/engine/KestrunePeriodRefiner.h"
#include "kestrune/common/engine/KestrunePitchCandidates.h"
#include "kestrune/common/engine/KestrunePitchPath.h"
#include "kestrune/common/engine/KestruneRecordRing.h"
#include "kestrune/common/engine/KestruneVibrato.h"

#include <array>
#include <cstdint>
#include <vector>

namespace orvane
{

struct KestruneGeometry;
class KestruneStereoRing;

/// The listening half of the fine tracking. Each block adds a record; a record is settled some
/// blocks later, when what followed has decided on it: whether there is a voice, its exact period,
/// and the note that it is meant to be on.
///
/// A block is taken in by Begin and worked off in steps, as by KestruneClassicAnalysis.
///
/// In a settled record, strength is the clarity of the voice, hold is 1 for a voice and 0 for
/// none, and period without a voice is that of the last one.
class KestruneFineAnalysis
{
public:
    /// Blocks after a restart until the synthesis can be led by the records.
    static constexpr int kSettlingBlocks = 19;

    /// [setup]
    void Allocate(const KestruneGeometry& geometry, float sampleRate, int blockSize);
    /// Frequency range in Hz. What was heard stays. The block's work must be done. [audio thread]
    void SetRange(float lowHz, float highHz) noexcept;
    /// The notes may change while the block's work is done. [audio thread]
    [[nodiscard]] KestruneNoteChoice& Notes() noexcept { return mNotes; }
    /// Forgets what was heard; the next block begins at this stream position. The block's work must
    /// be done. [audio thread]
    void Restart(std::int64_t position) noexcept;

    /// Takes in the newest block of the input, which ends before the stream position end; the work
    /// of the block before must be done. reference: as in KestruneStereoRing::ReadMono.
    /// [audio thread]
    void Begin(const KestruneStereoRing& input, std::int64_t end, std::int16_t reference) noexcept;
    /// Cost of the steps until the work of the block is done. [audio thread]
    [[nodiscard]] int WorkLeft() const noexcept { return mWorkLeft; }
    /// Cost of the next step; there must be work left. [audio thread]
    [[nodiscard]] int NextCost() const noexcept { return mNextCost; }
    /// Does the next step; there must be work left. [audio thread]
    void Step() noexcept;

    [[nodiscard]] const KestruneRecordRing& Records() const noexcept { return mRecords; }
    [[nodiscard]] const KestruneFineGeometry& Geometry() const noexcept { return mGeometry; }
    /// The settled record nearest to a stream position, as its age in blocks. [audio thread]
    [[nodiscard]] int SettledNear(double time) const noexcept;

private:
    /// Pitches before a record in which a vibrato is looked for.
    static constexpr int kEarlierPitches = 10;

    /// What a block's work consists of, in this order. Some have parts, of which each is a step.
    enum class Task
    {
        kListen,
        kSumSquares,
        kCorrelate,
        kFind,
        kRefine,
        kSettle,
        kFitVibrato,
        kChooseNote
    };
    static constexpr int kTasks = static_cast<int>(Task::kChooseNote) + 1;

    [[nodiscard]] int PartsOf(Task task) const noexcept;
    [[nodiscard]] int CostOf(Task task, int part) const noexcept;
    void Do(Task task, int part) noexcept;
    void ListenToPiece(int piece) noexcept;
    void AddRecord() noexcept;
    void RefineRecord(int age) noexcept;
    void SettleRecord() noexcept;
    [[nodiscard]] bool IsVoiced() const noexcept;
    void GatherPitches() noexcept;
    void FitVibrato(int part) noexcept;
    void ChooseNote() noexcept;

    KestruneFineGeometry mGeometry;
    std::vector<float> mMono;    // the newest block
    Task mTask = Task::kListen;  // of the next step
    int mPart = 0;
    int mWorkLeft = 0;
    int mNextCost = 0;
    int mRefineCost = 0;
    bool mExpectsVoice = false;  // in the record that is settled
    KestruneListener mListener;
    KestrunePitchCandidates mCandidates;
    KestrunePitchPath mPath;
    KestrunePeriodRefiner mRefiner;
    // Around the record that is settled, in semitones: those before it, its own, those after it.
    std::array<double, kEarlierPitches + KestruneNoteChoice::kMostPitches> mPitches{};
    int mPitchCount = 0;  // 0 while there is no voice
    int mEarlierCount = 0;
    KestruneVibrato mVibrato;
    KestruneNoteChoice mNotes;
    KestruneRecordRing mRecords;
    float mHeldPeriod = 0.0f;  // of the last voice, in samples
};

}  // namespace orvane
