// SPDX-License-Identifier: GPL-3.0-or-later
// What comes out beside the corrected pitch: the voice's sound, onsets, noise, clicks and shifts.
#include "benchmarks/TrackedEngine.h"
#include "benchmarks/VoiceSpectrum.h"
#include "support/Measure.h"
#include "support/Signals.h"

#include <array>
#include <string_view>
#include <utility>

namespace orvane
{

namespace
{

std::vector<float> steadyVoice(bool isMale, char vowel, double hz, double seconds)
{
    return voiceOf(isMale, vowel).Sing(seconds, [hz](double) { return hz; });
}

/// The spectrum of half a second in the middle of a second and a half.
VoiceSpectrum spectrumOf(const std::vector<float>& sound, double hz)
{
    const auto middle = around(sound, 0.9, 0.5);
    // A fifth of a second is enough for the pitch of a steady voice.
    return {middle, kTrackedRate, measurePitch(around(sound, 0.9, 0.2), kTrackedRate, hz)};
}

/// Means over notes sung 30 cents off, of harmonics to noise and of the distance to the same voice
/// singing the note.
void printVoice()
{
    std::puts(
        "The corrected voice: harmonics to noise in dB, and mel distance to the same voice on "
        "the note in dB\n  (good: above 60, below 1.5)");
    printRow("a, 30 cents off", "  %6.1f / %6.2f", [](KestruneTracking tracking, bool isMale) {
        double harmonics = 0.0;
        double distance = 0.0;
        constexpr std::array kSteps{0.0, 3.0, 5.0, 8.0, 11.0};
        for (const double step : kSteps) {
            const double hz = noteHz((isMale ? -24.0 : -12.0) + step);
            auto engine = trackedEngine(tracking);
            engine->SetCorrectionEnabled(true);
            const auto sung = steadyVoice(isMale, 'a', hz * std::exp2(0.3 / 12.0), 1.5);
            const VoiceSpectrum output = spectrumOf(runAligned(*engine, sung), hz);
            harmonics += output.harmonicsToNoise;
            distance += melDistance(output, spectrumOf(steadyVoice(isMale, 'a', hz, 1.5), hz));
        }
        return std::pair(harmonics / kSteps.size(), distance / kSteps.size());
    });
}

void printShifts()
{
    std::puts("Transposition by 1 to 12 semitones up and down: cents off, worst median and 95 % "
              "(good: below 1)");
    printRow("a", "  %6.2f / %6.2f", [](KestruneTracking tracking, bool isMale) {
        std::pair<double, double> worst;
        const double hz = noteHz(isMale ? -23.7 : -11.7);
        const auto sung = steadyVoice(isMale, 'a', hz, 1.5);
        for (int shift = -12; shift <= 12; ++shift) {
            auto engine = trackedEngine(tracking);
            engine->SetTransposeEnabled(true);
            engine->SetPitchShift(static_cast<float>(shift) / 12.0f);
            const auto output = runAligned(*engine, sung);
            const double wanted = hz * std::exp2(shift / 12.0);
            std::vector<double> errors;
            for (double at = 0.4; at < 1.3; at += 0.01) {
                const auto stretch = around(output, at, std::max(0.06, 6.0 / wanted));
                errors.push_back(
                    std::fabs(centsBetween(measurePitch(stretch, kTrackedRate, wanted), wanted)));
            }
            const Spread spread(errors);
            worst = {std::max(worst.first, spread.median), std::max(worst.second, spread.p95)};
        }
        return worst;
    });
    std::puts(
        "Five vowels by eight shifts: mean and largest mel distance in dB to the same voice at "
        "that pitch (good: below 2 / 4)");
    printRow("a e i o u, 2 4 7 12 up and down", "  %6.2f / %6.2f",
             [](KestruneTracking tracking, bool isMale) {
                 double sum = 0.0;
                 double most = 0.0;
                 int count = 0;
                 const double hz = noteHz(isMale ? -23.0 : -11.0);
                 for (const char vowel : std::string_view("aeiou"))
                     for (const int shift : {-12, -7, -4, -2, 2, 4, 7, 12}) {
                         auto engine = trackedEngine(tracking);
                         engine->SetTransposeEnabled(true);
                         engine->SetPitchShift(static_cast<float>(shift) / 12.0f);
                         const double wanted = hz * std::exp2(shift / 12.0);
                         const auto output =
                             runAligned(*engine, steadyVoice(isMale, vowel, hz, 1.5));
                         const double distance = melDistance(
                             spectrumOf(output, wanted),
                             spectrumOf(steadyVoice(isMale, vowel, wanted, 1.5), wanted));
                         sum += distance;
                         most = std::max(most, distance);
                         ++count;
                     }
                 return std::pair(sum / count, most);
             });
    std::puts("Transposition on, by no shift: difference from the input in dB (good: below -100)");
    printRow("a; o", "  %6.1f / %6.1f", [](KestruneTracking tracking, bool isMale) {
        std::array<double, 2> errors{};
        for (std::size_t i = 0; i < 2; ++i) {
            const auto sung =
                steadyVoice(isMale, i == 0 ? 'a' : 'o', noteHz(isMale ? -23.7 : -11.7), 1.5);
            auto engine = trackedEngine(tracking);
            engine->SetTransposeEnabled(true);
            errors[i] =
                errorDecibels(around(runAligned(*engine, sung), 0.9, 0.5), around(sung, 0.9, 0.5));
        }
        return std::pair(errors[0], errors[1]);
    });
}

/// Mean of the cents off, 35 and 150 ms after the onset of a note that follows another and a rest.
void printOnsets()
{
    std::puts("Onset after a note and a rest: cents off after 35 / 150 ms (good: below 2)");
    for (const float ms : {150.0f, 400.0f})
        printRow(ms == 150.0f ? "correction time 150 ms" : "correction time 400 ms",
                 "  %6.1f / %6.1f", [ms](KestruneTracking tracking, bool isMale) {
                     std::array<double, 2> sums{};
                     constexpr std::array kSteps{1.0, -2.0, 4.0, 5.0, -3.0, 7.0};
                     for (const double step : kSteps) {
                         const double first = isMale ? -22.0 : -10.0;
                         const double second = noteHz(first + step);
                         const auto sung = voiceOf(isMale, 'a').Sing(1.8, [&](double at) {
                             return at < 0.9    ? noteHz(first - 0.4)
                                    : at < 1.15 ? 0.0
                                                : second * std::exp2(0.35 / 12.0);
                         });
                         auto engine = trackedEngine(tracking);
                         engine->SetCorrectionTime(ms);
                         engine->SetCorrectionEnabled(true);
                         const auto output = runAligned(*engine, sung);
                         for (std::size_t i = 0; i < 2; ++i) {
                             const auto stretch =
                                 around(output, 1.15 + (i == 0 ? 0.035 : 0.15), 2.5 / second);
                             sums[i] += std::fabs(
                                 centsBetween(measurePitch(stretch, kTrackedRate, second), second));
                         }
                     }
                     return std::pair(sums[0] / kSteps.size(), sums[1] / kSteps.size());
                 });
}

void printNoise()
{
    std::puts("White noise after a note, with correction / with a shift of 3 semitones too: "
              "difference from the\n  input in dB (good: below -100)");
    printRow("noise", "  %6.1f / %6.1f", [](KestruneTracking tracking, bool isMale) {
        auto sound = steadyVoice(isMale, 'a', noteHz(isMale ? -23.7 : -11.7), 1.0);
        const auto noise = whiteNoise(0.3f, static_cast<int>(sound.size()), 4);
        sound.insert(sound.end(), noise.begin(), noise.end());
        std::array<double, 2> errors{};
        for (const bool shifts : {false, true}) {
            auto engine = trackedEngine(tracking);
            engine->SetCorrectionEnabled(true);
            engine->SetTransposeEnabled(shifts);
            engine->SetPitchShift(0.25f);
            errors[shifts ? 1 : 0] = errorDecibels(around(runAligned(*engine, sound), 1.6, 0.6),
                                                   around(sound, 1.6, 0.6));
        }
        return std::pair(errors[0], errors[1]);
    });
}

void printClicks()
{
    std::puts(
        "Single clicks in silence: how often each of ten is heard, least / most (good: 1 / 1)");
    constexpr int kClicks = 10;
    const auto placeOf = [](int click) { return static_cast<std::size_t>(9000 * click + 9123); };
    for (const KestruneTracking tracking : kTrackings) {
        std::vector<float> sound(100000);
        for (int click = 0; click < kClicks; ++click)
            sound[placeOf(click)] = 0.5f;
        auto engine = trackedEngine(tracking);
        engine->SetCorrectionEnabled(true);
        const auto output = runAligned(*engine, sound);
        std::array<int, kClicks> heard{};
        float loudest = 0.0f;
        float softest = 1.0f;
        for (int click = 0; click < kClicks; ++click) {
            float peak = 0.0f;
            for (std::size_t i = placeOf(click) - 3000; i < placeOf(click) + 3000; ++i) {
                peak = std::max(peak, std::fabs(output[i]));
                heard[static_cast<std::size_t>(click)] +=
                    std::fabs(output[i]) > 0.05f && std::fabs(output[i - 1]) <= 0.05f ? 1 : 0;
            }
            loudest = std::max(loudest, peak / 0.5f);
            softest = std::min(softest, peak / 0.5f);
        }
        const auto [least, most] = std::minmax_element(heard.begin(), heard.end());
        std::printf("  %-8s %d / %d, level %.2f to %.2f\n",
                    tracking == KestruneTracking::kClassic ? "Classic" : "Fine", *least, *most,
                    static_cast<double>(softest), static_cast<double>(loudest));
    }
}

void printSwitches()
{
    std::puts("Going over to the other tracking within a note: loudest click above 7 kHz in dB "
              "(good: below -60)");
    const auto sung = harmonicTone(227.0, kTrackedRate, 240 * kTrackedHop, 2500.0);
    for (const KestruneTracking first : kTrackings) {
        auto engine = trackedEngine(first);
        engine->SetCorrectionEnabled(true);
        engine->SetTransposeEnabled(true);
        engine->SetPitchShift(1.0f / 12.0f);
        const bool toFine = first == KestruneTracking::kClassic;
        const auto output = runAligned(*engine, sung, [&](std::size_t block) {
            if (block == 120)
                engine->SetTracking(toFine ? KestruneTracking::kFine : KestruneTracking::kClassic);
        });
        const auto from = std::span(output).subspan(60 * kTrackedHop, 120 * kTrackedHop);
        std::printf("  to %-8s %6.1f\n", toFine ? "Fine" : "Classic",
                    clickDecibels(from, kTrackedRate));
    }
}

}  // namespace

void printSounds()
{
    printVoice();
    printShifts();
    printOnsets();
    printNoise();
    printClicks();
    printSwitches();
}

}  // namespace orvane
