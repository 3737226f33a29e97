// SPDX-License-Identifier: GPL-3.0-or-later
// Prints how both trackings follow, correct and shift a voice whose pitch is known exactly.
#include "benchmarks/HarmonicVoice.h"
#include "kestrune/common/engine/PsolaClass.h"
#include "support/Measure.h"
#include "support/Signals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <numbers>
#include <random>
#include <span>
#include <string>
#include <vector>

using namespace orvane;

namespace
{

constexpr double kRate = 44100.0;
constexpr int kHop = 512;
constexpr std::array<float, 11> kChromatic{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};

struct Range
{
    const char* name;
    float low;
    float high;
};
constexpr Range kNormal{"Normal", 73.0f, 1318.0f};
constexpr Range kMale{"Male", 82.0f, 554.0f};
constexpr Range kFemale{"Female", 164.0f, 1109.0f};

std::unique_ptr<PsolaClass> readyEngine(KestruneTracking tracking, Range range = kNormal)
{
    auto engine = std::make_unique<PsolaClass>();
    engine->SetTracking(tracking);
    if (!engine->Initialize(kRate, kHop))
        std::abort();
    engine->SetFrequencyRange(range.low, range.high);
    engine->SetPitchReference(0);
    engine->SetScaleTones(kChromatic.data(), static_cast<int>(kChromatic.size()));
    engine->SetCorrectionTime(0.0f);
    return engine;
}

/// Returns the left channel, aligned with the input.
std::vector<float> run(PsolaClass& engine, const std::vector<float>& signal)
{
    const auto latency = static_cast<std::size_t>(engine.GetLatency());
    std::vector<float> in = signal;
    in.resize(signal.size() + latency + kHop);
    std::vector<float> left(in.size());
    std::vector<float> right(kHop);
    for (std::size_t at = 0; at + kHop <= in.size(); at += kHop) {
        const float* const inputs[] = {in.data() + at, in.data() + at};
        float* const outputs[] = {left.data() + at, right.data()};
        engine.Process(inputs, outputs, kHop);
    }
    left.erase(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(latency));
    left.resize(signal.size());
    return left;
}

double noteHz(double semitonesAboveA)
{
    return 440.0 * std::exp2(semitonesAboveA / 12.0);
}

struct Spread
{
    double median;
    double p95;
};

Spread spreadOf(std::vector<double> values)
{
    if (values.empty())
        return {0.0, 0.0};
    std::sort(values.begin(), values.end());
    return {values[values.size() / 2], values[values.size() * 95 / 100]};
}

/// A series of notes, each sung for a second.
struct Notes
{
    std::vector<double> semitones;  // above A4
    double off = 0.0;               // cents
    double vibrato = 0.0;           // cents each way, at 5.5 Hz

    [[nodiscard]] double PitchAt(double seconds) const
    {
        const auto index = std::min(static_cast<std::size_t>(seconds), semitones.size() - 1);
        const double swing = vibrato * std::sin(2.0 * std::numbers::pi * 5.5 * seconds);
        return noteHz(semitones[index] + (off + swing) / 100.0);
    }
};

Notes notesOf(bool isMale, double off, double vibrato)
{
    Notes notes;
    notes.off = off;
    notes.vibrato = vibrato;
    for (const int step : {0, 2, 5, 4, 7, 9, 12, 11, 3, 6})
        notes.semitones.push_back((isMale ? -24.0 : -12.0) + step);
    return notes;
}

/// Cents of the output from the note, from 0.3 s after its start on.
Spread correctionError(KestruneTracking tracking, const HarmonicVoice& voice, const Notes& notes,
                       Range range, double noiseDecibels)
{
    const auto seconds = static_cast<double>(notes.semitones.size());
    auto signal = voice.Sing(seconds, [&](double at) { return notes.PitchAt(at); });
    if (noiseDecibels < 0.0) {
        double power = 0.0;
        for (const float sample : signal)
            power += static_cast<double>(sample) * sample;
        power /= static_cast<double>(signal.size());
        const double amplitude = std::sqrt(3.0 * power) * std::pow(10.0, noiseDecibels / 20.0);
        const auto noise =
            whiteNoise(static_cast<float>(amplitude), static_cast<int>(signal.size()), 5);
        std::transform(signal.begin(), signal.end(), noise.begin(), signal.begin(),
                       std::plus<float>());
    }
    auto engine = readyEngine(tracking, range);
    engine->SetCorrectionEnabled(true);
    const auto output = run(*engine, signal);
    std::vector<double> errors;
    for (std::size_t note = 0; note < notes.semitones.size(); ++note)
        for (double at = 0.3; at < 0.9; at += 0.01) {
            const double hz = noteHz(notes.semitones[note]);
            const auto length = static_cast<std::size_t>(std::max(0.03, 3.0 / hz) * kRate);
            const auto centre = static_cast<std::size_t>((static_cast<double>(note) + at) * kRate);
            const std::span<const float> window(output.data() + centre - length / 2, length);
            errors.push_back(std::fabs(centsBetween(measurePitch(window, kRate, hz), hz)));
        }
    return spreadOf(errors);
}

void printCorrection()
{
    std::puts("Cents of the corrected voice from the note, median / 95 %: man, woman");
    struct Row
    {
        const char* name;
        double off;
        double vibrato;
        double noise;
        double fundamental;
        bool ownRange;
    };
    const Row rows[] = {{"clean", 30, 0, 0, 1, false},
                        {"clean, in the range Male, Female", 30, 0, 0, 1, true},
                        {"white noise at 20 dB", 30, 0, -20, 1, false},
                        {"weak fundamental", 30, 0, 0, 0.03, false},
                        {"vibrato of 30 cents", 0, 30, 0, 1, false},
                        {"vibrato of 50 cents, 20 off", 20, 50, 0, 1, false}};
    for (const Row& row : rows) {
        std::printf("  %-34s", row.name);
        for (const auto tracking : {KestruneTracking::kClassic, KestruneTracking::kFine}) {
            for (const bool isMale : {true, false}) {
                HarmonicVoice voice = isMale ? maleVoice('a') : femaleVoice('a');
                voice.fundamental = row.fundamental;
                const Range range = !row.ownRange ? kNormal : isMale ? kMale : kFemale;
                const Spread spread = correctionError(
                    tracking, voice, notesOf(isMale, row.off, row.vibrato), range, row.noise);
                std::printf("  %6.2f / %6.2f", spread.median, spread.p95);
            }
            std::fputs(tracking == KestruneTracking::kClassic ? "   |" : "\n", stdout);
        }
    }
}

}  // namespace

int main()
{
    printCorrection();
    return 0;
}
