// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog for a scale's name, on a virtual display.

#include "kestrune/common/views/KestruneNameScaleWindow.h"

#include "kestrune/common/views/ProductApplication.h"
#include "support/DisplayTest.h"
#include "zlib/common/views/ZDialog.h"
#include "zlib/common/views/ZView.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <atomic>
#include <string>

namespace orvane
{

namespace
{

class KestruneNameScaleWindowTest : public DisplayTest
{
protected:
    void SetUp() override
    {
        DisplayTest::SetUp();
        if (IsSkipped())
            return;
        const ZInterfaceLock lock;
        app = startProduct();
    }
    void TearDown() override
    {
        const ZInterfaceLock lock;
        app.reset();
    }

    /// Opens the dialog on the interface thread and gives it the focus, as a window manager does.
    void Open()
    {
        ended = false;
        ZInterfaceThread::Post([this] {
            name = "Major (copy)";
            accepted = KestruneNameScaleWindow::Run(app.get(), "SaveCustomScale", name);
            ended = true;
        });
        ASSERT_TRUE(waitFor([this] {
            // The dialog is moved to its place after it was created.
            const ZPoint corner = Dialog() == XCB_NONE ? ZPoint{} : OnScreen({5, 5});
            return probe->PixelAt(corner.x, corner.y) == 0x262629;
        }));
        probe->Focus(Dialog());
        probe->Sync();
    }
    /// Waits for the dialog to go and returns the accepted name; "(none)" after a dismissal.
    std::string Answer()
    {
        EXPECT_TRUE(waitFor([this] { return ended && Dialog() == XCB_NONE; }));
        return accepted ? name.ToNarrow() : "(none)";
    }
    [[nodiscard]] xcb_window_t Dialog()
    {
        for (const xcb_window_t each : probe->GetChildren(probe->GetRoot())) {
            const auto title = probe->GetProperty(each, "_NET_WM_NAME");
            if (std::string(title.begin(), title.end()) == "Save Custom Scale")
                return each;
        }
        return XCB_NONE;
    }
    [[nodiscard]] ZPoint OnScreen(const ZPoint& point)
    {
        const xcb_rectangle_t place = probe->GetPlace(Dialog());
        return {place.x + point.x, place.y + point.y};
    }
    void Type(const std::vector<std::uint32_t>& keys)
    {
        for (const std::uint32_t key : keys)
            probe->TypeKey(key);
    }
    void Click(const char* view)
    {
        const ZInterfaceLock lock;
        const ZDialog twin(*app, "SaveCustomScale");
        const ZRect bounds = twin.Find<ZView>(view)->GetBounds();
        const ZPoint at = OnScreen({bounds.left + 9, bounds.top + 9});
        probe->MovePointer(at.x, at.y);
        probe->Click(1);
    }

    std::unique_ptr<ZPlugin> app;
    std::atomic<bool> ended{false};
    ZString name;
    bool accepted = false;
};

}  // namespace

TEST_F(KestruneNameScaleWindowTest, TypingReplacesTheSuggestedNameAndAcceptingReturnsIt)
{
    Open();
    Type({XKB_KEY_m, XKB_KEY_i, XKB_KEY_x, XKB_KEY_BackSpace, XKB_KEY_n, XKB_KEY_e});
    Type({XKB_KEY_Return});
    EXPECT_EQ(Answer(), "mine");
    Open();
    Click("OK");
    EXPECT_EQ(Answer(), "Major (copy)");
}

TEST_F(KestruneNameScaleWindowTest, CancelEscapeTheTitleBarAndTheApplicationDismissIt)
{
    const std::function<void()> ways[] = {
        [this] { Click("Cancel"); },
        [this] { Type({XKB_KEY_Escape}); },
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
        EXPECT_EQ(Answer(), "(none)");
        const ZInterfaceLock lock;
        EXPECT_FALSE(app->IsModal());
    }
}

}  // namespace orvane
