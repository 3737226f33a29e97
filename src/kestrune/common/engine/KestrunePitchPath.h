// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestrunePitchCandidates.h"

#include <array>
#include <vector>

namespace orvane
{

/// The most likely course of the pitch through the readings of the last blocks, by dynamic
/// programming (A. Viterbi, 1967; for pitch: P. Boersma, "Accurate short-term analysis of the
/// fundamental frequency", IFA Proceedings 17, 1993): leaps of the period and changes between
/// voiced and unvoiced cost, so that what comes after decides on a doubtful moment.
class KestrunePitchPath
{
public:
    /// depth: records of look-ahead. [setup]
    void Allocate(int depth);
    /// Forgets all readings: unvoiced so far. [audio thread]
    void Restart() noexcept;
    /// Takes in the readings of the next block. [audio thread]
    void Add(const KestrunePitchReadings& readings) noexcept;
    /// The period age blocks ago on the best path, in samples; 0 for "unvoiced". age is at most the
    /// depth. [audio thread]
    [[nodiscard]] float PeriodBack(int age) const noexcept;

private:
    struct Frame
    {
        KestrunePitchReadings readings;
        std::array<float, KestrunePitchReadings::kMost> score{};
        std::array<int, KestrunePitchReadings::kMost> origin{};  // in the frame before
    };

    [[nodiscard]] Frame& Back(int age) noexcept;
    void Score(Frame& frame, const Frame& before) noexcept;
    void TraceBack() noexcept;

    std::vector<Frame> mFrames;
    int mNewest = 0;
    std::vector<float> mPeriods;  // of the best path, by age
};

}  // namespace orvane
