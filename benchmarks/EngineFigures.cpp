// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/PsolaClass.h"
#include "support/Measure.h"
#include "support/Signals.h"
#include "tools/singer/Singer.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <span>
#include <vector>

using namespace orvane;

namespace
{

constexpr float kRate = 44100.0f;
constexpr int kHop = 512;

std::unique_ptr<PsolaClass> readyEngine()
{
    auto engine = std::make_unique<PsolaClass>();
    if (!engine->Initialize(kRate, kHop))
        std::abort();
    engine->SetFrequencyRange(73.0f, 1318.0f);
    engine->SetPitchReference(2);
    return engine;
}

std::vector<float> run(PsolaClass& engine, const std::vector<float>& signal)
{
    std::vector<float> left(signal.size());
    std::vector<float> right(kHop);
    for (std::size_t at = 0; at + kHop <= signal.size(); at += kHop) {
        const float* const inputs[] = {signal.data() + at, signal.data() + at};
        float* const outputs[] = {left.data() + at, right.data()};
        engine.Process(inputs, outputs, kHop);
    }
    return left;
}

std::span<const float> lastHalfSecond(const std::vector<float>& signal)
{
    return std::span(signal).last(static_cast<std::size_t>(kRate) / 2);
}

void printDetection()
{
    std::puts("Found pitch of full-band harmonic tones, cents from the truth");
    for (const double hz : {110.0, 196.0, 220.0, 330.0, 440.0}) {
        auto engine = readyEngine();
        run(*engine, harmonicTone(hz, kRate, 44100));
        std::printf("  %5.0f Hz  %+6.2f\n", hz, centsBetween(engine->GetInputPitch(), hz));
    }
}

void printTransposition()
{
    std::puts(
        "Transposition of a steady vowel at 220 Hz, cents from what the found pitch asks for");
    const auto voice = steadyVowel(Vowel::kA, 220.0, kRate, 2.5);
    double worst = 0.0;
    for (int semitone = -12; semitone <= 12; ++semitone) {
        auto engine = readyEngine();
        engine->SetTransposeEnabled(true);
        engine->SetPitchShift(static_cast<float>(semitone) / 12.0f);
        const auto output = run(*engine, voice);
        const double asked = engine->GetInputPitch() * std::exp2(semitone / 12.0);
        const double error =
            centsBetween(measurePitch(lastHalfSecond(output), kRate, asked), asked);
        worst = std::max(worst, std::fabs(error));
        std::printf("  %+3d  %+6.2f\n", semitone, error);
    }
    std::printf("  worst %.2f\n", worst);
}

void printFormants()
{
    std::puts("Movement of the formants under pitch shift alone, semitones");
    for (const Vowel vowel : {Vowel::kA, Vowel::kE, Vowel::kO}) {
        const auto voice = steadyVowel(vowel, 130.0, kRate, 2.5);
        for (const int semitone : {-7, -5, -3, 3, 4, 7}) {
            auto engine = readyEngine();
            engine->SetTransposeEnabled(true);
            engine->SetPitchShift(static_cast<float>(semitone) / 12.0f);
            const auto output = run(*engine, voice);
            const auto end = lastHalfSecond(output);
            const double pitch = measurePitch(end, kRate, engine->GetOutputPitch());
            std::printf("  vowel %d, %+d  %+5.2f\n", static_cast<int>(vowel), semitone,
                        envelopeShift(lastHalfSecond(voice), 130.0, end, pitch, kRate, 300, 4000));
        }
    }
}

/// Error against the delayed input at the delay that fits best, near the engine's latency.
double unitRatioError(const std::vector<float>& signal, int reach, std::size_t length)
{
    auto engine = readyEngine();
    const auto output = run(*engine, signal);
    const std::size_t start = output.size() - length - kHop;
    const auto end = std::span(output).subspan(start, length);
    double best = 0.0;
    for (int shift = -reach; shift <= reach; ++shift) {
        const auto from = start - static_cast<std::size_t>(engine->GetLatency() + shift);
        best = std::min(best, errorDecibels(end, std::span(signal).subspan(from, length)));
    }
    return best;
}

/// Grains have whole samples: windows add up to 1 the closer, the less two of the found periods
/// fall short of a whole number of samples, so that tones differ.
void printUnitRatio()
{
    std::puts("Difference from the delayed input at the unit ratio, dB");
    std::vector<double> tones;
    for (double hz = 80.0; hz < 500.0; hz *= 1.0116)
        tones.push_back(unitRatioError(harmonicTone(hz, kRate, 172 * kHop), 0, 20000));
    std::sort(tones.begin(), tones.end());
    std::printf("  %zu steady tones of 80 to 500 Hz: best %.1f, middle %.1f, worst %.1f\n",
                tones.size(), tones.front(), tones[tones.size() / 2], tones.back());
    std::printf("  steady vowel at 220 Hz   %6.1f\n",
                unitRatioError(steadyVowel(Vowel::kA, 220.0, kRate, 3.0), 110, 20000));
    const std::vector<float> song = renderSong(demoSong(), kRate);
    std::printf("  sung voice               %6.1f\n", unitRatioError(song, 110, 12 * 44100));
}

}  // namespace

/// Prints the figures that the engine is judged by.
int main()
{
    printDetection();
    printTransposition();
    printFormants();
    printUnitRatio();
    return 0;
}
