// SPDX-License-Identifier: GPL-3.0-or-later
// Menus and message boxes on a virtual display, used with mouse and keys.

#include "support/DisplayTest.h"
#include "support/SmallPlugin.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZMenuWindow.h"
#include "zlib/common/views/TestView.h"
#include "zlib/common/views/ZMessageBoxContent.h"
#include "zlib/common/views/ZMessageBoxWindow.h"
#include "zlib/common/views/ZWindow.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <optional>
#include <string>

namespace orvane
{

namespace
{

constexpr std::uint32_t kGround = 0x262629;

class LittleWindowsTest : public DisplayTest
{
protected:
    void SetUp() override
    {
        DisplayTest::SetUp();
        if (IsSkipped())
            return;
        const ZInterfaceLock lock;
        app = std::make_unique<SmallPlugin>();
        for (int i = 0; i < 8; ++i)
            menu.AddItem(ZString("Item " + std::to_string(i)), i);
        window = std::make_unique<ZWindow>(
            viewXml("<windowtype name=\"W\"><rect left=\"300\" top=\"300\" width=\"200\" "
                    "height=\"100\" /></windowtype>"),
            app.get());
        ASSERT_TRUE(window->Create(nullptr, 0));
        window->Show();
        probe->Sync();
        before = probe->GetChildren(probe->GetRoot());
    }
    void TearDown() override
    {
        const ZInterfaceLock lock;
        window.reset();
        app.reset();
    }

    /// Opens the menu on the interface thread and waits until it has the focus.
    void OpenMenu(const ZPoint& at)
    {
        ended = false;
        ZInterfaceThread::Post([this, at] {
            chosen = ZMenuWindow::Show(menu, at, window.get());
            ended = true;
        });
        ASSERT_TRUE(
            waitFor([this] { return FindNew() != XCB_NONE && probe->GetFocus() == FindNew(); }));
    }
    [[nodiscard]] bool Ends()
    {
        return waitFor([this] { return ended && FindNew() == XCB_NONE; });
    }
    /// The first window on the screen that was not there at the start of the test.
    [[nodiscard]] xcb_window_t FindNew()
    {
        for (const xcb_window_t each : probe->GetChildren(probe->GetRoot()))
            if (std::ranges::count(before, each) == 0)
                return each;
        return XCB_NONE;
    }

    ZMenu menu{"menu", ZMenu::Kind::kPopup};
    std::unique_ptr<SmallPlugin> app;
    std::unique_ptr<ZWindow> window;
    std::vector<xcb_window_t> before;
    std::atomic<bool> ended{false};
    std::optional<std::int32_t> chosen;
};

}  // namespace

TEST_F(LittleWindowsTest, MenuReturnsTheFocusToItsWindowAfterAChoiceByKeys)
{
    OpenMenu({100, 120});
    for (const std::uint32_t key :
         {std::uint32_t{XKB_KEY_End}, std::uint32_t{XKB_KEY_Up}, std::uint32_t{XKB_KEY_Return}})
        probe->TypeKey(key);
    ASSERT_TRUE(Ends());
    EXPECT_EQ(chosen, 6);
    EXPECT_EQ(probe->GetFocus(), window->GetNativeWindow()->GetHandle());
    OpenMenu({100, 120});
    probe->TypeKey(XKB_KEY_Escape);
    ASSERT_TRUE(Ends());
    EXPECT_FALSE(chosen.has_value());
}

TEST_F(LittleWindowsTest, MenuIgnoresClicksUntilItHasBeenOpenForAWhile)
{
    const auto begin = std::chrono::steady_clock::now();
    probe->MovePointer(150, 130);
    OpenMenu({100, 120});
    ASSERT_TRUE(waitFor([this] {
        probe->Click(1);
        return ended.load();
    }));
    EXPECT_EQ(chosen, 0);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(400));
}

TEST_F(LittleWindowsTest, MenuStaysOnTheMonitorAndClosesByAClickOutsideOrWithItsWindow)
{
    OpenMenu({1000, 760});
    const xcb_rectangle_t place = probe->GetPlace(FindNew());
    EXPECT_EQ(place.x + place.width, 1024);
    EXPECT_EQ(place.y + place.height, 768);
    probe->MovePointer(20, 20);
    probe->Click(1);
    ASSERT_TRUE(Ends());
    EXPECT_FALSE(chosen.has_value());
    OpenMenu({100, 120});
    {
        const ZInterfaceLock lock;
        window->Hide();
    }
    EXPECT_TRUE(Ends());
    EXPECT_FALSE(chosen.has_value());
}

TEST_F(LittleWindowsTest, MenuClosesWithoutTheFocusItsApplicationOrTheDisplay)
{
    OpenMenu({100, 120});
    probe->Focus(static_cast<xcb_window_t>(window->GetNativeWindow()->GetHandle()));
    EXPECT_TRUE(Ends()) << "another window took the focus";
    OpenMenu({100, 120});
    {
        const ZInterfaceLock lock;
        app->EndModalRuns();
        EXPECT_TRUE(ended) << "EndModalRuns() returned before the menu did";
    }
    EXPECT_TRUE(Ends());
    OpenMenu({100, 120});
    display->Kill();
    EXPECT_TRUE(waitFor([this] { return ended.load(); }));
    EXPECT_FALSE(chosen.has_value());
}

TEST_F(LittleWindowsTest, MessageBoxClosesByItsButtonOrWithTheLastApplication)
{
    const auto raise = [this] {
        ended = false;
        ZInterfaceThread::Post([this] {
            EXPECT_TRUE(ZMessageBoxWindow::Show(ZMessageBox::kError, "Title", "Text"));
            ended = true;
        });
        xcb_rectangle_t place{};
        EXPECT_TRUE(waitFor([&] {
            place = FindNew() == XCB_NONE ? place : probe->GetPlace(FindNew());
            return place.x != 0 && probe->PixelAt(place.x + 5, place.y + 5) == kGround;
        }));
        return place;
    };
    const xcb_rectangle_t place = raise();
    const ZRect button = ZMessageBoxContent(ZMessageBox::kError, "Text").GetButtonRect();
    probe->MovePointer(place.x + button.left + 5, place.y + button.top + 5);
    probe->Click(1);
    EXPECT_TRUE(Ends());
    raise();
    const ZInterfaceLock lock;
    window.reset();
    app.reset();
    EXPECT_TRUE(ended);
    EXPECT_FALSE(ZMessageBoxWindow::Show(ZMessageBox::kError, "Title", "Text"));
}

TEST_F(LittleWindowsTest, ADialogBlocksTheOtherWindowsAndGetsTheirFocus)
{
    std::unique_ptr<ZWindow> dialog;
    {
        const ZInterfaceLock lock;
        dialog = std::make_unique<ZWindow>(
            viewXml("<windowtype name=\"D\" dialog=\"true\" resize=\"true\"><rect left=\"600\" "
                    "top=\"300\" width=\"100\" height=\"50\" /></windowtype>"),
            app.get());
        ASSERT_TRUE(dialog->Create(window.get(), 0));
        dialog->Show();
        EXPECT_TRUE(app->IsModal());
    }
    ASSERT_TRUE(waitFor([this] { return FindNew() != XCB_NONE; }));
    const xcb_window_t shown = FindNew();
    const auto firstOf = [&](const char* property) {
        std::uint32_t first = 0;
        const auto bytes = probe->GetProperty(shown, property);
        if (bytes.size() >= sizeof first)
            std::memcpy(&first, bytes.data(), sizeof first);
        return first;
    };
    EXPECT_EQ(firstOf("_NET_WM_STATE"), probe->GetAtom("_NET_WM_STATE_MODAL"));
    EXPECT_EQ(firstOf("WM_TRANSIENT_FOR"), window->GetNativeWindow()->GetHandle());
    EXPECT_EQ(firstOf("WM_NORMAL_HINTS") & 48u, 0u) << "no fixed size";
    probe->MovePointer(350, 350);
    probe->Click(1);
    EXPECT_TRUE(waitFor([&] { return probe->GetFocus() == shown; }));
    probe->Focus(static_cast<xcb_window_t>(window->GetNativeWindow()->GetHandle()));
    EXPECT_TRUE(waitFor([&] { return probe->GetFocus() == shown; }));
    const ZInterfaceLock lock;
    dialog->Hide();
    EXPECT_FALSE(app->IsModal());
    dialog->Show();
    EXPECT_TRUE(app->IsModal());
    dialog.reset();
    EXPECT_FALSE(app->IsModal());
}

}  // namespace orvane
