#include "pluginwrappers/common/PluginEntry.h"
#include "pluginwrappers/common/VstOpcodes.h"

#include "support/DisplayProbe.h"
#include "support/RealtimeGuard.h"
#include "support/Signals.h"
#include "support/VirtualDisplay.h"
#include "zlib/common/ZPoint.h"

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <future>
#include <random>
#include <set>
#include <thread>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr float kRate = 44100.0f;
constexpr std::int32_t kBlock = 512;
constexpr std::size_t kParameters = 7;
constexpr xcb_rectangle_t kEditor{40, 30, 454, 430};

// Where something in the window can be pressed: menus, check boxes, the slider, buttons, a key.
constexpr ZPoint kControls[] = {
    ZPoint{100, 65}, ZPoint{100, 121}, ZPoint{240, 121}, ZPoint{240, 200}, ZPoint{345, 200},
    ZPoint{20, 98},  ZPoint{20, 163},  ZPoint{70, 204},  ZPoint{30, 204},  ZPoint{50, 310},
    ZPoint{50, 330}, ZPoint{50, 352},  ZPoint{200, 380}};

constexpr std::array<std::uint32_t, 3> kModifiers{XKB_KEY_Shift_L, XKB_KEY_Control_L,
                                                  XKB_KEY_Alt_L};
constexpr std::uint32_t kKeys[] = {XKB_KEY_a,      XKB_KEY_z,      XKB_KEY_5,    XKB_KEY_space,
                                   XKB_KEY_Return, XKB_KEY_Escape, XKB_KEY_Left, XKB_KEY_Up,
                                   XKB_KEY_Right,  XKB_KEY_Down,   XKB_KEY_Tab,  XKB_KEY_BackSpace,
                                   XKB_KEY_End,    XKB_KEY_Delete};

/// The host's count of gestures: how many are open, and what was told out of order.
struct Gestures
{
    std::array<std::atomic<int>, kParameters> open{};
    std::atomic<int> begun{0};
    std::atomic<int> mistakes{0};

    [[nodiscard]] bool AllClosed() const
    {
        return std::all_of(open.begin(), open.end(), [](const auto& count) { return count == 0; });
    }
};

Gestures& gestures()
{
    static Gestures all;
    return all;
}

std::intptr_t callback(AEffect* /*effect*/, std::int32_t opcode, std::int32_t index,
                       std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    Gestures& all = gestures();
    const auto parameter = static_cast<std::size_t>(index);
    if (opcode == audioMasterBeginEdit) {
        ++all.begun;
        if (parameter >= kParameters || all.open[parameter]++ != 0)
            ++all.mistakes;
    }
    if (opcode == audioMasterEndEdit && (parameter >= kParameters || --all.open[parameter] != 0))
        ++all.mistakes;
    return opcode == audioMasterVersion ? 2400 : 0;
}

/// Three seconds, or what KESTRUNE_SOAK_SECONDS says.
std::chrono::duration<double> soakTime()
{
    const char* const seconds = std::getenv("KESTRUNE_SOAK_SECONDS");
    return std::chrono::duration<double>(seconds != nullptr ? std::atof(seconds) : 3.0);
}

/// Plays a voice through the plug-in at the pace of a host. Whether no block allocated, waited or
/// ran away.
bool play(AEffect* effect, const std::atomic<bool>& runs)
{
    const std::chrono::duration<double> length(kBlock / static_cast<double>(kRate));
    auto voice = harmonicTone(196.0, kRate, 44100);
    std::vector<float> left(kBlock);
    std::vector<float> right(kBlock);
    float* outputs[] = {left.data(), right.data()};
    bool isGood = true;
    const auto begin = Clock::now();
    for (int blocks = 0; runs; ++blocks) {
        float* const block = voice.data() + blocks * kBlock % (44100 - kBlock);
        float* inputs[] = {block, block};
        {
            RealtimeGuard guard;
            effect->processReplacing(effect, inputs, outputs, kBlock);
            isGood = isGood && guard.violations() == 0;
        }
        isGood = isGood &&
                 std::ranges::all_of(left, [](float sample) { return std::fabs(sample) < 8.0f; });
        std::this_thread::sleep_until(begin + length * (blocks + 1));
    }
    return isGood;
}

/// Knows buttons, keys and a window, and no plan; the same in every run.
class RandomUser
{
public:
    explicit RandomUser(DisplayProbe& display)
        : mDisplay(display)
    {
    }

    void Act()
    {
        const unsigned what = Below(100);
        if (what < 50)
            Move();
        else if (what < 75)
            TurnButton(Below(8) != 0 ? 1 : static_cast<std::uint8_t>(2 + Below(2)));
        else if (what < 82)
            mDisplay.Click(static_cast<std::uint8_t>(4 + Below(2)));
        else if (what < 92)
            mDisplay.TypeKey(kKeys[Below(std::size(kKeys))]);
        else if (what < 96)
            TurnKey(kModifiers[Below(3)]);
        else
            LetGo();
    }
    /// Lets all go that is held.
    void LetGo()
    {
        for (const std::uint8_t button : std::exchange(mButtons, {}))
            mDisplay.Release(button);
        for (const std::uint32_t key : std::exchange(mHeldKeys, {}))
            mDisplay.ReleaseKey(key);
    }
    [[nodiscard]] unsigned Below(std::size_t end) { return static_cast<unsigned>(mRandom() % end); }

private:
    // Mostly a step from where it was, as a drag is, else to a control.
    void Move()
    {
        const unsigned where = Below(20);
        if (where < 10) {
            mX = std::clamp(mX + static_cast<int>(Below(41)) - 20, 0, 1000);
            mY = std::clamp(mY + static_cast<int>(Below(41)) - 20, 0, 760);
        } else if (where < 17) {
            const ZPoint control = kControls[Below(std::size(kControls))];
            mX = kEditor.x + control.x;
            mY = kEditor.y + control.y;
        } else {
            mX = static_cast<int>(Below(600));
            mY = static_cast<int>(Below(600));
        }
        mDisplay.MovePointer(mX, mY);
    }
    void TurnButton(std::uint8_t button)
    {
        if (mButtons.erase(button) != 0)
            return mDisplay.Release(button);
        mButtons.insert(button);
        mDisplay.Press(button);
    }
    void TurnKey(std::uint32_t key)
    {
        if (mHeldKeys.erase(key) != 0)
            return mDisplay.ReleaseKey(key);
        mHeldKeys.insert(key);
        mDisplay.PressKey(key);
    }

    DisplayProbe& mDisplay;
    std::mt19937 mRandom{7};
    int mX = 0;
    int mY = 0;
    std::set<std::uint8_t> mButtons;
    std::set<std::uint32_t> mHeldKeys;
};

void automate(AEffect* effect, const std::atomic<bool>& runs)
{
    std::mt19937 random(5);
    while (runs) {
        const auto index = static_cast<std::int32_t>(random() % kParameters);
        effect->setParameter(effect, index, static_cast<float>(random() % 101) / 100.0f);
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 20));
    }
}

}  // namespace

TEST(EditorSoakTest, WhateverMouseAndKeysDoEachGestureEndsAndAudioGoesOn)
{
    if (!VirtualDisplay::IsAvailable())
        GTEST_SKIP() << "no virtual display on this machine";
    const VirtualDisplay screen;
    DisplayProbe display;
    const xcb_window_t parent = display.MakeWindow(kEditor);
    AEffect* const effect = openPlugin(callback);
    ASSERT_NE(effect, nullptr);
    const auto ask = [&](std::int32_t opcode, std::intptr_t value = 0, void* ptr = nullptr,
                         float opt = 0.0f) {
        return effect->dispatcher(effect, opcode, 0, value, ptr, opt);
    };
    const auto openEditor = [&] {
        ASSERT_EQ(ask(effEditOpen, 0, reinterpret_cast<void*>(std::uintptr_t{parent})), 1);
    };
    ask(effSetSampleRate, 0, nullptr, kRate);
    ask(effSetBlockSize, kBlock);
    ask(effMainsChanged, 1);
    openEditor();
    std::atomic<bool> runs{true};
    auto stream = std::async(std::launch::async, [&] { return play(effect, runs); });
    std::thread automation([&] { automate(effect, runs); });

    RandomUser user(display);
    int actions = 0;
    for (const auto end = Clock::now() + soakTime(); Clock::now() < end; ++actions) {
        user.Act();
        display.Sync();
        std::this_thread::sleep_for(std::chrono::milliseconds(user.Below(4)));
        if (actions % 20 == 0)
            ask(effEditIdle);
        if (actions % 1000 == 999) {
            ask(effEditClose);
            // A switch that was pressed just now may still be between its begin and its end.
            EXPECT_TRUE(waitFor([] { return gestures().AllClosed(); }))
                << "a window that closes lets go of its controls";
            openEditor();
        }
    }

    user.LetGo();
    display.MovePointer(1000, 700);
    for (int i = 0; i < 3; ++i)
        display.TypeKey(XKB_KEY_Escape);
    EXPECT_TRUE(waitFor([] { return gestures().AllClosed(); }));
    EXPECT_TRUE(waitFor([&] { return display.Grab(); })) << "the mouse is free";
    display.Ungrab();
    ask(effEditClose);
    runs = false;
    automation.join();
    EXPECT_TRUE(stream.get());
    ask(effMainsChanged, 0);
    ask(effClose);
    EXPECT_GT(gestures().begun, 0);
    EXPECT_EQ(gestures().mistakes, 0);
    EXPECT_TRUE(gestures().AllClosed());
}

}  // namespace orvane
