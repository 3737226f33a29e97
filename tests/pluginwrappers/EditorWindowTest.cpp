// The library's window in windows of a host, on a display of the test's own: what hosts do with
// their windows, one habit a test.

#include "TestHost.h"

#include "pluginwrappers/common/VstOpcodes.h"
#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

namespace orvane
{

namespace
{

constexpr std::int32_t kCorrectPitch = 0;
constexpr std::int32_t kPitchRange = 3;
constexpr std::int32_t kCorrectionTime = 4;
constexpr xcb_rectangle_t kPlace{100, 100, 454, 430};

void openEditor(AEffect* effect, xcb_window_t parent)
{
    EXPECT_EQ(ask(effect, effEditOpen, 0, 0, reinterpret_cast<void*>(std::uintptr_t{parent})), 1);
}

void closeEditor(AEffect* effect)
{
    ask(effect, effEditClose);
}

/// One block of silence.
void process(AEffect* effect)
{
    std::array<float, 256> channel{};
    std::array<float*, 2> channels{channel.data(), channel.data()};
    effect->processReplacing(effect, channels.data(), channels.data(), 256);
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
    }

    void StartDisplay()
    {
        display = std::make_unique<VirtualDisplay>();
        probe = std::make_unique<DisplayProbe>();
        parent = probe->MakeWindow(kPlace);
    }
    /// Whether the plug-in's title comes to be seen where a parent lies, which is grey itself.
    [[nodiscard]] bool IsSeen(const xcb_rectangle_t& place = kPlace)
    {
        return waitFor([&] { return probe->PixelAt(place.x + 300, place.y + 15) != 0x808080; });
    }
    [[nodiscard]] bool IsGone(const xcb_rectangle_t& place = kPlace)
    {
        return waitFor([&] { return probe->PixelAt(place.x + 300, place.y + 15) == 0x808080; });
    }
    /// Presses the button on the menu of pitch ranges, which lies on top then.
    void OpenMenu()
    {
        openEditor(effect, parent);
        EXPECT_TRUE(IsSeen());
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
    [[nodiscard]] bool ResourcesFallTo(std::uint32_t count)
    {
        return waitFor([&] { return probe->CountResources() == count; });
    }

    const std::size_t threadsBefore = threadCount();
    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<DisplayProbe> probe;
    xcb_window_t parent = XCB_NONE;
    std::unique_ptr<TestHost> host = std::make_unique<TestHost>();
    AEffect* effect = nullptr;
    xcb_window_t menu = XCB_NONE;
};

/// The gestures and values of a parameter that the host has been told, in order.
std::vector<std::int32_t> toldOf(std::int32_t parameter)
{
    std::vector<std::int32_t> opcodes;
    for (const HostCall& call : TestHost::Calls()) {
        const bool tells = call.opcode == audioMasterBeginEdit ||
                           call.opcode == audioMasterAutomate || call.opcode == audioMasterEndEdit;
        if (tells && call.index == parameter)
            opcodes.push_back(call.opcode);
    }
    return opcodes;
}

/// Ends the process as a host does that forgets an instance; a process that hangs is killed.
[[noreturn]] void exitAtOnce()
{
    ::alarm(2);
    std::exit(0);
}

}  // namespace

TEST_F(EditorWindowTest, AWindowThatIsOpenedAndClosedLeavesNothing)
{
    for (int i = 0; i < 200; ++i) {
        openEditor(effect, parent);
        if (i % 50 == 0) {
            EXPECT_TRUE(IsSeen());
        }
        closeEditor(effect);
    }
    EXPECT_TRUE(IsGone());
    EXPECT_TRUE(ResourcesFallTo(0));
    EXPECT_EQ(probe->CountClients(), 0u);
}

TEST_F(EditorWindowTest, AfterTheLastWindowTheLibraryUnloads)
{
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    closeEffect(effect);
    effect = nullptr;
    host.reset();
    EXPECT_FALSE(PluginLibrary::IsLoaded());
    EXPECT_TRUE(threadsFallTo(threadsBefore));
    EXPECT_TRUE(ResourcesFallTo(0));
}

TEST_F(EditorWindowTest, AProcessThatLeavesAWindowOpenEndsCleanlyAndAtOnce)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    EXPECT_EXIT(exitAtOnce(), testing::ExitedWithCode(0), "^$");
}

TEST_F(EditorWindowTest, TwentyWindowsAreOpenAtOnceAndCloseInAnyOrder)
{
    std::vector<AEffect*> effects;
    std::vector<xcb_rectangle_t> places;
    for (int i = 0; i < 20; ++i) {
        places.push_back(
            {static_cast<std::int16_t>(20 * i), static_cast<std::int16_t>(16 * i), 454, 430});
        effects.push_back(host->Open());
        openEditor(effects.back(), probe->MakeWindow(places.back()));
        EXPECT_TRUE(IsSeen(places.back())) << i;
    }
    EXPECT_EQ(probe->CountClients(), 1u) << "one connection for all";
    for (std::size_t i = 0; i < 20; i += 2)
        closeEditor(effects[i]);
    for (std::size_t i = 0; i < 20; ++i)
        closeEffect(effects[19 - i]);
    EXPECT_TRUE(ResourcesFallTo(0));
}

TEST_F(EditorWindowTest, AHostThatHidesItsWindowShowsTheSameLater)
{
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    const xcb_window_t frame = probe->MakeWindow({200, 50, 500, 500});
    probe->Reparent(parent, frame, 10, 20);
    EXPECT_TRUE(IsSeen({210, 70, 454, 430}));
    probe->Hide(frame);
    for (int i = 0; i < 5; ++i)
        ask(effect, effEditIdle);
    probe->Show(frame);
    EXPECT_TRUE(IsSeen({210, 70, 454, 430})) << "without a call";
}

TEST_F(EditorWindowTest, AParentMayGoWithoutAClose)
{
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    probe->Destroy(parent);
    ask(effect, effEditIdle);
    process(effect);
    EXPECT_TRUE(ResourcesFallTo(0)) << "the connection had one window";
    parent = probe->MakeWindow(kPlace);
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    probe->Destroy(parent);
    closeEditor(effect);
    parent = probe->MakeWindow(kPlace);
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    closeEffect(effect);
    effect = nullptr;
    EXPECT_TRUE(IsGone()) << "the instance's end is the window's";
}

TEST_F(EditorWindowTest, TheEndOfTheServerEndsTheWindowAndNothingElse)
{
    openEditor(effect, parent);
    AEffect* const second = host->Open();
    openEditor(second, parent);
    EXPECT_TRUE(IsSeen());
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
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    closeEffect(second);
    EXPECT_EQ(probe->GetChildren(parent).size(), 1u);
}

TEST_F(EditorWindowTest, TheSliderIsDraggedInOneGestureWhateverEndsIt)
{
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    const float before = effect->getParameter(effect, kCorrectionTime);
    probe->MovePointer(kPlace.x + 42, kPlace.y + 204);
    probe->Press(1);
    probe->MovePointer(kPlace.x + 90, kPlace.y + 204);
    EXPECT_TRUE(waitFor([&] { return effect->getParameter(effect, kCorrectionTime) > before; }));
    probe->Release(1);
    const auto count = [](std::int32_t opcode) {
        const auto told = toldOf(kCorrectionTime);
        return std::count(told.begin(), told.end(), opcode);
    };
    ASSERT_TRUE(waitFor([&] { return count(audioMasterEndEdit) == 1; }));
    EXPECT_GE(count(audioMasterAutomate), 1);
    const auto told = toldOf(kCorrectionTime);
    EXPECT_EQ(told.front(), audioMasterBeginEdit);
    EXPECT_EQ(told.back(), audioMasterEndEdit);
    probe->Press(1);
    EXPECT_TRUE(waitFor([&] { return count(audioMasterBeginEdit) == 2; }));
    closeEditor(effect);
    EXPECT_TRUE(waitFor([&] { return count(audioMasterEndEdit) == 2; }))
        << "the close ends what is held";
    probe->Release(1);
}

TEST_F(EditorWindowTest, AKeyIsSwitchedWithTheMouseAndKeepsItsStateInTheNextWindow)
{
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    const auto hasRedDot = [&] {
        const std::uint32_t pixel = probe->PixelAt(kPlace.x + 157, kPlace.y + 377);
        return (pixel >> 16 & 0xFF) > 150 && (pixel >> 8 & 0xFF) < 100;
    };
    const auto click = [&] {
        probe->MovePointer(kPlace.x + 157, kPlace.y + 365);
        probe->Press(1);
        probe->Release(1);
        probe->MovePointer(kPlace.x + 300, kPlace.y + 60);
    };
    EXPECT_TRUE(waitFor(hasRedDot)) << "a D is in C major";
    click();
    EXPECT_TRUE(waitFor([&] { return !hasRedDot(); }));
    closeEditor(effect);
    EXPECT_TRUE(IsGone());
    openEditor(effect, parent);
    EXPECT_TRUE(IsSeen());
    EXPECT_TRUE(waitFor([&] { return !hasRedDot(); }));
    click();
    EXPECT_TRUE(waitFor(hasRedDot));
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
        [&] { openEditor(effect, probe->MakeWindow(kPlace)); },
        [&] { closeEffect(std::exchange(effect, nullptr)); },
    };
    for (std::size_t i = 0; i < ends.size(); ++i) {
        OpenMenu();
        ends[i]();
        EXPECT_TRUE(MenuIsGone()) << i;
        probe->Release(1);
        if (effect) {
            process(effect);
            closeEditor(effect);
        }
        EXPECT_TRUE(ResourcesFallTo(0));
        parent = probe->MakeWindow(kPlace);
    }
}

TEST_F(EditorWindowTest, AServerMayEndUnderAnOpenMenu)
{
    OpenMenu();
    probe.reset();
    display->Kill();
    ask(effect, effEditIdle);
    closeEffect(std::exchange(effect, nullptr));
}

TEST_F(EditorWindowTest, TheEditorMayHaveAThreadOfItsOwn)
{
    std::thread editor([&] {
        for (int i = 0; i < 20; ++i) {
            openEditor(effect, parent);
            for (int idle = 0; idle < 5; ++idle) {
                ask(effect, effEditIdle);
                probe->MovePointer(kPlace.x + 20 * i, kPlace.y + 150 + 10 * idle);
                probe->Click(1, idle % 2);
            }
            closeEditor(effect);
        }
    });
    for (int i = 0; i < 200; ++i) {
        process(effect);
        effect->setParameter(effect, i % 5, 0.25f * static_cast<float>(i % 4));
        if (i % 20 == 0)
            ask(effect, effSetProgram, 0, i / 20);
    }
    editor.join();
    EXPECT_TRUE(ResourcesFallTo(0));
}

}  // namespace orvane
