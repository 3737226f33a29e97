// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZTooltip.h"

#include "support/MessageWith.h"
#include "support/SmallApplication.h"
#include "support/Test.h"
#include "zlib/common/views/TestView.h"
#include "zlib/common/views/ZMessageBoxContent.h"
#include "zlib/common/views/ZWindow.h"

using namespace orvane;

namespace
{

/// A tip whose timers fire when the test says so; the lock that the test holds blocks real ones.
struct ZTooltipTest : testing::Test
{
    void SetUp() override
    {
        first->SetTooltipText("first");
        tip.AddTool(first.get(), {10, 10, 30, 30});
        tip.AddTool(second.get(), {30, 10, 50, 30});
    }

    void FireTimer()
    {
        tip.HandleZMessage(messageWith<std::int64_t>(ZTIMER, "TimerID", tip.GetTimer()));
    }
    [[nodiscard]] bool Waits() const { return tip.GetTimer() != ZWindow::kNoTimer; }

    SmallApplication app;
    ZWindow window{xmlOf("<windowtype name=\"Window\"><rect left=\"0\" top=\"0\" width=\"100\" "
                         "height=\"80\" /></windowtype>"),
                   &app};
    boost::shared_ptr<ZView> first = boost::make_shared<ZView>("first", nullptr);
    boost::shared_ptr<ZView> second = boost::make_shared<ZView>("second", nullptr);
    ZTooltip tip{window};
};

}  // namespace

TEST_F(ZTooltipTest, AppearsOnceForAPointerAtRest)
{
    tip.MouseMoved({5, 5});
    EXPECT_FALSE(Waits());
    tip.MouseMoved({12, 12});
    const auto wait = tip.GetTimer();
    EXPECT_TRUE(Waits());
    tip.MouseMoved({12, 12});
    EXPECT_EQ(tip.GetTimer(), wait);
    tip.MouseMoved({13, 12});
    EXPECT_NE(tip.GetTimer(), wait);
    EXPECT_FALSE(tip.IsShown());
    FireTimer();
    EXPECT_TRUE(tip.IsShown());
    EXPECT_EQ(tip.GetText().ToNarrow(), "first");
    tip.MouseMoved({14, 12});
    EXPECT_TRUE(tip.IsShown());
    FireTimer();
    EXPECT_FALSE(tip.IsShown());
    tip.MouseMoved({15, 12});
    EXPECT_FALSE(Waits());
    tip.MouseMoved({5, 5});
    tip.MouseMoved({15, 12});
    EXPECT_TRUE(Waits());
}

TEST_F(ZTooltipTest, ShowsTheToolsTextOrTheWindowsName)
{
    first->SetTooltipText(ZString(std::string(79, 'x') + "\xf0\x9f\x8e\xb5"));
    tip.MouseMoved({12, 12});
    FireTimer();
    EXPECT_EQ(tip.GetText().ToNarrow(), std::string(79, 'x'));
    tip.MouseMoved({40, 12});
    EXPECT_FALSE(tip.IsShown());
    tip.MouseMoved({41, 12});
    EXPECT_EQ(tip.GetDelay(), ZTooltip::kReshow) << "a moving pointer keeps the shorter delay";
    FireTimer();
    EXPECT_TRUE(tip.IsShown());
    EXPECT_EQ(tip.GetText().ToNarrow(), "Window");
    tip.RemoveTool(second.get());
    EXPECT_FALSE(tip.IsShown());
    EXPECT_FALSE(Waits());
    tip.MouseMoved({40, 13});
    EXPECT_FALSE(Waits());
}

TEST_F(ZTooltipTest, WindowReportsThePointerAndRemovedViews)
{
    EXPECT_EQ(window.GetTooltip(), nullptr);
    const auto view = boost::make_shared<ZView>(
        xmlOf("<view><rect name=\"bounds\" left=\"60\" top=\"20\" width=\"20\" height=\"20\" />"
              "<tooltip type=\"short\" text=\"tip\" /></view>"),
        &app);
    window.GetRootView()->AddSubview(view, false);
    window.AttachViews();
    ZTooltip* const own = window.GetTooltip();
    ASSERT_NE(own, nullptr);
    const auto waitsAfter = [&](ZNativeMouseEvent::Action action, const ZPoint& at) {
        window.NativeMouse({.action = action, .position = at, .modifiers = 1, .wheelNotches = 0});
        return own->GetTimer() != ZWindow::kNoTimer;
    };
    EXPECT_TRUE(waitsAfter(ZNativeMouseEvent::kMove, {65, 25}));
    EXPECT_FALSE(waitsAfter(ZNativeMouseEvent::kDown, {65, 25}));
    EXPECT_FALSE(waitsAfter(ZNativeMouseEvent::kMove, {66, 25})) << "a click hides it";
    EXPECT_FALSE(waitsAfter(ZNativeMouseEvent::kLeave, {65, 25}));
    window.SetCapturedView(view.get());
    EXPECT_FALSE(waitsAfter(ZNativeMouseEvent::kMove, {65, 25}));
    window.SetCapturedView(nullptr);
    EXPECT_TRUE(waitsAfter(ZNativeMouseEvent::kMove, {65, 25}));
    window.Hide();
    EXPECT_EQ(own->GetTimer(), ZWindow::kNoTimer);
    EXPECT_TRUE(waitsAfter(ZNativeMouseEvent::kMove, {65, 25}));
    window.GetRootView()->RemoveSubview(view);
    EXPECT_EQ(own->GetTimer(), ZWindow::kNoTimer);
}

TEST(ZTooltipPlaceTest, LittleWindowsLieWithinTheMonitor)
{
    const ZRect monitor{100, 0, 500, 300};
    EXPECT_EQ(placeTip(monitor, {200, 100}, {80, 20}), (ZRect{200, 120, 280, 140}));
    EXPECT_EQ(placeTip(monitor, {450, 285}, {80, 20}).right, 500);
    EXPECT_LT(placeTip(monitor, {450, 285}, {80, 20}).bottom, 285) << "does not touch the pointer";
    EXPECT_EQ(keptOn(monitor, {480, 290, 530, 330}), (ZRect{450, 260, 500, 300}));
    EXPECT_EQ(keptOn(monitor, {0, -9, 50, 31}), (ZRect{100, 0, 150, 40}));
}

TEST(ZMessageBoxContentTest, EndsByKeysButtonAndTitleBar)
{
    ZMessageBoxContent box(ZMessageBox::kError, ZString("An exception has occurred"));
    int ends = 0;
    box.SetEnded([&ends] { ++ends; });
    for (const std::uint8_t code : {kKeyReturn, kKeyEscape, kKeySpace, kKeyDown})
        box.Key({.code = code, .text = {}});
    EXPECT_EQ(ends, 3);
    box.Dismiss();
    EXPECT_EQ(ends, 4);
    const ZPoint button{box.GetButtonRect().left + 3, box.GetButtonRect().top + 3};
    for (const auto& [release, expected] : {std::pair{ZPoint{1, 1}, 4}, {button, 5}}) {
        box.Mouse({.action = ZNativeMouseEvent::kDown, .position = button, .modifiers = 1});
        box.Mouse({.action = ZNativeMouseEvent::kUp, .position = release, .modifiers = 1});
        EXPECT_EQ(ends, expected);
    }
}
