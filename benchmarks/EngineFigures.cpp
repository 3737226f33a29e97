// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/PsolaClass.h"
#include "support/Measure.h"
#include "support/Signals.h"
#include "tools/singer/Singer.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <limits>
#include <memory>
#include <numbers>
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

/// The levels of a steady voice's harmonics in dB, by correlation with Hann-windowed complex tones.
std::vector<double> harmonicLevels(std::span<const float> signal, double pitchHz, double sampleRate,
                                   double upToHz)
{
    std::vector<double> levels;
    const auto length = static_cast<double>(signal.size());
    for (int h = 1; h * pitchHz < upToHz; ++h) {
        std::complex<double> sum = 0.0;
        const double step = 2.0 * std::numbers::pi * h * pitchHz / sampleRate;
        for (std::size_t i = 0; i < signal.size(); ++i) {
            const auto n = static_cast<double>(i);
            const double hann = 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * n / length);
            sum += hann * signal[i] * std::polar(1.0, -step * n);
        }
        levels.push_back(20.0 * std::log10(std::abs(sum) / length + 1e-9));
    }
    return levels;
}

/// The level at a frequency between harmonics, interpolated in dB over log frequency.
double levelAt(const std::vector<double>& levels, double pitchHz, double frequencyHz)
{
    const double position = frequencyHz / pitchHz;
    const double lower =
        std::clamp(std::floor(position), 1.0, static_cast<double>(levels.size() - 1));
    const double share = std::log(position / lower) / std::log((lower + 1.0) / lower);
    const auto index = static_cast<std::size_t>(lower) - 1;
    return levels[index] + share * (levels[index + 1] - levels[index]);
}

/// The semitones by which the spectral envelope of a steady voice has moved from before to after:
/// the shift on a log-frequency axis, within an octave each way, at which the levels of their
/// harmonics differ least between lowHz and highHz, apart from a constant gain.
double envelopeShift(std::span<const float> before, double beforeHz, std::span<const float> after,
                     double afterHz, double sampleRate, double lowHz, double highHz)
{
    const std::vector<double> from = harmonicLevels(before, beforeHz, sampleRate, 2.0 * highHz);
    const std::vector<double> to = harmonicLevels(after, afterHz, sampleRate, 4.0 * highHz);
    double bestShift = 0.0;
    double bestError = std::numeric_limits<double>::max();
    for (double shift = -12.0; shift <= 12.0; shift += 0.02) {
        double sum = 0.0;
        double squares = 0.0;
        int count = 0;
        for (double hz = lowHz; hz < highHz; hz *= std::exp2(1.0 / 48.0), ++count) {
            const double moved = hz * std::exp2(shift / 12.0);
            const double difference = levelAt(to, afterHz, moved) - levelAt(from, beforeHz, hz);
            sum += difference;
            squares += difference * difference;
        }
        const double error = squares - sum * sum / count;
        if (error < bestError) {
            bestError = error;
            bestShift = shift;
        }
    }
    return bestShift;
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
    std::puts(
        "Detected pitch of full-band harmonic tones, cents from the true pitch (good: within 7)");
    for (const double hz : {110.0, 196.0, 220.0, 330.0, 440.0}) {
        auto engine = readyEngine();
        run(*engine, harmonicTone(hz, kRate, 44100));
        std::printf("  %5.0f Hz  %+6.2f cents\n", hz, centsBetween(engine->GetInputPitch(), hz));
    }
}

void printTransposition()
{
    std::puts(
        "Transposition of a steady vowel at 220 Hz, cents from the detected pitch times the ratio "
        "(good: within 1)");
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
        std::printf("  %+3d semitones  %+6.2f cents\n", semitone, error);
    }
    std::printf("  worst          %6.2f cents\n", worst);
}

void printFormants()
{
    std::puts("Shift of the formants under a pitch shift alone, semitones (good: within 0.2)");
    for (const Vowel vowel : {Vowel::kA, Vowel::kE, Vowel::kO}) {
        const auto voice = steadyVowel(vowel, 130.0, kRate, 2.5);
        for (const int semitone : {-7, -5, -3, 3, 4, 7}) {
            auto engine = readyEngine();
            engine->SetTransposeEnabled(true);
            engine->SetPitchShift(static_cast<float>(semitone) / 12.0f);
            const auto output = run(*engine, voice);
            const auto end = lastHalfSecond(output);
            const double pitch = measurePitch(end, kRate, engine->GetOutputPitch());
            std::printf("  vowel %d, pitch %+d semitones  %+5.2f semitones\n",
                        static_cast<int>(vowel), semitone,
                        envelopeShift(lastHalfSecond(voice), 130.0, end, pitch, kRate, 300, 4000));
        }
    }
}

/// Error against the delayed input in dB, at the best delay within reach of the engine's latency.
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

/// Grains have whole numbers of samples, so their windows add up to 1 only as closely as two
/// detected periods come to a whole number of samples. The error therefore differs from tone to
/// tone.
void printUnitRatio()
{
    std::puts("Difference from the delayed input at a ratio of 1, dB (good: below -40)");
    std::vector<double> tones;
    for (double hz = 80.0; hz < 500.0; hz *= 1.0116)
        tones.push_back(unitRatioError(harmonicTone(hz, kRate, 172 * kHop), 0, 20000));
    std::sort(tones.begin(), tones.end());
    std::printf("  %zu steady tones of 80 to 500 Hz: best %.1f, median %.1f, worst %.1f dB\n",
                tones.size(), tones.front(), tones[tones.size() / 2], tones.back());
    std::printf("  steady vowel at 220 Hz   %6.1f dB\n",
                unitRatioError(steadyVowel(Vowel::kA, 220.0, kRate, 3.0), 110, 20000));
    const std::vector<float> song = renderSong(demoSong(), kRate);
    std::printf("  sung voice               %6.1f dB\n", unitRatioError(song, 110, 12 * 44100));
}

}  // namespace

/// Prints how accurately the engine detects, corrects and transposes, beside what is good.
int main()
{
    printDetection();
    printTransposition();
    printFormants();
    printUnitRatio();
    return 0;
}
