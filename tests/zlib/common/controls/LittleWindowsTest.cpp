// SPDX-License-Identifier: GPL-3.0-or-later
// Menus, message boxes and dialogs on a virtual display, used with mouse and keys.

#include "support/DisplayTest.h"
#include "support/PrivateFolder.h"
#include "support/SmallPlugin.h"
#include "zlib/common/controls/ZFileChooserWindow.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZMenuWindow.h"
#include "zlib/common/views/TestView.h"
#include "zlib/common/views/ZMessageBoxContent.h"
#include "zlib/common/views/ZMessageBoxWindow.h"
#include "zlib/common/views/ZWindow.h"

#include <initializer_list>

using namespace orvane;

namespace
{

constexpr std::uint32_t kGround = 0x262629;

struct LittleWindowsTest : DisplayTest
{
    void Begin() override
    {
        const ZInterfaceLock lock;
        app = std::make_unique<SmallPlugin>();
        for (int i = 0; i < 8; ++i)
            menu.AddItem(ZString("Item " + std::to_string(i)), i);
        window = MakeWindow("name=\"W\"", "left=\"300\" top=\"300\" width=\"200\" height=\"100\"");
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

    std::unique_ptr<ZWindow> MakeWindow(const std::string& attributes, const std::string& rect)
    {
        return std::make_unique<ZWindow>(
            xmlOf("<windowtype " + attributes + "><rect " + rect + " /></windowtype>"), app.get());
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
    /// Returns the number of menus that are open.
    std::size_t CountMenus() { return probe->GetChildren(probe->GetRoot()).size() - before.size(); }
    /// The place of the window that opened last.
    auto LastPlace() { return probe->GetPlace(probe->GetChildren(probe->GetRoot()).back()); }
    bool Ends()
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

    /// Waits until the new window shows its ground; where it is.
    xcb_rectangle_t AwaitPainted()
    {
        xcb_rectangle_t place{};
        EXPECT_TRUE(waitFor([&] {
            place = FindNew() == XCB_NONE ? place : probe->GetPlace(FindNew());
            return place.x != 0 && probe->PixelAt(place.x + 5, place.y + 5) == kGround;
        }));
        return place;
    }

    ZMenu menu{"menu", ZMenu::Kind::kPopup};
    std::unique_ptr<SmallPlugin> app;
    std::unique_ptr<ZWindow> window;
    std::vector<xcb_window_t> before;
    std::atomic<bool> ended{false};
    std::optional<std::int32_t> chosen;
};

}  // namespace

TEST_F(LittleWindowsTest, MenuReturnsTheFocusStaysOnTheMonitorAndClosesByAClickOutside)
{
    OpenMenu({100, 120});
    probe->Type("]^\r");
    ASSERT_TRUE(Ends());
    EXPECT_EQ(chosen, 6);
    EXPECT_EQ(probe->GetFocus(), window->GetNativeWindow()->GetHandle());
    OpenMenu({100, 120});
    probe->Type("\x1b");
    ASSERT_TRUE(Ends());
    EXPECT_FALSE(chosen.has_value());
    OpenMenu({1000, 760});
    const xcb_rectangle_t place = probe->GetPlace(FindNew());
    EXPECT_EQ(place.x + place.width, 1024);
    EXPECT_EQ(place.y + place.height, 768);
    probe->MovePointer(20, 20);
    probe->Click(1);
    ASSERT_TRUE(Ends());
    EXPECT_FALSE(chosen.has_value());
}

TEST_F(LittleWindowsTest, MenuClosesWithoutTheFocusItsWindowOrTheDisplay)
{
    OpenMenu({100, 120});
    probe->Focus(static_cast<xcb_window_t>(window->GetNativeWindow()->GetHandle()));
    EXPECT_TRUE(Ends()) << "another window took the focus";
    OpenMenu({100, 120});
    locked([&] { window->Hide(); });
    EXPECT_TRUE(Ends()) << "its window was hidden";
    OpenMenu({100, 120});
    locked([&] {
        app->EndModalRuns();
        EXPECT_TRUE(ended) << "EndModalRuns() returned before the menu did";
    });
    EXPECT_TRUE(Ends());
    OpenMenu({100, 120});
    display->Kill();
    EXPECT_TRUE(waitFor([this] { return ended.load(); }));
    EXPECT_FALSE(chosen.has_value());
}

TEST_F(LittleWindowsTest, SubmenusOpenByKeyAndByARestingPointerAndStayOnTheMonitor)
{
    const auto inner = boost::make_shared<ZMenu>("inner", ZMenu::Kind::kPopup);
    inner->AddItem("One", 100);
    inner->AddItem("Two", 101);
    const auto outer = boost::make_shared<ZMenu>("outer", ZMenu::Kind::kPopup);
    outer->AddItem("First", 50);
    outer->AddSubmenu("More", inner);
    menu.AddSubmenu("Outer", outer);
    const auto comes = [&](std::size_t menus) {
        return waitFor([&] { return CountMenus() == menus; });
    };
    OpenMenu({100, 120});
    probe->Type("]>_\r");
    EXPECT_TRUE(comes(3));
    probe->Type("\x1b");
    EXPECT_TRUE(comes(2)) << "Escape closes the last menu";
    probe->Type("><>_\r");
    ASSERT_TRUE(Ends());
    EXPECT_EQ(chosen, 101);

    // In the corner of the screen the submenu opens to the left.
    OpenMenu({1000, 760});
    const xcb_rectangle_t place = probe->GetPlace(FindNew());
    const int last = place.y + place.height - 10;
    probe->MovePointer(place.x + 30, last - 3 * 19);
    probe->MovePointer(place.x + 40, last);
    EXPECT_TRUE(comes(2)) << "the pointer rests on the item";
    const xcb_rectangle_t left = LastPlace();
    EXPECT_LT(left.x, place.x);
    EXPECT_LE(left.x + left.width, place.x + 8);
    EXPECT_EQ(left.y + left.height, 768);
    // On the way to it the pointer crosses another item without closing it.
    probe->MovePointer(place.x + 10, last - 19);
    probe->MovePointer(left.x + left.width - 20, left.y + 12);
    EXPECT_TRUE(ShowsAt(left.x + 5, left.y + 12, 0x961820)) << "the item is highlighted";
    EXPECT_TRUE(ShowsAt(place.x + 5, last, 0x961820)) << "so is the one that it belongs to";
    probe->Click(1);
    ASSERT_TRUE(Ends());
    EXPECT_EQ(chosen, 50);
}

TEST_F(LittleWindowsTest, ASubmenuOpensWhereThePointerRestsAfterItHasRestedInAnother)
{
    menu.RemoveAllItems();
    for (const int items : {3, 5}) {
        const auto submenu = boost::make_shared<ZMenu>("submenu", ZMenu::Kind::kPopup);
        for (int i = 0; i < items; ++i)
            submenu->AddItem(ZString("Item of a submenu"), 100 * items + i);
        menu.AddSubmenu("Submenu", submenu);
    }
    OpenMenu({100, 120});
    const xcb_rectangle_t place = probe->GetPlace(FindNew());
    const auto middleOf = [&](int item) { return place.y + 3 + item * 19 + 9; };
    const auto submenuOpensWith = [&](int items) {
        return waitFor([&] { return CountMenus() == 2 && LastPlace().height == items * 19 + 6; });
    };
    probe->MovePointer(place.x + 30, middleOf(1));
    probe->MovePointer(place.x + 40, middleOf(0));
    ASSERT_TRUE(submenuOpensWith(3));
    // The second item of both menus is at one height.
    const int inside = place.x + place.width + 40;
    probe->MovePointer(inside, middleOf(1));
    ASSERT_TRUE(ShowsAt(inside - 30, middleOf(1) - 7, 0x961820));
    std::this_thread::sleep_for(std::chrono::milliseconds(500));  // rests there
    probe->MovePointer(place.x + 40, middleOf(1));
    EXPECT_TRUE(submenuOpensWith(5));
    probe->Type("\x1b\x1b");
    ASSERT_TRUE(Ends());
}

TEST_F(LittleWindowsTest, MessageBoxClosesByItsButtonOrWithTheLastApplication)
{
    const auto raise = [this] {
        ended = false;
        ZInterfaceThread::Post([this] {
            EXPECT_TRUE(ZMessageBoxWindow::Show(ZMessageBox::kError, "Title", "Text"));
            ended = true;
        });
        return AwaitPainted();
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

TEST_F(LittleWindowsTest, DialogGetsTheFocusOfTheWindowsThatItBlocks)
{
    std::unique_ptr<ZWindow> dialog;
    {
        const ZInterfaceLock lock;
        dialog = MakeWindow("name=\"D\" dialog=\"true\" resize=\"true\"",
                            "left=\"600\" top=\"300\" width=\"100\" height=\"50\"");
        ASSERT_TRUE(dialog->Create(window.get(), 0));
        dialog->Show();
    }
    ASSERT_TRUE(waitFor([this] { return FindNew() != XCB_NONE; }));
    const xcb_window_t shown = FindNew();
    EXPECT_EQ(probe->GetProperty(shown, "_NET_WM_STATE").size(), 4u) << "modal";
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

TEST_F(LittleWindowsTest, FileDialogSavesUnderTheTypedNameAndEndsWithItsOwner)
{
    const PrivateFolder folder;
    std::optional<std::string> path;
    const auto open = [&] {
        ended = false;
        ZInterfaceThread::Post([&] {
            const EnvironmentVariable home("HOME", folder.Path().c_str());
            ZFileRequest request;
            request.purpose = ZFileRequest::kSave;
            request.owner = this;
            path = ZFileChooserWindow::Run(request);
            ended = true;
        });
        AwaitPainted();
        probe->Focus(FindNew());
    };
    open();
    probe->Type("x\r");
    ASSERT_TRUE(Ends());
    EXPECT_EQ(path, folder.Path("x"));
    open();
    ZInterfaceThread::EndModalRuns(this);
    ASSERT_TRUE(Ends());
    EXPECT_EQ(path, std::nullopt);
}
