// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneFineSynthesis.h"

#include "kestrune/common/engine/KestruneFineAnalysis.h"
#include "kestrune/common/engine/KestruneGrainQueue.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr double kDryStepSeconds = 0.004;
constexpr double kShortestFlank = 1.0;  // of the first grain of all, which follows none
constexpr float kVoicedHold = 0.5f;

/// Length of the cycle that begins at a stream position. The period of a moment is that of the
/// cycle around it, so it is read in the cycle's middle.
float cycleAt(const KestruneRecordRing& records, double time)
{
    return records.PeriodAt(time + static_cast<double>(records.PeriodAt(time)) / 2.0);
}

double semitonesOf(float period, float sampleRate)
{
    return 12.0 * std::log2(static_cast<double>(sampleRate) / static_cast<double>(period));
}

}  // namespace

void KestruneFineSynthesis::Allocate(const KestruneFineGeometry& geometry)
{
    mSampleRate = geometry.sampleRate;
    mDryStep = kDryStepSeconds * static_cast<double>(geometry.sampleRate);
    mLongestFlank = static_cast<double>(geometry.longestPeriod);
    mAlignment.Allocate(geometry.longestPeriod);
}

void KestruneFineSynthesis::Restart() noexcept
{
    mOnset = Onset::kNone;
    mInputPeriod = 0.0f;
    mRatio = 1.0f;
    RestartCorrection();
}

void KestruneFineSynthesis::PlaceGrains(const KestruneFineAnalysis& analysis, Rings rings,
                                        KestruneMarks& marks, std::int64_t horizon, Shifts shifts,
                                        std::int16_t reference) noexcept
{
    const KestruneRecordRing& records = analysis.Records();
    while (static_cast<double>(horizon) > marks.output) {
        if (records.HoldAt(marks.output) < kVoicedHold) {
            mOnset = Onset::kNone;
            mInputPeriod = records.PeriodAt(marks.output);
            PlaceDryGrain(rings, marks, mDryStep);
            continue;
        }
        if (mOnset == Onset::kNone) {
            mOnset = Onset::kAligned;
            const double mark = marks.output;
            const float period =
                records.PeriodAt(mark + 2.0 * static_cast<double>(records.PeriodAt(mark)));
            const double wait = mAlignment.WaitAt(rings.input, reference, mark, period);
            if (wait >= 1.0) {
                mInputPeriod = period;
                PlaceDryGrain(rings, marks, wait);
                continue;
            }
        }
        PlaceVoicedGrain(analysis, rings, marks, shifts);
    }
}

void KestruneFineSynthesis::PlaceDryGrain(Rings rings, KestruneMarks& marks, double step) noexcept
{
    marks.input = marks.output;
    mRatio = 1.0f;
    RestartCorrection();
    Place(rings, marks, {std::clamp(marks.step, kShortestFlank, mLongestFlank), step}, 1.0f);
    marks.output += step;
    marks.step = step;
}

void KestruneFineSynthesis::PlaceVoicedGrain(const KestruneFineAnalysis& analysis, Rings rings,
                                             KestruneMarks& marks, Shifts shifts) noexcept
{
    const KestruneRecordRing& records = analysis.Records();
    const bool isFirst = mOnset == Onset::kAligned;
    if (isFirst) {
        marks.input = marks.output;
        mRightFlank = std::clamp(marks.step, kShortestFlank, mLongestFlank);
    }
    float period = cycleAt(records, marks.input);
    while (std::fabs(marks.input + static_cast<double>(period) - marks.output) <
           std::fabs(marks.input - marks.output))
    {
        marks.input += static_cast<double>(period);
        period = cycleAt(records, marks.input);
    }
    mRatio = shifts.pitchFactor;
    if (shifts.isCorrected)
        mRatio *= Correct(analysis, marks.input, period);
    mOnset = Onset::kPast;
    mInputPeriod = period;
    Place(rings, marks, {mRightFlank, static_cast<double>(period)}, shifts.formantFactor);
    mRightFlank = static_cast<double>(period);
    marks.step = static_cast<double>(period / mRatio);
    marks.output += marks.step;
}

void KestruneFineSynthesis::Place(Rings rings, const KestruneMarks& marks,
                                  KestruneFlankedGrain::Flanks flanks, float formantFactor) noexcept
{
    KestrunePlacedGrain grain;
    grain.inputMark = marks.input;
    grain.outputMark = marks.output;
    grain.formantFactor = formantFactor;
    grain.flanks = flanks;
    rings.grains.Place(grain, rings.input, rings.output);
}

float KestruneFineSynthesis::Correct(const KestruneFineAnalysis& analysis, double inputMark,
                                     float period) noexcept
{
    const KestruneRecordRing& records = analysis.Records();
    const int settled = analysis.Geometry().depth;
    int age = analysis.SettledNear(inputMark);
    if (!records.Back(age).hasNote) {
        if (age > settled && records.Back(age - 1).hasNote)
            --age;
        else if (age + 1 < records.Count() && records.Back(age + 1).hasNote)
            ++age;
    }
    const KestruneAnalysisRecord& record = records.Back(age);
    if (!record.hasNote || record.isLeft) {
        if (mOnset == Onset::kAligned)
            mGlide.Start(1.0f);
        return mGlide.Step(1.0f);
    }
    if (mOnset != Onset::kAligned)
        return mGlide.Step(
            static_cast<float>(std::exp2((record.note - semitonesOf(period, mSampleRate)) / 12.0)));

    // The first grain starts where a gradual correction would arrive.
    double pitch = semitonesOf(period, mSampleRate);
    if (mGlide.IsGradual()) {
        double sum = 0.0;
        int count = 0;
        for (int newer = age; newer >= settled; --newer) {
            const KestruneAnalysisRecord& next = records.Back(newer);
            if (!next.hasNote || next.note != record.note)
                break;
            sum += semitonesOf(next.period, mSampleRate);
            ++count;
        }
        pitch = sum / count;
    }
    mGlide.Start(static_cast<float>(std::exp2((record.note - pitch) / 12.0)));
    return mGlide.Ratio();
}

}  // namespace orvane
