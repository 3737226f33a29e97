// SPDX-License-Identifier: GPL-3.0-or-later
// What only the LV2 form offers, beside the VST 2.4 form of the plug-in.

#include "pluginwrappers/forms/PluginForm.h"

using namespace orvane;

namespace
{

struct Lv2SoundTest : testing::Test
{
    const TestHost host;
    Lv2Bundle bundle;
};

TEST_F(Lv2SoundTest, BlocksOfAnyLengthAndAbsentPortsGiveTheSameSound)
{
    const std::vector<float> voice = voiceAt(44100.0);
    const auto play = [&](std::size_t block, bool isBare) {
        Lv2Instance lv2(bundle, 44100.0, 512);
        lv2.Value("freewheel") = 1.0f;
        lv2.Value("pitchCorrectionOnOff") = 1.0f;
        lv2.Run(0);
        if (isBare)
            for (const char* const symbol : {"midi_in", "notify", "latency", "key"})
                lv2.Connect(symbol, nullptr);
        return lv2.Play(voice, block);
    };
    const std::vector<float> sound = play(512, false);
    EXPECT_NE(firstDifference(sound, std::vector<float>(voice.size())), -1);
    EXPECT_EQ(firstDifference(play(512, true), sound), -1) << "without optional ports";
    EXPECT_EQ(firstDifference(play(2048, false), sound), -1) << "four times as long as announced";
    EXPECT_EQ(firstDifference(play(256, false), sound), -1);

    Lv2Instance lv2(bundle);
    lv2.Activate();
    for (const char* const symbol : {"in_left", "in_right", "out_left", "out_right"})
        lv2.Connect(symbol, nullptr);
    lv2.Run(512);
    std::vector<float> only(512, 1.0f);
    lv2.Connect("out_right", only.data());
    lv2.Run(512);
    EXPECT_EQ(only, std::vector<float>(512)) << "an absent input is silence";
}

TEST_F(Lv2SoundTest, OptionsChangeRateAndBlockAndTheLatencyFollowsEvenInAnEmptyBlock)
{
    Lv2Instance lv2(bundle);
    lv2.Run(0);
    const float latency = lv2.Value("latency");
    EXPECT_GT(latency, 0.0f);
    const float rate = 96000.0f;
    const std::int32_t block = 64;
    const std::array<LV2_Options_Option, 3> options{
        {{LV2_OPTIONS_INSTANCE, 0, bundle.urids(LV2_PARAMETERS__sampleRate), sizeof rate,
          bundle.urids(LV2_ATOM__Float), &rate},
         {LV2_OPTIONS_INSTANCE, 0, bundle.urids(LV2_BUF_SIZE__maxBlockLength), sizeof block,
          bundle.urids(LV2_ATOM__Int), &block},
         {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}}};
    EXPECT_EQ(lv2.Options()->set(lv2.Handle(), options.data()), LV2_OPTIONS_SUCCESS);
    lv2.Run(0);
    VstPluginForm vst(static_cast<double>(rate));
    EXPECT_EQ(lv2.Value("latency"), static_cast<float>(vst.Latency()));
    EXPECT_NE(lv2.Value("latency"), latency);
    lv2.Value("freewheel") = 1.0f;
    const std::vector<float> voice = voiceAt(96000.0);
    EXPECT_EQ(firstDifference(lv2.Play(voice), vst.Play(voice)), -1);
}

TEST_F(Lv2SoundTest, AStateThatCannotBeReadIsRefusedAndChangesNothing)
{
    Lv2Instance lv2(bundle);
    const std::string before = lv2.Text();
    EXPECT_NE(lv2.RestoreText(""), LV2_STATE_SUCCESS);
    EXPECT_EQ(lv2.RestoreText(before, LV2_ATOM__Int), LV2_STATE_ERR_BAD_TYPE);
    const auto nothing = [](LV2_State_Handle, std::uint32_t, std::size_t*, std::uint32_t*,
                            std::uint32_t*) -> const void* { return nullptr; };
    EXPECT_EQ(lv2.States()->restore(lv2.Handle(), nothing, nullptr, 0, nullptr),
              LV2_STATE_ERR_NO_PROPERTY);
    EXPECT_EQ(lv2.Text(), before);
}

TEST_F(Lv2SoundTest, AHostWithoutTheMapOfNamesGetsNoInstanceAndALine)
{
    const LV2_Feature* const none[] = {nullptr};
    testing::internal::CaptureStderr();
    EXPECT_EQ(lilv_plugin_instantiate(bundle.plugin, 44100.0, none), nullptr);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find(LV2_URID__map), std::string::npos);
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
}

TEST_F(Lv2SoundTest, ThePortsAreThoseOfTheBundleAndKeepTheirPlaces)
{
    std::istringstream symbols("in_left in_right out_left out_right midi_in notify latency "
                               "freewheel pitchCorrectionOnOff transposeOnOff key sourceType "
                               "pitchCorrectionTime pitchTranspose formantTranspose tracking");
    std::uint32_t count = 0;
    for (std::string symbol; symbols >> symbol; ++count)
        EXPECT_EQ(bundle.PortOf(symbol), count) << symbol;
    EXPECT_EQ(lilv_plugin_get_num_ports(bundle.plugin), count);
    EXPECT_TRUE(lilv_plugin_has_latency(bundle.plugin));
    EXPECT_EQ(lilv_plugin_get_latency_port_index(bundle.plugin), 6u);
    const LilvPort* const time = lilv_plugin_get_port_by_index(bundle.plugin, 12);
    LilvNode* const name = lilv_port_get_name(bundle.plugin, time);
    EXPECT_STREQ(lilv_node_as_string(name), "Pitch Correction Time");
    lilv_node_free(name);
}

}  // namespace
