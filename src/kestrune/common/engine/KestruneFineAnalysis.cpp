// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneFineAnalysis.h"

#include "kestrune/common/engine/KestruneGeometry.h"
#include "kestrune/common/engine/KestruneStereoRing.h"
#include "kestrune/common/engine/KestruneVibrato.h"

#include <algorithm>
#include <array>
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
/// Pitches before a record in which a vibrato is looked for.
constexpr int kEarlierPitches = 10;

// The steps are: pieces to listen to, the candidates' energies, parts of their lags, and these,
// counted from the last.
constexpr int kPieces = 8;
constexpr int kFindStep = 2;
constexpr int kRefineStep = 1;
constexpr int kSettleStep = 0;
constexpr int kLastSteps = 3;
// In the units of KestruneClassicAnalysis.
constexpr int kListenCost = 2;
constexpr int kEnergyCost = 2;
constexpr int kCorrelateCost = 1;
constexpr int kLastCost = 4;

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

int KestruneFineAnalysis::StepCount() const noexcept
{
    return kPieces + 1 + mCandidates.PartCount() + kLastSteps;
}

int KestruneFineAnalysis::CostOf(int step) const noexcept
{
    if (step < kPieces)
        return kListenCost;
    if (step == kPieces)
        return kEnergyCost;
    return step < StepCount() - kLastSteps ? kCorrelateCost : kLastCost;
}

void KestruneFineAnalysis::Begin(const KestruneStereoRing& input, std::int64_t end,
                                 std::int16_t reference) noexcept
{
    assert(mWorkLeft == 0 && !mMono.empty());
    input.ReadMono(reference, input.Index(end - mGeometry.blockSize), mGeometry.blockSize,
                   mMono.data());
    mStep = 0;
    for (int step = 0; step < StepCount(); ++step)
        mWorkLeft += CostOf(step);
}

void KestruneFineAnalysis::Step() noexcept
{
    assert(mWorkLeft > 0);
    const int step = mStep++;
    mWorkLeft -= CostOf(step);
    if (step < kPieces)
        return ListenToPiece(step);
    if (step == kPieces)
        return mCandidates.Begin(mListener.Coarse());
    switch (StepCount() - 1 - step) {
    case kFindStep:
        mPath.Add(mCandidates.Find());
        return AddRecord();
    case kRefineStep:
        return RefineRecord(mGeometry.depth - kBridgedRecords);
    case kSettleStep:
        return SettleRecord();
    default:
        mCandidates.Correlate(step - kPieces - 1);
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
    ChooseNote(record);
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

void KestruneFineAnalysis::ChooseNote(KestruneAnalysisRecord& record) noexcept
{
    record.hasNote = record.hold > 0.0f;
    if (!record.hasNote)
        return mNotes.Release();
    // What was before, then this record and those after it.
    std::array<double, kEarlierPitches + KestruneNoteChoice::kMostPitches> pitches{};
    std::size_t count = 0;
    const auto add = [&](float period) {
        pitches[count++] = 12.0 * std::log2(static_cast<double>(mGeometry.sampleRate) /
                                            static_cast<double>(period));
    };
    int earlier = 0;
    while (earlier < kEarlierPitches && mRecords.Back(mGeometry.depth + earlier + 1).hasNote)
        ++earlier;
    for (int age = earlier; age > 0; --age)
        add(mRecords.Back(mGeometry.depth + age).period);
    add(record.period);
    for (int age = mGeometry.depth - 1; age >= 0 && mPath.PeriodBack(age) > 0.0f; --age)
        add(mPath.PeriodBack(age));
    const auto first = static_cast<std::size_t>(earlier);
    const std::span<double> course(pitches.data() + first, count - first);
    const double rate = static_cast<double>(mGeometry.sampleRate) / mGeometry.blockSize;
    // The notes that a wide vibrato swings over are not meant.
    if (const auto middle = vibratoMiddle({pitches.data(), count}, earlier, rate))
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
