// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/RenderProgram.h"

#include "tools/fake_plugin/FakePlugin.h"
#include "tools/render/PitchPlot.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <limits>
#include <set>
#include <thread>

namespace orvane
{

namespace
{

constexpr std::size_t kLatency = 18871;  // at 44100 Hz

using Words = std::vector<std::string>;

Words operator+(Words words, const Words& more)
{
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

const Words kCorrect{"--set", "pitchCorrectionOnOff=On"};

/// A MIDI file with one note, A3.
const std::string kOneNote("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\4\0\x90\x39\x64", 26);

/// A library that can be loaded but is not a plug-in.
std::string foreignLibrary()
{
    Dl_info info{};
    EXPECT_NE(dladdr(reinterpret_cast<void*>(&sf_open), &info), 0);
    return info.dli_fname;
}

class RenderProgramTest : public testing::Test
{
protected:
    /// Renders a sound with additional arguments and expects success.
    TestSound Render(const TestSound& sound, const Words& more)
    {
        writeSound(In(), sound);
        const ProgramRun run = runRender(Words{In(), Out()} + more);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "");
        return readSound(Out());
    }

    /// The JSON report of the last render; Report() must be among its arguments.
    [[nodiscard]] nlohmann::json ReportJson() const
    {
        return nlohmann::json::parse(readTextFile(mFolder.Path("report.json")));
    }
    [[nodiscard]] Words Report() const { return {"--report", mFolder.Path("report.json")}; }

    [[nodiscard]] std::string In() const { return mFolder.Path("in"); }
    [[nodiscard]] std::string Out() const { return mFolder.Path("out"); }

    PrivateFolder mFolder;
};

bool allFinite(const std::vector<float>& samples)
{
    return std::all_of(samples.begin(), samples.end(), [](float s) { return std::isfinite(s); });
}

}  // namespace

TEST_F(RenderProgramTest, DryOutputEqualsTheInputInTheSameFormat)
{
    for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_U8, SF_FORMAT_WAV | SF_FORMAT_PCM_16,
                             SF_FORMAT_WAV | SF_FORMAT_PCM_24, SF_FORMAT_WAV | SF_FORMAT_FLOAT,
                             SF_FORMAT_WAVEX | SF_FORMAT_PCM_24, SF_FORMAT_AIFF | SF_FORMAT_PCM_16,
                             SF_FORMAT_FLAC | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_24})
    {
        for (const int channels : {1, 2}) {
            SCOPED_TRACE(testing::Message() << std::hex << format << ", channels " << channels);
            TestSound voice = testVoice(channels, 0.3);
            voice.format = format;
            voice.samples[100] = 1.0f;
            voice.samples[102] = -1.0f;
            const TestSound output = Render(voice, {});
            const TestSound input = readSound(In());
            EXPECT_EQ(output.format, input.format);
            EXPECT_EQ(output.rate, input.rate);
            EXPECT_EQ(output.channels, input.channels);
            EXPECT_EQ(output.samples, input.samples);
        }
    }
}

TEST_F(RenderProgramTest, LossyFormatsAreKept)
{
    TestSound voice = testVoice(2, 0.5);
    voice.format = SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    const TestSound output = Render(voice, kCorrect);
    EXPECT_EQ(output.format, voice.format);
    EXPECT_EQ(output.channels, 2);
    EXPECT_EQ(output.Frames(), voice.Frames());
}

TEST_F(RenderProgramTest, KeepLatencyLeavesTheDelayAtTheStartForAllBlockSizes)
{
    const TestSound voice = testVoice(1, 0.4);
    const std::vector<float> compensated = Render(voice, kCorrect).samples;
    for (const char* block : {"1", "1000", "65536"}) {
        const Words words = kCorrect + Words{"--keep-latency", "--block", block};
        std::vector<float> kept = Render(voice, words).samples;
        ASSERT_EQ(kept.size(), kLatency + compensated.size());
        EXPECT_TRUE(std::equal(compensated.begin(), compensated.end(), kept.begin() + kLatency));
        // A corrected period may begin somewhat before the one that it replaces.
        kept.resize(kLatency - 200);
        EXPECT_EQ(std::count(kept.begin(), kept.end(), 0.0f), std::ssize(kept)) << block;
    }
}

TEST_F(RenderProgramTest, ASymbolicLinkIsKeptAndItsTargetIsReplaced)
{
    std::filesystem::create_directory(mFolder.Path("folder"));
    writeTextFile(mFolder.Path("folder/target"), "");
    std::filesystem::create_symlink("folder/target", Out());
    const TestSound voice = testVoice(1, 0.3);
    EXPECT_EQ(Render(voice, {}).samples, voice.samples);
    EXPECT_EQ(readSound(mFolder.Path("folder/target")).samples, voice.samples);
    EXPECT_TRUE(std::filesystem::is_symlink(Out()));
}

TEST_F(RenderProgramTest, MonoEqualsTheLeftChannelOfTheSameSoundInStereo)
{
    const TestSound mono = testVoice(1, 0.3);
    TestSound stereo = mono;
    stereo.channels = 2;
    stereo.samples.clear();
    for (const float sample : mono.samples)
        stereo.samples.insert(stereo.samples.end(), {sample, sample});
    std::vector<float> single = Render(mono, kCorrect).samples;
    const std::vector<float> both = Render(stereo, kCorrect).samples;
    for (std::size_t i = 0; i < single.size(); ++i)
        single[i] -= both.at(2 * i);
    EXPECT_EQ(single, std::vector<float>(single.size(), 0.0f));
}

TEST_F(RenderProgramTest, SavedChunksAndPresetsGiveTheSameSoundAgain)
{
    const TestSound voice = testVoice(1, 0.5);
    EXPECT_EQ(Render(voice, {"--program", "woman TO man"}).samples,
              Render(voice, {"--program", "6"}).samples);
    const Words program{"--program", "Adult to Child"};
    const std::string chunk = mFolder.Path("chunk");
    const std::string preset = mFolder.Path("saved.xml");
    for (const Words& settings : {Words{}, Words{"--set", "pitchTranspose=Down 3rd"},
                                  kCorrect + Words{"--set", "formantTranspose=Biggest"}})
    {
        const TestSound saved = Render(
            voice, program + settings + Words{"--save-chunk", chunk, "--save-preset", preset});
        EXPECT_NE(saved.samples, voice.samples);
        EXPECT_EQ(Render(voice, {"--load-chunk", chunk}).samples, saved.samples);
        EXPECT_EQ(Render(voice, {"--preset", preset}).samples, saved.samples);
    }
    EXPECT_NE(Render(voice, {"--load-chunk", chunk, "--program", "6"}).samples,
              Render(voice, {"--load-chunk", chunk}).samples);
    const std::string text = readTextFile(preset);
    writeTextFile(preset, "<VST_Program Number=\"3\">\n" + text + "</VST_Program>\n");
    EXPECT_EQ(Render(voice, {"--preset", preset}).samples,
              Render(voice, {"--load-chunk", chunk}).samples);
    writeTextFile(chunk, "<VST_Program><element");
    EXPECT_EQ(runRender({In(), Out(), "--load-chunk", chunk}).signal, 0);
}

TEST_F(RenderProgramTest, APresetSetsWhatIsNotAParameter)
{
    const TestSound voice = testVoice(1, 1.5);
    const std::string preset = mFolder.Path("preset.xml");
    writeTextFile(preset, "<preset version=\"1.0\"><element name=\"detune\" floatvalue=\"30\">"
                          "</element><element name=\"currentScaleIndex\" floatvalue=\"0\">"
                          "</element></preset>");
    Render(voice, kCorrect + Report() + Words{"--preset", preset});
    const nlohmann::json json = ReportJson();
    EXPECT_EQ(json["settings"]["detune"]["value"], 30.0);
    EXPECT_EQ(json["settings"]["scale"]["text"], "Chromatic");
    EXPECT_LT(json["before"]["median_cents"], 3.0);  // it is sung 30 cents sharp
    EXPECT_LT(json["after"]["median_cents"], 3.0);
}

TEST_F(RenderProgramTest, MidiNotesEditTheScaleWhenAPresetEnablesMidi)
{
    // The note removes the A, which is sung, from the scale.
    writeTextFile(mFolder.Path("m.mid"), kOneNote);
    writeTextFile(mFolder.Path("p"), "<preset version=\"1.0\"><element name=\"AcceptMIDI\" "
                                     "int32value=\"1\"></element></preset>");
    const TestSound voice = testVoice(1, 0.5);
    const std::vector<float> plain = Render(voice, kCorrect).samples;
    const Words midi = kCorrect + Words{"--midi", mFolder.Path("m.mid")};
    EXPECT_NE(Render(voice, midi + Words{"--preset", mFolder.Path("p")}).samples, plain);
}

TEST_F(RenderProgramTest, AutomationActsWithinATickAndIsReproducible)
{
    constexpr double kTickAndHop = 0.041666 + 0.0116;  // seconds
    const TestSound voice = testVoice(1, 1.5);
    for (const char* seconds : {"0.7", "0.72"}) {
        writeTextFile(mFolder.Path("a.csv"), std::string(seconds) + ",pitchCorrectionOnOff,On\n");
        const Words words{"--automate", mFolder.Path("a.csv"), "--block", "64"};
        const std::vector<float> output = Render(voice, words).samples;
        EXPECT_EQ(Render(voice, words).samples, output);
        const auto turned = std::mismatch(output.begin(), output.end(), voice.samples.begin());
        const double late =
            static_cast<double>(turned.first - output.begin()) / voice.rate - std::stod(seconds);
        EXPECT_GE(late, -0.001);
        EXPECT_LE(late, kTickAndHop + 0.001);
    }
}

TEST_F(RenderProgramTest, TheReportHasFiguresSettingsAndThePitchTrack)
{
    Render(testVoice(1, 1.5), kCorrect + Report() + Words{"--set", "key=D"});
    const nlohmann::json json = ReportJson();
    EXPECT_EQ(json["frames"], 66150);
    EXPECT_EQ(json["latency_samples"], kLatency);
    EXPECT_EQ(json["settings"].size(), 13u);
    EXPECT_EQ(json["settings"]["key"]["text"], "D");
    EXPECT_EQ(json["settings"]["pitchCorrectionTime"]["text"], "50 ms");
    EXPECT_NEAR(json["before"]["median_cents"], 30.0, 3.0);
    EXPECT_LT(json["after"]["median_cents"], 3.0);
    const nlohmann::json& pitch = json["pitch"];
    for (const char* name : {"time", "input_hz", "output_hz", "voiced"})
        EXPECT_NEAR(static_cast<double>(pitch[name].size()), 1.5 / 0.0116, 3.0) << name;
    const auto voiced = std::count(pitch["voiced"].begin(), pitch["voiced"].end(), true);
    EXPECT_GT(static_cast<double>(voiced), 0.8 * static_cast<double>(pitch["time"].size()));
}

TEST_F(RenderProgramTest, OptionsWithoutEffectAreNotedOnceEach)
{
    writeSound(In(), testVoice(1, 0.3));
    writeTextFile(mFolder.Path("m.mid"), kOneNote);
    writeTextFile(mFolder.Path("late.csv"), "9,key,D\n");
    writeTextFile(mFolder.Path("p.xml"),
                  "<preset version=\"1.0\"><element name=\"dettune\" floatvalue=\"3\"></element>"
                  "<element name=\"detune\" int32value=\"3\"></element>"
                  "<element name=\"key\" int32value=\"12\"></element>"
                  "<element name=\"detune\" floatvalue=\"80\"></element>"
                  "<element name=\"dettune\" floatvalue=\"4\"></element></preset>");
    struct Case
    {
        Words options;
        Words notes;
    };
    const std::string picture = mFolder.Path("w.png");
    for (const Case& each :
         {Case{kCorrect + Words{"--midi", mFolder.Path("m.mid")}, {"MIDI input is off"}},
          Case{kCorrect + Words{"--automate", mFolder.Path("late.csv")},
               {"1 points of automation"}},
          Case{kCorrect + Words{"--preset", mFolder.Path("p.xml")},
               {"no element 'dettune'", "another type: the plug-in takes floatvalue",
                "12 is not in 0 to 11", "80 is not in -50 to 50"}},
          Case{Words{"--window", picture, "--window-at", "2"}, {"is past the end"}},
          Case{Words{"--plot", mFolder.Path("plot.jpg")}, {"is written as PNG"}},
          Case{Words{"--set", "key=D"}, {"change nothing"}}})
    {
        const ProgramRun run = runRender(Words{In(), Out()} + each.options);
        SCOPED_TRACE(run.err);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), std::ssize(each.notes));
        for (const std::string& note : each.notes)
            EXPECT_NE(run.err.find(note), std::string::npos) << note;
    }
}

TEST_F(RenderProgramTest, ScaleIntonationDetuneAndReferenceReachThePlugin)
{
    // A scale of the user's own with root and fifth, chosen by its name.
    writeTextFile(mFolder.Path("own.xml"),
                  "<preset version=\"1.0\"><element name=\"CustomScaleNames\" int32value=\"0\">"
                  "<discrete name=\"Fifths\" value=\"0\"></discrete></element>"
                  "<element name=\"customScaleTones\"><buffer length=\"192\"><data values=\"" +
                      std::string("3f800000") + std::string(6 * 8, '0') + "3f800000" +
                      std::string(184 * 8, '0') + "\"></data></buffer></element></preset>");
    const TestSound voice = testVoice(2, 1.0);
    Render(voice, kCorrect + Report() +
                      Words{"--preset", mFolder.Path("own.xml"), "--scale", "FIFTHS", "--set",
                            "key=Db", "--reference", "left"});
    const nlohmann::json own = ReportJson()["settings"];
    EXPECT_EQ(own["scale"]["text"], "Fifths");
    EXPECT_EQ(own["scale"]["notes"], (Words{"C#", "G#"}));
    EXPECT_EQ(own["key"]["text"], "C#");
    EXPECT_EQ(own["pitchReference"]["text"], "Left");
    EXPECT_NEAR(ReportJson()["after"]["median_cents"], 0.0, 5.0)
        << "the grid has the plug-in's notes";

    // The voice is 30 cents above A.
    Render(voice,
           kCorrect + Report() +
               Words{"--scale", "Chromatic", "--detune", "30", "--intonation", "classic just"});
    EXPECT_EQ(ReportJson()["settings"]["intonation"]["text"], "Classic Just");
    Render(voice, kCorrect + Report() + Words{"--scale", "Chromatic", "--detune", "30"});
    EXPECT_LT(ReportJson()["before"]["median_cents"], 3.0);
    EXPECT_LT(ReportJson()["after"]["median_cents"], 3.0);
}

TEST_F(RenderProgramTest, ShiftsAndEditedScalesAreReportedFromThePluginsState)
{
    writeTextFile(mFolder.Path("p.xml"),
                  "<preset version=\"1.0\"><element name=\"PitchShift\" floatvalue=\"-250\">"
                  "</element><element name=\"currentScaleModified\" int32value=\"1\"></element>"
                  "<element name=\"currentCustomScale\"><buffer length=\"12\"><data values=\"" +
                      std::string("3f800000") + std::string(10 * 8, '0') +
                      "3f800000\"></data></buffer></element></preset>");
    const Words transposed{"--set", "transposeOnOff=On"};
    Render(testVoice(1, 0.5), transposed + Report() + Words{"--preset", mFolder.Path("p.xml")});
    EXPECT_EQ(ReportJson()["settings"]["PitchShift"]["value"], -250.0);
    EXPECT_EQ(ReportJson()["settings"]["scale"]["text"], "Major, edited");
    EXPECT_EQ(ReportJson()["settings"]["scale"]["notes"], (Words{"C", "B"}));
    Render(testVoice(1, 0.5),
           transposed + Report() + Words{"--set", "pitchTranspose=Down Minor 3rd"});
    EXPECT_EQ(ReportJson()["settings"]["PitchShift"]["value"], -300.0);
    EXPECT_EQ(ReportJson()["settings"]["FormantShift"]["value"], -150.0);
}

TEST_F(RenderProgramTest, SeveralInputsAreRenderedIntoAFolderAndFailuresAreListedAtTheEnd)
{
    const TestSound voice = testVoice(1, 0.5);
    const TestSound stereo = testVoice(2, 0.7);
    writeSound(mFolder.Path("a.wav"), voice);
    writeSound(mFolder.Path("b.wav"), stereo);
    writeTextFile(mFolder.Path("bad.wav"), "not a sound");
    const std::string folder = mFolder.Path("folder/");
    const ProgramRun run = runRender(
        Words{mFolder.Path("a.wav"), mFolder.Path("bad.wav"), mFolder.Path("b.wav"), "-o", folder} +
        kCorrect);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("bad.wav as a sound file"), std::string::npos) << run.err;
    EXPECT_TRUE(run.err.ends_with("1 of 3 inputs failed\n")) << run.err;
    EXPECT_EQ(readSound(folder + "a.wav").samples, Render(voice, kCorrect).samples);
    EXPECT_EQ(readSound(folder + "b.wav").samples, Render(stereo, kCorrect).samples);
    EXPECT_FALSE(std::filesystem::exists(folder + "bad.wav"));
    EXPECT_NE(run.out.find("a.wav -> "), std::string::npos);

    const EnvironmentVariable crash(kFakeMode, "crash");
    const ProgramRun crashed = runRender({mFolder.Path("a.wav"), mFolder.Path("b.wav"), "-o",
                                          folder, "--plugin", KESTRUNE_FAKE_PLUGIN});
    EXPECT_EQ(crashed.status, 2);
    EXPECT_NE(crashed.err.find("b.wav: the plug-in crashed"), std::string::npos) << crashed.err;
}

TEST_F(RenderProgramTest, FormatChoosesContainerAndBits)
{
    struct Case
    {
        const char* format;
        int code;
    };
    const TestSound voice = testVoice(1, 0.3);
    for (const Case& each : {Case{"flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24},
                             Case{"WAV", SF_FORMAT_WAV | SF_FORMAT_FLOAT},
                             Case{"aiff:16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16},
                             Case{"ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS}})
    {
        const TestSound output = Render(voice, {"--format", each.format});
        EXPECT_EQ(output.format, each.code) << each.format;
        EXPECT_EQ(output.Frames(), voice.Frames());
    }
}

TEST_F(RenderProgramTest, StandardInputAndOutputCarryASound)
{
    const TestSound voice = testVoice(2, 0.5);
    const std::vector<float> expected = Render(voice, kCorrect).samples;
    const ProgramRun run =
        RenderProgram(Words{"-", "-"} + kCorrect, KESTRUNE_RENDER_PROGRAM, In()).Finish();
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.err.find("latency       18871 samples"), std::string::npos) << run.err;
    writeTextFile(mFolder.Path("out.wav"), run.out);
    EXPECT_EQ(readSound(mFolder.Path("out.wav")).samples, expected);
}

TEST_F(RenderProgramTest, ASoundThatBeginsAtItsFirstSampleIsCorrectedFromThere)
{
    TestSound voice = testVoice(1, 1.0);
    voice.samples.erase(voice.samples.begin(), voice.samples.begin() + 2000);  // no fade-in
    const std::vector<float> output = Render(voice, kCorrect).samples;
    for (std::size_t first = 0; first < 256; first += 16)
        EXPECT_FALSE(std::equal(voice.samples.begin() + static_cast<std::ptrdiff_t>(first),
                                voice.samples.begin() + static_cast<std::ptrdiff_t>(first + 16),
                                output.begin() + static_cast<std::ptrdiff_t>(first)))
            << "the dry path from sample " << first;
    // At a ratio of 1 the corrected path is the input itself, from its first sample on.
    const std::vector<float> same = Render(voice, {"--set", "transposeOnOff=On"}).samples;
    for (std::size_t i = 0; i < 256; ++i)
        ASSERT_NEAR(same[i], voice.samples[i], 0.01) << i;
}

TEST_F(RenderProgramTest, ShortFilesKeepTheirLength)
{
    const Words all = kCorrect + Report() + Words{"--plot", mFolder.Path("p.png")};
    for (const std::size_t frames : {0u, 1u, 511u, 512u, 1024u}) {
        TestSound sound;
        sound.channels = 2;
        sound.samples.assign(2 * frames, 0.25f);
        EXPECT_EQ(Render(sound, all).Frames(), frames);
        EXPECT_EQ(Render(sound, {}).samples, sound.samples) << frames;
    }
    EXPECT_EQ(Render(TestSound{}, {"--keep-latency"}).Frames(), 0u);
    EXPECT_TRUE(ReportJson()["before"]["median_cents"].is_null()) << "no voice";
}

TEST_F(RenderProgramTest, SampleRatesFrom8000HzUpAreRendered)
{
    for (const int rate : {8000, 48000, 384000}) {
        const TestSound voice = testVoice(1, 1.0, rate);
        const TestSound output = Render(voice, kCorrect + Report());
        EXPECT_EQ(output.Frames(), voice.Frames()) << rate;
        EXPECT_TRUE(allFinite(output.samples));
        EXPECT_LT(ReportJson()["after"]["median_cents"], 5.0) << rate;
    }
}

TEST_F(RenderProgramTest, SamplesThatAreNotFiniteBecomeZero)
{
    TestSound voice = testVoice(1, 0.5);
    voice.samples[5000] = std::numeric_limits<float>::quiet_NaN();
    voice.samples[5001] = std::numeric_limits<float>::infinity();
    voice.samples[5002] = 3e38f;
    for (const Words& settings : {Words{}, kCorrect})
        EXPECT_TRUE(allFinite(Render(voice, settings + Report()).samples));
    EXPECT_EQ(ReportJson()["samples_not_finite"], 2);
}

TEST_F(RenderProgramTest, RefusalsAreOneLineWithTheRemedyAndLeaveNoFile)
{
    writeSound(mFolder.Path("voice.wav"), testVoice(1, 0.1));
    TestSound many = testVoice(1, 0.1);
    many.channels = 8;
    many.samples.resize(800);
    writeSound(mFolder.Path("many.wav"), many);
    writeSound(mFolder.Path("slow.wav"), {7000, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, {0.0f}});
    writeTextFile(mFolder.Path("text.wav"), "not a sound");
    writeTextFile(mFolder.Path("old.xml"), "<preset></preset>");
    writeTextFile(mFolder.Path("one"),
                  "<VST_Program><preset version=\"1.0\"></preset></VST_Program>");
    writeTextFile(mFolder.Path("bank"), "<VST_Program></VST_Program><VST_Program></VST_Program>");
    std::filesystem::create_symlink("voice.wav", mFolder.Path("link.wav"));
    const std::vector<std::string> names = namesIn(mFolder);
    const std::vector<float> samples = readSound(mFolder.Path("voice.wav")).samples;

    struct Refusal
    {
        Words arguments;
        std::string says;
    };
    const std::string in = mFolder.Path("voice.wav");
    const std::string out = mFolder.Path("out.wav");
    const std::vector<Refusal> refusals{
        {{in, out, "--set", "tempo=3"}, "settings are pitchCorrectionOnOff, transposeOnOff, key"},
        {{in, out, "--set", "key=H"}, "A (0), A# (1), B (2)"},
        {{in, out, "--set", "key=1.5"}, "G# (11)"},
        {{in, out, "--set", "pitchCorrectionTime=nan"}, "from 0 to 400 (ms)"},
        {{in, out, "--set", "pitchCorrectionTime=50ms"}, "from 0 to 400 (ms)"},
        {{in, out, "--set", "scale=Minor"}, "use --scale instead"},
        {{in, out, "--set", "PitchShift=100"}, "use pitchTranspose instead"},
        {{in, out, "--plugin", mFolder.Path("none.so")}, "no such plug-in file"},
        {{in, out, "--plugin", in}, "cannot be loaded"},
        {{in, out, "--plugin", foreignLibrary()}, "neither VSTPluginMain nor main"},
        {{in, out, "--block", "0"}, "not in range 1 to 65536"},
        {{in, out, "--speed"}, "--help"},
        {{in}, "OUT is required"},
        {{mFolder.Path("none.wav"), out}, "no such file"},
        {{mFolder.Path("text.wav"), out}, "WAV, AIFF, FLAC"},
        {{mFolder.Path("many.wav"), out}, "8 channels"},
        {{mFolder.Path("slow.wav"), out}, "8000 to 768000 Hz"},
        {{in, in}, "name another output"},
        {{mFolder.Path("link.wav"), in}, "name another output"},
        {{in, mFolder.Path("none/out.wav")}, "no folder"},
        {{in, mFolder.Path("")}, "folder"},
        {{in, "/dev/null"}, "not an ordinary file"},
        {{in, mFolder.Path("out.flac")}, "as the input unless --format"},
        {{in, out, "--report", mFolder.Path("r"), "--plot", mFolder.Path("r")}, "named twice"},
        {{in, out, "--window", mFolder.Path("w.png"), "--window-at", "-1"}, "--window-at"},
        {{in, out, "--preset", ""}, "--preset: it is empty"},
        {{in, out, "--program", "Man"}, "no program 'Man'; it has Default (0), "},
        {{in, out, "--preset", mFolder.Path("text.wav")}, "no element 'preset'"},
        {{in, out, "--preset", mFolder.Path("old.xml")}, "preset of version none: 1.0 is needed"},
        {{in, out, "--preset", mFolder.Path("bank")}, "2 programs: give it by --load-chunk"},
        {{in, out, "--load-chunk", mFolder.Path("old.xml")}, "is a preset: give it by --preset"},
        {{in, out, "--load-chunk", mFolder.Path("one")},
         "chunk of one program: give it by --preset"},
        {{in, out, "--load-chunk", in}, "is not a chunk of CantorelMini"},
        {{in, out, "--scale", "Dorian"}, "the scales are Chromatic, Major, Minor, Blues"},
        {{in, out, "--intonation", "Odd"}, "Pythagorean (8)"},
        {{in, out, "--detune", "51"}, "from -50 to 50 (cents)"},
        {{in, out, "--format", "flac:8"}, "flac:24"},
        {{in, out, in}, "need a folder for their outputs"},
        {{in, mFolder.Path("many.wav"), "-o", mFolder.Path("f"), "--plot", out},
         "is for one sound"},
        {{in, in, "-o", mFolder.Path("f")}, "two inputs would be written to"},
        {{"--list", in, out}, "IN means nothing beside --list"},
        {{in, out, "--window", mFolder.Path("w.png"), "--window-scale", "9"}, "1 to 8"},
        {{"--window", mFolder.Path("w.png"), in}, "OUT"},
        {{"--window", mFolder.Path("w.png"), "--plugin", KESTRUNE_FAKE_PLUGIN}, "does not tell"},
        {{"--window", mFolder.Path("w.png"), "--plot", out}, "requires IN"},
    };
    for (const Refusal& refusal : refusals) {
        const ProgramRun run = runRender(refusal.arguments);
        SCOPED_TRACE(refusal.says + " <- " + run.err);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
        EXPECT_NE(run.err.find(refusal.says), std::string::npos);
        EXPECT_EQ(namesIn(mFolder), names);
    }
    EXPECT_EQ(readSound(mFolder.Path("voice.wav")).samples, samples);
}

TEST_F(RenderProgramTest, UnsuitablePluginsAreRefusedInOneLine)
{
    writeSound(In(), testVoice(1, 0.1));
    const std::string preset = mFolder.Path("p");
    writeTextFile(preset, "<preset version=\"1.0\"></preset>");
    struct Refusal
    {
        const char* mode;
        Words arguments;
        const char* says;
    };
    for (const Refusal& refusal :
         {Refusal{"refuse", {}, "does not start"}, Refusal{"nomagic", {}, "is no plug-in"},
          Refusal{"mono", {}, "1 inputs and 1 outputs"}, Refusal{"adds", {}, "only adds"},
          Refusal{"picky", {"--preset", preset}, "Fake refuses what "},
          Refusal{"chunkless", {"--preset", preset}, "Fake stores no chunks"},
          Refusal{"chunkless", {"--save-chunk", mFolder.Path("c")}, "Fake stores no chunks"},
          Refusal{"", {"--program", "3"}, "no program '3'; it has First (0), Second (1),  (2)"},
          Refusal{"", {"--set", "transposeOnOff=1"}, "no parameter 'Transpose'; it has Correct"}})
    {
        const EnvironmentVariable environment(kFakeMode, refusal.mode);
        const ProgramRun run =
            runRender(Words{In(), Out(), "--plugin", KESTRUNE_FAKE_PLUGIN} + refusal.arguments);
        SCOPED_TRACE(run.err);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
        EXPECT_NE(run.err.find(refusal.says), std::string::npos) << refusal.says;
        EXPECT_EQ(namesIn(mFolder), (Words{"in", "p"}));
    }
    const TestSound voice = testVoice(1, 0.3);
    TestSound turned = Render(voice, kCorrect + Words{"--plugin", KESTRUNE_FAKE_PLUGIN});
    for (float& sample : turned.samples)
        sample = -sample;
    EXPECT_EQ(turned.samples, voice.samples) << "the named plug-in inverts";
}

TEST_F(RenderProgramTest, TheLibraryIsFoundInTheFoldersOfHosts)
{
    std::filesystem::copy_file(KESTRUNE_RENDER_PROGRAM, mFolder.Path("moved"));
    std::filesystem::create_directory(mFolder.Path("plugins"));
    std::filesystem::create_symlink(KESTRUNE_FAKE_PLUGIN, mFolder.Path("plugins/CantorelMini.so"));
    const EnvironmentVariable path("VST_PATH", ("/none:" + mFolder.Path("plugins")).c_str());
    const ProgramRun run = RenderProgram({"--list"}, mFolder.Path("moved")).Finish();
    EXPECT_NE(run.out.find("Fakers"), std::string::npos) << run.out;
}

TEST_F(RenderProgramTest, ListHelpAndVersionSucceed)
{
    struct Question
    {
        const char* option;
        Words parts;
    };
    for (const Question& question :
         {Question{"--list",
                   {"Orvane Inc.", "6F636D6E 'ocmn'", "inputs      2", "latency     18871 samples",
                    "Pitch Correcton Time", "50 ms", "6  Woman to Man\n"}},
          Question{"--help", {"Examples:", "formantTranspose"}},
          Question{"--version", {"kestrune-render 1"}}})
    {
        const ProgramRun run = runRender({question.option});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, "");
        for (const std::string& part : question.parts)
            EXPECT_NE(run.out.find(part), std::string::npos) << part << "\n" << run.out;
    }
}

TEST_F(RenderProgramTest, AnInterruptedRunLeavesNoFileAndEndsByTheSignal)
{
    TestSound quiet;
    quiet.samples.assign(44100 * 60, 0.0f);
    writeSound(In(), quiet);
    for (const int signal : {SIGINT, SIGTERM}) {
        RenderProgram program(Words{In(), Out(), "--block", "1"} + kCorrect);
        while (namesIn(mFolder).size() < 2)  // until the output is being written
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        kill(program.Process(), signal);
        EXPECT_EQ(program.Finish().signal, signal);
        EXPECT_EQ(namesIn(mFolder), Words{"in"});
    }
}

namespace
{

/// Columns of a picture in which a colour, 0xRRGGBB, occurs below the heading.
std::set<int> columnsWith(const Picture& picture, unsigned colour)
{
    constexpr std::size_t kHeading = 100;  // pixels, with the legend in it
    std::set<int> columns;
    for (std::size_t i = kHeading * picture.width; i < picture.pixels.size(); ++i) {
        if ((picture.pixels[i] & 0xFFFFFF) == colour)
            columns.insert(static_cast<int>(i % picture.width));
    }
    return columns;
}

}  // namespace

TEST_F(RenderProgramTest, ThePlotShowsBothCurvesAndNoneInSilence)
{
    TestSound voice = testVoice(1, 1.0);
    const std::vector<float> sung = voice.samples;
    voice.samples.resize(2 * sung.size(), 0.0f);
    voice.samples.insert(voice.samples.end(), sung.begin(), sung.end());
    const std::string plot = mFolder.Path("plot.png");
    Render(voice, kCorrect + Words{"--plot", plot});

    const std::set<int> input = columnsWith(readPicture(plot), kInputCurveColour);
    const std::set<int> output = columnsWith(readPicture(plot), kOutputCurveColour);
    EXPECT_GT(input.size(), 700u);
    EXPECT_GT(output.size(), 700u);
    for (int x = kPlotWidth / 2 - 150; x < kPlotWidth / 2 + 150; ++x)
        ASSERT_FALSE(input.contains(x) || output.contains(x)) << x;
}

TEST_F(RenderProgramTest, TheWindowPictureShowsTheStateOfTheOptions)
{
    const auto drawn = [this](const Words& options) {
        const std::string file = mFolder.Path("window.png");
        const ProgramRun run = runRender(Words{"--window", file} + options);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "");
        return readPicture(file).pixels;
    };
    const std::vector<std::uint32_t> first = drawn({});
    EXPECT_TRUE(drawn({}) == first);
    EXPECT_TRUE(drawn({"--set", "key=A"}) != first);
    EXPECT_TRUE(drawn({"--program", "3"}) != first);
    const std::vector<std::uint32_t> doubled = drawn({"--window-scale", "2"});
    ASSERT_EQ(doubled.size(), 4 * first.size());
    EXPECT_EQ(doubled.front(), first.front());
    EXPECT_EQ(doubled.back(), first.back());
}

TEST_F(RenderProgramTest, AWindowPictureDuringARenderDoesNotChangeTheSound)
{
    const TestSound voice = testVoice(1, 1.5);
    const TestSound plain = Render(voice, kCorrect);
    const std::string early = mFolder.Path("early.png");
    const std::string late = mFolder.Path("late.png");
    EXPECT_EQ(Render(voice, kCorrect + Words{"--window", early, "--window-at", "0"}).samples,
              plain.samples);
    const Words both{"--window", late, "--window-at", "1", "--plot", mFolder.Path("plot.png")};
    EXPECT_EQ(Render(voice, kCorrect + both).samples, plain.samples);
    EXPECT_TRUE(readPicture(early).pixels != readPicture(late).pixels)
        << "meter and keyboard follow the voice";
}

}  // namespace orvane
