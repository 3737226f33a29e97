// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/RenderProgram.h"

#include "support/Test.h"
#include "tools/fake_plugin/FakePlugin.h"
#include "tools/render/PitchPlot.h"

#include <dlfcn.h>
#include <nlohmann/json.hpp>

#include <csignal>

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

/// An element of a preset: its value, such as `int32value="1"`, or what it holds.
std::string element(const std::string& name, const std::string& value,
                    const std::string& content = "")
{
    return "<element name=\"" + name + "\" " + value + ">" + content + "</element>";
}

/// A buffer of flags for an element of a preset; each letter but 0 is a set flag.
std::string flags(const std::string& digits)
{
    std::string values;
    for (const char digit : digits)
        values += digit == '0' ? "00000000" : "3f800000";
    return "<buffer length=\"" + std::to_string(digits.size()) + "\"><data values=\"" + values +
           "\"></data></buffer>";
}

/// A library that can be loaded but is not a plug-in.
std::string foreignLibrary()
{
    Dl_info info{};
    EXPECT_NE(dladdr(reinterpret_cast<void*>(&sf_open), &info), 0);
    return info.dli_fname;
}

struct RenderProgramTest : testing::Test
{
    /// Renders a sound with additional arguments and expects success.
    TestSound Render(const TestSound& sound, const Words& more)
    {
        writeSound(In(), sound);
        const ProgramRun run = runRender(Words{In(), Out()} + more);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "");
        return readSound(Out());
    }
    /// The JSON report of such a render.
    nlohmann::json ReportOf(const TestSound& sound, const Words& more)
    {
        Render(sound, more + Words{"--report", mFolder.Path("report.json")});
        return nlohmann::json::parse(readTextFile(mFolder.Path("report.json")));
    }
    /// Writes a file of the test and returns its path.
    [[nodiscard]] std::string File(const std::string& name, const std::string& text) const
    {
        writeTextFile(mFolder.Path(name), text);
        return mFolder.Path(name);
    }
    [[nodiscard]] std::string Preset(const std::string& elements) const
    {
        return File("preset.xml", "<preset version=\"1.0\">" + elements + "</preset>");
    }

    [[nodiscard]] std::string In() const { return mFolder.Path("in"); }
    [[nodiscard]] std::string Out() const { return mFolder.Path("out"); }

    PrivateFolder mFolder;
};

/// Expects the exit status and a line of standard error for each of the texts, which it holds.
void expectLines(const ProgramRun& run, int status, const Words& texts)
{
    SCOPED_TRACE(run.err);
    EXPECT_EQ(run.status, status);
    EXPECT_TRUE(status == 0 || run.out.empty());
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), std::ssize(texts));
    for (const std::string& text : texts)
        EXPECT_NE(run.err.find(text), std::string::npos) << text;
}

/// Columns of a picture in which a colour, 0xRRGGBB, occurs below the heading.
std::set<int> columnsWith(const Picture& picture, unsigned colour)
{
    constexpr std::size_t kHeading = 100;  // pixels, with the legend in it
    std::set<int> columns;
    for (std::size_t i = kHeading * picture.width; i < picture.pixels.size(); ++i)
        if ((picture.pixels[i] & 0xFFFFFF) == colour)
            columns.insert(static_cast<int>(i % picture.width));
    return columns;
}

}  // namespace

TEST_F(RenderProgramTest, DryOutputEqualsTheInputInTheSameFormatOrTheOneThatIsNamed)
{
    for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_U8, SF_FORMAT_WAV | SF_FORMAT_PCM_16,
                             SF_FORMAT_WAV | SF_FORMAT_FLOAT, SF_FORMAT_WAVEX | SF_FORMAT_PCM_24,
                             SF_FORMAT_AIFF | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_24})
    {
        for (const int channels : {1, 2}) {
            SCOPED_TRACE(testing::Message() << std::hex << format << ", channels " << channels);
            TestSound voice = testVoice(channels, 0.3);
            voice.format = format;
            voice.samples[100] = 1.0f;
            voice.samples[102] = -1.0f;
            const TestSound output = Render(voice, {});
            EXPECT_TRUE(output == readSound(In()));
        }
    }
    TestSound voice = testVoice(1, 0.3);
    for (const auto& [format, code] : {std::pair{"flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24},
                                       {"WAV", SF_FORMAT_WAV | SF_FORMAT_FLOAT},
                                       {"aiff:16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16},
                                       {"ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS}})
    {
        const TestSound output = Render(voice, {"--format", format});
        EXPECT_EQ(output.format, code) << format;
        EXPECT_EQ(output.Frames(), voice.Frames());
    }
    voice.format = SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    EXPECT_EQ(Render(voice, {}).format, voice.format) << "the input's by default";
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
    std::filesystem::create_symlink("folder/target", Out());
    const std::string target = File("folder/target", "");
    const TestSound voice = testVoice(1, 0.3);
    EXPECT_EQ(Render(voice, {}).samples, voice.samples);
    EXPECT_EQ(readSound(target).samples, voice.samples);
    EXPECT_TRUE(std::filesystem::is_symlink(Out()));
}

TEST_F(RenderProgramTest, SavedChunksAndPresetsGiveTheSameSoundAgain)
{
    const TestSound voice = testVoice(1, 0.5);
    EXPECT_EQ(Render(voice, {"--program", "woman TO man"}).samples,
              Render(voice, {"--program", "6"}).samples);
    const std::string chunk = mFolder.Path("chunk");
    const std::string preset = mFolder.Path("saved.xml");
    std::vector<float> saved;
    for (const Words& settings :
         {Words{}, kCorrect + Words{"--set", "formantTranspose=Biggest", "--tracking", "fine"}})
    {
        const Words save{"--program", "Adult to Child", "--save-chunk",
                         chunk,       "--save-preset",  preset};
        saved = Render(voice, save + settings).samples;
        EXPECT_NE(saved, voice.samples);
        EXPECT_EQ(Render(voice, {"--load-chunk", chunk}).samples, saved);
        EXPECT_EQ(Render(voice, {"--preset", preset}).samples, saved);
    }
    EXPECT_NE(Render(voice, {"--load-chunk", chunk, "--program", "6"}).samples, saved);
    EXPECT_NE(Render(voice, {"--preset", preset, "--tracking", "classic"}).samples, saved);
    const std::string program =
        File("program", "<VST_Program Number=\"3\">\n" + readTextFile(preset) + "</VST_Program>\n");
    EXPECT_EQ(Render(voice, {"--preset", program}).samples, saved);
    const std::string broken = File("broken", "<VST_Program><element");
    EXPECT_EQ(runRender({In(), Out(), "--load-chunk", broken}).signal, 0);
}

TEST_F(RenderProgramTest, TheReportHasFiguresSettingsAndThePitchTrack)
{
    const nlohmann::json json = ReportOf(testVoice(1, 1.5), kCorrect + Words{"--set", "key=D"});
    EXPECT_EQ(json["frames"], 66150);
    EXPECT_EQ(json["latency_samples"], kLatency);
    EXPECT_EQ(json["settings"]["key"]["text"], "D");
    EXPECT_EQ(json["settings"]["tracking"]["text"], "Classic");
    EXPECT_EQ(json["settings"]["pitchCorrectionTime"]["text"], "50 ms");
    EXPECT_NEAR(json["before"]["median_cents"], 30.0, 3.0);
    EXPECT_LT(json["after"]["median_cents"], 3.0);
    const nlohmann::json& pitch = json["pitch"];
    for (const char* name : {"time", "input_hz", "output_hz", "voiced"})
        EXPECT_NEAR(static_cast<double>(pitch[name].size()), 1.5 / 0.0116, 3.0) << name;
    EXPECT_GT(std::count(pitch["voiced"].begin(), pitch["voiced"].end(), true), 100);
}

TEST_F(RenderProgramTest, OptionsWithoutEffectAreNotedOnceEach)
{
    writeSound(In(), testVoice(1, 0.3));
    const std::string preset =
        Preset(element("dettune", "floatvalue=\"3\"") + element("detune", "int32value=\"3\"") +
               element("key", "int32value=\"12\"") + element("detune", "floatvalue=\"80\"") +
               element("dettune", "floatvalue=\"4\"") + element("tracking", "int32value=\"7\""));
    const std::pair<Words, Words> rows[] = {
        {kCorrect + Words{"--midi", File("m.mid", kOneNote)}, {"MIDI input is off"}},
        {kCorrect + Words{"--automate", File("late.csv", "9,key,D\n")}, {"1 points of automation"}},
        {kCorrect + Words{"--preset", preset},
         {"no element 'dettune'", "another type: the plug-in takes floatvalue",
          "12 is not in 0 to 11", "80 is not in -50 to 50", "7 is not in 0 to 1"}},
        {{"--window", mFolder.Path("w.png"), "--window-at", "2"}, {"is past the end"}},
        {{"--plot", mFolder.Path("plot.jpg")}, {"is written as PNG"}},
        {{"--set", "key=D"}, {"change nothing"}},
    };
    for (const auto& [options, notes] : rows)
        expectLines(runRender(Words{In(), Out()} + options), 0, notes);
}

TEST_F(RenderProgramTest, ScaleIntonationDetuneAndReferenceReachThePlugin)
{
    // A scale of the user's own with root and fifth, chosen by its name.
    const std::string fifths =
        Preset(element("CustomScaleNames", "int32value=\"0\"",
                       "<discrete name=\"Fifths\" value=\"0\"></discrete>") +
               element("customScaleTones", "", flags("10000001" + std::string(184, '0'))));
    const TestSound voice = testVoice(2, 1.0);
    const nlohmann::json own =
        ReportOf(voice, kCorrect + Words{"--preset", fifths, "--scale", "FIFTHS", "--set", "key=Db",
                                         "--reference", "left"});
    EXPECT_EQ(own["settings"]["scale"]["text"], "Fifths");
    EXPECT_EQ(own["settings"]["scale"]["notes"], (Words{"C#", "G#"}));
    EXPECT_EQ(own["settings"]["key"]["text"], "C#");
    EXPECT_EQ(own["settings"]["pitchReference"]["text"], "Left");
    EXPECT_NEAR(own["after"]["median_cents"], 0.0, 5.0) << "the grid has the plug-in's notes";

    // The voice is 30 cents above A.
    const nlohmann::json detuned =
        ReportOf(voice, kCorrect + Words{"--scale", "Chromatic", "--detune", "30"});
    EXPECT_LT(detuned["before"]["median_cents"], 3.0);
    EXPECT_LT(detuned["after"]["median_cents"], 3.0);
}

TEST_F(RenderProgramTest, APresetsSettingsAreReportedFromThePluginsState)
{
    const std::string preset = Preset(element("PitchShift", "floatvalue=\"-250\"") +
                                      element("detune", "floatvalue=\"30\"") +
                                      element("currentScaleModified", "int32value=\"1\"") +
                                      element("currentCustomScale", "", flags("100000000001")));
    const Words transposed{"--set", "transposeOnOff=On"};
    const TestSound voice = testVoice(1, 0.5);
    const nlohmann::json json = ReportOf(voice, transposed + Words{"--preset", preset})["settings"];
    EXPECT_EQ(json["PitchShift"]["value"], -250.0);
    EXPECT_EQ(json["detune"]["value"], 30.0);
    EXPECT_EQ(json["scale"]["text"], "Major, edited");
    EXPECT_EQ(json["scale"]["notes"], (Words{"C", "B"}));
    const nlohmann::json down =
        ReportOf(voice, transposed + Words{"--set", "pitchTranspose=Down Minor 3rd"})["settings"];
    EXPECT_EQ(down["PitchShift"]["value"], -300.0);
    EXPECT_EQ(down["FormantShift"]["value"], -150.0);
}

TEST_F(RenderProgramTest, SeveralInputsAreRenderedIntoAFolderAndFailuresAreListedAtTheEnd)
{
    const TestSound voice = testVoice(1, 0.5);
    const TestSound stereo = testVoice(2, 0.7);
    const std::string a = mFolder.Path("a.wav");
    const std::string b = mFolder.Path("b.wav");
    writeSound(a, voice);
    writeSound(b, stereo);
    const std::string folder = mFolder.Path("folder/");
    const ProgramRun run =
        runRender(Words{a, File("bad.wav", "not a sound"), b, "-o", folder} + kCorrect);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("bad.wav as a sound file"), std::string::npos) << run.err;
    EXPECT_TRUE(run.err.ends_with("1 of 3 inputs failed\n")) << run.err;
    EXPECT_EQ(readSound(folder + "a.wav").samples, Render(voice, kCorrect).samples);
    EXPECT_EQ(readSound(folder + "b.wav").samples, Render(stereo, kCorrect).samples);
    EXPECT_FALSE(std::filesystem::exists(folder + "bad.wav"));
    EXPECT_NE(run.out.find("a.wav -> "), std::string::npos);

    const EnvironmentVariable crash(kFakeMode, "crash");
    const ProgramRun crashed = runRender({a, b, "-o", folder, "--plugin", KESTRUNE_FAKE_PLUGIN});
    EXPECT_EQ(crashed.status, 2);
    EXPECT_NE(crashed.err.find("b.wav: the plug-in crashed"), std::string::npos) << crashed.err;
}

TEST_F(RenderProgramTest, StandardInputAndOutputCarryASound)
{
    const std::vector<float> expected = Render(testVoice(2, 0.5), kCorrect).samples;
    const ProgramRun run =
        RenderProgram(Words{"-", "-"} + kCorrect, KESTRUNE_RENDER_PROGRAM, In()).Finish();
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.err.find("latency       18871 samples"), std::string::npos) << run.err;
    EXPECT_EQ(readSound(File("out.wav", run.out)).samples, expected);
}

TEST_F(RenderProgramTest, ShortFilesKeepTheirLength)
{
    for (const std::size_t frames : {0u, 1u, 511u, 512u, 1024u}) {
        const TestSound sound{.channels = 2, .samples = std::vector<float>(2 * frames, 0.25f)};
        const Words plot{"--plot", mFolder.Path("p.png")};
        EXPECT_TRUE(ReportOf(sound, kCorrect + plot)["before"]["median_cents"].is_null());
        EXPECT_EQ(readSound(Out()).Frames(), frames);
        EXPECT_EQ(Render(sound, {}).samples, sound.samples) << frames;
    }
    EXPECT_EQ(Render(TestSound{}, {"--keep-latency"}).Frames(), 0u);
}

TEST_F(RenderProgramTest, SampleRatesFrom8000HzUpAreRenderedAndSamplesThatAreNotFiniteBecomeZero)
{
    for (const int rate : {8000, 48000, 384000}) {
        TestSound voice = testVoice(1, 1.0, rate);
        voice.samples[5000] = std::numeric_limits<float>::quiet_NaN();
        voice.samples[5001] = std::numeric_limits<float>::infinity();
        const nlohmann::json json = ReportOf(voice, kCorrect);
        EXPECT_LT(json["after"]["median_cents"], 5.0) << rate;
        EXPECT_EQ(json["samples_not_finite"], 2);
        const std::vector<float> output = readSound(Out()).samples;
        EXPECT_EQ(output.size(), voice.samples.size());
        EXPECT_TRUE(std::ranges::all_of(output, [](float s) { return std::isfinite(s); }));
    }
}

TEST_F(RenderProgramTest, RefusalsAreOneLineWithTheRemedyAndLeaveNoFile)
{
    const std::string in = mFolder.Path("voice.wav");
    const std::string out = mFolder.Path("out.wav");
    const std::string many = mFolder.Path("many.wav");
    const std::string slow = mFolder.Path("slow.wav");
    const std::string picture = mFolder.Path("w.png");
    writeSound(in, testVoice(1, 0.1));
    writeSound(many, {44100, 8, SF_FORMAT_WAV | SF_FORMAT_FLOAT, std::vector<float>(800)});
    writeSound(slow, {7000, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, {0.0f}});
    const std::string text = File("text.wav", "not a sound");
    const std::string old = File("old.xml", "<preset></preset>");
    const std::string one =
        File("one", "<VST_Program><preset version=\"1.0\"></preset></VST_Program>");
    const std::string bank = File("bank", "<VST_Program></VST_Program><VST_Program></VST_Program>");
    std::filesystem::create_symlink("voice.wav", mFolder.Path("link.wav"));
    const std::vector<std::string> names = namesIn(mFolder);
    const std::vector<float> samples = readSound(in).samples;

    const std::pair<Words, const char*> refusals[] = {
        {{in, out, "--set", "tempo=3"}, "settings are pitchCorrectionOnOff, transposeOnOff, key"},
        {{in, out, "--set", "key=H"}, "A (0), A# (1), B (2)"},
        {{in, out, "--set", "pitchCorrectionTime=nan"}, "from 0 to 400 (ms)"},
        {{in, out, "--set", "scale=Minor"}, "use --scale instead"},
        {{in, out, "--set", "PitchShift=100"}, "use pitchTranspose instead"},
        {{in, out, "--plugin", mFolder.Path("none.so")}, "no such plug-in file"},
        {{in, out, "--plugin", in}, "cannot be loaded"},
        {{in, out, "--plugin", foreignLibrary()}, "neither VSTPluginMain nor main"},
        {{in}, "OUT is required"},
        {{mFolder.Path("none.wav"), out}, "no such file"},
        {{text, out}, "WAV, AIFF, FLAC"},
        {{many, out}, "8 channels"},
        {{slow, out}, "8000 to 768000 Hz"},
        {{mFolder.Path("link.wav"), in}, "name another output"},
        {{in, mFolder.Path("none/out.wav")}, "no folder"},
        {{in, mFolder.Path("")}, "folder"},
        {{in, "/dev/null"}, "not an ordinary file"},
        {{in, mFolder.Path("out.flac")}, "as the input unless --format"},
        {{in, out, "--report", mFolder.Path("r"), "--plot", mFolder.Path("r")}, "named twice"},
        {{in, out, "--preset", ""}, "--preset: it is empty"},
        {{in, out, "--program", "Man"}, "no program 'Man'; it has Default (0), "},
        {{in, out, "--preset", text}, "no element 'preset'"},
        {{in, out, "--preset", old}, "preset of version none: 1.0 is needed"},
        {{in, out, "--preset", bank}, "2 programs: give it by --load-chunk"},
        {{in, out, "--load-chunk", old}, "is a preset: give it by --preset"},
        {{in, out, "--load-chunk", one}, "chunk of one program: give it by --preset"},
        {{in, out, "--load-chunk", in}, "is not a chunk of CantorelMini"},
        {{in, out, "--scale", "Dorian"}, "the scales are Chromatic, Major, Minor, Blues"},
        {{in, out, in}, "need a folder for their outputs"},
        {{in, many, "-o", mFolder.Path("f"), "--plot", out}, "is for one sound"},
        {{in, in, "-o", mFolder.Path("f")}, "two inputs would be written to"},
        {{"--list", in, out}, "IN means nothing beside --list"},
        {{"--window", picture, "--plugin", KESTRUNE_FAKE_PLUGIN}, "does not tell"},
        {{"--window", picture, "--plot", out}, "requires IN"},
    };
    for (const auto& [arguments, says] : refusals) {
        expectLines(runRender(arguments), 2, {says});
        EXPECT_EQ(namesIn(mFolder), names) << says;
    }
    EXPECT_EQ(readSound(in).samples, samples);
}

TEST_F(RenderProgramTest, UnsuitablePluginsAreRefusedInOneLine)
{
    writeSound(In(), testVoice(1, 0.1));
    const std::string preset = Preset("");
    const std::tuple<const char*, Words, const char*> refusals[] = {
        {"refuse", {}, "does not start"},
        {"nomagic", {}, "is no plug-in"},
        {"mono", {}, "1 inputs and 2 outputs"},
        {"adds", {}, "only adds"},
        {"picky", {"--preset", preset}, "Fake refuses what "},
        {"chunkless", {"--preset", preset}, "Fake stores no chunks"},
        {"chunkless", {"--save-chunk", mFolder.Path("c")}, "Fake stores no chunks"},
        {"", {"--program", "3"}, "no program '3'; it has First (0), Second (1),  (2)"},
        {"", {"--set", "transposeOnOff=1"}, "no parameter 'Transpose'; it has Correct"}};
    for (const auto& [mode, arguments, says] : refusals) {
        const EnvironmentVariable environment(kFakeMode, mode);
        const Words words{In(), Out(), "--plugin", KESTRUNE_FAKE_PLUGIN};
        expectLines(runRender(words + arguments), 2, {says});
        EXPECT_EQ(namesIn(mFolder), (Words{"in", "preset.xml"}));
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
    const std::pair<const char*, Words> questions[] = {
        {"--list", {"6F636D6E 'ocmn'", "latency     18871 samples", "6  Woman to Man\n"}},
        {"--help", {"Examples:", "formantTranspose"}},
        {"--version", {"kestrune-render 1"}}};
    for (const auto& [option, parts] : questions) {
        const ProgramRun run = runRender({option});
        expectLines(run, 0, {});
        for (const std::string& part : parts)
            EXPECT_NE(run.out.find(part), std::string::npos) << part << "\n" << run.out;
    }
}

TEST_F(RenderProgramTest, AnInterruptedRunLeavesNoFileAndEndsByTheSignal)
{
    writeSound(In(), {.samples = std::vector<float>(44100 * 60)});
    for (const int signal : {SIGINT, SIGTERM}) {
        RenderProgram program(Words{In(), Out(), "--block", "1"} + kCorrect);
        while (namesIn(mFolder).size() < 2)  // until the output is being written
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        kill(program.Process(), signal);
        EXPECT_EQ(program.Finish().signal, signal);
        EXPECT_EQ(namesIn(mFolder), Words{"in"});
    }
}

TEST_F(RenderProgramTest, ThePlotShowsBothCurvesAndNoneInSilence)
{
    TestSound voice = testVoice(1, 1.0);
    const std::vector<float> sung = voice.samples;
    voice.samples.resize(2 * sung.size(), 0.0f);
    voice.samples.insert(voice.samples.end(), sung.begin(), sung.end());
    const std::string plot = mFolder.Path("plot.png");
    Render(voice, kCorrect + Words{"--plot", plot});
    for (const unsigned colour : {kInputCurveColour, kOutputCurveColour}) {
        const std::set<int> columns = columnsWith(readPicture(plot), colour);
        EXPECT_GT(columns.size(), 700u);
        for (int x = kPlotWidth / 2 - 150; x < kPlotWidth / 2 + 150; ++x)
            ASSERT_FALSE(columns.contains(x)) << x;
    }
}

TEST_F(RenderProgramTest, TheWindowPictureShowsTheStateOfTheOptions)
{
    const std::string file = mFolder.Path("window.png");
    const auto drawn = [&](const Words& options) {
        expectLines(runRender(Words{"--window", file} + options), 0, {});
        return readPicture(file).pixels;
    };
    const std::vector<std::uint32_t> first = drawn({});
    EXPECT_TRUE(drawn({}) == first);
    EXPECT_TRUE(drawn({"--set", "key=A"}) != first);
    EXPECT_EQ(drawn({"--window-scale", "1"}), first);
    const std::vector<std::uint32_t> twice = drawn({"--window-scale", "2"});
    ASSERT_EQ(twice.size(), 4 * first.size());
    std::size_t unlike = 0;
    for (std::size_t i = 0; i < twice.size(); i += 2)
        unlike += twice[i] != twice[i + 1] ? 1 : 0;
    EXPECT_GT(unlike, first.size() / 20) << "it enlarges pixels";

    // During a render it shows the voice and does not change the sound.
    const TestSound voice = testVoice(1, 1.5);
    const std::vector<float> plain = Render(voice, kCorrect).samples;
    std::vector<std::uint32_t> shown[2];
    for (const int second : {0, 1}) {
        const Words window{"--window", file, "--window-at", std::to_string(second)};
        EXPECT_EQ(Render(voice, kCorrect + window).samples, plain);
        shown[second] = readPicture(file).pixels;
    }
    EXPECT_TRUE(shown[0] != shown[1]) << "meter and keyboard follow the voice";
}

}  // namespace orvane
