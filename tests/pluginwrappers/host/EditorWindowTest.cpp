// SPDX-License-Identifier: GPL-3.0-or-later
// The library's window inside windows of a host, on a virtual display: one habit of hosts per test.

#include "PluginLibrary.h"
#include "pluginwrappers/interface/WindowPicture.h"
#include "support/VirtualDisplayTest.h"

#include <unistd.h>

using namespace orvane;

namespace
{

constexpr std::int32_t kCorrectPitch = 0;

xcb_rectangle_t placeAt(int x, int y)
{
    return {static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 454, 430};
}

void closeEditor(AEffect* effect)
{
    ask(effect, effEditClose);
}

void process(AEffect* effect)
{
    std::array<float, 256> channel{};
    std::array<float*, 2> channels{channel.data(), channel.data()};
    effect->processReplacing(effect, channels.data(), channels.data(), 256);
}

struct EditorWindowTest : VirtualDisplayTest
{
    void Begin() override
    {
        parent = MakeParent();
        effect = host.Open();
        ask(effect, effSetBlockSize, 0, 256);
        ask(effect, effMainsChanged, 0, 1);
    }
    void TearDown() override
    {
        if (effect)
            closeEffect(effect);
        EXPECT_TRUE(!probe || IsFree());
    }

    [[nodiscard]] xcb_window_t MakeParent() const { return probe->MakeWindow(kPlace); }
    /// Returns whether the screen at place comes to show the effect's window.
    [[nodiscard]] bool Shows(AEffect* of, const xcb_rectangle_t& place = kPlace)
    {
        return waitFor([&] {
            // Asked each time, since a view may still wait for its value.
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
    /// Returns whether the plug-in comes to have no connection to the display.
    bool IsFree()
    {
        return waitFor([&] { return probe->CountClients() == 0; });
    }
    /// Opens the menu of pitch ranges and keeps the button down.
    void OpenMenu()
    {
        Open();
        const auto before = probe->GetChildren(probe->GetRoot());
        probe->MovePointer(kPlace.x + 60, kPlace.y + 66);
        probe->Press(1);
        EXPECT_TRUE(
            waitFor([&] { return probe->GetChildren(probe->GetRoot()).size() > before.size(); }));
        menu = probe->GetChildren(probe->GetRoot()).back();
        // The menu is painted once it has grabbed the mouse.
        const auto [left, top, width, height] = probe->GetPlace(menu);
        const int bottom = top + height - 8;
        EXPECT_TRUE(
            waitFor([&, left = left] { return probe->PixelAt(left + 4, bottom) == kMenuGround; }));
    }
    [[nodiscard]] bool MenuIsGone()
    {
        return waitFor([&] {
            const auto windows = probe->GetChildren(probe->GetRoot());
            return std::count(windows.begin(), windows.end(), menu) == 0;
        });
    }

    static constexpr xcb_rectangle_t kPlace{100, 100, 454, 430};
    static constexpr std::uint32_t kMenuGround = 0x262629;

    xcb_window_t parent = XCB_NONE;
    const LibraryHost host;
    AEffect* effect = nullptr;
    xcb_window_t menu = XCB_NONE;
};

/// Ends the process with an open instance; the alarm kills a process that hangs.
[[noreturn]] void exitAtOnce()
{
    ::alarm(2);
    std::exit(0);
}

}  // namespace

TEST_F(EditorWindowTest, EachParentShowsTheSameState)
{
    EXPECT_EQ(editorSize(effect), std::pair(454, 430));
    Open();
    probe->MovePointer(kPlace.x + 22, kPlace.y + 163);
    probe->Click(1);
    EXPECT_TRUE(waitFor([this] { return effect->getParameter(effect, kCorrectPitch) == 1.0f; }));
    EXPECT_TRUE(Shows(effect));
    closeEditor(effect);
    EXPECT_TRUE(IsFree());

    const xcb_rectangle_t second = placeAt(200, 120);
    EXPECT_EQ(openEditor(effect, probe->MakeWindow(second)), 1);
    EXPECT_TRUE(Shows(effect, second));
    closeEditor(effect);
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(openEditor(effect, parent), 1);
        closeEditor(effect);
    }
    EXPECT_TRUE(waitFor([this] { return probe->CountResources() == 0; }));
}

TEST_F(EditorWindowTest, InvalidParentsAreRefused)
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
    EXPECT_TRUE(Shows(effect)) << "the first opening is unaffected";
}

TEST_F(EditorWindowTest, AProcessWithAnOpenWindowEndsCleanlyAndAtOnce)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Open();
    EXPECT_EXIT(exitAtOnce(), testing::ExitedWithCode(0), "^$");
}

TEST_F(EditorWindowTest, AHiddenParentShowsTheSameWhenItIsShownAgain)
{
    Open();
    const xcb_window_t frame = probe->MakeWindow({200, 50, 500, 500});
    probe->Reparent(parent, frame, 10, 20);
    EXPECT_TRUE(Shows(effect, placeAt(210, 70)));
    probe->Hide(frame);
    ask(effect, effEditIdle);
    probe->Show(frame);
    EXPECT_TRUE(Shows(effect, placeAt(210, 70)));
}

TEST_F(EditorWindowTest, AParentMayBeDestroyedWithoutEffEditClose)
{
    Open();
    probe->Destroy(parent);
    ask(effect, effEditIdle);
    process(effect);
    EXPECT_TRUE(IsFree()) << "the connection had no other window";
    parent = MakeParent();
    Open();
    probe->Destroy(parent);
    closeEditor(effect);
    parent = MakeParent();
    Open();
    closeEffect(std::exchange(effect, nullptr));
    EXPECT_TRUE(IsFree()) << "effClose closes the window";
}

TEST_F(EditorWindowTest, TheEndOfTheXServerClosesTheWindowAndNothingElse)
{
    Open();
    AEffect* const second = host.Open();
    EXPECT_EQ(openEditor(second, parent), 1);
    EXPECT_EQ(probe->CountClients(), 1u) << "one connection for all";
    probe.reset();
    display->Kill();
    for (int i = 0; i < 20; ++i) {
        ask(effect, effEditIdle);
        process(effect);
        effect->setParameter(effect, kCorrectPitch, i % 2 == 0 ? 0.0f : 1.0f);
    }
    closeEditor(effect);
    StartDisplay();
    parent = MakeParent();
    Open();
    closeEffect(second);
    EXPECT_EQ(probe->GetChildren(parent).size(), 1u);
}

TEST_F(EditorWindowTest, AnOpenMenuClosesWithItsWindow)
{
    const std::vector<std::function<void()>> ends{
        [&] { closeEditor(effect); },
        [&] { probe->Destroy(parent); },
        [&] { openEditor(effect, MakeParent()); },
        [&] { closeEffect(std::exchange(effect, host.Open())); },
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
