// SPDX-License-Identifier: GPL-3.0-or-later
// Prints how both trackings follow, correct and shift a voice whose pitch is known exactly.
#include "benchmarks/TrackedEngine.h"
#include "support/Measure.h"
#include "support/Signals.h"
#include "tools/singer/Singer.h"

#include <algorithm>
#include <array>
#include <functional>
#include <numbers>
#include <string_view>
#include <utility>

using namespace orvane;

namespace
{

/// A series of notes, each sung for the same time.
struct Notes
{
    std::vector<double> semitones;  // above A4
    double seconds = 1.0;           // of each
    double off = 0.0;               // cents
    double vibrato = 0.0;           // cents each way, at 5.5 Hz

    [[nodiscard]] double PitchAt(double at) const
    {
        const auto index = std::min(static_cast<std::size_t>(at / seconds), semitones.size() - 1);
        const double swing = vibrato * std::sin(2.0 * std::numbers::pi * 5.5 * at);
        return noteHz(semitones[index] + (off + swing) / 100.0);
    }
    [[nodiscard]] std::vector<float> Sing(const HarmonicVoice& voice) const
    {
        return voice.Sing(static_cast<double>(semitones.size()) * seconds,
                          [this](double at) { return PitchAt(at); });
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

/// Cents of a signal from a pitch at a time, by stretches of at least 30 ms.
double centsOff(const std::vector<float>& signal, double at, double hz)
{
    const auto stretch = around(signal, at, std::max(0.03, 3.0 / hz));
    return std::fabs(centsBetween(measurePitch(stretch, kTrackedRate, hz), hz));
}

void addNoise(std::vector<float>& signal, double decibels)
{
    double power = 0.0;
    for (const float sample : signal)
        power += static_cast<double>(sample) * static_cast<double>(sample);
    power /= static_cast<double>(signal.size());
    const double amplitude = std::sqrt(3.0 * power) * std::pow(10.0, decibels / 20.0);
    const auto noise =
        whiteNoise(static_cast<float>(amplitude), static_cast<int>(signal.size()), 5);
    std::transform(signal.begin(), signal.end(), noise.begin(), signal.begin(), std::plus<float>());
}

void printCorrection()
{
    std::puts("Cents of the corrected voice from the note, median / 95 % (good: below 1 / 2)");
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
    for (const Row& row : rows)
        printRow(row.name, "  %6.2f / %6.2f", [&](KestruneTracking tracking, bool isMale) {
            HarmonicVoice voice = voiceOf(isMale, 'a');
            voice.fundamental = row.fundamental;
            const Notes notes = notesOf(isMale, row.off, row.vibrato);
            auto signal = notes.Sing(voice);
            if (row.noise < 0.0)
                addNoise(signal, row.noise);
            auto engine = trackedEngine(tracking, !row.ownRange ? kNormal
                                                  : isMale      ? kMale
                                                                : kFemale);
            engine->SetCorrectionEnabled(true);
            const auto output = runAligned(*engine, signal);
            std::vector<double> errors;
            for (std::size_t note = 0; note < notes.semitones.size(); ++note)
                for (double at = 0.3; at < 0.9; at += 0.01)
                    errors.push_back(centsOff(output, static_cast<double>(note) + at,
                                              noteHz(notes.semitones[note])));
            const Spread spread(errors);
            return std::pair(spread.median, spread.p95);
        });
}

/// Milliseconds after each step of a voice from which on the output stays within 10 cents of the
/// new note, and the number of steps whose note is never reached.
void printLegato()
{
    std::puts("Legato steps of a fourth at most: ms to settle, median / 95 % (good: below 20)");
    int stuck = 0;
    printRow("12 steps", "  %6.0f / %6.0f", [&](KestruneTracking tracking, bool isMale) {
        Notes notes;
        notes.seconds = 0.6;
        double note = isMale ? -24.0 : -12.0;
        for (const int step : {0, 1, -2, 3, 4, -5, 2, -1, 5, -3, -4, 2, 1})
            notes.semitones.push_back(note += step);
        auto engine = trackedEngine(tracking);
        engine->SetCorrectionEnabled(true);
        const auto output = runAligned(*engine, notes.Sing(voiceOf(isMale, 'a')));
        std::vector<double> settled;
        for (std::size_t i = 1; i < notes.semitones.size(); ++i) {
            const double hz = noteHz(notes.semitones[i]);
            const double begin = static_cast<double>(i) * notes.seconds;
            double last = 0.0;  // time after the step at which the output was off
            for (double at = 0.0; at < 0.5; at += 0.005) {
                const auto stretch = around(output, begin + at, 2.2 / hz);
                const double read = measurePitch(stretch, kTrackedRate, hz);
                if (std::fabs(centsBetween(read, hz)) > 10.0)
                    last = at;
            }
            stuck += last > 0.48 ? 1 : 0;
            settled.push_back(1000.0 * (last + 0.005));
        }
        const Spread spread(settled);
        return std::pair(spread.median, spread.p95);
    });
    std::printf("  steps of 48 that are never reached: %d (good: 0)\n", stuck);
}

/// Share of the time, in per cent, in which the output is within 50 cents of the wanted note.
void printSwings()
{
    std::puts(
        "Wide swings: per cent of the time on the wanted note, at 5 and 6 Hz (good: above 90)");
    const auto shareOf = [](KestruneTracking tracking, bool isMale, double cents, double hz,
                            bool isTrill) {
        const double low = isMale ? -21.0 : -9.0;
        const auto swing = [&](double at) {
            const double sine = std::sin(2.0 * std::numbers::pi * hz * at);
            return isTrill ? (sine > 0.0 ? 1.0 : 0.0) : sine * cents / 100.0;
        };
        const auto signal =
            voiceOf(isMale, 'a').Sing(4.0, [&](double at) { return noteHz(low + swing(at)); });
        auto engine = trackedEngine(tracking);
        engine->SetCorrectionEnabled(true);
        const auto output = runAligned(*engine, signal);
        int right = 0;
        int all = 0;
        for (double at = 0.5; at < 3.5; at += 0.003) {
            const double phase = std::fabs(std::sin(2.0 * std::numbers::pi * hz * at));
            if (isTrill && phase < 0.7)
                continue;  // around the step
            const double wanted = noteHz(low + (isTrill ? swing(at) : 0.0));
            const double read =
                measurePitch(around(output, at, 2.2 / wanted), kTrackedRate, wanted);
            right += std::fabs(centsBetween(read, wanted)) < 50.0 ? 1 : 0;
            ++all;
        }
        return 100.0 * right / all;
    };
    const struct
    {
        const char* name;
        double cents;
        bool isTrill;
    } rows[] = {{"vibrato of 80 cents", 80, false},
                {"vibrato of 100 cents", 100, false},
                {"trill of a semitone", 0, true}};
    for (const auto& row : rows)
        printRow(row.name, "  %6.0f / %6.0f", [&](KestruneTracking tracking, bool isMale) {
            return std::pair(shareOf(tracking, isMale, row.cents, 5.0, row.isTrill),
                             shareOf(tracking, isMale, row.cents, 6.0, row.isTrill));
        });
}

/// Per cent of the time within notes of the demo song, corrected to its scale, in which the output
/// is more than 50 cents off the intended note, and the median of the cents off.
void printSong()
{
    std::puts(
        "A synthetic song with glides, vibrato, breath and consonants, corrected: per cent of "
        "the time more\n  than 50 cents off, median of the cents off (good: below 1 / 2)");
    const Song song = demoSong();
    const auto sung = renderSong(song, kTrackedRate);
    std::printf("  %-38s", "within notes");
    for (const KestruneTracking tracking : kTrackings) {
        auto engine = trackedEngine(tracking);
        constexpr std::array<float, 6> kMajor{2, 4, 5, 7, 9, 11};
        engine->SetReferenceFrequency(static_cast<float>(noteHz(3.0)));  // C
        engine->SetScaleTones(kMajor.data(), static_cast<int>(kMajor.size()));
        engine->SetCorrectionEnabled(true);
        const auto output = runAligned(*engine, sung);
        std::vector<double> errors;
        for (const SungNote& note : song.notes) {
            constexpr double kBorder = 0.05;  // seconds
            const double end = note.endSeconds() - kBorder;
            for (double at = note.onsetSeconds + note.glideSeconds + kBorder; at < end; at += 0.01)
                errors.push_back(centsOff(output, at, note.intendedHz()));
        }
        const auto wrong =
            std::count_if(errors.begin(), errors.end(), [](double cents) { return cents > 50.0; });
        std::printf("  %6.1f / %6.1f%s",
                    100.0 * static_cast<double>(wrong) / static_cast<double>(errors.size()),
                    Spread(errors).median, tracking == KestruneTracking::kClassic ? "   |" : "\n");
    }
}

/// Whether more than a tenth of the blocks of a steady vowel are read more than 50 cents off.
bool isWrongCell(KestruneTracking tracking, int source, bool isMale, char vowel, double hz)
{
    const auto signal = voiceOf(isMale, vowel).Sing(1.1, [hz](double) { return hz; });
    auto engine = trackedEngine(tracking, source);
    engine->SetTransposeEnabled(true);
    int wrong = 0;
    int all = 0;
    runAligned(*engine, signal, [&](std::size_t block) {
        if (block < 55 || block > 90)  // the latency and 0.2 s; to the end of the sound
            return;
        const auto read = static_cast<double>(engine->GetInputPitch());
        wrong += std::fabs(centsBetween(read, hz)) > 50.0 ? 1 : 0;
        ++all;
    });
    return 10 * wrong > all;
}

void printVowels(double semitoneStep)
{
    const struct
    {
        const char* name;
        int source;
        bool isMale;
        double low;  // semitones above A4
        double high;
    } ranges[] = {{"Normal, man", kNormal, true, -29, -7},
                  {"Normal, woman", kNormal, false, -17, 7},
                  {"Male", kMale, true, -29, -7},
                  {"Female", kFemale, false, -16, 7},
                  {"Lower Register", kLower, true, -36, -10},
                  {"Upper Register", kUpper, false, -4, 14}};
    std::printf("Vowels a e i o u, every %.0f semitones: cells of which more than a tenth is read "
                "wrong (good: 0)\n",
                semitoneStep);
    for (const auto& range : ranges) {
        std::printf("  %-38s", range.name);
        for (const KestruneTracking tracking : kTrackings) {
            int wrong = 0;
            int cells = 0;
            for (const char vowel : std::string_view("aeiou"))
                for (double note = range.low; note <= range.high; note += semitoneStep, ++cells)
                    wrong += isWrongCell(tracking, range.source, range.isMale, vowel, noteHz(note));
            std::printf("  %3d of %3d%s", wrong, cells,
                        tracking == KestruneTracking::kClassic ? "   |" : "\n");
            std::fflush(stdout);
        }
    }
}

}  // namespace

/// tracking_figures [all]: all prints the vowels at every semitone.
int main(int argc, char** argv)
{
    std::puts("Classic and fine tracking side by side, each for a man and a woman");
    printCorrection();
    printLegato();
    printSwings();
    printSong();
    printSounds();
    const bool all = argc > 1 && std::string_view(argv[1]) == "all";
    printVowels(all ? 1.0 : 3.0);
    return 0;
}
