// The dialog for a scale's name on a display of the test's own.

#include "kestrune/common/KestruneNameScaleWindow.h"

#include "kestrune/ProductApplication.h"
#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"
#include "zlib/common/ZDialog.h"
#include "zlib/common/ZInterfaceLock.h"
#include "zlib/common/ZInterfaceThread.h"
#include "zlib/common/ZView.h"

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <atomic>
#include <optional>
#include <string>

namespace orvane
{

namespace
{

class KestruneNameScaleWindowTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!VirtualDisplay::IsAvailable())
            GTEST_SKIP() << "no virtual display here";
        display.emplace();
        probe.emplace();
        const ZInterfaceLock lock;
        app = startProduct();
    }
    void TearDown() override
    {
        const ZInterfaceLock lock;
        app.reset();
    }

    /// On the interface thread, with the keys going to it as a window manager would have them.
    void Open()
    {
        ended = false;
        ZInterfaceThread::Post([this] {
            name = "Major (copy)";
            accepted = KestruneNameScaleWindow::Run(app.get(), "SaveCustomScale", name);
            ended = true;
        });
        ASSERT_TRUE(waitFor([this] { return Dialog() != XCB_NONE; }));
        ASSERT_TRUE(waitFor([this] { return PixelOf({5, 5}) == 0x262629; }));
        probe->Focus(Dialog());
        probe->Sync();
    }
    [[nodiscard]] bool Ends()
    {
        return waitFor([this] { return ended && Dialog() == XCB_NONE; });
    }
    [[nodiscard]] xcb_window_t Dialog()
    {
        for (const xcb_window_t each : probe->GetChildren(probe->GetRoot()))
            if (Title(each) == "Save Custom Scale")
                return each;
        return XCB_NONE;
    }
    [[nodiscard]] std::string Title(xcb_window_t each)
    {
        const auto bytes = probe->GetProperty(each, "_NET_WM_NAME");
        return {bytes.begin(), bytes.end()};
    }
    [[nodiscard]] ZPoint OnScreen(const ZPoint& point)
    {
        const xcb_rectangle_t place = probe->GetPlace(Dialog());
        return {place.x + point.x, place.y + point.y};
    }
    [[nodiscard]] std::uint32_t PixelOf(const ZPoint& point)
    {
        const ZPoint at = OnScreen(point);
        return probe->PixelAt(at.x, at.y);
    }
    void Click(const char* view)
    {
        ZPoint at;
        {
            const ZInterfaceLock lock;
            const ZDialog twin(*app, "SaveCustomScale");
            const ZRect bounds = twin.Find<ZView>(view)->GetBounds();
            at = OnScreen({bounds.left + 9, bounds.top + 9});
        }
        probe->MovePointer(at.x, at.y);
        probe->Click(1);
    }

    std::optional<VirtualDisplay> display;
    std::optional<DisplayProbe> probe;
    const ZInterfaceThread thread;
    std::unique_ptr<ZPlugin> app;
    std::atomic<bool> ended{false};
    ZString name;
    bool accepted = false;
};

}  // namespace

TEST_F(KestruneNameScaleWindowTest, ANameIsTypedOverTheOneThatIsOffered)
{
    Open();
    for (const std::uint32_t key :
         {XKB_KEY_m, XKB_KEY_i, XKB_KEY_x, XKB_KEY_BackSpace, XKB_KEY_n, XKB_KEY_e, XKB_KEY_Return})
        probe->TypeKey(key);
    ASSERT_TRUE(Ends());
    EXPECT_TRUE(accepted);
    EXPECT_EQ(name.ToNarrow(), "mine");
    Open();
    Click("OK");
    ASSERT_TRUE(Ends());
    EXPECT_TRUE(accepted);
    EXPECT_EQ(name.ToNarrow(), "Major (copy)");
}

TEST_F(KestruneNameScaleWindowTest, CancelEscapeTheTitleBarAndTheApplicationEndItWithNone)
{
    const std::function<void()> ways[] = {
        [this] { Click("Cancel"); },
        [this] { probe->TypeKey(XKB_KEY_Escape); },
        [this] {
            Click("Note");
            probe->TypeKey(XKB_KEY_Escape);
        },
        [this] {
            probe->SendMessage(Dialog(), "WM_PROTOCOLS", probe->GetAtom("WM_DELETE_WINDOW"));
        },
        [this] {
            const ZInterfaceLock lock;
            app->EndModalRuns();
        },
    };
    for (const auto& end : ways) {
        Open();
        end();
        ASSERT_TRUE(Ends());
        EXPECT_FALSE(accepted);
        const ZInterfaceLock lock;
        EXPECT_FALSE(app->IsModal());
    }
}

}  // namespace orvane
