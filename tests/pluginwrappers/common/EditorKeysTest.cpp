// SPDX-License-Identifier: GPL-3.0-or-later
// Keyboard and ignore boxes of the shipped window in the hands of a user, down to the notes that
// are heard. Without a display; it ticks when a test says so.

#include "kestrune/common/pitch/KestruneNameScaleDialog.h"
#include "kestrune/common/views/KestruneIgnoreKeysView.h"
#include "kestrune/common/views/KestruneKeyboardView.h"
#include "pluginwrappers/common/EditorBench.h"
#include "pluginwrappers/interface/VstEvents.h"
#include "support/BoxRecorder.h"
#include "support/Measure.h"
#include "support/Signals.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZImage.h"

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
    [[nodiscard]] const KestruneIgnoreKeysView& Boxes() const
    {
        return dynamic_cast<const KestruneIgnoreKeysView&>(Find("IgnoreKeys"));
    }
    [[nodiscard]] ZPoint OnKey(std::int32_t note) const
    {
        const ZRect rect = Keys().GetUpperRect(note);
        return {(rect.left + rect.right) / 2, 60};
    }
    void ClickKey(std::int32_t note)
    {
        Click("PianoKeyboard", OnKey(note));
        TickTwice();
    }
    void ClickBox(std::int32_t note)
    {
        const ZRect box = Boxes().GetBoxRect(note);
        Click("IgnoreKeys", {box.left + 3, 3});
        TickTwice();
    }
    /// What follows from a change is told a tick later.
    void TickTwice()
    {
        product->Tick();
        product->Tick();
    }
    void PlayNote(std::int32_t key)
    {
        VstMidiEvent on{};
        on.type = kVstMidiType;
        on.midiData[0] = static_cast<char>(0x90);
        on.midiData[1] = static_cast<char>(key);
        on.midiData[2] = 100;
        VstEvents list{1, 0, {reinterpret_cast<VstEvent*>(&on)}};
        product->Ask(effProcessEvents, 0, 0, &list);
        TickTwice();
    }
    /// What comes out at the end of a steady voice of that pitch, in Hz.
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
    [[nodiscard]] std::vector<std::uint32_t> Picture()
    {
        TickTwice();
        const ZInterfaceLock lock;
        window->RedrawAll();
        return window->RenderOffscreen().GetNative()->ReadPixels();
    }
};

TEST_F(EditorKeysTest, AKeyThatIsClickedBecomesATargetThatIsHeardAndShown)
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

TEST_F(EditorKeysTest, ANoteOfMidiIsSwitchedOnTheKeyboardWhileMidiIsOn)
{
    constexpr std::int32_t kMidiASharp = 70;
    PlayNote(kMidiASharp);
    EXPECT_FALSE(Keys().IsKeyLit(kASharp));
    Click("AcceptsMIDIButton");
    TickTwice();
    PlayNote(kMidiASharp);
    EXPECT_TRUE(Keys().IsKeyLit(kASharp));
    ExpectToHear(kHzOfASharp);
    PlayNote(kMidiASharp);
    EXPECT_FALSE(Keys().IsKeyLit(kASharp));
    ExpectToHear(kHzOfA);
}

TEST_F(EditorKeysTest, ANoteWhoseBoxIsCheckedIsLeftAsItIsSung)
{
    ClickBox(kASharp);
    EXPECT_TRUE(Boxes().IsIgnored(10));
    ExpectToHear(kFlatASharp);
    ClickBox(kASharp);
    ExpectToHear(kHzOfA);
}

TEST_F(EditorKeysTest, AScaleOfTheUsersIsNamedChosenAndShownAgain)
{
    const BoxRecorder boxes;
    bool heldInDialog = true;
    const auto before =
        KestruneNameScaleDialog::SetRunner([&](ZApplication*, const ZString&, ZString& name) {
            heldInDialog = window->GetCapturedView() != nullptr;
            name = "Mine";
            return true;
        });
    ClickKey(kASharp);
    Click("CustomScaleDoneButton");
    TickTwice();
    KestruneNameScaleDialog::SetRunner(before);
    EXPECT_FALSE(heldInDialog) << "the mouse is free while the dialog is open";
    EXPECT_EQ(TextOf("ScaleMenu"), "Mine");
    EXPECT_TRUE(Keys().IsKeyLit(kASharp));

    ChooseInMenu("ScaleMenu", 1);
    TickTwice();
    EXPECT_EQ(TextOf("ScaleMenu"), "Major");
    EXPECT_FALSE(Keys().IsKeyLit(kASharp));
    ExpectToHear(kHzOfA);
    ASSERT_EQ(shownMenu.back(), "Mine");
    ChooseInMenu("ScaleMenu", static_cast<std::int32_t>(shownMenu.size()) - 1);
    TickTwice();
    EXPECT_TRUE(Keys().IsKeyLit(kASharp));
    ExpectToHear(kHzOfASharp);

    // An edit is taken back by the button.
    ClickKey(kA);
    EXPECT_FALSE(Keys().IsKeyLit(kA));
    Click("CustomScaleCancelButton");
    TickTwice();
    EXPECT_TRUE(Keys().IsKeyLit(kA));
    EXPECT_EQ(TextOf("ScaleMenu"), "Mine");
}

TEST_F(EditorKeysTest, WhatTheMenusChooseIsHeard)
{
    Click("Transpose Enable");
    ChooseInMenu("TransposePitchPopup", 0);
    TickTwice();
    ASSERT_EQ(TextOf("TransposePitchPopup"), "Up Octave");
    ExpectToHear(2.0 * kHzOfA);
}

TEST_F(EditorKeysTest, AProgramShowsTheSamePictureEachTime)
{
    product->Ask(effSetProgram, 0, 1);
    const auto first = Picture();
    product->Ask(effSetProgram, 0, 2);
    EXPECT_NE(Picture(), first);
    product->Ask(effSetProgram, 0, 1);
    EXPECT_EQ(Picture(), first);
}

TEST_F(EditorKeysTest, AnEditorClosedInTheMiddleOfAPressLeavesNothingBehind)
{
    const auto before = Picture();
    const ZPoint at = At("PianoKeyboard", OnKey(kASharp));
    Mouse(ZNativeMouseEvent::kDown, at);
    ASSERT_TRUE(Keys().IsKeyDown(kASharp));
    {
        const ZInterfaceLock lock;
        window->Hide();
        window->Destroy();
        window->Show();
    }
    Mouse(ZNativeMouseEvent::kUp, at);
    EXPECT_EQ(window->GetCapturedView(), nullptr);
    EXPECT_EQ(Picture(), before);
    ClickKey(kASharp);
    EXPECT_TRUE(Keys().IsKeyLit(kASharp));
}

}  // namespace

}  // namespace orvane
