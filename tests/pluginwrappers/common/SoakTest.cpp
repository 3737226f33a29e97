// SPDX-License-Identifier: GPL-3.0-or-later
// A stream plays while other threads and a user change everything. KESTRUNE_SOAK_SECONDS sets the
// length of each test, two seconds otherwise.

#include "pluginwrappers/common/PluginEntry.h"
#include "support/DisplayProbe.h"
#include "support/RealtimeGuard.h"
#include "support/Signals.h"
#include "support/TestHost.h"
#include "support/VirtualDisplay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <iterator>
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
constexpr std::int32_t kLargestBlock = 2048;
constexpr xcb_rectangle_t kEditor{40, 30, 454, 430};

// Points on the window's controls: menus, check boxes, the slider, buttons, a key.
constexpr int kControls[][2] = {{100, 65}, {100, 121}, {240, 200}, {20, 98},  {20, 163},
                                {70, 204}, {50, 310},  {50, 352},  {200, 380}};

// Symbols of keys: a, 5, space, Return, Escape, down, Tab, Backspace.
constexpr std::uint32_t kEscape = 0xff1b;
constexpr std::uint32_t kKeys[] = {'a', '5', ' ', 0xff0d, kEscape, 0xff54, 0xff09, 0xff08};

constexpr const char* kFineTracking =
    "<element name=\"tracking\" class=\"ZElementClass\" type=\"ZDISCRETE\" int32value=\"1\">\n"
    "</element>\n";

std::chrono::duration<double> soakTime()
{
    const char* const seconds = std::getenv("KESTRUNE_SOAK_SECONDS");
    return std::chrono::duration<double>(seconds != nullptr ? std::atof(seconds) : 2.0);
}

void pause(unsigned long milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// An instance that plays a voice in blocks of random sizes on a thread of its own, in real time
/// and for stretches offline, with notes, automation and restarts between the blocks.
class Stream
{
public:
    Stream()
        : effect(openPlugin(TestHost::callback))
    {
        ask(effect, effSetSampleRate, 0, 0, nullptr, kRate);
        ask(effect, effSetBlockSize, 0, kLargestBlock);
        ask(effect, effMainsChanged, 0, 1);
        mThread = std::thread(&Stream::Play, this);
    }
    ~Stream()
    {
        mPlaying = false;
        mThread.join();
        ask(effect, effClose);
        EXPECT_EQ(mViolations, 0u);
        EXPECT_TRUE(mIsFinite);
    }

    AEffect* const effect;

private:
    void Play()
    {
        std::mt19937 random(3);
        const auto begin = Clock::now();
        double played = 0.0;  // seconds
        for (int block = 0; mPlaying; ++block) {
            const bool offline = block % 64 >= 56;
            TestHost::SetOffline(offline);
            BetweenBlocks(block);
            const auto frames = static_cast<std::int32_t>(random() % kLargestBlock) + 1;
            // Offline blocks are not guarded: they may tick.
            PlayBlock(frames, block % 2 == 0 ? effect->process : effect->processReplacing,
                      /*isGuarded*/ !offline);
            // A faster stream would become the clock and tick inside the blocks.
            played += frames / static_cast<double>(kRate);
            std::this_thread::sleep_until(begin + std::chrono::duration<double>(played));
        }
    }
    void BetweenBlocks(int block)
    {
        sendMidi(effect, 0x90, block % 128, 100);
        effect->setParameter(effect, block % 7, static_cast<float>(block % 25) / 24.0f);
        if (block % 40 == 39) {
            ask(effect, effMainsChanged, 0, 0);
            ask(effect, effMainsChanged, 0, 1);
        }
    }
    void PlayBlock(std::int32_t frames, AEffectProcessProc process, bool isGuarded)
    {
        std::vector<float> in(mVoice.begin(), mVoice.begin() + frames);
        std::vector<float> left(in.size());
        std::vector<float> right(in.size());
        float* inputs[] = {in.data(), in.data()};
        float* outputs[] = {left.data(), right.data()};
        {
            RealtimeGuard guard;
            process(effect, inputs, outputs, frames);
            mViolations += isGuarded ? guard.violations() : 0;
        }
        mIsFinite = mIsFinite && std::all_of(left.begin(), left.end(),
                                             [](float sample) { return std::fabs(sample) < 8.0f; });
    }

    const std::vector<float> mVoice = harmonicTone(196.0, kRate, kLargestBlock);
    std::atomic<bool> mPlaying{true};
    unsigned mViolations = 0;
    bool mIsFinite = true;
    std::thread mThread;
};

/// A thread that repeats a step, with random numbers of its own, until the object is destroyed.
template <typename Step>
std::jthread repeat(unsigned seed, Step step)
{
    return std::jthread([seed, step](const std::stop_token& stop) {
        std::mt19937 random(seed);
        while (!stop.stop_requested())
            step(random);
    });
}

void changeAParameter(AEffect* effect, std::mt19937& random)
{
    std::array<char, kVstMaxParamStrLen> text;
    const auto index = static_cast<std::int32_t>(random() % 7);
    effect->setParameter(effect, index, static_cast<float>(random() % 101) / 100.0f);
    effect->getParameter(effect, index);
    ask(effect, effGetParamDisplay, index, 0, text.data());
    pause(random() % 20);
}

void saveAndLoad(AEffect* effect, std::mt19937& random)
{
    const bool isProgram = random() % 2 != 0;
    std::string chunk = chunkOf(effect, isProgram);
    if (random() % 2 != 0)  // the engine goes over to the fine tracking, and back with a program
        chunk.insert(chunk.find("</elements>"), kFineTracking);
    pause(random() % 50);
    EXPECT_EQ(loadChunk(effect, chunk, isProgram), 1);
    ask(effect, effSetProgram, 0, static_cast<std::intptr_t>(random() % 7));
}

/// Works mouse and keys at random, the same in every run.
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
            ToggleButton(static_cast<std::uint8_t>(1 + Below(3)));
        else if (what < 82)
            mDisplay.Click(static_cast<std::uint8_t>(4 + Below(2)));  // the wheel
        else if (what < 95)
            mDisplay.TypeKey(kKeys[Below(std::size(kKeys))]);
        else
            ReleaseAll();
        mDisplay.Sync();
        pause(Below(4));
    }
    void ReleaseAll()
    {
        for (const std::uint8_t button : std::exchange(mButtons, {}))
            mDisplay.Release(button);
    }

private:
    unsigned Below(std::size_t end) { return static_cast<unsigned>(mRandom() % end); }
    /// Moves by a few pixels, as a drag does, or to a control or anywhere on the screen.
    void Move()
    {
        const unsigned where = Below(20);
        if (where < 10) {
            mX = std::clamp(mX + static_cast<int>(Below(41)) - 20, 0, 1000);
            mY = std::clamp(mY + static_cast<int>(Below(41)) - 20, 0, 760);
        } else if (where < 18) {
            const auto [x, y] = kControls[Below(std::size(kControls))];
            mX = kEditor.x + x;
            mY = kEditor.y + y;
        } else {
            mX = static_cast<int>(Below(1024));
            mY = static_cast<int>(Below(768));
        }
        mDisplay.MovePointer(mX, mY);
    }
    void ToggleButton(std::uint8_t button)
    {
        if (mButtons.erase(button) != 0) {
            mDisplay.Release(button);
            return;
        }
        mButtons.insert(button);
        mDisplay.Press(button);
    }

    DisplayProbe& mDisplay;
    std::mt19937 mRandom{7};
    int mX = 0;
    int mY = 0;
    std::set<std::uint8_t> mButtons;
};

}  // namespace

TEST(SoakTest, BlocksNeitherAllocateNorWaitWhileParametersChangeAndProjectsAreSaved)
{
    const TestHost host;
    const Stream stream;
    const auto change = [&](std::mt19937& random) { changeAParameter(stream.effect, random); };
    const auto project = [&](std::mt19937& random) { saveAndLoad(stream.effect, random); };
    const std::jthread threads[] = {repeat(0, change), repeat(1, change), repeat(2, project)};
    std::this_thread::sleep_for(soakTime());
}

TEST(SoakTest, EveryGestureEndsWhateverMouseAndKeysDo)
{
    if (!VirtualDisplay::IsAvailable())
        GTEST_SKIP() << "no virtual display on this machine";
    const VirtualDisplay screen;
    DisplayProbe display;
    const TestHost host;
    const Stream stream;
    const xcb_window_t parent = display.MakeWindow(kEditor);
    const auto gesturesEnd = [] { return waitFor([] { return TestHost::OpenGestures() == 0; }); };
    const auto openEditor = [&] {
        void* const handle = reinterpret_cast<void*>(std::uintptr_t{parent});
        ASSERT_EQ(ask(stream.effect, effEditOpen, 0, 0, handle), 1);
    };
    openEditor();
    {
        const auto change = [&](std::mt19937& random) { changeAParameter(stream.effect, random); };
        const std::jthread automation = repeat(0, change);
        RandomUser user(display);
        int actions = 0;
        for (const auto end = Clock::now() + soakTime(); Clock::now() < end; ++actions) {
            user.Act();
            if (actions % 20 == 0)
                ask(stream.effect, effEditIdle);
            if (actions % 500 == 499) {
                ask(stream.effect, effEditClose);
                EXPECT_TRUE(gesturesEnd()) << "a window that closes ends the gestures in it";
                openEditor();
            }
        }
        user.ReleaseAll();
    }
    display.MovePointer(1000, 700);
    for (int i = 0; i < 3; ++i)
        display.TypeKey(kEscape);
    EXPECT_TRUE(gesturesEnd());
    EXPECT_TRUE(waitFor([&] { return display.Grab(); })) << "the mouse is not grabbed any more";
    display.Ungrab();
    ask(stream.effect, effEditClose);
    EXPECT_GT(TestHost::CountOf(audioMasterBeginEdit), 0);
}

}  // namespace orvane
