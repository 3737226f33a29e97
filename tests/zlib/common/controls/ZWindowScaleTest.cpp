// SPDX-License-Identifier: GPL-3.0-or-later
// Windows of device scales other than 1 on a virtual display, with the pointer in pixels.

#include "support/DisplayTest.h"
#include "support/PrivateFolder.h"
#include "support/SmallPlugin.h"
#include "zlib/common/controls/ZMenu.h"
#include "zlib/common/controls/ZMenuWindow.h"
#include "zlib/common/views/TestView.h"
#include "zlib/common/views/ZWindow.h"
#include "zlib/common/views/ZWindowHost.h"

using namespace orvane;

namespace
{

using Log = TestView::Log;

/// A host that is asked for sizes.
struct SizingHost : ZWindowHost
{
    bool ResizeWindow(const ZPoint& size) override
    {
        asked.push_back(size);
        if (meanwhile)
            meanwhile();
        return grants;
    }

    std::vector<ZPoint> asked;
    bool grants = true;
    std::function<void()> meanwhile;
};

struct ZWindowScaleTest : DisplayTest
{
    void Begin() override
    {
        const ZInterfaceLock lock;
        app = std::make_unique<SmallPlugin>();
        app->GetClassRegistry().AddStandard<TestView>("TestViewClass");
        window = std::make_unique<ZWindow>(
            xmlOf("<windowtype name=\"W\"><rect left=\"50\" top=\"40\" width=\"101\" "
                  "height=\"50\" /><subviews><view name=\"a\" class=\"TestViewClass\">"
                  "<rect name=\"bounds\" left=\"11\" top=\"10\" width=\"20\" height=\"20\" />"
                  "<brushcolor red=\"255\" green=\"0\" blue=\"0\" alpha=\"255\" />"
                  "</view></subviews></windowtype>"),
            app.get());
        window->SetHost(&host);
    }
    void TearDown() override
    {
        const ZInterfaceLock lock;
        window.reset();
        app.reset();
    }

    void Open(double scale)
    {
        const ZInterfaceLock lock;
        window->SetHostScale(scale);
        ASSERT_TRUE(window->Create(nullptr, 0));
        window->Show();
        TestView::TakeLog();
    }
    [[nodiscard]] xcb_rectangle_t Place() const
    {
        return probe->GetPlace(static_cast<xcb_window_t>(window->GetNativeWindow()->GetHandle()));
    }

    const PrivateFolder folder;
    const EnvironmentVariable settings{"XDG_CONFIG_HOME", folder.Path().c_str()};
    std::unique_ptr<SmallPlugin> app;
    std::unique_ptr<ZWindow> window;
    SizingHost host;
};

}  // namespace

TEST_F(ZWindowScaleTest, PixelsArePaintedAndPointedAtByUnits)
{
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        SCOPED_TRACE(scale);
        Open(scale);
        const auto at = [scale](int unit) { return static_cast<int>(unit * scale + 0.5); };
        EXPECT_TRUE(waitFor([&] { return Place().width == at(101) && Place().height == at(50); }));
        EXPECT_TRUE(ShowsAt(50 + at(11), 40 + at(10), 0xFF0000));
        EXPECT_TRUE(ShowsAt(50 + at(31) - 1, 40 + at(30) - 1, 0xFF0000));
        EXPECT_TRUE(ShowsAt(50 + at(11) - 1, 40 + at(20), 0));
        EXPECT_TRUE(ShowsAt(50 + at(31), 40 + at(20), 0));
        // The last pixel of a view is in its last unit.
        probe->MovePointer(50 + at(31) - 1, 40 + at(30) - 1);
        probe->Click(1);
        EXPECT_TRUE(Comes([] { return std::ranges::count(TestView::log, "a down1 19,19") == 1; }));
        locked([&] { window->Destroy(); });
    }
}

TEST_F(ZWindowScaleTest, APartIsRepaintedAloneAndWithoutSeams)
{
    Open(1.25);
    ASSERT_TRUE(ShowsAt(50 + 20, 40 + 20, 0xFF0000));
    locked([&] {
        auto& view = dynamic_cast<TestView&>(*window->GetRootView()->FindSubview("a"));
        view.SetBrushColor({0, 0, 255, 255});
        view.Invalidate();
    });
    const auto [left, top, right, bottom] = ZRect{14, 13, 39, 38};  // 13.75 to 38.75, 12.5 to 37.5
    EXPECT_TRUE(ShowsAt(50 + left, 40 + top, 0x0000FF));
    EXPECT_TRUE(ShowsAt(50 + right - 1, 40 + bottom - 1, 0x0000FF));
    EXPECT_TRUE(ShowsAt(50 + left - 1, 40 + top, 0));
    EXPECT_TRUE(ShowsAt(50 + right, 40 + top, 0));
    EXPECT_TRUE(ShowsAt(50 + left, 40 + bottom, 0));
}

TEST_F(ZWindowScaleTest, AnOpenWindowFollowsTheUserWhenTheHostAgrees)
{
    Open(1.0);
    locked([&] {
        ASSERT_TRUE(ZWindowScale::SetChoice(*app, 200));
        host.meanwhile = [&] { EXPECT_EQ(window->GetPixelSize(), (ZPoint{202, 100})); };
        EXPECT_TRUE(window->TakeScale());
    });
    EXPECT_EQ(host.asked, (std::vector<ZPoint>{{202, 100}}));
    EXPECT_TRUE(waitFor([&] { return Place().width == 202 && Place().height == 100; }));
    EXPECT_TRUE(ShowsAt(50 + 61, 40 + 59, 0xFF0000)) << "it is not painted anew";
    // A refused size stays as it was, and comes with the next window.
    locked([&] {
        host.grants = false;
        ASSERT_TRUE(ZWindowScale::SetChoice(*app, 150));
        host.meanwhile = nullptr;
        EXPECT_FALSE(window->TakeScale());
        EXPECT_EQ(window->GetPixelSize(), (ZPoint{202, 100}));
        EXPECT_EQ(window->GetDeviceScale().Get(), 2.0);
        window->Destroy();
        EXPECT_EQ(window->GetPixelSize(), (ZPoint{152, 75}));
    });
    // The host may close the window while it is asked, or destroy it.
    Open(1.0);
    locked([&] {
        host.grants = true;
        ASSERT_TRUE(ZWindowScale::SetChoice(*app, 300));
        host.meanwhile = [&] { window->Destroy(); };
        EXPECT_TRUE(window->TakeScale());
        EXPECT_EQ(window->GetNativeWindow(), nullptr);
    });
    Open(1.0);
    locked([&] {
        ASSERT_TRUE(ZWindowScale::SetChoice(*app, 100));
        host.meanwhile = [&] { window.reset(); };
        ZWindow& asking = *window;
        EXPECT_TRUE(asking.TakeScale());
    });
}

TEST_F(ZWindowScaleTest, AnotherScaleStartsFromTheWindowsOwnSizeWhateverSizeTheHostHasGivenIt)
{
    Open(2.0);
    locked([&] {
        window->NativeSized(404, 300);
        EXPECT_EQ(window->GetPixelSize(), (ZPoint{404, 300}));
        EXPECT_EQ(window->GetRootView()->GetBounds(), (ZRect{0, 0, 202, 150}));
        ASSERT_TRUE(ZWindowScale::SetChoice(*app, 300));
        EXPECT_TRUE(window->TakeScale());
        EXPECT_EQ(host.asked, (std::vector<ZPoint>{{303, 150}}));
        EXPECT_EQ(window->GetRootView()->GetBounds(), (ZRect{0, 0, 101, 50}));
        window->NativeSized(404, 300);
        window->Destroy();
        EXPECT_EQ(window->GetPixelSize(), (ZPoint{303, 150})) << "of the next window";
    });
    Open(2.0);
    EXPECT_TRUE(waitFor([&] { return Place().width == 303 && Place().height == 150; }));
}

TEST_F(ZWindowScaleTest, TheUserCountsMoreThanTheHostAndTheHostMoreThanTheDisplay)
{
    const auto found = [this](const ZWindowScale& scale) {
        const ZInterfaceLock lock;
        return scale.Find(app.get()).Get();
    };
    ZWindowScale scale;
    EXPECT_EQ(found(scale), 1.0);
    for (const auto& [dpi, expected] : {std::pair{"96", 1.0},
                                        {"120", 1.25},
                                        {"192", 2.0},
                                        {"150", 1.5},
                                        {"72", 1.0},
                                        {"480", 3.0},
                                        {"-5", 1.0},
                                        {"nonsense", 1.0}})
    {
        probe->SetResources(std::string("Xft.antialias:\t1\nXft.dpi:\t") + dpi + "\n");
        EXPECT_EQ(found(scale), expected) << dpi;
    }
    probe->SetResources("Xft.dpi:\t192\n");
    for (const auto& [said, expected] :
         {std::pair{1.3, 1.3}, {0.1, 0.5}, {9.0, 4.0}, {0.0, 4.0}, {-1.0, 4.0}})
    {
        scale.SetHost(said);
        EXPECT_EQ(found(scale), expected) << said;
    }
    const ZInterfaceLock lock;
    EXPECT_TRUE(ZWindowScale::SetChoice(*app, 175));
    EXPECT_EQ(found(scale), 1.75);
    EXPECT_TRUE(app->SetRegistryInt("WindowScale", 180)) << "no choice, as by hand";
    EXPECT_EQ(found(scale), 4.0);
}

TEST_F(ZWindowScaleTest, AMenuIsAsLargeAsItsWindow)
{
    std::optional<std::int32_t> chosen;
    std::atomic<bool> ended = false;
    Open(2.0);
    ZMenu menu("menu", ZMenu::Kind::kPopup);
    for (int i = 0; i < 30; ++i)
        menu.AddItem(ZString("Item " + std::to_string(i)), i);
    probe->Sync();
    const auto before = probe->GetChildren(probe->GetRoot()).size();
    ZInterfaceThread::Post([&] {
        chosen = ZMenuWindow::Show(menu, {300, 200}, window.get());
        ended = true;
    });
    ASSERT_TRUE(waitFor([&] { return probe->GetChildren(probe->GetRoot()).size() > before; }));
    const xcb_rectangle_t place = probe->GetPlace(probe->GetChildren(probe->GetRoot()).back());
    EXPECT_EQ(place.height, 768) << "30 items of 19 units do not fit";
    ASSERT_TRUE(ShowsAt(place.x + 8, place.y + 400, 0x262629));
    // Below the arrow of 16 units, items are 19 units high.
    for (const int item : {1, 3}) {
        const int top = place.y + 2 * (16 + item * 19);
        probe->MovePointer(place.x + 60, top + 10);
        EXPECT_TRUE(ShowsAt(place.x + 12, top + 30, 0x961820));
    }
    probe->Click(1);
    EXPECT_TRUE(waitFor([&] { return ended.load(); }));
    EXPECT_EQ(chosen, 3);
}
