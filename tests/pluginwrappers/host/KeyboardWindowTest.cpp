// SPDX-License-Identifier: GPL-3.0-or-later
// A user without a mouse in the library's window, on a virtual display: real keys, from the opening
// of the window to a scale with a name.

#include "PluginLibrary.h"
#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

using Keys = std::vector<std::uint32_t>;

constexpr std::int32_t kCorrectPitch = 0;
constexpr std::int32_t kKey = 2;
constexpr std::int32_t kTime = 4;
constexpr std::uint32_t kRing = 0xFFCC66;
constexpr xcb_rectangle_t kPlace{20, 20, 454, 430};

/// The window of an effect in a host's, at a device scale.
class KeyboardWindowTest : public testing::TestWithParam<int>
{
protected:
    void SetUp() override
    {
        if (!VirtualDisplay::IsAvailable())
            GTEST_SKIP() << "no X server for tests";
        display = std::make_unique<VirtualDisplay>();
        probe = std::make_unique<DisplayProbe>();
        probe->SetResources("Xft.dpi:\t" + std::to_string(96 * GetParam()) + "\n");
        effect = host.Open();
        ask(effect, effSetBlockSize, 0, 256);
        ask(effect, effMainsChanged, 0, 1);
        const xcb_window_t parent =
            probe->MakeWindow({kPlace.x, kPlace.y, static_cast<std::uint16_t>(454 * GetParam()),
                               static_cast<std::uint16_t>(430 * GetParam())});
        ASSERT_EQ(ask(effect, effEditOpen, 0, 0,
                      reinterpret_cast<void*>(static_cast<std::uintptr_t>(parent))),
                  1);
        probe->Focus(probe->GetChildren(parent).front());
        first = probe->GetChildren(probe->GetRoot());
    }
    void TearDown() override
    {
        if (effect)
            closeEffect(effect);
    }

    void Type(std::uint32_t key, int times = 1)
    {
        for (int i = 0; i < times; ++i)
            probe->TypeKey(key);
    }
    void TypeShifted(std::uint32_t key)
    {
        probe->PressKey(XKB_KEY_Shift_L);
        probe->TypeKey(key);
        probe->ReleaseKey(XKB_KEY_Shift_L);
    }
    [[nodiscard]] bool HasValue(std::int32_t parameter, float value) const
    {
        return waitFor([&] { return effect->getParameter(effect, parameter) == value; });
    }
    /// Whether the ring comes to be around what begins at x, y in units of the window.
    [[nodiscard]] bool RingIsAt(int x, int y)
    {
        const int scale = GetParam();
        const auto at = [scale](int unit) { return unit * scale; };
        return waitFor([&] {
            return probe->PixelAt(kPlace.x + at(x - 3), kPlace.y + at(y - 3)) == kRing &&
                   probe->PixelAt(kPlace.x + at(x - 1) - 1, kPlace.y + at(y)) == kRing &&
                   probe->PixelAt(kPlace.x + at(x) - 1, kPlace.y + at(y)) == 0;
        });
    }
    /// Waits for a menu or a dialog and gives it the keys, as window managers do.
    xcb_window_t TakeNewWindow()
    {
        xcb_window_t found = XCB_NONE;
        EXPECT_TRUE(waitFor([&] {
            for (const xcb_window_t each : probe->GetChildren(probe->GetRoot()))
                if (std::ranges::count(first, each) == 0)
                    found = each;
            return found != XCB_NONE;
        }));
        // Not before it is shown.
        EXPECT_TRUE(waitFor([&] {
            probe->Focus(found);
            return probe->GetFocus() == found;
        }));
        return found;
    }
    [[nodiscard]] bool IsGone(xcb_window_t window)
    {
        return waitFor(
            [&] { return std::ranges::count(probe->GetChildren(probe->GetRoot()), window) == 0; });
    }
    [[nodiscard]] Keys HostKeys()
    {
        probe->Sync();
        return probe->TakeKeys();
    }

    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<DisplayProbe> probe;
    LibraryHost host;
    AEffect* effect = nullptr;
    std::vector<xcb_window_t> first;
};

}  // namespace

TEST_P(KeyboardWindowTest, FromTheOpeningToANamedScale)
{
    Type(XKB_KEY_Tab, 5);
    EXPECT_TRUE(RingIsAt(15, 157)) << "CORRECT PITCH";
    Type(XKB_KEY_space);
    EXPECT_TRUE(HasValue(kCorrectPitch, 1.0f));
    Type(XKB_KEY_Tab);
    Type(XKB_KEY_End);
    EXPECT_TRUE(HasValue(kTime, 1.0f));
    EXPECT_EQ(TestHost::OpenGestures(), 0);

    Type(XKB_KEY_Tab, 2);
    Type(XKB_KEY_Return);
    const xcb_window_t menu = TakeNewWindow();
    Type(XKB_KEY_Home);
    Type(XKB_KEY_Return);
    EXPECT_TRUE(IsGone(menu));
    EXPECT_TRUE(HasValue(kKey, 0.0f)) << "the first key";

    Type(XKB_KEY_Tab, 5);
    Type(XKB_KEY_Right);
    Type(XKB_KEY_space);
    TypeShifted(XKB_KEY_Tab);
    EXPECT_TRUE(RingIsAt(16, 345)) << "ADD SCALE";
    Type(XKB_KEY_space);
    const xcb_window_t dialog = TakeNewWindow();
    probe->PressKey(XKB_KEY_Control_L);
    Type(XKB_KEY_a);
    probe->ReleaseKey(XKB_KEY_Control_L);
    for (const auto letter :
         std::initializer_list<std::uint32_t>{XKB_KEY_k, XKB_KEY_e, XKB_KEY_y, XKB_KEY_s})
        Type(letter);
    Type(XKB_KEY_Return);
    EXPECT_TRUE(IsGone(dialog));
    EXPECT_TRUE(
        waitFor([&] { return chunkOf(effect, true).find("\"keys\"") != std::string::npos; }));
}

TEST_P(KeyboardWindowTest, WhatNoControlTakesReachesTheHost)
{
    static_cast<void>(HostKeys());
    const auto reaches = [this](std::uint32_t key) {
        Type(key);
        bool came = false;
        // A key that is not passed on would be followed by this one alone.
        Type(XKB_KEY_F5);
        EXPECT_TRUE(waitFor([&] {
            const Keys keys = HostKeys();
            came = came || std::ranges::count(keys, key) != 0;
            return std::ranges::count(keys, std::uint32_t{XKB_KEY_F5}) != 0;
        }));
        return came;
    };
    EXPECT_TRUE(reaches(XKB_KEY_space));
    EXPECT_TRUE(reaches(XKB_KEY_Escape));
    EXPECT_FALSE(reaches(XKB_KEY_Tab));
    EXPECT_FALSE(reaches(XKB_KEY_Tab));
    EXPECT_FALSE(reaches(XKB_KEY_space)) << "the box takes it";
    EXPECT_TRUE(reaches(XKB_KEY_q));
    EXPECT_TRUE(reaches(XKB_KEY_Return));
    EXPECT_FALSE(reaches(XKB_KEY_Escape)) << "it ends the ring";
    EXPECT_TRUE(reaches(XKB_KEY_space));
    Type(XKB_KEY_Tab);
    probe->MovePointer(kPlace.x + 5, kPlace.y + 5);
    probe->Click(1);
    EXPECT_TRUE(reaches(XKB_KEY_space)) << "a press of the mouse ends the ring, too";
}

INSTANTIATE_TEST_SUITE_P(Scales, KeyboardWindowTest, testing::Values(1, 2));

}  // namespace orvane
