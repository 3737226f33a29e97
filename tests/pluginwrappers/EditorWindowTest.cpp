// The library's window in windows of a host, on a display of the test's own: what hosts do with
// their windows, one habit a test.

#include "TestHost.h"

#include "pluginwrappers/common/ERect.h"
#include "pluginwrappers/common/VstOpcodes.h"
#include "pluginwrappers/common/WindowPicture.h"
#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

namespace orvane
{

namespace
{

constexpr std::int32_t kCorrectPitch = 0;
constexpr std::int32_t kKey = 2;
constexpr std::int32_t kPitchRange = 3;
constexpr std::int32_t kCorrectionTime = 4;

xcb_rectangle_t placeAt(int x, int y)
{
    return {static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 454, 430};
}

std::intptr_t openEditor(AEffect* effect, std::uintptr_t parent)
{
    return ask(effect, effEditOpen, 0, 0, reinterpret_cast<void*>(parent));  // as hosts do
}

void closeEditor(AEffect* effect)
{
    ask(effect, effEditClose);
}

/// One block, a period of a low voice. Whether what comes out is sound.
bool process(AEffect* effect)
{
    std::array<float, 256> channel{};
    for (std::size_t i = 0; i < channel.size(); ++i)
        channel[i] = static_cast<float>(i) / 512.0f - 0.25f;
    std::array<float*, 2> channels{channel.data(), channel.data()};
    effect->processReplacing(effect, channels.data(), channels.data(), 256);
    return std::ranges::all_of(channel, [](float sample) { return std::fabs(sample) < 8.0f; });
}

class EditorWindowTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!VirtualDisplay::IsAvailable())
            GTEST_SKIP() << "no X server for tests";
        StartDisplay();
        effect = host->Open();
    }
    void TearDown() override
    {
        if (effect)
            closeEffect(effect);
        EXPECT_TRUE(!probe || IsFree());
    }

    void StartDisplay()
    {
        display = std::make_unique<VirtualDisplay>();
        probe = std::make_unique<DisplayProbe>();
        parent = MakeParent();
    }
    [[nodiscard]] xcb_window_t MakeParent() { return probe->MakeWindow(kPlace); }
    /// Whether the screen comes to show there what the window of the effect shows.
    [[nodiscard]] bool Shows(AEffect* of, const xcb_rectangle_t& place = kPlace)
    {
        return waitFor([&] {
            // Asked each time, since a value may yet be on its way to its view.
            WindowPicture picture{};
            EXPECT_EQ(ask(of, effVendorSpecific, kVendorOrvane, kVendorWindowPicture, &picture), 1);
            for (int row = 4; row < picture.height; row += 23) {
                const int column = (row * 7) % picture.width;
                const std::uint32_t shown = probe->PixelAt(place.x + column, place.y + row);
                if (shown != (picture.pixels[row * picture.width + column] & 0xFFFFFF))
                    return false;
            }
            return true;
        });
    }
    void Open()
    {
        EXPECT_EQ(openEditor(effect, parent), 1);
        EXPECT_TRUE(Shows(effect));
    }
    /// Whether the parent, which is grey, comes to be seen where the plug-in's title was.
    [[nodiscard]] bool IsGone()
    {
        return waitFor([&] { return probe->PixelAt(kPlace.x + 300, kPlace.y + 15) == 0x808080; });
    }
    /// Whether the display comes to hold nothing of the plug-in's any more.
    [[nodiscard]] bool IsFree()
    {
        return waitFor([&] { return probe->CountClients() == 0; });
    }
    /// Presses the button on the menu of pitch ranges, which lies on top then.
    void OpenMenu()
    {
        Open();
        const auto before = probe->GetChildren(probe->GetRoot());
        probe->MovePointer(kPlace.x + 60, kPlace.y + 66);
        probe->Press(1);
        EXPECT_TRUE(
            waitFor([&] { return probe->GetChildren(probe->GetRoot()).size() > before.size(); }));
        menu = probe->GetChildren(probe->GetRoot()).back();
    }
    [[nodiscard]] bool MenuIsGone()
    {
        return waitFor([&] {
            const auto windows = probe->GetChildren(probe->GetRoot());
            return std::count(windows.begin(), windows.end(), menu) == 0;
        });
    }

    static constexpr xcb_rectangle_t kPlace{100, 100, 454, 430};

    const std::size_t threadsBefore = threadCount();
    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<DisplayProbe> probe;
    xcb_window_t parent = XCB_NONE;
    std::unique_ptr<TestHost> host = std::make_unique<TestHost>();
    AEffect* effect = nullptr;
    xcb_window_t menu = XCB_NONE;
};

/// Gestures that the host has been told of, and what was told out of order.
struct Gestures
{
    Gestures()
    {
        for (const HostCall& call : TestHost::Calls()) {
            if (call.opcode == audioMasterBeginEdit) {
                ++begun;
                mistakes += open[call.index]++ != 0;
            } else if (call.opcode == audioMasterEndEdit) {
                mistakes += --open[call.index] != 0;
            }
        }
    }
    [[nodiscard]] bool AllClosed() const
    {
        return std::ranges::all_of(open, [](const auto& each) { return each.second == 0; });
    }

    int begun = 0;
    int mistakes = 0;
    std::map<std::int32_t, int> open;
};

// Where something in the window can be pressed: menus, check boxes, the slider, buttons, a key.
constexpr xcb_point_t kControls[] = {
    xcb_point_t{100, 65},  xcb_point_t{100, 121}, xcb_point_t{240, 121}, xcb_point_t{240, 200},
    xcb_point_t{345, 200}, xcb_point_t{20, 98},   xcb_point_t{20, 163},  xcb_point_t{70, 204},
    xcb_point_t{30, 204},  xcb_point_t{50, 310},  xcb_point_t{50, 330},  xcb_point_t{50, 352},
    xcb_point_t{200, 380}};

constexpr std::uint32_t kModifiers[] = {XKB_KEY_Shift_L, XKB_KEY_Control_L, XKB_KEY_Alt_L};
constexpr std::uint32_t kKeys[] = {XKB_KEY_a,      XKB_KEY_z,      XKB_KEY_5,    XKB_KEY_space,
                                   XKB_KEY_Return, XKB_KEY_Escape, XKB_KEY_Left, XKB_KEY_Up,
                                   XKB_KEY_Right,  XKB_KEY_Down,   XKB_KEY_Tab,  XKB_KEY_BackSpace,
                                   XKB_KEY_End,    XKB_KEY_Delete};

/// Knows buttons, keys and a window, and no plan; the same in every run.
class RandomUser
{
public:
    RandomUser(DisplayProbe& display, const xcb_rectangle_t& editor)
        : mDisplay(display)
        , mEditor(editor)
    {
    }

    void Act()
    {
        const unsigned what = Below(100);
        if (what < 50)
            Move();
        else if (what < 71)
            TurnButton(Below(8) != 0 ? 1 : static_cast<std::uint8_t>(2 + Below(2)));
        else if (what < 78)
            mDisplay.Click(static_cast<std::uint8_t>(4 + Below(2)));
        else if (what < 88)
            mDisplay.TypeKey(kKeys[Below(std::size(kKeys))]);
        else if (what < 96)
            TurnButtonWith(kModifiers[Below(std::size(kModifiers))]);
        else
            LetGo();
    }
    /// Lets all buttons go.
    void LetGo()
    {
        for (const std::uint8_t button : std::exchange(mButtons, {}))
            mDisplay.Release(button);
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
            const xcb_point_t control = kControls[Below(std::size(kControls))];
            mX = mEditor.x + control.x;
            mY = mEditor.y + control.y;
        } else {
            mX = static_cast<int>(Below(700));
            mY = static_cast<int>(Below(700));
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
    void TurnButtonWith(std::uint32_t modifier)
    {
        mDisplay.PressKey(modifier);
        TurnButton(1);
        mDisplay.ReleaseKey(modifier);
    }

    DisplayProbe& mDisplay;
    const xcb_rectangle_t mEditor;
    std::mt19937 mRandom{7};
    int mX = 0;
    int mY = 0;
    std::set<std::uint8_t> mButtons;
};

/// Three seconds, or what KESTRUNE_SOAK_SECONDS says.
std::chrono::duration<double> soakTime()
{
    const char* const seconds = std::getenv("KESTRUNE_SOAK_SECONDS");
    return std::chrono::duration<double>(seconds != nullptr ? std::atof(seconds) : 3.0);
}

/// Ends the process as a host does that forgets an instance; a process that hangs is killed.
[[noreturn]] void exitAtOnce()
{
    ::alarm(2);
    std::exit(0);
}

}  // namespace

TEST_F(EditorWindowTest, ShowsTheSameStateInOneParentAfterAnother)
{
    ERect* rect = nullptr;
    EXPECT_EQ(ask(effect, effEditGetRect, 0, 0, static_cast<void*>(&rect)), 1);
    EXPECT_EQ(rect->right - rect->left, kPlace.width);
    EXPECT_EQ(rect->bottom - rect->top, kPlace.height);
    Open();
    probe->MovePointer(kPlace.x + 22, kPlace.y + 163);
    probe->Click(1);
    EXPECT_TRUE(waitFor([this] { return effect->getParameter(effect, kCorrectPitch) == 1.0f; }));
    EXPECT_TRUE(Shows(effect));
    closeEditor(effect);
    EXPECT_TRUE(IsGone());
    EXPECT_TRUE(IsFree());

    const xcb_rectangle_t second = placeAt(200, 120);
    EXPECT_EQ(openEditor(effect, probe->MakeWindow(second)), 1);
    EXPECT_TRUE(Shows(effect, second));
    closeEditor(effect);
    closeEditor(effect);
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(openEditor(effect, parent), 1);
        closeEditor(effect);
    }
    EXPECT_TRUE(waitFor([this] { return probe->CountResources() == 0; }));
}

TEST_F(EditorWindowTest, ParentsThatAreNoneAreRefusedAndAllElseGoesOn)
{
    const xcb_window_t gone = MakeParent();
    probe->Destroy(gone);
    probe->Sync();
    for (const std::uintptr_t none :
         {std::uintptr_t{0}, std::uintptr_t{gone}, std::uintptr_t{0x7fffffff}, UINTPTR_MAX})
        EXPECT_EQ(openEditor(effect, none), 0) << none;
    EXPECT_TRUE(IsFree());
    Open();
    EXPECT_EQ(openEditor(effect, 0), 0);
    EXPECT_TRUE(Shows(effect)) << "the first opening holds";
}

TEST_F(EditorWindowTest, AfterTheLastWindowTheLibraryUnloads)
{
    Open();
    closeEffect(std::exchange(effect, nullptr));
    host.reset();
    EXPECT_FALSE(PluginLibrary::IsLoaded());
    EXPECT_TRUE(threadsFallTo(threadsBefore));
}

TEST_F(EditorWindowTest, AProcessThatLeavesAWindowOpenEndsCleanlyAndAtOnce)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Open();
    EXPECT_EXIT(exitAtOnce(), testing::ExitedWithCode(0), "^$");
}

TEST_F(EditorWindowTest, ManyInstancesShowTheirOwnStatesAndGoInAnyOrder)
{
    std::vector<AEffect*> effects;
    for (int i = 0; i < 20; ++i) {
        effects.push_back(host->Open());
        effects[i]->setParameter(effects[i], i % 2 == 0 ? kCorrectPitch : kKey, 1.0f);
        ask(effects[i], effMainsChanged, 0, 1);  // brings the value to the views
        const xcb_rectangle_t place = placeAt(20 * i, 16 * i);
        EXPECT_EQ(openEditor(effects[i], probe->MakeWindow(place)), 1);
        EXPECT_TRUE(Shows(effects[i], place)) << i;
    }
    EXPECT_EQ(probe->CountClients(), 1u) << "one connection for all";
    for (std::size_t i = 0; i < 20; i += 2)
        closeEditor(effects[i]);
    for (std::size_t i = 0; i < 20; ++i)
        closeEffect(effects[19 - i]);
}

TEST_F(EditorWindowTest, AHostThatHidesItsWindowShowsTheSameLater)
{
    Open();
    const xcb_window_t frame = probe->MakeWindow({200, 50, 500, 500});
    probe->Reparent(parent, frame, 10, 20);
    EXPECT_TRUE(Shows(effect, placeAt(210, 70)));
    probe->Hide(frame);
    for (int i = 0; i < 5; ++i)
        ask(effect, effEditIdle);
    probe->Show(frame);
    EXPECT_TRUE(Shows(effect, placeAt(210, 70))) << "without a call";
}

TEST_F(EditorWindowTest, AParentMayGoWithoutAClose)
{
    Open();
    probe->Destroy(parent);
    ask(effect, effEditIdle);
    process(effect);
    EXPECT_TRUE(IsFree()) << "the connection had one window";
    parent = MakeParent();
    Open();
    probe->Destroy(parent);
    closeEditor(effect);
    parent = MakeParent();
    Open();
    closeEffect(std::exchange(effect, nullptr));
    EXPECT_TRUE(IsGone()) << "the instance's end is the window's";
}

TEST_F(EditorWindowTest, TheEndOfTheServerEndsTheWindowAndNothingElse)
{
    Open();
    AEffect* const second = host->Open();
    EXPECT_EQ(openEditor(second, parent), 1);
    probe.reset();
    display->Kill();
    for (int i = 0; i < 20; ++i) {
        ask(effect, effEditIdle);
        process(effect);
        effect->setParameter(effect, kCorrectPitch, i % 2 == 0 ? 0.0f : 1.0f);
    }
    closeEditor(effect);
    display.reset();
    StartDisplay();
    Open();
    closeEffect(second);
    EXPECT_EQ(probe->GetChildren(parent).size(), 1u);
}

TEST_F(EditorWindowTest, TheSliderIsDraggedInOneGestureWhateverEndsIt)
{
    Open();
    const float before = effect->getParameter(effect, kCorrectionTime);
    probe->MovePointer(kPlace.x + 42, kPlace.y + 204);
    probe->Press(1);
    probe->MovePointer(kPlace.x + 90, kPlace.y + 204);
    EXPECT_TRUE(waitFor([&] { return effect->getParameter(effect, kCorrectionTime) > before; }));
    EXPECT_FALSE(Gestures().AllClosed());
    probe->Release(1);
    EXPECT_TRUE(waitFor([] { return Gestures().AllClosed(); }));
    probe->Press(1);
    EXPECT_TRUE(waitFor([] { return Gestures().begun == 2; }));
    closeEditor(effect);
    EXPECT_TRUE(waitFor([] { return Gestures().AllClosed(); })) << "the close ends what is held";
    EXPECT_EQ(Gestures().mistakes, 0);
    probe->Release(1);
}

TEST_F(EditorWindowTest, WhateverMouseAndKeysDoEachGestureEndsAndAudioGoesOn)
{
    Open();
    std::atomic<bool> runs{true};
    // The editor has a thread of its own, as in some hosts.
    std::thread editor([&] {
        const auto end = std::chrono::steady_clock::now() + soakTime();
        RandomUser user(*probe, kPlace);
        for (int actions = 1; std::chrono::steady_clock::now() < end; ++actions) {
            user.Act();
            probe->Sync();
            std::this_thread::sleep_for(std::chrono::milliseconds(user.Below(4)));
            if (actions % 20 == 0)
                ask(effect, effEditIdle);
            if (actions % 500 != 0)
                continue;
            closeEditor(effect);
            // A switch that was pressed just now may still be between its begin and its end.
            EXPECT_TRUE(waitFor([] { return Gestures().AllClosed(); }))
                << "a window that closes lets go of its controls";
            EXPECT_EQ(openEditor(effect, parent), 1);
        }
        user.LetGo();
        runs = false;
    });
    std::thread audio([&] {
        while (runs) {
            EXPECT_TRUE(process(effect));
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    for (std::mt19937 random(5); runs;) {
        effect->setParameter(effect, static_cast<std::int32_t>(random() % 7),
                             static_cast<float>(random() % 101) / 100.0f);
        if (random() % 50 == 0)
            ask(effect, effSetProgram, 0, static_cast<std::intptr_t>(random() % 7));
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 20));
    }
    editor.join();
    audio.join();
    probe->MovePointer(1000, 700);
    for (int i = 0; i < 3; ++i)
        probe->TypeKey(XKB_KEY_Escape);
    EXPECT_TRUE(waitFor([] { return Gestures().AllClosed(); }));
    EXPECT_TRUE(waitFor([&] { return probe->Grab(); })) << "the mouse is free";
    probe->Ungrab();
    EXPECT_GT(Gestures().begun, 0);
    EXPECT_EQ(Gestures().mistakes, 0);
}

TEST_F(EditorWindowTest, AnEntryOfAMenuIsChosenWithTheMouse)
{
    OpenMenu();
    const float before = effect->getParameter(effect, kPitchRange);
    probe->MovePointer(kPlace.x + 70, kPlace.y + 80);
    probe->MovePointer(kPlace.x + 80, kPlace.y + 95);
    probe->Release(1);
    EXPECT_TRUE(MenuIsGone());
    EXPECT_TRUE(waitFor([&] { return effect->getParameter(effect, kPitchRange) != before; }));
}

TEST_F(EditorWindowTest, WhateverEndsUnderAnOpenMenuTakesTheMenuAlong)
{
    const std::vector<std::function<void()>> ends{
        [&] { closeEditor(effect); },
        [&] { probe->Destroy(parent); },
        [&] { openEditor(effect, MakeParent()); },
        [&] { closeEffect(std::exchange(effect, host->Open())); },
    };
    for (std::size_t i = 0; i < ends.size(); ++i) {
        OpenMenu();
        ends[i]();
        EXPECT_TRUE(MenuIsGone()) << i;
        probe->Release(1);
        process(effect);
        closeEditor(effect);
        EXPECT_TRUE(IsFree());
        parent = MakeParent();
    }
    OpenMenu();
    probe.reset();
    display->Kill();
    ask(effect, effEditIdle);
    closeEffect(std::exchange(effect, nullptr));
}

}  // namespace orvane
