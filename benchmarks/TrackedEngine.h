// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "benchmarks/HarmonicVoice.h"
#include "kestrune/common/engine/KestruneScales.h"
#include "kestrune/common/engine/PsolaClass.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

namespace orvane
{

/// What the figures of both trackings share.

inline constexpr double kTrackedRate = 44100.0;
inline constexpr int kTrackedHop = 512;
inline constexpr KestruneTracking kTrackings[] = {KestruneTracking::kClassic,
                                                  KestruneTracking::kFine};

/// Choices of the element `sourceType`.
enum Source
{
    kNormal,
    kMale,
    kFemale,
    kLower,
    kUpper
};

/// An engine that corrects at once to the semitones of A = 440 Hz as soon as correction is on.
inline std::unique_ptr<PsolaClass> trackedEngine(KestruneTracking tracking, int source = kNormal)
{
    constexpr std::array<float, 11> kChromatic{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    auto engine = std::make_unique<PsolaClass>();
    engine->SetTracking(tracking);
    if (!engine->Initialize(static_cast<float>(kTrackedRate), kTrackedHop))
        std::abort();
    const KestruneSourceRange range = sourceRange(source);
    engine->SetFrequencyRange(range.lowHz, range.highHz);
    engine->SetPitchReference(0);
    engine->SetScaleTones(kChromatic.data(), static_cast<int>(kChromatic.size()));
    engine->SetCorrectionTime(0.0f);
    return engine;
}

/// Processes a signal, calling atBlock(index) before each block; returns the left channel, aligned
/// with the input.
template <class AtBlock>
std::vector<float> runAligned(PsolaClass& engine, const std::vector<float>& signal,
                              const AtBlock& atBlock)
{
    const auto latency = static_cast<std::size_t>(engine.GetLatency());
    std::vector<float> in = signal;
    in.resize(signal.size() + latency + kTrackedHop);
    std::vector<float> left(in.size());
    std::vector<float> right(kTrackedHop);
    for (std::size_t at = 0; at + kTrackedHop <= in.size(); at += kTrackedHop) {
        atBlock(at / kTrackedHop);
        const float* const inputs[] = {in.data() + at, in.data() + at};
        float* const outputs[] = {left.data() + at, right.data()};
        engine.Process(inputs, outputs, kTrackedHop);
    }
    const auto first = left.begin() + static_cast<std::ptrdiff_t>(latency);
    return {first, first + static_cast<std::ptrdiff_t>(signal.size())};
}

inline std::vector<float> runAligned(PsolaClass& engine, const std::vector<float>& signal)
{
    return runAligned(engine, signal, [](std::size_t) {});
}

inline double noteHz(double semitonesAboveA)
{
    return 440.0 * std::exp2(semitonesAboveA / 12.0);
}

inline HarmonicVoice voiceOf(bool isMale, char vowel)
{
    return isMale ? maleVoice(vowel) : femaleVoice(vowel);
}

/// A stretch of a signal around a time, both in seconds.
inline std::span<const float> around(const std::vector<float>& signal, double seconds,
                                     double length)
{
    const auto count = static_cast<std::size_t>(length * kTrackedRate);
    const auto first = static_cast<std::size_t>((seconds - length / 2.0) * kTrackedRate);
    return std::span(signal).subspan(first, count);
}

/// Median and 95th percentile.
struct Spread
{
    explicit Spread(std::vector<double> values)
    {
        if (values.empty())
            return;
        std::sort(values.begin(), values.end());
        median = values[values.size() / 2];
        p95 = values[values.size() * 95 / 100];
    }

    double median = 0.0;
    double p95 = 0.0;
};

/// Prints two figures for a man and a woman, side by side for both trackings. measure(tracking,
/// isMale) returns them as a pair.
template <class Measure>
void printRow(const char* name, const char* format, const Measure& measure)
{
    std::printf("  %-38s", name);
    for (const KestruneTracking tracking : kTrackings) {
        for (const bool isMale : {true, false}) {
            const auto [first, second] = measure(tracking, isMale);
            std::printf(format, first, second);
        }
        std::fputs(tracking == KestruneTracking::kClassic ? "   |" : "\n", stdout);
        std::fflush(stdout);
    }
}

/// The tables of TrackingSounds.cpp: what comes out beside the corrected pitch.
void printSounds();

}  // namespace orvane
