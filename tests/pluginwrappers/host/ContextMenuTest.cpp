// SPDX-License-Identifier: GPL-3.0-or-later
// A user with the context menu of the library's window, on a virtual display, at several scales.

#include "PluginLibrary.h"
#include "pluginwrappers/interface/ERect.h"
#include "support/DisplayProbe.h"
#include "support/PrivateFolder.h"
#include "support/VirtualDisplay.h"

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

using Notes = std::vector<std::string>;
using Keys = std::vector<std::uint32_t>;

constexpr std::int32_t kCorrectionTime = 4;
constexpr std::uint32_t kMenuGround = 0x262629;
constexpr std::uint8_t kRightButton = 3;

// Points of the window, in units.
constexpr xcb_point_t kEmpty{300, 60};
constexpr xcb_point_t kSlider{70, 203};
constexpr xcb_point_t kPitch{100, 122};

class ContextMenuTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!VirtualDisplay::IsAvailable())
            GTEST_SKIP() << "no X server for tests";
        display = std::make_unique<VirtualDisplay>();
        probe = std::make_unique<DisplayProbe>();
        effect = host->Open();
        ask(effect, effMainsChanged, 0, 1);
    }
    void TearDown() override
    {
        if (effect)
            closeEffect(effect);
    }

    [[nodiscard]] std::pair<int, int> SizeTold()
    {
        ERect* rect = nullptr;
        EXPECT_EQ(ask(effect, effEditGetRect, 0, 0, static_cast<void*>(&rect)), 1);
        return {rect->right - rect->left, rect->bottom - rect->top};
    }
    /// Opens the window in a parent at 20, 10, at the scale of the display's setting.
    void OpenWindow(double byDisplay = 1.0)
    {
        scale = byDisplay;
        probe->SetResources("Xft.dpi:\t" + std::to_string(static_cast<int>(96 * scale)) + "\n");
        // With room for every scale, as a host makes that grants it.
        parent = probe->MakeWindow({kLeft, kTop, 1000, 750});
        ASSERT_EQ(ask(effect, effEditOpen, 0, 0, reinterpret_cast<void*>(std::uintptr_t{parent})),
                  1);
        probe->Sync();
        ASSERT_EQ(WindowSize(), SizeTold());
        TestHost::TakeNotes();
    }
    void CloseWindow()
    {
        ask(effect, effEditClose);
        probe->Destroy(parent);
    }
    [[nodiscard]] std::pair<int, int> WindowSize()
    {
        const auto children = probe->GetChildren(parent);
        if (children.empty())
            return {};
        const auto place = probe->GetPlace(children.front());
        return {place.width, place.height};
    }
    void PointAt(const xcb_point_t& unit)
    {
        probe->MovePointer(kLeft + static_cast<int>(unit.x * scale),
                           kTop + static_cast<int>(unit.y * scale));
    }
    [[nodiscard]] xcb_window_t Topmost() { return probe->GetChildren(probe->GetRoot()).back(); }
    /// Opens the context menu at a point by a quick click, which leaves it open.
    void OpenMenu(const xcb_point_t& unit)
    {
        PointAt(unit);
        probe->Click(kRightButton);
        // Tips come and go as well, but without the keyboard.
        ASSERT_TRUE(waitFor([&] {
            menu = Topmost();
            return menu != parent && probe->GetFocus() == menu;
        }));
    }
    void Type(const Keys& keys)
    {
        for (const std::uint32_t key : keys)
            probe->TypeKey(key);
    }
    /// Waits until a window is gone, and until what its end has begun is done.
    [[nodiscard]] bool IsGone(xcb_window_t window)
    {
        const bool isGone = waitFor([&] {
            const auto windows = probe->GetChildren(probe->GetRoot());
            return std::ranges::count(windows, window) == 0;
        });
        ask(effect, effEditIdle);
        return isGone;
    }
    void Choose(const xcb_point_t& unit, const Keys& keys)
    {
        OpenMenu(unit);
        Type(keys);
        Type({XKB_KEY_Return});
        ASSERT_TRUE(IsGone(menu));
    }
    /// Chooses "Enter Value..." over a control and types a value in the dialog.
    void EnterValue(const xcb_point_t& unit, const Keys& value)
    {
        OpenMenu(unit);
        Type({XKB_KEY_e, XKB_KEY_Return});
        ASSERT_TRUE(IsGone(menu));
        ASSERT_TRUE(waitFor([&] { return probe->GetPlace(Topmost()).width == 300 * scale; }));
        const xcb_window_t dialog = Topmost();
        // The display gives the keyboard to a window once it is shown.
        ASSERT_TRUE(waitFor([&] {
            probe->Focus(dialog);
            return probe->GetFocus() == dialog;
        }));
        Type(value);
        Type({XKB_KEY_Return});
        ASSERT_TRUE(IsGone(dialog));
    }
    /// Expects the host to hear this since the last call, and no more.
    static void ExpectHeard(const Notes& expected)
    {
        Notes heard;
        static_cast<void>(waitFor([&] {
            std::ranges::move(TestHost::TakeNotes(), std::back_inserter(heard));
            return heard.size() >= expected.size();
        }));
        EXPECT_EQ(heard, expected);
    }
    /// Sets the correction time. The plug-in takes no value while it tells the host of others.
    void SetTime(float value)
    {
        EXPECT_TRUE(waitFor([&] {
            effect->setParameter(effect, kCorrectionTime, value);
            return effect->getParameter(effect, kCorrectionTime) == value;
        }));
    }
    /// Returns the value of an element in the current program's text.
    [[nodiscard]] std::string Saved(const std::string& element)
    {
        const std::string text = chunkOf(effect, true);
        const auto at = text.find("name=\"" + element + "\"");
        return at == std::string::npos ? "" : text.substr(at, text.find('>', at) - at);
    }
    [[nodiscard]] std::string SavedSettings() const
    {
        return readTextFile(folder.Path("Orvane/com.orvane.cantorel-mini-vst.conf"));
    }

    static constexpr std::int16_t kLeft = 20;
    static constexpr std::int16_t kTop = 10;

    const PrivateFolder folder;
    const EnvironmentVariable settings{"XDG_CONFIG_HOME", folder.Path().c_str()};
    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<DisplayProbe> probe;
    std::unique_ptr<LibraryHost> host = std::make_unique<LibraryHost>();
    AEffect* effect = nullptr;
    xcb_window_t parent = XCB_NONE;
    double scale = 1.0;
    xcb_window_t menu = XCB_NONE;  // the one that was opened last
};

}  // namespace

TEST_F(ContextMenuTest, ATypedValueIsOneGestureAtEveryScale)
{
    for (const double each : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(each);
        OpenWindow(each);
        EnterValue(kSlider, {XKB_KEY_0, XKB_KEY_period, XKB_KEY_1, XKB_KEY_space, XKB_KEY_s});
        EXPECT_TRUE(
            waitFor([&] { return effect->getParameter(effect, kCorrectionTime) == 0.25f; }));
        ExpectHeard(Notes{"begin 4", "4=250", "end 4"});
        // What is out of the range, or no number, leaves the dialog open.
        EnterValue(kSlider, {XKB_KEY_9, XKB_KEY_9, XKB_KEY_9, XKB_KEY_Return, XKB_KEY_x,
                             XKB_KEY_Return, XKB_KEY_5, XKB_KEY_0});
        ExpectHeard(Notes{"begin 4", "4=125", "end 4"});
        CloseWindow();
    }
}

TEST_F(ContextMenuTest, ShiftsAreTypedInCentsAndTheHostHearsOfChoices)
{
    OpenWindow();
    EnterValue(kPitch, {XKB_KEY_1, XKB_KEY_5, XKB_KEY_0});
    EXPECT_NE(Saved("PitchShift").find("150"), std::string::npos) << Saved("PitchShift");
    EXPECT_NE(Saved("FormantShift").find("75"), std::string::npos) << "natural formants follow";
    EXPECT_EQ(TestHost::TakeNotes(), Notes{}) << "no parameter says so";
    EnterValue(kPitch, {XKB_KEY_7, XKB_KEY_0, XKB_KEY_0});
    ExpectHeard(Notes{"begin 5", "5=208", "end 5"});
    EXPECT_TRUE(waitFor([&] { return Saved("PitchShift").find("700") != std::string::npos; }));
}

TEST_F(ContextMenuTest, ProgramsMemoriesAndTrackingAreChosenByKey)
{
    OpenWindow(2.0);
    const std::string classic = chunkOf(effect, true);
    // The start is no edit, and what follows from it passes first.
    EXPECT_TRUE(waitFor([&] {
        Choose(kEmpty, {XKB_KEY_t, XKB_KEY_Right, XKB_KEY_c});
        Choose(kEmpty, {XKB_KEY_t, XKB_KEY_Right, XKB_KEY_f});
        return TestHost::CountOf(audioMasterUpdateDisplay) > 0;
    }));
    EXPECT_NE(Saved("tracking"), "");
    Choose(kEmpty, {XKB_KEY_t, XKB_KEY_Right, XKB_KEY_c});
    EXPECT_EQ(chunkOf(effect, true), classic);
    Choose(kEmpty, {XKB_KEY_p, XKB_KEY_Right, XKB_KEY_Down, XKB_KEY_Down});
    EXPECT_EQ(ask(effect, effGetProgram), 2);
    // The third item with that letter holds the memories; of these only one is not empty.
    SetTime(0.5f);
    Choose(kEmpty, {XKB_KEY_p, XKB_KEY_p, XKB_KEY_p, XKB_KEY_Right});
    SetTime(0.75f);
    Choose(kEmpty, {XKB_KEY_p, XKB_KEY_p, XKB_KEY_p, XKB_KEY_Right, XKB_KEY_r});
    EXPECT_EQ(effect->getParameter(effect, kCorrectionTime), 0.5f);
}

TEST_F(ContextMenuTest, AChosenScaleIsAskedForAndKept)
{
    TestHost::Answer(audioMasterSizeWindow, 1);
    OpenWindow();
    const Keys toTwoHundred{XKB_KEY_w, XKB_KEY_Right, XKB_KEY_2};
    Choose(kEmpty, toTwoHundred);
    EXPECT_TRUE(waitFor([&] { return WindowSize() == std::pair(908, 860); }));
    const auto calls = TestHost::Calls();
    const auto asked = std::ranges::find(calls, audioMasterSizeWindow, &HostCall::opcode);
    ASSERT_NE(asked, calls.end());
    EXPECT_EQ(std::pair(asked->index, asked->value), std::pair(908, std::intptr_t{860}));
    EXPECT_NE(SavedSettings().find("WindowScale=200"), std::string::npos);
    // The window takes the mouse in its new pixels.
    scale = 2.0;
    TestHost::TakeNotes();
    EnterValue(kSlider, {XKB_KEY_1, XKB_KEY_0, XKB_KEY_0});
    ExpectHeard(Notes{"begin 4", "4=250", "end 4"});

    TestHost::Answer(audioMasterSizeWindow, 0);
    Choose(kEmpty, {XKB_KEY_w, XKB_KEY_Right, XKB_KEY_Down, XKB_KEY_Down});
    EXPECT_TRUE(waitFor([] { return TestHost::CountOf(audioMasterSizeWindow) == 1; }));
    EXPECT_EQ(WindowSize(), std::pair(908, 860)) << "the host has refused";
    EXPECT_EQ(SizeTold(), std::pair(908, 860));
    CloseWindow();
    EXPECT_EQ(SizeTold(), std::pair(681, 645)) << "the choice comes with the next window";
    TestHost::Answer(audioMasterSizeWindow, 1);
    OpenWindow();
    scale = 1.5;
    Choose(kEmpty, {XKB_KEY_w, XKB_KEY_Right, XKB_KEY_End});
    EXPECT_TRUE(waitFor([&] { return WindowSize() == std::pair(454, 430); }));
}

TEST_F(ContextMenuTest, ThePitchGraphUnfoldsInAWindowThatTheHostMakesRoomFor)
{
    TestHost::Answer(audioMasterSizeWindow, 1);
    OpenWindow(1.5);
    const Keys toGraph{XKB_KEY_p, XKB_KEY_p, XKB_KEY_p, XKB_KEY_p};
    Choose(kEmpty, toGraph);
    EXPECT_TRUE(waitFor([&] { return WindowSize() == std::pair(681, 921); }));
    EXPECT_EQ(SizeTold(), std::pair(681, 921));
    const auto calls = TestHost::Calls();
    const auto asked = std::ranges::find(calls, audioMasterSizeWindow, &HostCall::opcode);
    ASSERT_NE(asked, calls.end());
    EXPECT_EQ(std::pair(asked->index, asked->value), std::pair(681, std::intptr_t{921}));
    EXPECT_NE(SavedSettings().find("PitchGraph=1"), std::string::npos);
    // On the graph's own ground: closing the fold destroys the view below the menu.
    Choose({220, 470}, toGraph);
    EXPECT_TRUE(waitFor([&] { return WindowSize() == std::pair(681, 645); }));
    EXPECT_NE(SavedSettings().find("PitchGraph=0"), std::string::npos);
}

TEST_F(ContextMenuTest, TheMenuKeyAndShiftF10OpenItForTheControlWithTheRing)
{
    OpenWindow();
    PointAt(kEmpty);
    probe->Click(1);
    const auto opensBy = [&](const auto& type) {
        static_cast<void>(probe->TakeKeys());
        type();
        const bool opens = waitFor([&] {
            menu = Topmost();
            return menu != parent && probe->GetFocus() == menu;
        });
        for (const std::uint32_t key : probe->TakeKeys())
            EXPECT_EQ(key, std::uint32_t{XKB_KEY_Shift_L}) << "the host hears no more than that";
        return opens;
    };
    const auto typeMenuKey = [&] { probe->TypeKey(XKB_KEY_Menu); };
    const auto typeShiftF10 = [&] {
        probe->PressKey(XKB_KEY_Shift_L);
        probe->TypeKey(XKB_KEY_F10);
        probe->ReleaseKey(XKB_KEY_Shift_L);
    };
    ASSERT_TRUE(waitFor([&] { return probe->GetFocus() == probe->GetChildren(parent).front(); }));
    ASSERT_TRUE(opensBy(typeMenuKey));
    EXPECT_EQ(probe->GetPlace(menu).height, 15 * 19 + 6) << "of the window alone";
    Type({XKB_KEY_Escape});
    ASSERT_TRUE(IsGone(menu));
    Type({XKB_KEY_Tab});
    ASSERT_TRUE(opensBy(typeShiftF10));
    EXPECT_EQ(probe->GetPlace(menu).height, 16 * 19 + 6) << "with a reset of the first control";
    Type({XKB_KEY_Escape});
    EXPECT_TRUE(IsGone(menu));
}

TEST_F(ContextMenuTest, AHurriedClickLeavesTheMenuOpenAndAReleaseOutsideClosesIt)
{
    OpenWindow(1.5);
    OpenMenu(kEmpty);
    const auto place = probe->GetPlace(Topmost());
    EXPECT_TRUE(waitFor(
        [&, x = place.x + 4, y = place.y + 8] { return probe->PixelAt(x, y) == kMenuGround; }));
    // The pointer goes from "Save Settings..." to the third item, "Load Settings...".
    const int third = place.y + static_cast<int>((3 + 2.5 * 19) * 1.5);
    for (const int y : {third - 28, third}) {
        probe->MovePointer(place.x + 90, y);
        EXPECT_TRUE(waitFor([&, x = place.x + 8] { return probe->PixelAt(x, y) == 0x961820; }));
    }
    probe->Press(kRightButton);
    probe->MovePointer(place.x - 30, third);
    probe->Release(kRightButton);
    EXPECT_TRUE(IsGone(menu));
    EXPECT_EQ(TestHost::TakeNotes(), Notes{});
}

TEST_F(ContextMenuTest, TheMenuStaysOnTheScreen)
{
    OpenWindow(2.0);
    OpenMenu({430, 360});
    const auto place = probe->GetPlace(Topmost());
    EXPECT_LE(place.x + place.width, 1024);
    EXPECT_LE(place.y + place.height, 768);
    EXPECT_GT(place.height, 400);
    Type({XKB_KEY_Escape});
    EXPECT_TRUE(IsGone(menu));
}

}  // namespace orvane
