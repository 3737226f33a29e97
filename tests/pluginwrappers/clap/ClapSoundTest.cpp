// SPDX-License-Identifier: GPL-3.0-or-later
// What only the CLAP form offers, beside the VST 2.4 form of the plug-in.

#include "pluginwrappers/forms/PluginForm.h"

using namespace orvane;

namespace
{

constexpr int kPrograms = 7;
constexpr clap_id kCorrection = 0;
constexpr clap_id kKey = 2;
constexpr clap_id kTime = 4;

struct ClapSoundTest : testing::Test
{
    const TestHost host;
    ClapLibrary library;
};

TEST_F(ClapSoundTest, EventsInsideABlockActAsIfTheBlockBeganThere)
{
    constexpr std::size_t kAt = 10240;
    const std::vector<float> voice = voiceAt(44100.0);
    VstPluginForm vst;
    // Listening, in C major, which has no A#: the voice is nearest to it once it has.
    const std::string text = switchedOn(vst.Text(), "AcceptMIDI");
    ASSERT_TRUE(vst.Restore(text));
    const std::vector<float> expected = vst.Play(voice, [&](std::size_t at) {
        if (at == 0)
            vst.Set(PluginForm::kCorrectPitch, 1.0f);
        if (at == kAt)
            vst.Set(PluginForm::kKey, 5.0f);
        if (at == 2 * kAt)
            vst.Send(0x90, 69, 100);
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

TEST_F(ClapSoundTest, OneStereoPortLeadsInAndOneOutAndNotesComeInByMidi)
{
    const ClapInstance clap(library);
    const clap_plugin* const plugin = clap.plugin;
    const auto& audio = clap.Get<clap_plugin_audio_ports>(kClapAudioPorts);
    const auto& notes = clap.Get<clap_plugin_note_ports>(kClapNotePorts);
    clap_audio_port_info ports[2];
    clap_note_port_info note;
    for (const bool isInput : {false, true}) {
        clap_audio_port_info& port = ports[isInput ? 1 : 0];
        EXPECT_EQ(audio.count(plugin, isInput), 1u);
        EXPECT_TRUE(audio.get(plugin, 0, isInput, &port) && port.channel_count == 2);
        EXPECT_FALSE(audio.get(plugin, 1, isInput, &port));
        EXPECT_EQ(notes.count(plugin, isInput), isInput ? 1u : 0u);
        EXPECT_EQ(notes.get(plugin, 0, isInput, &note), isInput);
    }
    EXPECT_EQ(ports[0].in_place_pair, ports[1].id);
    EXPECT_EQ(ports[1].in_place_pair, ports[0].id);
    EXPECT_EQ(note.supported_dialects, CLAP_NOTE_DIALECT_MIDI);

    const auto& pages = clap.Get<clap_plugin_remote_controls>(kClapRemoteControls);
    clap_remote_controls_page page;
    EXPECT_TRUE(pages.get(plugin, 0, &page) && page.param_ids[kTime] == kTime);
    EXPECT_FALSE(pages.get(plugin, pages.count(plugin), &page));
}

TEST_F(ClapSoundTest, AStateMayComeByteByByteAndWhatIsNoneIsRefusedWithALine)
{
    ClapInstance first(library);
    ASSERT_TRUE(first.Load(withValue(first.Text(), "intonation", "int32value", "1")));
    EXPECT_EQ(first.host.rescans, 1);
    const std::string saved = first.Text();
    ClapInstance second(library);
    ClapText slow(saved);
    slow.most = 1;
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
    std::vector<std::string> found;  // "!" for an error
    const auto& factory = library.Get<clap_preset_discovery_factory>(kClapPresetDiscoveryFactory);
    ASSERT_EQ(factory.count(&factory), 1u);
    clap_preset_discovery_indexer indexer{};
    indexer.declare_location = [](const clap_preset_discovery_indexer*,
                                  const clap_preset_discovery_location* location) {
        return location->kind == CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN;
    };
    EXPECT_EQ(factory.create(&factory, &indexer, "another"), nullptr);
    const auto* const provider =
        factory.create(&factory, &indexer, factory.get_descriptor(&factory, 0)->id);
    ASSERT_TRUE(provider->init(provider));
    using Receiver = clap_preset_discovery_metadata_receiver;
    Receiver receiver{};
    receiver.receiver_data = &found;
    receiver.on_error = [](const Receiver* self, std::int32_t, const char*) {
        static_cast<std::vector<std::string>*>(self->receiver_data)->emplace_back("!");
    };
    receiver.begin_preset = [](const Receiver* self, const char* name, const char* key) {
        auto& names = *static_cast<std::vector<std::string>*>(self->receiver_data);
        names.emplace_back(name);
        EXPECT_EQ(key, std::to_string(names.size()));
        return true;
    };
    receiver.add_plugin_id = [](const Receiver*, const clap_universal_plugin_id* id) {
        EXPECT_STREQ(id->id, "orvane.cantorel-mini");
    };
    receiver.set_flags = [](const Receiver*, std::uint32_t) {};
    receiver.add_creator = [](const Receiver*, const char*) {};
    EXPECT_TRUE(provider->get_metadata(provider, CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN, nullptr,
                                       &receiver));
    EXPECT_FALSE(
        provider->get_metadata(provider, CLAP_PRESET_DISCOVERY_LOCATION_FILE, "/file", &receiver));
    provider->destroy(provider);
    std::vector<std::string> expected;
    const VstPluginForm vst;
    for (int i = 0; i < kPrograms; ++i) {
        char name[64] = "";
        ask(vst.effect, effGetProgramNameIndexed, i, 0, name);
        expected.emplace_back(name);
    }
    expected.emplace_back("!");
    EXPECT_EQ(found, expected);
    ClapInstance clap(library);
    EXPECT_TRUE(clap.LoadPreset(kPrograms));
    EXPECT_EQ(clap.host.rescans, 1);
    const std::string before = clap.Text();
    EXPECT_FALSE(clap.LoadPreset(0));
    EXPECT_FALSE(clap.LoadPreset(kPrograms + 1));
    EXPECT_EQ(clap.host.presets, (std::vector<std::string>{"loaded 7", "failed 0", "failed 8"}));
    EXPECT_EQ(clap.Text(), before);
    for (const double rate : {44100.0, 48000.0, 48000.0}) {
        clap.Start(rate);
        clap.Stop();
        EXPECT_EQ(clap.host.latencyChanges, rate == 44100.0 ? 0 : 1);
    }
}

}  // namespace
