// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginInstance.h"

#include "support/Test.h"
#include "tools/fake_plugin/FakePlugin.h"
#include "tools/render/OfflineRender.h"
#include "tools/render/PluginLibrary.h"
#include "tools/render/PluginSettings.h"
#include "tools/render/RenderProgram.h"

#include <dlfcn.h>

using namespace orvane;

namespace
{

/// Keeps the library of the fake loaded, so that its log outlives the instances.
const FakePluginLog& fakePluginLog()
{
    static const PluginLibrary library(KESTRUNE_FAKE_PLUGIN);
    void* const handle = ::dlopen(KESTRUNE_FAKE_PLUGIN, RTLD_NOW | RTLD_NOLOAD);
    const auto log = reinterpret_cast<FakePluginLog* (*)()>(::dlsym(handle, "fakePluginLog"));
    ::dlclose(handle);
    return *log();
}

RenderSettings settingsWith(const std::vector<std::string>& assignments)
{
    RenderSettings settings;
    for (const std::string& assignment : assignments)
        settings.Assign(assignment);
    return settings;
}

/// A render through the fake plug-in in one of its modes, with files of its own.
struct FakeRender
{
    explicit FakeRender(const char* mode = "")
        : environment(kFakeMode, mode)
    {
        request.input = folder.Path("in.wav");
        request.output = folder.Path("out.wav");
    }

    std::filesystem::path File(const char* name, const std::string& text) const
    {
        writeTextFile(folder.Path(name), text);
        return folder.Path(name);
    }
    RenderResult Run(const TestSound& sound)
    {
        writeSound(request.input, sound);
        return renderOffline(request, *openPlugin(KESTRUNE_FAKE_PLUGIN), [](std::int64_t) {});
    }

    EnvironmentVariable environment;
    PrivateFolder folder;
    RenderRequest request;
};

}  // namespace

TEST(PluginInstanceTest, EventsComeAtTheirFrameAndCutTheBlockOfAHostThatRendersOffline)
{
    const FakePluginLog& log = fakePluginLog();
    FakeRender render;
    RenderRequest& request = render.request;
    request.blockFrames = 4410;
    request.automation =
        render.File("a.csv", "0.15,Key,A\n0,Correct Pitch,On\n0.15,Key,G#\n9,Key,A");
    const std::string head{"MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x0D", 22};
    request.midi = render.File(
        "m.mid", head + std::string{"\0\x90\x3C\x64\x1D\x3C\x00\x00\x3D\x01\x00\xC2\x07", 13});
    EXPECT_EQ(render.Run(testVoice(1, 0.3)).eventsLeft, 1u);
    // 29 of 96 ticks, two quarters a second: 0.151041 s.
    EXPECT_EQ(log, (FakePluginLog{"opcode 0: 0 0",
                                  "opcode 10: 0 44100",
                                  "opcode 11: 4410 0",
                                  "opcode 12: 1 0",
                                  "host 2400 44100 4410 4 kestrune-render",
                                  "512 frames at -512, quarter -0.023",
                                  "Correct Pitch 1.00",
                                  "1: 90 60 100 after 0",
                                  "4410 frames at 0, quarter 0.000",
                                  "2205 frames at 4410, quarter 0.200",
                                  "Key 0.02",
                                  "Key 1.00",
                                  "46 frames at 6615, quarter 0.300",
                                  "1: 90 60 0 after 0",
                                  "1: 90 61 1 after 0",
                                  "1: c2 7 0 after 0",
                                  "2159 frames at 6661, quarter 0.302",
                                  "4410 frames at 8820, quarter 0.400",
                                  "150 frames at 13230, quarter 0.600",
                                  "opcode 12: 0 0",
                                  "opcode 1: 0 0"}));
}

TEST(PluginInstanceTest, LatencyIsCompensatedWhereverItIsKnownInTime)
{
    const TestSound voice = testVoice(2, 0.3);
    for (const auto& [mode, latency] :
         {std::pair{"", kFakeLatency}, {"early", kFakeLaterLatency}, {"late", kFakeLatency}})
    {
        SCOPED_TRACE(mode);
        const bool isLate = mode == std::string("late");
        FakeRender render(mode);
        const RenderResult result = render.Run(voice);
        EXPECT_EQ(result.latency, latency);
        EXPECT_EQ(result.latencyMoved, isLate);
        const std::vector<float> output = readSound(render.request.output).samples;
        EXPECT_EQ(output.size(), voice.samples.size());
        EXPECT_EQ(output == voice.samples, !isLate);
    }
}

TEST(PluginInstanceTest, ProgramChunkPresetAndSettingsComeInThisOrder)
{
    FakeRender render;
    RenderRequest& request = render.request;
    request.state.program = "second";
    request.state.loadChunk =
        render.File("c", "<VST_Program></VST_Program><VST_Program></VST_Program>");
    request.state.preset = render.File("p.xml", "<preset version=\"1.0\"></preset>");
    request.settings = settingsWith({"key=G#"});
    request.saveChunk = render.File("saved", "old");
    const FakePluginLog& log = fakePluginLog();
    const RenderResult result = render.Run({44100, 2, SF_FORMAT_WAV | SF_FORMAT_FLOAT, {}});
    const std::string program = "program <VST_Program Number=\"0\">\n<preset version=\"1.0\">"
                                "</preset>\n</VST_Program>\n";
    EXPECT_EQ(log, (FakePluginLog{
                       "opcode 0: 0 0", "opcode 10: 0 44100", "opcode 11: 512 0", "opcode 67: 0 0",
                       "opcode 2: 1 0", "opcode 68: 0 0",
                       "bank <VST_Program></VST_Program><VST_Program></VST_Program>", program,
                       "Key 1.00", "opcode 12: 1 0", "host 2400 44100 512 4 kestrune-render",
                       "512 frames at -512, quarter -0.023", "opcode 12: 0 0", "opcode 1: 0 0"}));
    EXPECT_EQ(readTextFile(request.saveChunk),
              kFakeChunk + std::string("<!-- kestrune-render program 1 -->\n"));
    EXPECT_EQ(result.settings.Value(Setting::kDetune), 12.5f);
}

TEST(PluginSettingsTest, EveryValueArrivesAndOthersStay)
{
    const auto opened = openPlugin(KESTRUNE_FAKE_PLUGIN);
    PluginInstance& plugin = *opened;
    const PluginSettings settings(plugin);
    for (int key = 0; key < 12; ++key) {
        settings.Apply(settingsWith({"key=" + std::to_string(key)}));
        EXPECT_EQ(settings.Current().Index(Setting::kKey), key);
    }
    settings.Apply(
        settingsWith({"Key=g#", "Pitch Correcton Time=+123.0", "PITCHcorrectionONoff=oN"}));
    const RenderSettings current = settings.Current();
    EXPECT_EQ(current.Text(Setting::kPitchCorrectionTime), "123 ms");
    EXPECT_TRUE(current.IsOn(Setting::kPitchCorrectionOnOff));
    EXPECT_EQ(current.Index(Setting::kKey), 11);
    EXPECT_EQ(current.Text(Setting::kScale), "Major");
    EXPECT_EQ(current.Value(Setting::kPitchShift), 0.0f);
    EXPECT_EQ(plugin.Parameter(3), 0.5f);
}
