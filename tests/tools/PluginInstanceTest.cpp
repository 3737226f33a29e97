#include "tools/render/PluginInstance.h"
#include "pluginwrappers/common/VstOpcodes.h"
#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"
#include "tools/RenderProgram.h"
#include "tools/fake_plugin/FakePlugin.h"
#include "tools/render/OfflineRender.h"
#include "tools/render/PluginListing.h"
#include "tools/render/PluginSettings.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <numeric>
#include <optional>

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

    RenderResult Run(const TestSound& sound)
    {
        writeSound(mRequest.input, sound);
        PluginInstance plugin(KESTRUNE_FAKE_PLUGIN);
        return renderOffline(mRequest, plugin);
    }

    [[nodiscard]] std::vector<float> Output() const { return readSound(mRequest.output).samples; }

private:
    EnvironmentVariable mMode;
    ScratchFolder mFolder;
    RenderRequest mRequest;
};

}  // namespace

TEST(PluginInstanceTest, CallsComeInTheOrderOfHosts)
{
    const FakePluginLog& log = fakePluginLog();
    FakeRender().Run(testVoice(2, 0.3));
    EXPECT_EQ(log.opcodes, (std::vector<std::int32_t>{effOpen, effSetSampleRate, effSetBlockSize,
                                                      effMainsChanged, effMainsChanged, effClose}));
}

TEST(PluginInstanceTest, ThePluginFindsAHostThatRendersOffline)
{
    const FakePluginLog& log = fakePluginLog();
    FakeRender render;
    render.Request().blockFrames = 300;
    render.Run(testVoice(1, 0.3, 48000));
    EXPECT_EQ(log.version, 2400);
    EXPECT_EQ(log.rate, 48000);
    EXPECT_EQ(log.blockSize, 300);
    EXPECT_EQ(log.processLevel, 4);
    EXPECT_EQ(log.language, 1);
    EXPECT_EQ(log.sendsMidi, 0);
    EXPECT_EQ(log.vendor, "Orvane Inc.");
    EXPECT_EQ(log.product, "kestrune-render");
}

TEST(PluginInstanceTest, BlocksHaveTheAnnouncedSizeButTheLastAndTimeGoesOnWithThem)
{
    const FakePluginLog& log = fakePluginLog();
    FakeRender render;
    render.Request().blockFrames = 500;
    render.Run(testVoice(1, 0.3));
    ASSERT_EQ(log.blocks.size(), 27u);
    for (std::size_t i = 0; i + 1 < log.blocks.size(); ++i) {
        EXPECT_EQ(log.blocks[i], 500) << i;
        EXPECT_EQ(log.positions[i], 500.0 * static_cast<double>(i));
        EXPECT_NEAR(log.quarters[i], log.positions[i] / 22050.0, 1e-9);
    }
    EXPECT_EQ(std::accumulate(log.blocks.begin(), log.blocks.end(), 0), 13230 + kFakeLatency);
}

TEST(PluginInstanceTest, LatencyIsCompensatedAlsoWhereItChangesInTheFirstBlock)
{
    const TestSound voice = testVoice(2, 0.3);
    for (const auto& [mode, latency] :
         {std::pair("", kFakeLatency), std::pair("early", kFakeLaterLatency)})
    {
        FakeRender render(mode);
        const RenderResult result = render.Run(voice);
        EXPECT_EQ(result.latency, latency) << mode;
        EXPECT_FALSE(result.latencyMoved) << mode;
        EXPECT_EQ(render.Output(), voice.samples) << mode;
    }
}

TEST(PluginInstanceTest, AChangeOfLatencyThatComesTooLateIsToldAndKeepsTheLength)
{
    const TestSound voice = testVoice(1, 0.3);
    FakeRender render("late");
    const RenderResult result = render.Run(voice);
    EXPECT_EQ(result.latency, kFakeLatency);
    EXPECT_TRUE(result.latencyMoved);
    EXPECT_EQ(render.Output().size(), voice.samples.size());
}

TEST(PluginInstanceTest, CallsThatTellOfParametersAreCounted)
{
    FakeRender render("automates");
    const int calls = render.Run(testVoice(1, 0.3)).automationCalls;
    EXPECT_EQ(calls, static_cast<int>(fakePluginLog().blocks.size()));
}

TEST(PluginInstanceTest, ListingNamesParametersAndPrograms)
{
    PluginInstance plugin(KESTRUNE_FAKE_PLUGIN);
    const std::string text = describePlugin(plugin);
    for (const char* part : {"Fake\n", "Fakers\n", "7\n", "66616B65 'fake'", "150 samples",
                             "Wobble", "50 ms", "0.1250", "0  First\n", "1  Second\n", "2  \n"})
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
}

TEST(PluginSettingsTest, EveryValueArrivesAndOthersStay)
{
    PluginInstance plugin(KESTRUNE_FAKE_PLUGIN);
    const PluginSettings settings(plugin);
    for (int key = 0; key < 12; ++key) {
        settings.Give(settingsWith({("key=" + std::to_string(key)).c_str()}));
        EXPECT_EQ(settings.InForce().Index(Setting::kKey), key);
    }
    settings.Give(settingsWith({"Pitch Correcton Time=123", "correct pitch=on"}));
    const RenderSettings inForce = settings.InForce();
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
