// SPDX-License-Identifier: GPL-3.0-or-later
// What every form of the plug-in does alike, in a host of each interface.

#include "PluginForm.h"

#include "support/RealtimeGuard.h"

using namespace orvane;

namespace
{

struct PluginFormsTest : testing::Test, FormsHost
{
    const std::vector<float> voice = voiceAt(44100.0);
};

struct PluginFormTest : PluginFormsTest, testing::WithParamInterface<FormKind>
{
    [[nodiscard]] auto MakeOne(bool isOffline = true) { return Make(GetParam(), isOffline); }
};

void setSome(PluginForm& form)
{
    form.Set(PluginForm::kCorrectPitch, 1.0f);
    form.Set(PluginForm::kKey, 5.0f);
}

}  // namespace

TEST_F(PluginFormsTest, EveryPresetSoundsAlikeAtEveryRate)
{
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        const std::vector<float> sound = voiceAt(rate);
        for (int preset = 0; preset < 7; ++preset) {
            const auto vst = Make(FormKind::kVst, /*isOffline*/ true, rate);
            vst->LoadPreset(preset);
            std::vector<float> shares;
            for (std::uint32_t i = 0; i < PluginForm::kParameterCount; ++i)
                shares.push_back(vst->Share(PluginForm::Parameter{i}));
            const std::vector<float> expected = vst->Play(sound);
            for (const FormKind kind : {FormKind::kLv2, FormKind::kClap}) {
                SCOPED_TRACE(testing::Message() << "preset " << preset << " at " << rate << " Hz, "
                                                << (kind == FormKind::kLv2 ? "LV2" : "CLAP"));
                const auto form = Make(kind, /*isOffline*/ true, rate);
                form->LoadPreset(preset);
                for (std::uint32_t i = 0; i < shares.size(); ++i)
                    EXPECT_FLOAT_EQ(form->Share(PluginForm::Parameter{i}), shares[i]) << i;
                EXPECT_EQ(firstDifference(form->Play(sound), expected), -1);
                EXPECT_EQ(form->Latency(), vst->Latency());
            }
        }
    }
}

TEST_P(PluginFormTest, ValuesGivenBeforeTheFirstBlockAreInForceInIt)
{
    for (const bool isOffline : {false, true}) {
        SCOPED_TRACE(isOffline);
        // One that has had the values, by a program, before a host sets them.
        const auto settled = MakeOne(isOffline);
        const std::string program =
            withValue(settled->Text(), "pitchCorrectionOnOff", "int32value", "1");
        ASSERT_TRUE(settled->Restore(withValue(program, "key", "int32value", "5")));
        setSome(*settled);
        const std::vector<float> expected = settled->Play(voice);

        const auto early = MakeOne(isOffline);
        setSome(*early);
        EXPECT_EQ(firstDifference(early->Play(voice), expected), -1);
        const auto later = MakeOne(isOffline);
        const auto set = [&](std::size_t at) {
            if (at == 0)
                setSome(*later);
        };
        // A VST host that plays gives values to the ticks once it has begun the stream.
        if (isOffline || GetParam() != FormKind::kVst) {
            EXPECT_EQ(firstDifference(later->Play(voice, set), expected), -1);
        }
        EXPECT_NE(firstDifference(MakeOne(isOffline)->Play(voice), expected), -1);
    }
}

TEST_P(PluginFormTest, AProgramReturnsInAnotherInstanceOfAnyForm)
{
    const auto saved = MakeOne();
    // What no parameter reaches, and a choice whose shift stays as it was saved.
    const std::string text = withValue(saved->Text(), "intonation", "int32value", "1");
    ASSERT_TRUE(saved->Restore(withValue(text, "pitchTranspose", "int32value", "4")));
    const std::string program = saved->Text();
    for (const char* const kept :
         {"\"intonation\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=\"1\"",
          "\"pitchTranspose\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=\"4\""})
        EXPECT_NE(program.find(kept), std::string::npos) << kept;
    for (const FormKind kind : kFormKinds) {
        const auto loaded = Make(kind);
        EXPECT_NE(loaded->Text(), program);
        ASSERT_TRUE(loaded->Restore(program));
        EXPECT_EQ(loaded->Text(), program);
        EXPECT_FALSE(loaded->Restore(""));
        EXPECT_EQ(loaded->Text(), program);
    }
}

TEST_P(PluginFormTest, APlayedNoteIsHeardFromItsBlockOn)
{
    constexpr std::size_t kNoteAt = 10 * PluginForm::kBlock;
    const auto play = [&](FormKind kind, bool isPlayed) {
        const auto form = Make(kind);
        // Listening, correcting, in C major, which has no A#: the voice is nearest to it once it
        // has.
        EXPECT_TRUE(form->Restore(switchedOn(
            withValue(form->Text(), "pitchCorrectionOnOff", "int32value", "1"), "AcceptMIDI")));
        form->Set(PluginForm::kCorrectPitch, 1.0f);
        return form->Play(voice, [&](std::size_t at) {
            if (isPlayed && at == kNoteAt)
                form->Send(0x90, 69, 100);
        });
    };
    const std::vector<float> played = play(GetParam(), true);
    EXPECT_GT(firstDifference(play(GetParam(), false), played), static_cast<long>(kNoteAt));
    EXPECT_EQ(firstDifference(play(FormKind::kVst, true), played), -1);
}

TEST_P(PluginFormTest, BlocksKeepTheRulesOfTheAudioThreadWhileProgramsAreSavedAndRestoredBeside)
{
    const auto form = MakeOne(/*isOffline*/ false);
    form->Start();
    std::vector<float> left(PluginForm::kBlock);
    std::vector<float> right(PluginForm::kBlock);
    form->Run(left.data(), right.data(), left.size());
    const std::string classic = switchedOn(form->Text(), "AcceptMIDI");
    const std::string fine = switchedOn(classic, "tracking");
    const std::jthread other([&](const std::stop_token& stop) {
        for (int turn = 0; !stop.stop_requested(); ++turn) {
            EXPECT_TRUE(form->Restore(turn % 8 < 4 ? classic : fine));
            EXPECT_FALSE(form->Text().empty());
        }
    });
    const auto begin = std::chrono::steady_clock::now();
    for (int block = 0; block < 200; ++block) {
        form->Set(PluginForm::kCorrectPitch, static_cast<float>(block / 50 % 2));
        form->Set(PluginForm::kKey, static_cast<float>(block % 12));
        form->Set(PluginForm::kCorrectionTime, static_cast<float>(block));
        form->Send(0x90, static_cast<std::uint8_t>(block % 128), 1);
        {
            const RealtimeGuard guard;
            form->Run(left.data(), right.data(), left.size());
            ASSERT_EQ(guard.violations(), 0u) << guard.firstViolation() << " in block " << block;
        }
        // A faster stream would become the clock and tick inside the blocks.
        std::this_thread::sleep_until(begin + std::chrono::microseconds(11'610) * block);
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, PluginFormTest, testing::ValuesIn(kFormKinds),
                         [](const auto& kind) {
                             return kind.param == FormKind::kVst   ? "Vst"
                                    : kind.param == FormKind::kLv2 ? "Lv2"
                                                                   : "Clap";
                         });
