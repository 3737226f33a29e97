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

    /// Begins with the newest moment. The history must not change until Find. [audio thread]
    void Begin(const KestruneHistory& coarse) noexcept;
    /// Number of parts that the lags are divided into. [audio thread]
    [[nodiscard]] int PartCount() const noexcept { return mPartCount; }
    /// Cost of Correlate, in the units of KestruneClassicAnalysis. [audio thread]
    [[nodiscard]] int CostOf(int part) const noexcept;
    /// Computes the correlations of a part's lags and reads their peaks, so that Find has little
    /// left to do. May be left out. [audio thread]
    void Correlate(int part) noexcept;
    /// The readings of the moment that Begin has begun with. [audio thread]
    [[nodiscard]] const KestrunePitchReadings& Find() noexcept;

private:
    void SumSquares(const KestruneHistory& coarse) noexcept;
    [[nodiscard]] double Energy(int first, int count) const noexcept;
    [[nodiscard]] float LevelGate() const noexcept;
    /// Normalised correlation of a lag; computed once a frame.
    [[nodiscard]] float Clarity(int lag) noexcept;
    /// The correlation between lags, at lag + offset.
    [[nodiscard]] double Between(int lag, double offset) noexcept;
    /// Reads the peaks that have not been read yet, up to the last lag but one before the end.
    void ReadPeaksBefore(int end) noexcept;
    [[nodiscard]] KestrunePitchCandidate Reading(int lag) noexcept;
    void Add(const KestrunePitchCandidate& candidate) noexcept;

    KestruneFineGeometry mGeometry;
    int mStretch = 0;  // coarse samples that are compared at least
    int mLowLag = 0;   // coarse samples
    int mHighLag = 0;
    int mPartCount = 0;
    const float* mSamples = nullptr;  // the coarse history from Begin to Find
    float mGate = 0.0f;               // of the moment's level, 0 .. 1
    std::vector<double> mSquares;     // sum of the squares before each sample
    std::vector<float> mClarity;      // by lag; kUnknown until it is computed
    int mLeftLag = 0;                 // before the next that may be a peak
    KestrunePitchReadings mReadings;
};

}  // namespace orvane
