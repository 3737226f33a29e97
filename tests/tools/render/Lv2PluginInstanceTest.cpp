// SPDX-License-Identifier: GPL-3.0-or-later
// The product's LV2 bundle in the offline program, beside its VST library.

#include "tools/render/Lv2PluginInstance.h"

#include "support/Test.h"
#include "tools/render/OfflineRender.h"
#include "tools/render/RenderProgram.h"

using namespace orvane;

namespace
{

struct Lv2PluginInstanceTest : testing::Test
{
    Lv2PluginInstanceTest()
    {
        request.input = mFolder.Path("in.wav");
        request.output = mFolder.Path("out.wav");
        writeSound(request.input, testVoice(1, 1.0));
    }
    [[nodiscard]] std::vector<float> Render(const char* plugin)
    {
        result = renderOffline(request, *openPlugin(plugin), [](std::int64_t) {});
        return readSound(request.output).samples;
    }
    void ExpectSameSamples()
    {
        const std::vector<float> expected = Render(KESTRUNE_PLUGIN_LIBRARY);
        EXPECT_EQ(result.interface, "VST 2.4");
        const std::string settings = result.settings.Text(Setting::kKey) + result.scale.name;
        EXPECT_EQ(Render(KESTRUNE_LV2_BUNDLE), expected);
        EXPECT_EQ(result.interface, "LV2");
        EXPECT_EQ(result.settings.Text(Setting::kKey) + result.scale.name, settings);
    }
    [[nodiscard]] std::string File(const char* name, const std::string& text) const
    {
        writeTextFile(mFolder.Path(name), text);
        return mFolder.Path(name);
    }

    PrivateFolder mFolder;
    RenderRequest request;
    RenderResult result;
};

}  // namespace

TEST_F(Lv2PluginInstanceTest, PresetsTuningSettingsAutomationAndMidiActAsInTheVstLibrary)
{
    // An A and an A# in C major, which has no A#: the voice is nearest to it once it has.
    const std::string notes{"MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x0B"
                            "\x20\x90\x39\x64\x20\x90\x3A\x64\x20\xC0\x07",
                            33};
    request.settings.Assign("key=D");
    request.settings.Assign("pitchCorrectionTime=0");
    request.state.scale = "Blues";
    request.state.tracking = 1;
    request.automation = File("a.csv", "0,Correct Pitch,On\n0.4,Transpose,On\n"
                                       "0.4,Pitch Transposition,5\n0.7,Key,F");
    ExpectSameSamples();
    const std::string saved = mFolder.Path("saved.xml");
    request.savePreset = saved;
    static_cast<void>(Render(KESTRUNE_LV2_BUNDLE));
    EXPECT_EQ(result.settings.Text(Setting::kTracking), "Fine");

    const RenderRequest before = std::exchange(request, {});
    request.input = before.input;
    request.output = before.output;
    request.state.preset = saved;
    request.settings.Assign("pitchCorrectionOnOff=On");
    ExpectSameSamples();
    EXPECT_EQ(result.scale.name, "Blues");

    request.state = {};
    request.state.preset =
        File("p.xml", "<preset version=\"1.0\"><element name=\"AcceptMIDI\" type=\"ZDISCRETE\" "
                      "int32value=\"1\"></element></preset>");
    const std::vector<float> unplayed = Render(KESTRUNE_LV2_BUNDLE);
    request.midi = File("m.mid", notes);
    ExpectSameSamples();
    EXPECT_NE(readSound(request.output).samples, unplayed);
}

TEST_F(Lv2PluginInstanceTest, WhatIsNoBundleOrNotInOneIsRefusedByALineThatSaysWhatWouldBeRight)
{
    const std::string in = request.input.string();
    const std::string out = request.output.string();
    std::filesystem::create_directory(mFolder.Path("none"));
    std::filesystem::create_directory(mFolder.Path("empty.lv2"));
    writeTextFile(mFolder.Path("empty.lv2/manifest.ttl"), "@prefix a: <urn:a#> .\n");
    using Words = std::vector<std::string>;
    for (const auto& [words, says] :
         {std::pair{Words{in, out, "--plugin", mFolder.Path("none")}, "it has no manifest.ttl"},
          {Words{in, out, "--plugin", mFolder.Path("empty.lv2")}, "holds 0 plug-ins"},
          {Words{in, out, "--plugin", KESTRUNE_LV2_BUNDLE, "--save-chunk", mFolder.Path("c")},
           "--preset and --save-preset take it"},
          {Words{"--window", mFolder.Path("w.png"), "--plugin", KESTRUNE_LV2_BUNDLE},
           "the VST library has"}})
    {
        const ProgramRun run = runRender(words);
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.err.find(says), std::string::npos) << run.err;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        EXPECT_FALSE(std::filesystem::exists(out));
    }
    const ProgramRun list = runRender({"--list", "--plugin", KESTRUNE_LV2_BUNDLE});
    EXPECT_EQ(list.status, 0) << list.err;
    for (const char* const part : {"LV2\n", "urn:orvane:cantorel-mini\n", "latency     18871",
                                   "Tracking                 Classic ", "6  Woman to Man\n"})
        EXPECT_NE(list.out.find(part), std::string::npos) << part << "\n" << list.out;
}
