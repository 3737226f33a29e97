// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/CommandLine.h"

#include "tools/render/AutomationFile.h"
#include "tools/render/Failure.h"
#include "tools/render/RenderSettings.h"
#include "tools/render/SoundFormats.h"

#include <CLI/CLI.hpp>
#include <fmt/ranges.h>

#include <string>

namespace orvane
{

namespace
{

namespace fs = std::filesystem;

constexpr int kLongestBlock = 65536;
constexpr float kSmallestScale = 0.5f;
constexpr float kLargestScale = 8.0f;

constexpr const char* kPurpose =
    R"(Renders sound files through the plug-in, as a host does: corrects their pitch to a key, and shifts
pitch and formants. The output is aligned with the input and as long.
  kestrune-render [OPTIONS] IN OUT
  kestrune-render [OPTIONS] IN... -o FOLDER
  kestrune-render [OPTIONS] --window FILE.png
  kestrune-render --list [--plugin FILE])";

std::string footer()
{
    return "Settings of --set and --automate:\n" + settingsHelp() + R"(
Keys may be named as flats, too, such as Db. Choices are given by name or by the number behind it.
Settings are the parameters of the plug-in, under the names above or those that --list shows; all
else comes from a program, a chunk, a preset or the options for the tuning, else it is as the plug-in
starts. The program comes first, then the chunk, the preset, the tuning, the settings, and automation
during the render.

A mono file is heard on both sides, and its output is the left one. Distances from the scale are
those of the voiced places (loud enough, periodic and steady) from the scale that is in force before
automation. What was given and had no effect is told on standard error.

A line of automation is SECONDS,NAME,VALUE, such as 1.5,key,D. Automation and notes of a MIDI file
are given at the sample of their time; the plug-in takes changed values to its engine every 42 ms. It
takes notes where its MIDI input is on, which a preset does by the element AcceptMIDI.

Several inputs need -o with a folder, which gets a file of the same name for each. They are rendered
side by side, one on each core; an input that fails does not stop the others and is told at the end.
- stands for standard input or standard output.

Exit status: 0, or 2 where something failed.

Examples:
  kestrune-render --list
  kestrune-render voice.wav tuned.wav --set pitchCorrectionOnOff=On --set key=D --scale Minor
  kestrune-render voice.flac hard.flac --set pitchCorrectionOnOff=On --set pitchCorrectionTime=0 \
      --plot hard.png --report hard.json
  kestrune-render voice.wav low.wav --set transposeOnOff=On \
      --set "pitchTranspose=Down Minor 3rd" --set formantTranspose=Bigger2
  kestrune-render takes/*.wav -o tuned/ --set pitchCorrectionOnOff=On --format flac:24
  kestrune-render - - <voice.wav >tuned.wav --set pitchCorrectionOnOff=On
  kestrune-render --window window.png --program 3
  kestrune-render voice.wav out.wav --preset mine.xml --automate keys.csv --midi melody.mid
)";
}

/// A check that reports what a function throws.
template <typename Parse>
CLI::Validator checkedBy(Parse parse, const char* name)
{
    return CLI::Validator(
        [parse](std::string& text) -> std::string {
            try {
                static_cast<void>(parse(text));
                return "";
            } catch (const ZException& exception) {
                return exception.GetMessage().ToNarrow();
            }
        },
        "", name);
}

/// Refuses an empty argument: a script passes one when it quotes a variable that is unset.
std::string checkNotEmpty(const std::string& text)
{
    return text.empty() ? "it is empty" : "";
}

/// Adds the options to a parser and checks what it found.
class Parser
{
public:
    Parser()
        : mApp(kPurpose, "kestrune-render")
    {
        mApp.footer(footer);
        mApp.set_version_flag("--version", "kestrune-render " KESTRUNE_VERSION);
        AddFileOptions();
        AddStateOptions();
        AddTuningOptions();
        AddPluginOptions();
        AddRenderOptions();
        AddWindowOptions();
        for (CLI::Option* const option : mApp.get_options()) {
            if (option->get_items_expected_max() > 0)
                option->check(checkNotEmpty);
        }
    }

    std::optional<CommandLine> Parse(int argc, char** argv)
    {
        try {
            mApp.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
                mApp.exit(error);
                return std::nullopt;
            }
            fail("{} (--help tells how to call it)", error.what());
        }
        if (mCommand.lists) {
            RequireListingAlone();
            return mCommand;
        }
        for (const std::string& assignment : mAssignments)
            mCommand.request.settings.Assign(assignment);
        PlaceFiles();
        return mCommand;
    }

private:
    RenderRequest& Request() { return mCommand.request; }

    void AddFileOptions()
    {
        mApp.add_option("IN", mFiles, "Sound files, mono or stereo; without -o the last is OUT")
            ->type_name("FILE...");
        mApp.add_option("-o,--output", mOutput,
                        "File to write or, for several inputs, folder; made if it is missing")
            ->type_name("OUT");
        mApp.add_option("--format", Request().format,
                        "Format of the output; without it that of the input. One of " +
                            formatsHelp())
            ->type_name("KIND[:BITS]")
            ->check(checkedBy(
                [](const std::string& text) {
                    requireFormatWords(text);
                    return true;
                },
                "format"));
    }

    void AddStateOptions()
    {
        mApp.add_option("--set", mAssignments, "A setting; can be given many times")
            ->type_name("NAME=VALUE")
            ->expected(1)
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        mApp.add_option("--program", Request().state.program,
                        "A program of the plug-in, by number from 0 or by name")
            ->type_name("N|NAME");
        mApp.add_option("--preset", Request().state.preset,
                        "A preset of the plug-in or a chunk of one program, taken into the current "
                        "program")
            ->type_name("FILE.xml");
        mApp.add_option("--load-chunk", Request().state.loadChunk,
                        "The state of all programs, as --save-chunk wrote it, which also selects "
                        "the program")
            ->type_name("FILE");
        mApp.add_option("--save-chunk", Request().saveChunk,
                        "Writes the state of all programs, settings included, before automation")
            ->type_name("FILE");
        mApp.add_option("--save-preset", Request().savePreset,
                        "Writes the current program, settings included, as a preset file")
            ->type_name("FILE.xml");
        mApp.add_option("--automate", Request().automation, "Values of settings by time")
            ->type_name("FILE.csv");
        mApp.add_option("--midi", Request().midi, "Plays a Standard MIDI File into the plug-in")
            ->type_name("FILE.mid");
    }

    void AddTuningOptions()
    {
        StateRequest& state = Request().state;
        mApp.add_option("--scale", state.scale,
                        fmt::format("Scale: {}, or one of the preset's or chunk's own",
                                    fmt::join(kBuiltInScaleNames, ", ")))
            ->type_name("NAME");
        AddChoice("--intonation", Setting::kIntonation, state.intonation, "Intonation");
        mApp.add_option_function<std::string>(
                "--detune",
                [&state](const std::string& text) {
                    state.detuneCents = parseValue(Setting::kDetune, text);
                },
                "Detunes the scale by -50 to 50 cents")
            ->type_name("CENTS")
            ->check(checkedBy(
                [](const std::string& text) { return parseValue(Setting::kDetune, text); },
                "cents"));
        AddChoice("--reference", Setting::kPitchReference, state.reference,
                  "Channel in which the pitch is detected");
        AddChoice("--tracking", Setting::kTracking, state.tracking, "How the voice is followed");
    }

    void AddChoice(const char* name, Setting setting, std::optional<int>& chosen,
                   const char* description)
    {
        mApp.add_option_function<std::string>(
                name,
                [&chosen, setting](const std::string& text) {
                    chosen = static_cast<int>(parseValue(setting, text));
                },
                fmt::format("{}: {}", description, fmt::join(settingRule(setting).texts, ", ")))
            ->type_name("NAME")
            ->check(checkedBy(
                [setting](const std::string& text) { return parseValue(setting, text); }, "name"));
    }

    void AddPluginOptions()
    {
        mApp.add_option(
                "--plugin", mCommand.library,
                "VST library or LV2 bundle to render with; else the program's own library, or an "
                "installed one")
            ->type_name("FILE");
        mApp.add_flag("--list", mCommand.lists,
                      "Tells what the plug-in says of itself, with its parameters, and ends");
    }

    void AddRenderOptions()
    {
        mApp.add_option("--block", Request().blockFrames,
                        "Frames fed at a time, as a host would; the sound is the same for all, but "
                        "for the moment at which automation acts")
            ->check(CLI::Range(1, kLongestBlock))
            ->capture_default_str();
        mApp.add_option("--plot", Request().plot, "Draws the pitch before and after")
            ->type_name("FILE.png");
        mApp.add_option("--report", Request().report,
                        "Writes all figures and the pitch track (seconds, Hz, cents)")
            ->type_name("FILE.json");
        mApp.add_flag("--keep-latency", Request().keepsLatency,
                      "Leaves the latency at the start of the output, which is longer by it");
    }

    void AddWindowOptions()
    {
        WindowRequest& window = Request().window;
        CLI::Option* const file =
            mApp.add_option(
                    "--window", window.file,
                    "Draws the plug-in's window with the state and the settings given; with "
                    "IN, at its end")
                ->type_name("FILE.png");
        mApp.add_option("--window-at", window.seconds,
                        "Draws it when so many seconds of IN have been processed")
            ->type_name("SECONDS")
            ->check(checkedBy([](const std::string& text) { return parseSeconds(text); }, "time"))
            ->needs(file);
        mApp.add_option("--window-scale", window.scale,
                        "Draws it so many times as large, in full detail")
            ->check(CLI::Range(kSmallestScale, kLargestScale))
            ->needs(file);
    }

    [[nodiscard]] bool IsGiven(const char* option) const
    {
        return mApp.get_option(option)->count() > 0;
    }

    /// Checked here, because the parser's excludes() would repeat this for every option in --help.
    void RequireListingAlone() const
    {
        for (const CLI::Option* const option : mApp.get_options()) {
            const std::string name = option->get_name();
            if (option->count() > 0 && name != "--list" && name != "--plugin")
                fail("{} means nothing beside --list, which renders no sound", name);
        }
    }

    void RequireSound() const
    {
        for (const char* const option :
             {"--output", "--format", "--save-chunk", "--save-preset", "--automate", "--midi",
              "--plot", "--report", "--keep-latency", "--window-at"})
        {
            if (IsGiven(option))
                fail("{} requires IN: there is no sound to render", option);
        }
    }

    void PlaceFiles()
    {
        if (mFiles.empty()) {
            if (!IsGiven("--window"))
                fail("IN is required (--help tells how to call it)");
            return RequireSound();
        }
        if (!mOutput.empty())
            return PlaceInOutput();
        if (mFiles.size() == 1)
            fail("OUT is required: name the file to write, or a folder by -o");
        if (mFiles.size() > 2)
            fail("{} files are given: several inputs need a folder for their outputs, by -o",
                 mFiles.size());
        Request().input = mFiles[0];
        Request().output = mFiles[1];
    }

    void PlaceInOutput()
    {
        const bool isFolder = fs::is_directory(mOutput) || !mOutput.has_filename();
        if (mFiles.size() == 1 && !isFolder) {
            Request().input = mFiles[0];
            Request().output = mOutput;
            return;
        }
        for (const char* const option :
             {"--plot", "--report", "--save-chunk", "--save-preset", "--window"}) {
            if (mFiles.size() > 1 && IsGiven(option))
                fail("{} is for one sound: give a single input", option);
        }
        mCommand.inputs.assign(mFiles.begin(), mFiles.end());
        mCommand.folder = mOutput;
    }

    CLI::App mApp;
    CommandLine mCommand;
    std::vector<std::string> mFiles;
    fs::path mOutput;
    std::vector<std::string> mAssignments;
};

}  // namespace

std::optional<CommandLine> parseCommandLine(int argc, char** argv)
{
    return Parser().Parse(argc, argv);
}

}  // namespace orvane
