// SPDX-License-Identifier: GPL-3.0-or-later
// What every form of the plug-in does alike, in a host of each interface.

#include "PluginForm.h"

#include "support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <random>
#include <thread>

namespace orvane
{

namespace
{

enum class Kind
{
    kVst,
    kLv2,
};

class PluginFormTest : public testing::TestWithParam<Kind>
{
protected:
    [[nodiscard]] std::unique_ptr<PluginForm> Make(Kind kind, bool isOffline = true)
    {
        if (kind == Kind::kVst)
            return std::make_unique<VstPluginForm>(44100.0, isOffline);
        return std::make_unique<Lv2PluginForm>(bundle, 44100.0, isOffline);
    }
    [[nodiscard]] std::unique_ptr<PluginForm> Make(bool isOffline = true)
    {
        return Make(GetParam(), isOffline);
    }

    const TestHost host;
    Lv2Bundle bundle;
    /// A voice between two notes, for long enough that the engine's output is heard.
    const std::vector<float> voice = harmonicTone(226.0, 44100.0, 35280);
};

void setSome(PluginForm& form)
{
    form.Set(PluginForm::kCorrectPitch, 1.0f);
    form.Set(PluginForm::kKey, 5.0f);
}

}  // namespace

TEST_P(PluginFormTest, ValuesGivenBeforeTheFirstBlockAreInForceInIt)
{
    for (const bool isOffline : {false, true}) {
        SCOPED_TRACE(isOffline);
        // One that has had the values, by a program, before a host sets them.
        const auto settled = Make(isOffline);
        const std::string program = replaced(settled->Text(), "pitchCorrectionOnOff", "1");
        ASSERT_TRUE(settled->Restore(replaced(program, "key", "5")));
        setSome(*settled);
        const std::vector<float> expected = settled->Play(voice);

        const auto early = Make(isOffline);
        setSome(*early);
        EXPECT_EQ(firstDifference(early->Play(voice), expected), -1);
        const auto later = Make(isOffline);
        const auto set = [&](std::size_t at) {
            if (at == 0)
                setSome(*later);
        };
        // A VST host that plays gives values to the ticks once it has begun the stream.
        if (isOffline || GetParam() == Kind::kLv2) {
            EXPECT_EQ(firstDifference(later->Play(voice, set), expected), -1);
        }
        EXPECT_NE(firstDifference(Make(isOffline)->Play(voice), expected), -1);
    }
}

TEST_P(PluginFormTest, AProgramReturnsInAnotherInstanceOfEitherForm)
{
    const auto saved = Make();
    // What no parameter reaches, and a choice whose shift stays as it was saved.
    const std::string text =
        replaced(replaced(saved->Text(), "intonation", "1"), "pitchTranspose", "4");
    ASSERT_TRUE(saved->Restore(text));
    const std::string program = saved->Text();
    for (const char* const kept :
         {"\"intonation\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=\"1\"",
          "\"pitchTranspose\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=\"4\""})
        EXPECT_NE(program.find(kept), std::string::npos) << kept;
    for (const Kind kind : {Kind::kVst, Kind::kLv2}) {
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
    const auto play = [&](Kind kind, bool isPlayed) {
        const auto form = Make(kind);
        // Listening, correcting, in C major, which has no A#: the voice is nearest to it once it
        // has.
        EXPECT_TRUE(form->Restore(listening(replaced(form->Text(), "pitchCorrectionOnOff", "1"))));
        form->Set(PluginForm::kCorrectPitch, 1.0f);
        return form->Play(voice, [&](std::size_t at) {
            if (isPlayed && at == kNoteAt)
                form->Send(0x90, 69, 100);
        });
    };
    const std::vector<float> played = play(GetParam(), true);
    EXPECT_GT(firstDifference(play(GetParam(), false), played), static_cast<long>(kNoteAt));
    EXPECT_EQ(firstDifference(play(Kind::kVst, true), played), -1);
}

TEST_P(PluginFormTest, ManyInstancesCloseInAnyOrder)
{
    const std::size_t threads = threadCount();
    std::vector<std::unique_ptr<PluginForm>> forms;
    for (int i = 0; i < 64; ++i)
        forms.push_back(Make());
    std::shuffle(forms.begin(), forms.end(), std::mt19937(15));
    std::vector<float> left(PluginForm::kBlock);
    std::vector<float> right(PluginForm::kBlock);
    while (!forms.empty()) {
        forms.back()->Start();
        forms.back()->Run(left.data(), right.data(), left.size());
        forms.pop_back();
    }
    EXPECT_TRUE(threadsFallTo(threads));
}

TEST_P(PluginFormTest, BlocksKeepTheRulesOfTheAudioThreadWhileProgramsAreSavedAndRestoredBeside)
{
    const auto form = Make(/*isOffline*/ false);
    form->Start();
    std::vector<float> left(PluginForm::kBlock);
    std::vector<float> right(PluginForm::kBlock);
    form->Run(left.data(), right.data(), left.size());
    const std::string text = listening(form->Text());
    const std::jthread other([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            EXPECT_TRUE(form->Restore(text));
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

INSTANTIATE_TEST_SUITE_P(Forms, PluginFormTest, testing::Values(Kind::kVst, Kind::kLv2),
                         [](const testing::TestParamInfo<Kind>& kind) {
                             return kind.param == Kind::kVst ? "Vst" : "Lv2";
                         });

}  // namespace orvane
