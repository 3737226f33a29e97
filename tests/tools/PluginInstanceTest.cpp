#include "tools/render/PluginInstance.h"
#include "pluginwrappers/common/VstOpcodes.h"
#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"
#include "tools/RenderProgram.h"
#include "tools/fake_plugin/FakePlugin.h"
#include "tools/render/OfflineRender.h"
#include "tools/render/PluginSettings.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <numeric>

namespace orvane
{

namespace
{

/// The fake's library, kept loaded so that its log outlives the instances.
const FakePluginLog& fakePluginLog()
{
    static const PluginLibrary library(KESTRUNE_FAKE_PLUGIN);
    void* const handle = ::dlopen(KESTRUNE_FAKE_PLUGIN, RTLD_NOW | RTLD_NOLOAD);
    const auto log = reinterpret_cast<FakePluginLog* (*)()>(::dlsym(handle, "fakePluginLog"));
    ::dlclose(handle);
    return *log();
}

RenderSettings settingsWith(std::initializer_list<const char*> assignments)
{
    RenderSettings settings;
    for (const char* assignment : assignments)
        settings.Assign(assignment);
    return settings;
}

/// Files of a render through the fake, in a way that the environment tells it.
class FakeRender
{
public:
    explicit FakeRender(const char* mode = "")
        : mMode(kFakeMode, mode)
    {
        mRequest.input = mFolder.Path("in.wav");
        mRequest.output = mFolder.Path("out.wav");
    }

    RenderRequest& Request() { return mRequest; }

    std::filesystem::path File(const char* name, const std::string& text)
    {
        writeTextFile(mFolder.Path(name), text);
        return mFolder.Path(name);
    }
    [[nodiscard]] std::string Text(const char* name) const
    {
        return readTextFile(mFolder.Path(name));
    }
    [[nodiscard]] std::ptrdiff_t Files() const { return mFolder.Count(); }

    RenderResult Run(const TestSound& sound)
    {
        writeSound(mRequest.input, sound);
        PluginInstance plugin(KESTRUNE_FAKE_PLUGIN);
        return renderOffline(mRequest, plugin);
    }

    [[nodiscard]] std::vector<float> Output() const { return readSound(mRequest.output).samples; }

private:
    EnvironmentVariable mMode;
    PrivateFolder mFolder;
    RenderRequest mRequest;
};

}  // namespace

TEST(PluginInstanceTest, ThePluginIsCalledInTheOrderOfHostsAndFindsOneThatRendersOffline)
{
    const FakePluginLog& log = fakePluginLog();
    FakeRender render;
    render.Request().blockFrames = 500;
    render.Run(testVoice(1, 0.3, 48000));
    EXPECT_EQ(log.opcodes, (std::vector<std::int32_t>{effOpen, effSetSampleRate, effSetBlockSize,
                                                      effMainsChanged, effMainsChanged, effClose}));
    EXPECT_EQ(log.host, "2400 48000 500 4 1 1 Orvane Inc. kestrune-render");
    ASSERT_EQ(log.blocks.size(), 30u);
    for (std::size_t i = 0; i + 1 < log.blocks.size(); ++i) {
        EXPECT_EQ(log.blocks[i], 500) << i;
        EXPECT_EQ(log.positions[i], 500.0 * static_cast<double>(i));
        EXPECT_NEAR(log.quarters[i], log.positions[i] / 24000.0, 1e-9);
    }
    EXPECT_EQ(std::accumulate(log.blocks.begin(), log.blocks.end(), 0), 14400 + kFakeLatency);
}

TEST(PluginInstanceTest, LatencyIsCompensatedWhereverItIsKnownInTime)
{
    struct Case
    {
        const char* mode;
        int latency;
        bool moved;
    };
    const TestSound voice = testVoice(2, 0.3);
    for (const Case& each :
         {Case{"automates", kFakeLatency, false}, Case{"early", kFakeLaterLatency, false},
          Case{"late", kFakeLatency, true}})
    {
        SCOPED_TRACE(each.mode);
        FakeRender render(each.mode);
        const RenderResult result = render.Run(voice);
        EXPECT_EQ(result.latency, each.latency);
        EXPECT_EQ(result.latencyMoved, each.moved);
        EXPECT_EQ(render.Output().size(), voice.samples.size());
        EXPECT_EQ(render.Output() == voice.samples, !each.moved);
        EXPECT_EQ(result.automationCalls > 0, each.mode == std::string("automates"));
    }
}

TEST(PluginInstanceTest, EventsComeAtTheirFrameAndCutTheBlock)
{
    FakeRender render;
    RenderRequest& request = render.Request();
    request.blockFrames = 4410;
    request.automation =
        render.File("a.csv", "0.15,Key,A\n0,Correct Pitch,On\n0.15,Key,G#\n9,Key,A");
    const std::string head{"MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x0D", 22};
    request.midi = render.File(
        "m.mid", head + std::string{"\0\x90\x3C\x64\x1D\x3C\x00\x00\x3D\x01\x00\xC2\x07", 13});
    const RenderResult result = render.Run(testVoice(1, 0.3));
    const FakePluginLog& log = fakePluginLog();
    // 29 of 96 ticks, two quarters a second: 0.151041 s.
    EXPECT_EQ(log.events, (std::vector<std::string>{
                              "0: Correct Pitch 1.00", "0: 1 90 60 100 after 0", "6615: Key 0.02",
                              "6615: Key 1.00", "6661: 1 90 60 0 after 0",
                              "6661: 1 90 61 1 after 0", "6661: 1 c2 7 0 after 0"}));
    EXPECT_EQ(log.blocks, (std::vector<std::int32_t>{4410, 2205, 46, 2159, 4410, kFakeLatency}));
    EXPECT_EQ(log.positions[3], 6661.0);
    EXPECT_EQ(result.eventsLeft, 1u);
}

TEST(PluginInstanceTest, ProgramChunkPresetAndSettingsComeInThisOrder)
{
    FakeRender render;
    RenderRequest& request = render.Request();
    request.state.program = "second";
    request.state.loadChunk = render.File("c", std::string("a\0b", 3));
    request.state.preset = render.File("p.xml", "<preset version=\"1.0\"></preset>");
    request.settings = settingsWith({"key=G#"});
    request.saveChunk = render.File("saved", "old");
    const RenderResult result = render.Run(testVoice(1, 0.3));
    const FakePluginLog& log = fakePluginLog();
    EXPECT_EQ(log.events, (std::vector<std::string>{"0: program 1", "0: Key 1.00"}));
    EXPECT_EQ(log.chunks, (std::vector<std::string>{
                              std::string("bank a\0b", 8),
                              "program <VST_Program Number=\"0\">\n<preset version=\"1.0\">"
                              "</preset>\n</VST_Program>\n"}));
    EXPECT_EQ(log.opcodes, (std::vector<std::int32_t>{effOpen, effSetSampleRate, effSetBlockSize,
                                                      effBeginSetProgram, effSetProgram,
                                                      effEndSetProgram, effSetChunk, effSetChunk,
                                                      effMainsChanged, effMainsChanged, effClose}));
    EXPECT_EQ(render.Text("saved"), kFakeChunk);
    EXPECT_EQ(result.settings.Value(Setting::kDetune), 12.5f);
}

TEST(PluginInstanceTest, StatesThatCannotBeLeaveNothingBehind)
{
    enum class Asked
    {
        kProgram,
        kPreset,
        kSave,
    };
    const auto refusal = [](const char* mode, Asked asked) {
        FakeRender render(mode);
        RenderRequest& request = render.Request();
        const auto file = render.File("f", "<preset version=\"1.0\"></preset>");
        request.state.program = asked == Asked::kProgram ? "3" : "";
        (asked == Asked::kSave ? request.saveChunk : request.state.preset) = file;
        std::string says;
        try {
            render.Run(testVoice(1, 0.1));
        } catch (const ZException& exception) {
            says = exception.GetMessage().ToNarrow();
        }
        EXPECT_EQ(render.Files(), 2) << "the input and the preset";
        return says;
    };
    EXPECT_EQ(refusal("", Asked::kProgram),
              "the plug-in Fake has no program '3'; it has First (0), Second (1),  (2)");
    EXPECT_TRUE(refusal("picky", Asked::kPreset).starts_with("the plug-in Fake refuses what /"));
    for (const Asked asked : {Asked::kPreset, Asked::kSave})
        EXPECT_EQ(refusal("chunkless", asked),
                  "the plug-in Fake stores no chunks: neither a chunk nor a preset can be given to "
                  "it or taken from it");
}

TEST(PluginSettingsTest, EveryValueArrivesAndOthersStay)
{
    PluginInstance plugin(KESTRUNE_FAKE_PLUGIN);
    const PluginSettings settings(plugin);
    for (int key = 0; key < 12; ++key) {
        settings.Give(settingsWith({("key=" + std::to_string(key)).c_str()}));
        EXPECT_EQ(settings.InForce({}).Index(Setting::kKey), key);
    }
    settings.Give(settingsWith({"Key=g#"}));
    settings.Give(settingsWith({"Pitch Correcton Time=+123.0", "PITCHcorrectionONoff=oN"}));
    const RenderSettings inForce = settings.InForce({});
    EXPECT_EQ(inForce.Text(Setting::kPitchCorrectionTime), "123 ms");
    EXPECT_TRUE(inForce.IsOn(Setting::kPitchCorrectionOnOff));
    EXPECT_EQ(inForce.Index(Setting::kKey), 11);
    EXPECT_EQ(inForce.Text(Setting::kScale), "Major");
    EXPECT_EQ(inForce.Value(Setting::kPitchShift), 0.0f);
    EXPECT_EQ(plugin.Parameter(3), 0.5f);
}

TEST(PluginSettingsTest, WhatThePluginDoesNotHaveIsRefused)
{
    PluginInstance plugin(KESTRUNE_FAKE_PLUGIN);
    const PluginSettings settings(plugin);
    expectZException(-1,
                     "transposeOnOff cannot be set: the plug-in Fake has no parameter 'Transpose'; "
                     "it has Correct Pitch, Key, Pitch Correcton Time, Wobble",
                     [&] { settings.Give(settingsWith({"transposeOnOff=On"})); });
}

}  // namespace orvane
