// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/common/RunProgram.h"
#include "tools/measure/ClipNotes.h"
#include "tools/measure/NoteAccuracy.h"
#include "tools/measure/PitchTracker.h"
#include "tools/measure/SoundClip.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

using namespace orvane;

namespace
{

struct Arguments
{
    std::string notes;
    std::string input;
    std::string output;
    int latency = 0;  // samples
};

/// The median for a column of the table; empty when no pitch was found.
std::string medianOf(std::vector<double> cents)
{
    std::array<char, 16> text{};
    if (!cents.empty())
        std::snprintf(text.data(), text.size(), "%+6.1f", quantile(std::move(cents), 0.5));
    return text.data();
}

void printNotes(const std::vector<ClipNote>& notes, const PitchTracker& input,
                const PitchTracker& output, double delay)
{
    std::puts("Medians of the notes, cents from the intended:");
    std::puts("     from      to  intended     input    output");
    for (const ClipNote& note : notes)
        std::printf("  %5.2f s %5.2f s %6.1f Hz    %6s    %6s\n", note.startSeconds,
                    note.endSeconds, note.intendedHz,
                    medianOf(centsFromIntended(input, note, 0.0)).c_str(),
                    medianOf(centsFromIntended(output, note, delay)).c_str());
}

void printAccuracy(const char* name, const NoteAccuracy& accuracy)
{
    if (accuracy.pitchedShare == 0.0)
        std::printf("%s: no pitch found\n", name);
    else
        std::printf("%s: median %.1f cents, 95th percentile %.1f cents, %.0f %% pitched\n", name,
                    accuracy.medianCents, accuracy.percentile95Cents,
                    100.0 * accuracy.pitchedShare);
}

void measure(const Arguments& arguments)
{
    const std::vector<ClipNote> notes = readClipNotes(arguments.notes);
    const SoundClip inputClip = readSoundClip(arguments.input);
    const SoundClip outputClip = readSoundClip(arguments.output);
    const PitchTracker input(inputClip.samples, inputClip.sampleRate);
    const PitchTracker output(outputClip.samples, outputClip.sampleRate);
    const double delay = static_cast<double>(arguments.latency) / outputClip.sampleRate;
    printNotes(notes, input, output, delay);
    std::printf("Distance from the intended notes, without the first %.0f and last %.0f ms of "
                "each:\n",
                1000.0 * kSettlingSeconds, 1000.0 * kEndingSeconds);
    printAccuracy("  input ", noteAccuracy(input, notes, 0.0));
    printAccuracy("  output", noteAccuracy(output, notes, delay));
}

}  // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    CLI::App app(
        "Measures how far a sung clip and its processed form are from the intended notes.");
    app.add_option("NOTES", arguments.notes, "JSON list of the intended notes")->required();
    app.add_option("IN", arguments.input, "the clip as it was sung")->required();
    app.add_option("OUT", arguments.output, "the processed clip")->required();
    app.add_option("--latency", arguments.latency, "samples by which OUT comes later than IN");
    return runProgram("kestrune-measure", app, argc, argv, [&] { measure(arguments); });
}
