// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/common/RunProgram.h"
#include "tools/measure/ClipNotes.h"
#include "tools/measure/SoundClip.h"
#include "tools/singer/Singer.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>

using namespace orvane;

namespace
{

struct Arguments
{
    std::string sound;
    std::string notes;
    int sampleRate = 44100;
};

void sing(const Arguments& arguments)
{
    const Song song = demoSong();
    writeSoundClip(arguments.sound, {arguments.sampleRate, renderSong(song, arguments.sampleRate)});
    if (!arguments.notes.empty())
        writeClipNotes(arguments.notes, clipNotes(song));
}

}  // namespace

int main(int argc, char** argv)
{
    Arguments arguments;
    CLI::App app("Renders the demonstration song, off key by known amounts, to a sound file.");
    app.add_option("OUT", arguments.sound, "FLAC or WAV file to write, 16 bit")->required();
    app.add_option("--notes", arguments.notes, "JSON file to write the intended notes to");
    app.add_option("--rate", arguments.sampleRate, "sample rate in Hz")
        ->check(CLI::Range(8000, 192000))
        ->capture_default_str();
    return runProgram("kestrune-singer", app, argc, argv, [&] { sing(arguments); });
}
