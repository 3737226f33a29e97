// SPDX-License-Identifier: GPL-3.0-or-later
// Keyboard and ignore boxes of the shipped window, down to the pitch of the output.

#include "kestrune/common/views/KestruneIgnoreKeysView.h"
#include "kestrune/common/views/KestruneKeyboardView.h"
#include "pluginwrappers/common/EditorBench.h"
#include "support/Measure.h"
#include "support/Signals.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

constexpr float kRate = 44100.0f;
constexpr std::int32_t kBlock = 512;
// In the key of C, whose keyboard begins at note 48.
constexpr std::int32_t kA = 57;
constexpr std::int32_t kASharp = 58;
constexpr double kFlatASharp = 231.0;  // Hz: nearer to A# than to A or B, and nearer to A than to B
constexpr double kHzOfA = 220.0;
constexpr double kHzOfASharp = 233.082;

class EditorKeysTest : public EditorBench
{
protected:
    EditorKeysTest()
    {
        product->Ask(effSetSampleRate, 0, 0, nullptr, kRate);
        product->Ask(effSetBlockSize, 0, kBlock);
        product->Ask(effMainsChanged, 0, 1);
        Element("pitchCorrectionOnOff").SetDiscrete(1, false);
        Element("pitchCorrectionTime").SetZFloat(0.0f, false);
        product->Tick();
    }

    [[nodiscard]] const KestruneKeyboardView& Keys() const
    {
        return dynamic_cast<const KestruneKeyboardView&>(Find("PianoKeyboard"));
    }
    void ClickKey(std::int32_t note)
    {
        const ZRect rect = Keys().GetUpperRect(note);
        Click("PianoKeyboard", {(rect.left + rect.right) / 2, 60});
        TickTwice();
    }
    /// Ticks twice, since the elements that follow from a change are notified one tick later.
    void TickTwice()
    {
        product->Tick();
        product->Tick();
    }
    void PlayNote(std::int32_t key)
    {
        sendMidi(product->effect, 0x90, key, 100);
        TickTwice();
    }
    /// Returns the output's pitch in Hz for a steady voice of hz.
    double Hear(double hz, double expectedHz)
    {
        auto input = harmonicTone(hz, kRate, kBlock * 160);
        std::vector<float> output(input.size());
        std::vector<float> other(input.size());
        for (std::size_t at = 0; at < input.size(); at += kBlock) {
            float* in[] = {input.data() + at, input.data() + at};
            float* out[] = {output.data() + at, other.data() + at};
            product->effect->processReplacing(product->effect, in, out, kBlock);
        }
        constexpr std::size_t kHeard = 16384;
        const std::span<const float> end(output.data() + output.size() - kHeard, kHeard);
        return measurePitch(end, kRate, expectedHz);
    }
    void ExpectToHear(double hz) { EXPECT_NEAR(centsBetween(Hear(kFlatASharp, hz), hz), 0.0, 3.0); }
};

TEST_F(EditorKeysTest, AClickedKeyBecomesATargetOfTheCorrectionAndIsShown)
{
    ExpectToHear(kHzOfA);
    TickTwice();
    EXPECT_EQ(Keys().GetPlayingNote(), kA);
    ClickKey(kASharp);
    EXPECT_TRUE(Keys().IsKeyLit(kASharp));
    EXPECT_EQ(TextOf("ScaleMenu"), "\"  Major");
    ExpectToHear(kHzOfASharp);
    TickTwice();
    EXPECT_EQ(Keys().GetPlayingNote(), kASharp);
    ClickKey(kASharp);
    ExpectToHear(kHzOfA);

    Click("Pitch Correction Enable");
    TickTwice();
    EXPECT_EQ(Keys().GetPlayingNote(), -1);
}

TEST_F(EditorKeysTest, AMidiNoteSwitchesItsKeyWhileMidiIsOn)
{
    constexpr std::int32_t kMidiASharp = 70;
    PlayNote(kMidiASharp);
    EXPECT_FALSE(Keys().IsKeyLit(kASharp));
    Click("AcceptsMIDIButton");
    TickTwice();
    PlayNote(kMidiASharp);
    EXPECT_TRUE(Keys().IsKeyLit(kASharp));
    PlayNote(kMidiASharp);
    EXPECT_FALSE(Keys().IsKeyLit(kASharp));
}

TEST_F(EditorKeysTest, ANoteWithACheckedIgnoreBoxIsNotCorrected)
{
    const ZRect box =
        dynamic_cast<const KestruneIgnoreKeysView&>(Find("IgnoreKeys")).GetBoxRect(kASharp);
    Click("IgnoreKeys", {box.left + 3, 3});
    TickTwice();
    ExpectToHear(kFlatASharp);
}

}  // namespace

}  // namespace orvane
