// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestrunePitchPath.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr float kCostPerOctave = 0.35f;
constexpr float kVoicingCost = 0.14f;

float costBetween(const KestrunePitchCandidate& a, const KestrunePitchCandidate& b)
{
    const bool voicedA = a.period > 0.0f;
    const bool voicedB = b.period > 0.0f;
    if (voicedA != voicedB)
        return kVoicingCost;
    return voicedA ? kCostPerOctave * std::fabs(a.octaves - b.octaves) : 0.0f;
}

}  // namespace

void KestrunePitchPath::Allocate(int depth)
{
    assert(depth > 0);
    mFrames.resize(static_cast<std::size_t>(depth) + 1);
    mPeriods.resize(mFrames.size());
    Restart();
}

void KestrunePitchPath::Restart() noexcept
{
    Frame unvoiced;
    unvoiced.readings.count = 1;
    std::fill(mFrames.begin(), mFrames.end(), unvoiced);
    std::fill(mPeriods.begin(), mPeriods.end(), 0.0f);
    mNewest = 0;
}

KestrunePitchPath::Frame& KestrunePitchPath::Back(int age) noexcept
{
    const auto count = static_cast<int>(mFrames.size());
    assert(age >= 0 && age < count);
    return mFrames[static_cast<std::size_t>((mNewest - age + count) % count)];
}

void KestrunePitchPath::Add(const KestrunePitchReadings& readings) noexcept
{
    assert(readings.count >= 1 && readings.count <= KestrunePitchReadings::kMost);
    const Frame& before = Back(0);
    mNewest = (mNewest + 1) % static_cast<int>(mFrames.size());
    Frame& frame = Back(0);
    frame.readings = readings;
    Score(frame, before);
    TraceBack();
}

void KestrunePitchPath::Score(Frame& frame, const Frame& before) noexcept
{
    float largest = 0.0f;
    for (std::size_t j = 0; j < static_cast<std::size_t>(frame.readings.count); ++j) {
        const KestrunePitchCandidate& candidate = frame.readings.candidates[j];
        float best = 0.0f;
        for (std::size_t i = 0; i < static_cast<std::size_t>(before.readings.count); ++i) {
            const float score =
                before.score[i] - costBetween(before.readings.candidates[i], candidate);
            if (i > 0 && score <= best)
                continue;
            best = score;
            frame.origin[j] = static_cast<int>(i);
        }
        frame.score[j] = candidate.strength + best;
        largest = j == 0 ? frame.score[j] : std::max(largest, frame.score[j]);
    }
    // Keeps the scores small, however long the voice.
    for (std::size_t j = 0; j < static_cast<std::size_t>(frame.readings.count); ++j)
        frame.score[j] -= largest;
}

void KestrunePitchPath::TraceBack() noexcept
{
    const Frame& newest = Back(0);
    const auto end = newest.score.begin() + newest.readings.count;
    auto at = static_cast<int>(std::max_element(newest.score.begin(), end) - newest.score.begin());
    for (std::size_t age = 0; age < mPeriods.size(); ++age) {
        const Frame& frame = Back(static_cast<int>(age));
        mPeriods[age] = frame.readings.candidates[static_cast<std::size_t>(at)].period;
        at = frame.origin[static_cast<std::size_t>(at)];
    }
}

float KestrunePitchPath::PeriodBack(int age) const noexcept
{
    assert(age >= 0 && age < static_cast<int>(mPeriods.size()));
    return mPeriods[static_cast<std::size_t>(age)];
}

}  // namespace orvane
