// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/PluginEntry.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "support/DisplayProbe.h"
#include "support/RealtimeGuard.h"
#include "support/Signals.h"
#include "support/VirtualDisplay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <memory>
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
constexpr std::array<std::pair<int, int>, 13> kControls{{{100, 65},
                                                         {100, 121},
                                                         {240, 121},
                                                         {240, 200},
                                                         {345, 200},
                                                         {20, 98},
                                                         {20, 163},
                                                         {70, 204},
                                                         {30, 204},
                                                         {50, 310},
                                                         {50, 330},
                                                         {50, 352},
                                                         {200, 380}}};

// Symbols of keys.
constexpr std::uint32_t kShift = 0xffe1;
constexpr std::uint32_t kControl = 0xffe3;
constexpr std::uint32_t kAlt = 0xffe9;
constexpr std::uint32_t kEscape = 0xff1b;
constexpr std::array<std::uint32_t, 14> kKeys{'a',
                                              'z',
                                              '5',
                                              ' ',
                                              0xff0d /*return*/,
                                              kEscape,
                                              0xff51,
                                              0xff52,
                                              0xff53,
                                              0xff54 /*arrows*/,
                                              0xff09 /*tab*/,
                                              0xff08 /*backspace*/,
                                              0xffff /*delete*/,
                                              0xff57 /*end*/};

/// The host's count of gestures: how many are open, and what was told out of order.
struct Gestures
{
    std::array<std::atomic<int>, kParameters> open{};
    std::atomic<int> begun{0};
    std::atomic<int> automated{0};
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
    if (opcode == audioMasterAutomate)
        ++all.automated;
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

/// A voice that plays through the plug-in at the pace of a host, on a thread of its own.
class Stream
{
public:
    explicit Stream(AEffect* effect)
        : mThread([this, effect] { Play(effect); })
    {
    }
    ~Stream() { Stop(); }

    void Stop()
    {
        mPlaying = false;
        if (mThread.joinable())
            mThread.join();
    }

    // Read after Stop.
    unsigned violations = 0;
    bool finite = true;
    int blocks = 0;
    int late = 0;  // blocks that took longer than they last

private:
    void Play(AEffect* effect)
    {
        const std::chrono::duration<double> length(kBlock / static_cast<double>(kRate));
        const auto voice = harmonicTone(196.0, kRate, 44100);
        std::vector<float> left(kBlock);
        std::vector<float> right(kBlock);
        float* outputs[] = {left.data(), right.data()};
        const auto begin = Clock::now();
        for (blocks = 0; mPlaying; ++blocks) {
            const std::ptrdiff_t at = blocks * kBlock % (44100 - kBlock);
            std::vector<float> block(voice.begin() + at, voice.begin() + at + kBlock);
            float* inputs[] = {block.data(), block.data()};
            const auto start = Clock::now();
            {
                RealtimeGuard guard;
                effect->processReplacing(effect, inputs, outputs, kBlock);
                violations += guard.violations();
            }
            late += Clock::now() - start > length ? 1 : 0;
            finite = finite && std::all_of(left.begin(), left.end(),
                                           [](float sample) { return std::fabs(sample) < 8.0f; });
            std::this_thread::sleep_until(begin + length * (blocks + 1));
        }
    }

    std::atomic<bool> mPlaying{true};
    std::thread mThread;
};

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
            mDisplay.TypeKey(kKeys[Below(kKeys.size())]);
        else if (what < 96)
            TurnKey(std::array{kShift, kControl, kAlt}[Below(3)]);
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
        } else if (where < 16) {
            const auto [x, y] = kControls[Below(kControls.size())];
            mX = kEditor.x + x;
            mY = kEditor.y + y;
        } else if (where < 19) {
            mX = kEditor.x + static_cast<int>(Below(kEditor.width));
            mY = kEditor.y + static_cast<int>(Below(kEditor.height));
        } else {
            mX = static_cast<int>(Below(1024));
            mY = static_cast<int>(Below(768));
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
        if (random() % 50 == 0)
            effect->dispatcher(effect, effSetProgram, 0, static_cast<std::intptr_t>(random() % 7),
                               nullptr, 0.0f);
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
    Stream stream(effect);
    std::atomic<bool> automates{true};
    std::thread automation([&] { automate(effect, automates); });

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
        display.TypeKey(kEscape);
    EXPECT_TRUE(waitFor([] { return gestures().AllClosed(); }));
    EXPECT_TRUE(waitFor([&] { return display.Grab(); })) << "the mouse is free";
    display.Ungrab();
    ask(effEditClose);
    automates = false;
    automation.join();
    stream.Stop();
    ask(effMainsChanged, 0);
    ask(effClose);
    EXPECT_GT(gestures().begun, 0);
    EXPECT_EQ(gestures().mistakes, 0);
    EXPECT_TRUE(gestures().AllClosed());
    EXPECT_EQ(stream.violations, 0u);
    EXPECT_TRUE(stream.finite);
    std::printf("%d actions, %d gestures, %d values, %d of %d blocks late\n", actions,
                gestures().begun.load(), gestures().automated.load(), stream.late, stream.blocks);
}

}  // namespace orvane
