// SPDX-License-Identifier: GPL-3.0-or-later
// The CLAP form beside the VST 2.4 form of the plug-in: the same sound and the same state, and what
// only this form offers.

#include "ClapTestHost.h"
#include "pluginwrappers/host/VstForm.h"
#include "support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

namespace orvane
{

namespace
{

constexpr int kPrograms = 7;
constexpr clap_id kCorrection = 0;
constexpr clap_id kKey = 2;
constexpr clap_id kTime = 4;
constexpr clap_id kTracking = 7;

class ClapSoundTest : public testing::Test
{
protected:
    ClapLibrary library;
};

TEST_F(ClapSoundTest, EveryPresetSoundsAsTheProgramOfTheOtherFormAtEveryRate)
{
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        const std::vector<float> voice = voiceAt(rate);
        for (int program = 0; program < kPrograms; ++program) {
            SCOPED_TRACE("program " + std::to_string(program + 1) + " at " + std::to_string(rate));
            const VstForm vst(static_cast<float>(rate));
            ask(vst.effect, effSetProgram, 0, program);
            ClapInstance clap(library);
            ASSERT_TRUE(clap.LoadPreset(program + 1));
            EXPECT_EQ(clap.host.presets,
                      std::vector<std::string>{"loaded " + std::to_string(program + 1)});
            EXPECT_EQ(clap.host.rescans, 1);
            for (int i = 0; i < vst.effect->numParams; ++i) {
                clap_param_info info;
                ASSERT_TRUE(clap.params->get_info(clap.plugin, static_cast<clap_id>(i), &info));
                EXPECT_FLOAT_EQ(static_cast<float>((clap.Value(info.id) - info.min_value) /
                                                   (info.max_value - info.min_value)),
                                vst.effect->getParameter(vst.effect, i))
                    << info.name;
            }
            EXPECT_EQ(firstDifference(clap.Play(voice, rate), vst.Play(voice)), -1);
            EXPECT_EQ(clap.latency->get(clap.plugin),
                      static_cast<std::uint32_t>(vst.effect->initialDelay));
            EXPECT_EQ(clap.host.latencyChanges, rate == 44100.0 ? 0 : 1);
        }
    }
}

TEST_F(ClapSoundTest, EventsInsideABlockActAsIfTheBlockBeganThere)
{
    constexpr std::size_t kAt = 10240;
    const std::vector<float> voice = voiceAt(44100.0);
    const VstForm vst(44100.0f);
    // Listening, in C major, which has no A#: the voice is nearest to it once it has.
    const std::string text = listening(chunkOf(vst.effect, true));
    ASSERT_EQ(loadChunk(vst.effect, text, true), 1);
    const std::vector<float> expected = vst.Play(voice, [&](std::size_t at) {
        if (at == 0)
            vst.effect->setParameter(vst.effect, kCorrection, 1.0f);
        if (at == kAt)
            vst.effect->setParameter(vst.effect, kKey, 5.0f / 11.0f);
        if (at == 2 * kAt)
            sendMidi(vst.effect, 0x90, 69, 100);
    });
    ClapInstance clap(library);
    ASSERT_TRUE(clap.Load(text));
    clap.render->set(clap.plugin, CLAP_RENDER_OFFLINE);
    clap.Start();
    std::vector<float> left = voice;
    std::vector<float> right = voice;
    for (std::size_t at = 0; at < voice.size(); at += 4096) {
        const auto isHere = [&](std::size_t time) { return time >= at && time < at + 4096; };
        if (isHere(0))
            clap.events.Value(kCorrection, 1.0);
        // Other events of the space and other spaces are passed over.
        clap.events.Value(kCorrection, 0.0, 0, CLAP_EVENT_PARAM_MOD);
        if (isHere(kAt))
            clap.events.Value(kKey, 5.0, static_cast<std::uint32_t>(kAt - at));
        if (isHere(2 * kAt))
            clap.events.Midi({0x90, 69, 100}, static_cast<std::uint32_t>(2 * kAt - at));
        clap.Run(left.data() + at, right.data() + at,
                 static_cast<std::uint32_t>(std::min<std::size_t>(4096, voice.size() - at)));
    }
    EXPECT_EQ(firstDifference(left, expected), -1);
    EXPECT_EQ(clap.Value(kKey), 5.0);
}

TEST_F(ClapSoundTest, ParametersHaveTextsOfEveryValueAndBack)
{
    ClapInstance clap(library);
    ASSERT_EQ(clap.params->count(clap.plugin), 8u);
    for (clap_id i = 0; i < 8; ++i) {
        clap_param_info info;
        ASSERT_TRUE(clap.params->get_info(clap.plugin, i, &info));
        SCOPED_TRACE(info.name);
        EXPECT_EQ(info.id, i);
        EXPECT_EQ(clap.Value(i), info.default_value);
        const bool isChoice = (info.flags & CLAP_PARAM_IS_STEPPED) != 0;
        EXPECT_EQ(isChoice, i != kTime);
        for (double value = info.min_value; value <= info.max_value; value += isChoice ? 1 : 50) {
            std::array<char, 64> text{};
            ASSERT_TRUE(
                clap.params->value_to_text(clap.plugin, i, value, text.data(), text.size()));
            double back = NAN;
            EXPECT_TRUE(clap.params->text_to_value(clap.plugin, i, text.data(), &back));
            EXPECT_EQ(back, value) << text.data();
        }
    }
    clap_param_info info;
    ASSERT_TRUE(clap.params->get_info(clap.plugin, kTime, &info));
    EXPECT_STREQ(info.name, "Pitch Correction Time");
    const auto valueOf = [&](clap_id parameter, const char* text) {
        double value = -1.0;
        return clap.params->text_to_value(clap.plugin, parameter, text, &value) ? value : -1.0;
    };
    EXPECT_EQ(valueOf(kTime, " +120MS "), 120.0);
    EXPECT_EQ(valueOf(kTime, "0,1 s"), 100.0) << "as typed in the window";
    EXPECT_EQ(valueOf(kTime, "1e9"), info.max_value);
    EXPECT_EQ(valueOf(kKey, "c#"), 4.0);
    for (const char* const none : {"", "h", "12 h", "nan", "ms"}) {
        EXPECT_EQ(valueOf(kTime, none), -1.0) << none;
        EXPECT_EQ(valueOf(kKey, none), -1.0) << none;
    }
    double value = 0.0;
    char text[4] = "";
    EXPECT_FALSE(clap.params->get_info(clap.plugin, 8, &info));
    EXPECT_FALSE(clap.params->get_value(clap.plugin, 8, &value));
    EXPECT_FALSE(clap.params->value_to_text(clap.plugin, 8, 0.0, text, 4));
    EXPECT_TRUE(clap.params->value_to_text(clap.plugin, kTime, 120.0, text, 4));
    EXPECT_STREQ(text, "120");

    clap.events.Value(kKey, 99.0);
    clap.events.Value(kTime, NAN);
    clap.events.Value(77, 1.0);
    clap.params->flush(clap.plugin, &clap.events.in, &clap.events.out);
    EXPECT_EQ(clap.Value(kKey), 11.0);
}

TEST_F(ClapSoundTest, AStateRoundTripsAndIsTheTextOfTheOtherForm)
{
    const VstForm vst(44100.0f);
    ClapInstance first(library);
    std::string text = first.Text();
    EXPECT_EQ(text, chunkOf(vst.effect, true));
    text = replaced(replaced(text, "intonation", "1"), "pitchTranspose", "4");
    ASSERT_TRUE(first.Load(text));
    EXPECT_EQ(first.host.rescans, 1);
    const std::string saved = first.Text();
    EXPECT_NE(saved, chunkOf(vst.effect, true));
    ASSERT_EQ(loadChunk(vst.effect, saved, true), 1);
    EXPECT_EQ(chunkOf(vst.effect, true), saved);
    ClapInstance second(library);
    ClapText slow(saved, 1);
    ASSERT_TRUE(second.state->load(second.plugin, &slow.in));
    EXPECT_EQ(second.Text(), saved);

    ClapText full;
    full.isFull = true;
    EXPECT_FALSE(second.state->save(second.plugin, &full.out));
    for (const std::string& bad :
         {std::string(), std::string("no state"), std::string(30u << 20, 'x')}) {
        EXPECT_FALSE(second.Load(bad));
        EXPECT_EQ(second.host.TakeLines().size(), 1u);
    }
    EXPECT_EQ(second.Text(), saved);
}

TEST_F(ClapSoundTest, ProcessKeepsTheRulesOfTheAudioThreadWhileStatesAreSavedAndLoadedBeside)
{
    ClapInstance clap(library);
    clap.Start();
    std::vector<float> left(512);
    std::vector<float> right(512);
    clap.Run(left.data(), right.data(), 512);
    const std::string text = listening(clap.Text());
    // The standard gives states to the main thread, which a test's second thread plays here.
    std::jthread other([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            EXPECT_TRUE(clap.Load(text));
            EXPECT_FALSE(clap.Text().empty());
        }
    });
    const auto begin = std::chrono::steady_clock::now();
    for (int block = 0; block < 200; ++block) {
        clap.events.Value(kCorrection, block / 50 % 2);
        clap.events.Value(kKey, block % 12, 100);
        clap.events.Value(kTracking, block / 100, 100);
        clap.events.Midi({0x90, static_cast<std::uint8_t>(block % 128), 1}, 300);
        std::array<float*, 2> channels{left.data(), right.data()};
        const clap_audio_buffer in{channels.data(), nullptr, 2, 0, 0};
        clap_audio_buffer out{channels.data(), nullptr, 2, 0, 0};
        const clap_process process{-1, 512, nullptr, &in, &out, 1, 1, &clap.events.in, nullptr};
        clap.host.isAudio = true;
        {
            const RealtimeGuard guard;
            clap.plugin->process(clap.plugin, &process);
            ASSERT_EQ(guard.violations(), 0u) << guard.firstViolation() << " in block " << block;
        }
        clap.host.isAudio = false;
        clap.events.Clear();
        // A faster stream would become the clock and tick inside the blocks.
        std::this_thread::sleep_until(begin + std::chrono::microseconds(11'610) * block);
    }
    other.request_stop();
    other.join();
    // The other thread is no main thread, and the log says so.
    EXPECT_FALSE(clap.host.TakeLines().empty());
}

TEST_F(ClapSoundTest, AHostThatCallsOnAWrongThreadOrInAWrongStateIsToldByItsLog)
{
    ClapInstance clap(library);
    const auto isToldOf = [&](const std::string& function) {
        const auto lines = clap.host.TakeLines();
        return !lines.empty() && lines.front().starts_with(function);
    };
    std::vector<float> samples(64);
    EXPECT_EQ(clap.Run(samples.data(), samples.data(), 64), CLAP_PROCESS_ERROR);
    EXPECT_TRUE(isToldOf("clap_plugin.process"));
    clap.plugin->deactivate(clap.plugin);
    EXPECT_TRUE(isToldOf("clap_plugin.deactivate"));
    clap.Start();
    EXPECT_FALSE(clap.plugin->activate(clap.plugin, 44100.0, 1, 512));
    EXPECT_TRUE(isToldOf("clap_plugin.activate"));
    clap.params->flush(clap.plugin, nullptr, nullptr);
    EXPECT_TRUE(isToldOf("clap_plugin_params.flush"));
    clap.host.isAudio = true;
    EXPECT_EQ(clap.params->count(clap.plugin), 8u);
    clap.host.isAudio = false;
    EXPECT_TRUE(isToldOf("clap_plugin_params.count"));
    clap.Stop();
    EXPECT_FALSE(clap.plugin->activate(clap.plugin, NAN, 1, 512));
    EXPECT_FALSE(clap.plugin->activate(clap.plugin, 44100.0, 1, 0));
    const auto& factory = library.Get<clap_plugin_factory>(kClapPluginFactory);
    EXPECT_EQ(factory.create_plugin(&factory, &clap.host.host, "another"), nullptr);
    EXPECT_EQ(library.entry->get_factory("another"), nullptr);
    EXPECT_EQ(clap.plugin->get_extension(clap.plugin, "another"), nullptr);
}

TEST_F(ClapSoundTest, ThePluginSleepsOnceSilenceHasPassedItsWholeDelay)
{
    ClapInstance clap(library);
    clap.Start();
    std::vector<float> left(512, 0.0f);
    std::vector<float> right = left;
    left[511] = 0.5f;
    EXPECT_EQ(clap.Run(left.data(), right.data(), 512), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(clap.tail->get(clap.plugin), kClapInfiniteTail);
    float peak = 0.0f;
    const auto latency = clap.latency->get(clap.plugin);
    std::uint32_t silence = 0;
    std::int32_t status = CLAP_PROCESS_CONTINUE;
    while (status == CLAP_PROCESS_CONTINUE && silence < 4 * latency) {
        std::ranges::fill(left, 0.0f);
        std::ranges::fill(right, 0.0f);
        status = clap.Run(left.data(), right.data(), 512);
        peak = std::max(peak, *std::ranges::max_element(left));
        silence += 512;
    }
    EXPECT_EQ(status, CLAP_PROCESS_SLEEP);
    EXPECT_GT(peak, 0.4f) << "the sample has come out before";
    EXPECT_GT(silence, latency);
    EXPECT_EQ(clap.tail->get(clap.plugin), 0u);
    EXPECT_EQ(clap.host.tailChanges, 2);
}

TEST_F(ClapSoundTest, PresetsAreFoundWithoutAnInstanceAndRefusedByAnyOtherKey)
{
    struct Found
    {
        std::vector<std::string> names;
        int errors = 0;
    } found;
    const auto& factory = library.Get<clap_preset_discovery_factory>(kClapPresetDiscoveryFactory);
    ASSERT_EQ(factory.count(&factory), 1u);
    const clap_preset_discovery_indexer indexer{
        kClapVersion,
        "test",
        "",
        "",
        "1",
        &found,
        [](const clap_preset_discovery_indexer*, const void*) { return true; },
        [](const clap_preset_discovery_indexer*, const clap_preset_discovery_location* location) {
            return location->kind == CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN;
        },
        [](const clap_preset_discovery_indexer*, const void*) { return true; },
        [](const clap_preset_discovery_indexer*, const char*) -> const void* { return nullptr; }};
    EXPECT_EQ(factory.create(&factory, &indexer, "another"), nullptr);
    const auto* const provider =
        factory.create(&factory, &indexer, factory.get_descriptor(&factory, 0)->id);
    ASSERT_TRUE(provider->init(provider));
    using Receiver = clap_preset_discovery_metadata_receiver;
    const Receiver receiver{&found,
                            [](const Receiver* self, std::int32_t, const char*) {
                                ++static_cast<Found*>(self->receiver_data)->errors;
                            },
                            [](const Receiver* self, const char* name, const char* key) {
                                auto& names = static_cast<Found*>(self->receiver_data)->names;
                                names.emplace_back(name);
                                EXPECT_EQ(key, std::to_string(names.size()));
                                return true;
                            },
                            [](const Receiver*, const clap_universal_plugin_id* id) {
                                EXPECT_STREQ(id->id, "orvane.cantorel-mini");
                            },
                            nullptr,
                            [](const Receiver*, std::uint32_t) {},
                            [](const Receiver*, const char*) {},
                            nullptr,
                            nullptr,
                            nullptr,
                            nullptr};
    EXPECT_TRUE(provider->get_metadata(provider, CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN, nullptr,
                                       &receiver));
    EXPECT_FALSE(
        provider->get_metadata(provider, CLAP_PRESET_DISCOVERY_LOCATION_FILE, "/file", &receiver));
    provider->destroy(provider);
    ASSERT_EQ(found.names.size(), static_cast<std::size_t>(kPrograms));
    EXPECT_EQ(found.errors, 1);
    const VstForm vst(44100.0f);
    for (int i = 0; i < kPrograms; ++i) {
        char name[64] = "";
        ask(vst.effect, effGetProgramNameIndexed, i, 0, name);
        EXPECT_EQ(found.names[static_cast<std::size_t>(i)], name);
    }
    const ClapInstance clap(library);
    const std::string before = clap.Text();
    EXPECT_FALSE(clap.LoadPreset(0));
    EXPECT_FALSE(clap.LoadPreset(kPrograms + 1));
    EXPECT_EQ(clap.host.presets, (std::vector<std::string>{"failed 0", "failed 8"}));
    EXPECT_EQ(clap.Text(), before);
}

TEST_F(ClapSoundTest, InstancesOfBothFormsCloseInAnyOrder)
{
    const std::size_t threads = threadCount();
    std::vector<std::unique_ptr<ClapInstance>> clap;
    std::vector<std::unique_ptr<VstForm>> vst;
    for (int i = 0; i < 32; ++i) {
        clap.push_back(std::make_unique<ClapInstance>(library));
        vst.push_back(std::make_unique<VstForm>(44100.0f));
    }
    std::mt19937 random(17);
    std::ranges::shuffle(clap, random);
    std::vector<float> left(512);
    std::vector<float> right(512);
    while (!clap.empty() || !vst.empty()) {
        if (clap.empty() || (!vst.empty() && random() % 2 == 0)) {
            vst.pop_back();
        } else {
            clap.back()->Start();
            clap.back()->Run(left.data(), right.data(), 512);
            clap.pop_back();
        }
    }
    EXPECT_TRUE(threadsFallTo(threads));
}

}  // namespace

}  // namespace orvane
