// SPDX-License-Identifier: GPL-3.0-or-later
// The shipped window without a mouse: what each kind of control does with keys, and what the host
// hears of it.

#include "kestrune/common/views/KestruneIgnoreKeysView.h"
#include "pluginwrappers/common/WindowUse.h"
#include "support/Eventually.h"

using namespace orvane;

namespace
{

struct KeyboardUseTest : WindowUse
{
    /// Goes to a control by Tab.
    void GoTo(const std::string& name) const
    {
        for (int i = 0; i < 20; ++i) {
            if (window->GetFocusView() && window->GetFocusView()->GetName() == name)
                return;
            EXPECT_TRUE(Type(kKeyTab));
        }
        ADD_FAILURE() << "Tab does not reach " << name;
    }
    /// What the host is told until the tick after a key.
    Notes NotesOf(std::uint8_t code, const char* text = "", bool shift = false) const
    {
        TestHost::TakeNotes();
        EXPECT_TRUE(Type(code, text, shift));
        Notes notes = TestHost::TakeNotes();
        product->Tick();
        EXPECT_EQ(TestHost::TakeNotes(), Notes{});
        return notes;
    }
};

TEST_F(KeyboardUseTest, EachKindOfControlDoesWhatItsKeysSayInOneGesture)
{
    GoTo("Pitch Correction Enable");
    EXPECT_EQ(NotesOf(kKeySpace, " "), (Notes{"begin 0", "0=1000", "end 0"}));
    EXPECT_FALSE(Type(kKeyReturn, "\r")) << "a box has no use for it";

    GoTo("PitchCorrectionTimeSlider");
    const auto moved = [](const char* value) {
        return Notes{"begin 4", "4=" + std::string(value), "end 4"};
    };
    EXPECT_EQ(NotesOf(kKeyHome), moved("0"));
    EXPECT_EQ(NotesOf(kKeyRight), moved("10"));
    EXPECT_EQ(NotesOf(kKeyUp), moved("20"));
    EXPECT_EQ(NotesOf(kKeyLeft, "", true), moved("19")) << "a tenth";
    EXPECT_EQ(NotesOf(kKeyPageUp), moved("119"));
    EXPECT_EQ(NotesOf(kKeyEnd), moved("1000"));
    EXPECT_EQ(NotesOf(kKeyPageDown), moved("900"));
    EXPECT_EQ(window->GetValueTip().GetText(), ZString("360 ms"));
    EXPECT_FALSE(Type('A', "a"));

    GoTo("KeyMenu");
    EXPECT_TRUE(window->GetValueTip().GetText().IsEmpty()) << "the slider has lost the ring";
    choice = 0;
    for (const std::uint8_t key : {kKeySpace, kKeyReturn, kKeyDown}) {
        Element("key").SetDiscrete(5, false);
        product->Tick();
        EXPECT_EQ(NotesOf(key, key == kKeySpace ? " " : ""), (Notes{"begin 2", "2=0", "end 2"}));
    }
    EXPECT_EQ(menus, 3);
    // A, A# Bb, B, C, ...: the letter goes on from the current choice and round.
    NotesOf('A', "a");
    EXPECT_EQ(Element("key").GetDiscrete(), 1);
    NotesOf('D', "D");
    EXPECT_EQ(Element("key").GetDiscreteString(Element("key").GetDiscrete())->ToNarrow()[0], 'D');
    EXPECT_FALSE(Type('X', "x")) << "no choice begins with it";
    EXPECT_EQ(menus, 3);

    GoTo("AcceptsMIDIButton");
    for (const std::int32_t on : {1, 0}) {
        Type(on ? kKeyReturn : kKeySpace);
        EXPECT_EQ(Element("AcceptMIDI").GetDiscrete(), on);
    }
}

TEST_F(KeyboardUseTest, ArrowsWalkTheKeysAndTheSpaceBarSwitchesThem)
{
    const auto& boxes = dynamic_cast<const KestruneIgnoreKeysView&>(Find("IgnoreKeys"));
    const auto& keys = dynamic_cast<const KestruneKeyboardView&>(Find("PianoKeyboard"));
    constexpr std::int32_t kC = 48;
    GoTo("IgnoreKeys");
    for (const std::uint8_t key : {kKeyLeft, kKeyRight, kKeyRight, kKeySpace})
        EXPECT_TRUE(Type(key));
    product->Tick();
    EXPECT_TRUE(boxes.IsIgnored(2));
    EXPECT_EQ(boxes.GetFocusRect(), boxes.GetBoxRect(kC + 2));
    EXPECT_FALSE(Type(kKeyUp));

    GoTo("PianoKeyboard");
    for (const std::uint8_t key : {kKeyEnd, kKeyRight, kKeyLeft, kKeySpace})
        EXPECT_TRUE(Type(key));
    product->Tick();
    EXPECT_TRUE(keys.IsKeyLit(kC + 10));
    EXPECT_EQ(Element("currentScaleModified").GetDiscrete(), 1);
    EXPECT_EQ(keys.GetFocusRect(), keys.GetUpperRect(kC + 10)) << "a black key";
    GoTo("CustomScaleCancelButton");
    Type(kKeySpace, " ");
    product->Tick();
    EXPECT_FALSE(keys.IsKeyLit(kC + 10)) << "RESET takes the change back";
}

TEST_F(KeyboardUseTest, KeysThatTheHostPassesDoTheSameAsThoseOfTheDisplay)
{
    const auto pass = [this](std::uint8_t virt, int character = 0, int modifier = 0) {
        return product->Ask(effEditKeyDown, character, virt, nullptr,
                            static_cast<float>(modifier)) == 1;
    };
    const auto focus = [this] { return window->GetFocusView()->GetName(); };
    EXPECT_FALSE(pass(VKEY_SPACE)) << "the host's";
    EXPECT_TRUE(pass(VKEY_TAB));
    EXPECT_TRUE(pass(VKEY_TAB));
    EXPECT_EQ(focus(), "Transpose Enable");
    TestHost::TakeNotes();
    // On the interface thread, where a menu could open.
    EXPECT_TRUE(pass(VKEY_SPACE));
    EXPECT_TRUE(pass(0, ' '));
    Notes notes;
    EXPECT_TRUE(eventually([&] {
        std::ranges::copy(TestHost::TakeNotes(), std::back_inserter(notes));
        return notes.size() == 6;
    }));
    EXPECT_EQ(notes, (Notes{"begin 1", "1=1000", "end 1", "begin 1", "1=0", "end 1"}));
    EXPECT_FALSE(pass(0, 'q')) << "the box has no use for it";
    EXPECT_FALSE(pass(VKEY_PAGEUP));
    EXPECT_TRUE(pass(VKEY_TAB, 0, MODIFIER_SHIFT));
    EXPECT_EQ(focus(), "TypeMenu");
    EXPECT_TRUE(pass(0, 'l')) << "Low";
    EXPECT_EQ(Element("sourceType")
                  .GetDiscreteString(Element("sourceType").GetDiscrete())
                  ->ToNarrow()
                  .substr(0, 1),
              "L");
    EXPECT_TRUE(pass(VKEY_ESCAPE));
    EXPECT_EQ(window->GetFocusView(), nullptr);
    EXPECT_FALSE(pass(VKEY_SPACE));
}

TEST_F(KeyboardUseTest, SliderAndMeterTellTheirValuesWhileTheyArePointedAtOrHeld)
{
    const auto mouse = [this](ZNativeMouseEvent::Action action, const char* view, ZPoint at,
                              std::uint32_t more = 0) {
        Mouse(action, At(view, at), ZView::kMouseButton | more,
              action == ZNativeMouseEvent::kWheel ? 1 : 0);
        product->Tick();
        return window->GetValueTip().GetText().ToNarrow();
    };
    using Event = ZNativeMouseEvent;
    const char* const slider = "PitchCorrectionTimeSlider";
    EXPECT_EQ(mouse(Event::kMove, slider, {20, 10}), "50 ms");
    // The middle of the thumb is at 26 of 110; 80 units are 400 ms.
    EXPECT_EQ(mouse(Event::kDown, slider, {26, 10}), "50 ms");
    EXPECT_EQ(mouse(Event::kMove, slider, {46, 10}), "150 ms");
    EXPECT_EQ(mouse(Event::kMove, slider, {56, 10}, ZView::kMouseShift), "155 ms");
    EXPECT_EQ(mouse(Event::kMove, slider, {57, 10}), "160 ms") << "no jump after Shift";
    EXPECT_EQ(mouse(Event::kMove, slider, {57, 100}), "160 ms") << "held outside";
    EXPECT_EQ(mouse(Event::kUp, slider, {57, 100}), "");
    EXPECT_EQ(mouse(Event::kWheel, slider, {57, 10}), "");
    EXPECT_EQ(Element("pitchCorrectionTime").GetZFloat(), 164.0f);
    mouse(Event::kWheel, slider, {57, 10}, ZView::kMouseShift);
    EXPECT_NEAR(Element("pitchCorrectionTime").GetZFloat(), 164.4f, 1e-4f);

    Element("correctionMeter").SetZFloat(-12.4f, false);
    EXPECT_EQ(mouse(Event::kMove, "correctionMeter", {35, 60}), "-12 cents");
    const ZInterfaceLock lock;
    Element("correctionMeter").SetZFloat(31.0f, false);
    window->IdleFrame();
    EXPECT_EQ(window->GetValueTip().GetText(), ZString("+31 cents"));
}

}  // namespace
