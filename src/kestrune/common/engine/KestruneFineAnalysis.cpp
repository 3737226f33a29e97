// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneFineAnalysis.h"

#include "kestrune/common/engine/KestruneGeometry.h"
#include "kestrune/common/engine/KestruneStereoRing.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <span>

namespace orvane
{

namespace
{

constexpr float kStartingHz = 220.0f;  // of the held period, until there is a voice
constexpr float kVoicedClarity = 0.40f;
/// A voice goes on through this many unclear records.
constexpr int kBridgedRecords = 3;
/// The path has changed when its period differs by more, as a share.
constexpr float kChangedPath = 0.04f;

constexpr int kPieces = 8;  // that a block is listened to in
// In the units of KestruneClassicAnalysis.
constexpr int kListenCost = 5;
constexpr int kSquaresCost = 10;
constexpr int kFindCost = 3;
constexpr int kSettleCost = 2;
constexpr int kVibratoCost = 4;
constexpr int kChooseCost = 12;
constexpr int kCostWithoutVoice = 1;  // of each of these, and of the refinement

}  // namespace

void KestruneFineAnalysis::Allocate(const KestruneGeometry& geometry, float sampleRate,
                                    int blockSize)
{
    mGeometry = KestruneFineGeometry::For(sampleRate, blockSize, geometry);
    mMono.assign(static_cast<std::size_t>(blockSize), 0.0f);
    mListener.Allocate(mGeometry);
    mCandidates.Allocate(mGeometry);
    mPath.Allocate(mGeometry.depth);
    mRefiner.Allocate(mGeometry);
    mRecords.Allocate(geometry.recordCount);
    mWorkLeft = 0;
}

void KestruneFineAnalysis::SetRange(float lowHz, float highHz) noexcept
{
    assert(mWorkLeft == 0);
    mListener.SetLowest(lowHz);
    mCandidates.SetRange(lowHz, highHz);
}

void KestruneFineAnalysis::Restart(std::int64_t position) noexcept
{
    assert(mWorkLeft == 0);
    mListener.Restart(position);
    mPath.Restart();
    mNotes.Release();
    mHeldPeriod = mGeometry.sampleRate / kStartingHz;
    mRecords.Fill(mHeldPeriod);
}

int KestruneFineAnalysis::PartsOf(Task task) const noexcept
{
    switch (task) {
    case Task::kListen:
        return kPieces;
    case Task::kCorrelate:
        return mCandidates.PartCount();
    case Task::kFitVibrato:
        return KestruneVibrato::kParts;
    default:
        return 1;
    }
}

int KestruneFineAnalysis::CostOf(Task task, int part) const noexcept
{
    switch (task) {
    case Task::kListen:
        return kListenCost;
    case Task::kSumSquares:
        return kSquaresCost;
    case Task::kCorrelate:
        return mCandidates.CostOf(part);
    case Task::kFind:
        return kFindCost;
    case Task::kRefine:
        return mRefineCost;
    case Task::kSettle:
        return kSettleCost;
    case Task::kFitVibrato:
        return mExpectsVoice ? kVibratoCost : kCostWithoutVoice;
    case Task::kChooseNote:
        return mExpectsVoice ? kChooseCost : kCostWithoutVoice;
    }
    return 0;
}

void KestruneFineAnalysis::Begin(const KestruneStereoRing& input, std::int64_t end,
                                 std::int16_t reference) noexcept
{
    assert(mWorkLeft == 0 && !mMono.empty());
    input.ReadMono(reference, input.Index(end - mGeometry.blockSize), mGeometry.blockSize,
                   mMono.data());
    mTask = Task::kListen;
    mPart = 0;
    // The newest reading hardly ever changes the path so far back.
    const float refined = mPath.PeriodBack(mGeometry.depth - kBridgedRecords - 1);
    mRefineCost = refined > 0.0f ? mRefiner.CostOf(refined) : kCostWithoutVoice;
    mExpectsVoice = mPath.PeriodBack(mGeometry.depth - 1) > 0.0f;
    for (int task = 0; task < kTasks; ++task)
        for (int part = 0; part < PartsOf(Task{task}); ++part)
            mWorkLeft += CostOf(Task{task}, part);
    mNextCost = CostOf(mTask, mPart);
}

void KestruneFineAnalysis::Step() noexcept
{
    assert(mWorkLeft > 0);
    mWorkLeft -= mNextCost;
    Do(mTask, mPart);
    for (++mPart; mPart >= PartsOf(mTask) && mTask != Task::kChooseNote; mPart = 0)
        mTask = Task{static_cast<int>(mTask) + 1};
    mNextCost = CostOf(mTask, mPart);
}

void KestruneFineAnalysis::Do(Task task, int part) noexcept
{
    switch (task) {
    case Task::kListen:
        return ListenToPiece(part);
    case Task::kSumSquares:
        return mCandidates.Begin(mListener.Coarse());
    case Task::kCorrelate:
        return mCandidates.Correlate(part);
    case Task::kFind:
        mPath.Add(mCandidates.Find());
        return AddRecord();
    case Task::kRefine:
        return RefineRecord(mGeometry.depth - kBridgedRecords);
    case Task::kSettle:
        return SettleRecord();
    case Task::kFitVibrato:
        return FitVibrato(part);
    case Task::kChooseNote:
        return ChooseNote();
    }
}

void KestruneFineAnalysis::ListenToPiece(int piece) noexcept
{
    const int begin = piece * mGeometry.blockSize / kPieces;
    const int end = (piece + 1) * mGeometry.blockSize / kPieces;
    mListener.Listen(mMono.data() + begin, end - begin);
}

void KestruneFineAnalysis::AddRecord() noexcept
{
    KestruneAnalysisRecord record;
    record.time =
        static_cast<double>((mListener.Coarse().Newest() - mGeometry.halfSpan) * mGeometry.factor -
                            mGeometry.filterDelay);
    record.period = mHeldPeriod;
    mRecords.Append(record);
}

void KestruneFineAnalysis::RefineRecord(int age) noexcept
{
    KestruneAnalysisRecord& record = mRecords.Back(age);
    const float period = mPath.PeriodBack(age);
    record.period = mHeldPeriod;
    record.strength = 0.0f;
    if (period == 0.0f)
        return;
    const KestruneRefinedPeriod refined = mRefiner.Refine(mListener.Middle(), record.time, period);
    // The lowest voices may be read a little below what the grains are sized for.
    record.period = std::min(refined.period, static_cast<float>(mGeometry.longestPeriod));
    record.strength = refined.clarity;
}

void KestruneFineAnalysis::SettleRecord() noexcept
{
    const int age = mGeometry.depth;
    KestruneAnalysisRecord& record = mRecords.Back(age);
    const float onPath = mPath.PeriodBack(age);
    // Also when the path ran through "unvoiced" here before, so that nothing has been measured.
    const bool hasChanged =
        record.strength == 0.0f || std::fabs(onPath - record.period) > kChangedPath * record.period;
    if (onPath > 0.0f && hasChanged)
        RefineRecord(age);

    const bool isVoiced = IsVoiced();
    record.hold = isVoiced ? 1.0f : 0.0f;
    if (isVoiced)
        mHeldPeriod = record.period;
    else
        record.period = mHeldPeriod;
    GatherPitches();
}

bool KestruneFineAnalysis::IsVoiced() const noexcept
{
    const int age = mGeometry.depth;
    if (mPath.PeriodBack(age) == 0.0f)
        return false;
    if (mRecords.Back(age).strength >= kVoicedClarity)
        return true;
    // The coarse path finds the note, and the clarity trims its ends to the cycle; a dip within the
    // note does not tear it.
    if (mRecords.Back(age + 1).hold == 0.0f)
        return false;
    for (int newer = 1; newer <= kBridgedRecords && mPath.PeriodBack(age - newer) > 0.0f; ++newer)
        if (mRecords.Back(age - newer).strength >= kVoicedClarity)
            return true;
    return false;
}

void KestruneFineAnalysis::GatherPitches() noexcept
{
    const KestruneAnalysisRecord& settled = mRecords.Back(mGeometry.depth);
    mPitchCount = 0;
    mEarlierCount = 0;
    if (settled.hold == 0.0f)
        return;
    const auto add = [this](float period) {
        mPitches[static_cast<std::size_t>(mPitchCount++)] =
            12.0 *
            std::log2(static_cast<double>(mGeometry.sampleRate) / static_cast<double>(period));
    };
    while (mEarlierCount < kEarlierPitches &&
           mRecords.Back(mGeometry.depth + mEarlierCount + 1).hasNote)
        ++mEarlierCount;
    for (int age = mEarlierCount; age > 0; --age)
        add(mRecords.Back(mGeometry.depth + age).period);
    add(settled.period);
    for (int age = mGeometry.depth - 1; age >= 0 && mPath.PeriodBack(age) > 0.0f; --age)
        add(mPath.PeriodBack(age));
    mVibrato.Begin({mPitches.data(), static_cast<std::size_t>(mPitchCount)}, mEarlierCount,
                   static_cast<double>(mGeometry.sampleRate) / mGeometry.blockSize);
}

void KestruneFineAnalysis::FitVibrato(int part) noexcept
{
    if (mPitchCount > 0)
        mVibrato.FitPart(part);
}

void KestruneFineAnalysis::ChooseNote() noexcept
{
    KestruneAnalysisRecord& record = mRecords.Back(mGeometry.depth);
    record.hasNote = mPitchCount > 0;
    if (!record.hasNote)
        return mNotes.Release();
    const auto count = static_cast<std::size_t>(mPitchCount - mEarlierCount);
    const std::span<double> course(mPitches.data() + mEarlierCount, count);
    // The notes that a wide vibrato swings over are not meant.
    if (const auto middle = mVibrato.Middle())
        std::fill(course.begin(), course.end(), *middle);
    const KestruneNoteChoice::Note note = mNotes.Choose(course);
    record.note = note.semitones;
    record.isLeft = note.isLeft;
}

int KestruneFineAnalysis::SettledNear(double time) const noexcept
{
    int nearest = mGeometry.depth;
    double least = std::fabs(mRecords.Back(nearest).time - time);
    for (int age = nearest + 1; age < mRecords.Count(); ++age) {
        const double distance = std::fabs(mRecords.Back(age).time - time);
        if (distance > least)
            break;
        least = distance;
        nearest = age;
    }
    return nearest;
}

}  // namespace orvane
