// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/AutomationFile.h"
#include "tools/render/Failure.h"
#include "tools/render/Interruption.h"
#include "tools/render/OfflineRender.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/PluginLibrary.h"
#include "tools/render/PluginListing.h"
#include "tools/render/RenderReport.h"
#include "zlib/common/objects/ZException.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

constexpr int kFailed = 2;
constexpr int kLongestBlock = 65536;
constexpr int kLargestScale = 8;

constexpr const char* kPurpose =
    "Renders a sound file through the plug-in, as a host does: corrects its pitch to a key, and "
    "shifts pitch and formants. The output has the input's format and length.";

std::string footer()
{
    return "Settings:\n" + settingsHelp() + R"(
A mono file is heard on both sides, and its output is the left one. Distances from the scale are
those of the voiced places: loud enough, periodic and steady, from the scale that is in force
before automation; a scale of the user's own counts as Major there, an edited one as what it was.
Settings are the parameters of the plug-in, under the names above or those that --list shows; all
else comes from a program, a chunk or a preset, else it is as the plug-in starts. The program comes
first, then the chunk, the preset, the settings, and automation on the way.

A line of automation is SECONDS,NAME,VALUE, such as 1.5,key,D. Automation and notes of a MIDI file
are given at the sample of their time; the plug-in takes changed values to its engine every 42 ms. It
takes notes where its MIDI input is on, which a preset does by the element AcceptMIDI.

Examples:
  kestrune-render --list
  kestrune-render voice.wav tuned.wav --set pitchCorrectionOnOff=On --set key=D
  kestrune-render voice.flac hard.flac --set pitchCorrectionOnOff=On --set pitchCorrectionTime=0 \
      --plot hard.png --report hard.json
  kestrune-render voice.wav low.wav --set transposeOnOff=On \
      --set "pitchTranspose=Down Minor 3rd" --set formantTranspose=Bigger2
  kestrune-render --window window.png --program 3
  kestrune-render voice.wav out.wav --preset mine.xml --automate keys.csv --midi melody.mid
)";
}

/// Prints a failure as one line; control characters that it quotes from a file become spaces.
void printFailure(std::string message)
{
    std::replace_if(
        message.begin(), message.end(),
        [](unsigned char byte) { return byte < ' ' || byte == 0x7F; }, ' ');
    fmt::print(stderr, "kestrune-render: {}\n", message);
}

/// Ends the program by the signal itself, so that the calling shell sees how it ended.
[[noreturn]] void endBySignal(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(128 + signal);
}

/// Throws ZException when standard output cannot be written.
void print(const std::string& text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        fail("cannot print the report: {}", std::strerror(errno));
}

void list(const std::filesystem::path& library)
{
    PluginInstance plugin(library);
    print(describePlugin(plugin));
}

/// The parsed command line.
struct CommandLine
{
    RenderRequest request;
    std::vector<std::string> assignments;
    std::filesystem::path library;  // empty: the product's
    bool lists = false;
};

/// The positional arguments.
struct SoundFiles
{
    CLI::Option* in;
    CLI::Option* out;
};

void render(CommandLine& command)
{
    RenderRequest& request = command.request;
    for (const std::string& assignment : command.assignments)
        request.settings.Assign(assignment);
    watchForInterruption();
    PluginInstance plugin(command.library);
    if (request.input.empty())
        return drawWindow(request, plugin);
    const RenderResult result = renderOffline(request, plugin);
    print(textReport(request, result));
}

/// Catches an empty argument, which a shell makes of a variable that is not set.
std::string checkNotEmpty(const std::string& text)
{
    return text.empty() ? "it is empty" : "";
}

std::string checkTime(const std::string& text)
{
    try {
        static_cast<void>(parseSeconds(text));
        return "";
    } catch (const ZException& exception) {
        return exception.GetMessage().ToNarrow();
    }
}

SoundFiles addSoundFiles(CLI::App& app, RenderRequest& request)
{
    return {
        app.add_option("IN", request.input, "Sound file, mono or stereo")->required(),
        app.add_option("OUT", request.output, "File to write, in the format of IN")->required()};
}

void addStateOptions(CLI::App& app, CommandLine& command)
{
    RenderRequest& request = command.request;
    app.add_option("--set", command.assignments, "A setting; can be given many times")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app.add_option("--program", request.state.program, "A program of the plug-in")
        ->type_name("N|NAME");
    app.add_option("--preset", request.state.preset, "A preset, taken into the current program")
        ->type_name("FILE.xml");
    app.add_option("--load-chunk", request.state.loadChunk,
                   "The state of all programs, as --save-chunk wrote it")
        ->type_name("FILE");
    app.add_option("--save-chunk", request.saveChunk,
                   "Writes the state of all programs, settings included, before automation")
        ->type_name("FILE");
    app.add_option("--automate", request.automation, "Values of settings by time")
        ->type_name("FILE.csv");
    app.add_option("--midi", request.midi, "Plays a Standard MIDI File into the plug-in")
        ->type_name("FILE.mid");
}

/// With --list no sound is needed.
void addPluginOptions(CLI::App& app, CommandLine& command, const SoundFiles& files)
{
    app.add_option("--plugin", command.library,
                   "Library to render with; else the program's own, or an installed one")
        ->type_name("FILE");
    app.add_flag_callback(
        "--list",
        [&command, files] {
            command.lists = true;
            files.in->required(false);
            files.out->required(false);
        },
        "Tells what the plug-in says of itself, with its parameters, and ends");
}

void addRenderOptions(CLI::App& app, RenderRequest& request, const SoundFiles& files)
{
    app.add_option(
           "--block", request.blockFrames,
           "Frames fed at a time, as a host would; the sound is the same for all, but for the "
           "moment at which automation acts")
        ->check(CLI::Range(1, kLongestBlock))
        ->capture_default_str();
    app.add_option("--plot", request.plot, "Draws the pitch before and after")
        ->type_name("FILE.png");
    app.add_option("--report", request.report, "Writes all figures and the pitch track")
        ->type_name("FILE.json");
    app.add_flag("--keep-latency", request.keepsLatency,
                 "Leaves the latency at the start of the output, which is longer by it");
    for (const char* const ofSound :
         {"--save-chunk", "--automate", "--midi", "--plot", "--report", "--keep-latency"})
        app.get_option(ofSound)->needs(files.in);
}

/// A picture of the window needs no sound.
void addWindowOptions(CLI::App& app, RenderRequest& request, const SoundFiles& files)
{
    CLI::Option* const window = app.add_option_function<std::string>(
        "--window",
        [&request, files](const std::string& file) {
            request.window.file = file;
            files.in->required(false)->needs(files.out);
            files.out->required(false)->needs(files.in);
        },
        "Draws the plug-in's window with the state and the settings given; with IN, at its end");
    window->type_name("FILE.png");
    app.add_option("--window-at", request.window.seconds, "Draws it when so much of IN has gone in")
        ->type_name("SECONDS")
        ->check(checkTime)
        ->needs(window)
        ->needs(files.in);
    app.add_option("--window-scale", request.window.scale, "Draws it so many times as large")
        ->check(CLI::Range(1, kLargestScale))
        ->needs(window);
}

void refuseEmptyValues(CLI::App& app)
{
    for (CLI::Option* const option : app.get_options()) {
        if (option->get_items_expected_max() > 0)
            option->check(checkNotEmpty);
    }
}

/// Checked here, because the parser's excludes() would repeat this for every option in --help.
void requireListingAlone(const CLI::App& app)
{
    for (const CLI::Option* const option : app.get_options()) {
        const std::string name = option->get_name();
        if (option->count() > 0 && name != "--list" && name != "--plugin")
            fail("{} means nothing beside --list, which renders no sound", name);
    }
}

int parseAndRun(int argc, char** argv)
{
    CommandLine command;
    CLI::App app(kPurpose, "kestrune-render");
    app.footer(footer);
    app.set_version_flag("--version", "kestrune-render " KESTRUNE_VERSION);
    const SoundFiles files = addSoundFiles(app, command.request);
    addStateOptions(app, command);
    addPluginOptions(app, command, files);
    addRenderOptions(app, command.request, files);
    addWindowOptions(app, command.request, files);
    refuseEmptyValues(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(error);
        printFailure(std::string(error.what()) + " (--help tells how to call it)");
        return kFailed;
    }
    if (command.lists)
        requireListingAlone(app);
    if (command.library.empty())
        command.library = findProductLibrary();
    if (command.lists)
        list(command.library);
    else
        render(command);
    return 0;
}

}  // namespace

}  // namespace orvane

int main(int argc, char** argv)
{
    using namespace orvane;
    try {
        return parseAndRun(argc, argv);
    } catch (const Interruption& interruption) {
        endBySignal(interruption.signal);
    } catch (const ZException& exception) {
        printFailure(exception.GetMessage().ToNarrow());
    } catch (const std::exception& exception) {
        printFailure(exception.what());
    }
    return kFailed;
}
