// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneFineGeometry.h"

#include <array>
#include <vector>

namespace orvane
{

class KestruneHistory;

/// One reading of the pitch at a moment.
struct KestrunePitchCandidate
{
    float period = 0.0f;    // samples; 0 for "unvoiced"
    float octaves = 0.0f;   // log2 of the period
    float strength = 0.0f;  // how much speaks for it
};

/// Readings of one moment: "unvoiced" first, then up to eight periods in any order.
struct KestrunePitchReadings
{
    static constexpr int kMost = 9;

    int count = 0;
    std::array<KestrunePitchCandidate, kMost> candidates{};
};

/// Finds the periods that may be the pitch in the middle of the coarse history: the peaks of the
/// normalised correlation over all lags of the frequency range. The two stretches that are compared
/// lie evenly around the moment, so that the period of a gliding voice is that of the moment.
class KestrunePitchCandidates
{
public:
    /// [setup]
    void Allocate(const KestruneFineGeometry& geometry);
    /// Range of the pitch in Hz; readings reach a semitone above and three below, to hear a voice
    /// at the border. A range whose lowest is above its highest hears no voice. [audio thread]
    void SetRange(float lowHz, float highHz) noexcept;

    /// [audio thread]
    [[nodiscard]] KestrunePitchReadings Find(const KestruneHistory& coarse) noexcept;

private:
    void SumSquares(const KestruneHistory& coarse) noexcept;
    [[nodiscard]] double Energy(int first, int count) const noexcept;
    [[nodiscard]] float LevelGate() const noexcept;
    /// Normalised correlation of a lag; computed once a frame.
    [[nodiscard]] float Clarity(int lag) noexcept;
    /// The correlation between lags, at lag + offset.
    [[nodiscard]] double Between(int lag, double offset) noexcept;
    [[nodiscard]] KestrunePitchCandidate Reading(int lag, float gate) noexcept;

    KestruneFineGeometry mGeometry;
    int mStretch = 0;  // coarse samples that are compared at least
    int mLowLag = 0;   // coarse samples
    int mHighLag = 0;
    const float* mSamples = nullptr;  // the coarse history while Find runs
    std::vector<double> mSquares;     // sum of the squares before each sample
    std::vector<float> mClarity;      // by lag; kUnknown until it is computed
};

}  // namespace orvane
