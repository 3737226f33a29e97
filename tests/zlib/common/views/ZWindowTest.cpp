// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindow.h"

#include "support/Eventually.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/documents/ZDocumentManager.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/views/WindowFixture.h"
#include "zlib/common/views/ZPluginWindow.h"
#include "zlib/common/views/ZWindowMenu.h"
#include "zlib/common/views/ZWindowTimers.h"

using namespace orvane;

namespace
{

using Log = TestView::Log;
using Mouse = ZNativeMouseEvent;

const std::string kCommands =
    "<commandlist><command name=\"cmdNew\" target=\"doc\"><hotkey key=\"65\" control=\"true\" />"
    "<message id=\"ZFILENEW\"><ZString name=\"filename\" value=\"Plain\" /></message></command>"
    "</commandlist>\n"
    "<documentmanager name=\"Test File\" type=\"sdi\"><documenttypes>"
    "<doctype class=\"ZAudioDocumentClass\" name=\"Plain\" /></documenttypes></documentmanager>\n";

/// A context menu that writes down where it is asked for.
struct NotedMenu : ZWindowMenu
{
    using ZWindowMenu::ZWindowMenu;

    void Show(ZWindow& /*window*/, ZView* view, const ZPoint& point) override
    {
        TestView::log.push_back("menu " + (view ? view->GetName() : "none") + " " +
                                std::to_string(point.x) + "," + std::to_string(point.y));
    }
};

/// Makes windows that have no window of the system.
struct ZWindowTest : WindowFixture
{
    ZWindowTest()
        : WindowFixture(kCommands)
    {
    }

    template <typename Window = ZWindow>
    std::unique_ptr<Window> Make(const std::string& type = windowType())
    {
        return std::make_unique<Window>(xmlOf(type), mApp.get());
    }
    /// Makes a window with its views attached.
    std::unique_ptr<ZWindow> MakeShown()
    {
        auto window = Make();
        window->Show();
        TestView::TakeLog();
        return window;
    }
    static Log Send(ZWindow& window, const Mouse& event)
    {
        window.NativeMouse(event);
        return TestView::TakeLog();
    }
    static Log Tick(ZWindow& window, ZWindow::TimerId timer)
    {
        window.HandleZMessage(messageWith<std::int64_t>(ZTIMER, "TimerID", timer));
        return TestView::TakeLog();
    }
};

struct Timed : ZHandler
{
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        std::int64_t id = 0;
        if (message->GetId() == ZTIMER && message->Find("TimerID", id))
            fired.push_back(id);
    }
    std::vector<std::int64_t> fired;
};

}  // namespace

TEST_F(ZWindowTest, ShowAttachesTheViewsOnce)
{
    const auto window = Make();
    const auto plugin = Make<ZPluginWindow>();
    for (ZWindow* const each : {window.get(), static_cast<ZWindow*>(plugin.get())}) {
        each->Show();
        each->Hide();
        each->Show();
        EXPECT_EQ(TestView::TakeLog(), (Log{"a attached", "b attached"}));
        each->Detach();
    }
    EXPECT_EQ(TestView::TakeLog(), (Log{"a detached", "b detached"}));
    EXPECT_TRUE(plugin->NativeKey({})) << "a plug-in window takes all keys";
    EXPECT_FALSE(window->NativeKey({}));
}

TEST_F(ZWindowTest, FrameTimerRunsWhileAShownWindowHasIdleViews)
{
    const auto window = MakeShown();
    EXPECT_EQ(window->GetFrameTimer(), ZWindow::kNoTimer);
    View(*window, "b").SetAnimated(true);
    View(*window, "a").SetAnimated(true);
    EXPECT_EQ(TestView::TakeLog(), (Log{"b rate 15", "a rate 15"}));
    const auto timer = window->GetFrameTimer();
    EXPECT_EQ(Tick(*window, timer), (Log{"b tick", "a tick"}));

    window->Hide();
    EXPECT_EQ(window->GetFrameTimer(), ZWindow::kNoTimer);
    window->Show();
    View(*window, "a").SetAnimated(false);
    EXPECT_NE(window->GetFrameTimer(), ZWindow::kNoTimer);
    View(*window, "b").SetAnimated(false);
    EXPECT_EQ(window->GetFrameTimer(), ZWindow::kNoTimer);
    EXPECT_EQ(ZWindowTimers::Count(), 0);
}

TEST_F(ZWindowTest, TimerRunsUntilItIsStoppedOrItsHandlerGone)
{
    const auto window = Make();
    Timed handler;
    const auto id = window->StartTimer(1000, handler);
    ASSERT_TRUE(eventually([&] { return handler.fired.size() >= 2; }));
    window->StopTimer(id);
    EXPECT_EQ(handler.fired.front(), id);
    EXPECT_EQ(ZWindowTimers::Count(), 0);

    auto dying = std::make_unique<Timed>();
    EXPECT_NE(window->StartTimer(1000, *dying), id);
    dying.reset();
    EXPECT_TRUE(eventually([] { return ZWindowTimers::Count() == 0; }));
}

TEST_F(ZWindowTest, PaintsWhatIsInvalidOrUncovered)
{
    const auto window = Make();
    const auto paint = [&](const ZRect& update) {
        window->NativePaint(update);
        Log painted = TestView::TakeLog();
        std::erase_if(painted, [](const std::string& line) { return line.ends_with("over"); });
        return painted;
    };
    const Log both{"a draw 0,0", "b draw 0,0"};
    EXPECT_EQ(paint({0, 0, 100, 50}), Log{}) << "nothing to paint into";
    const ZBitmap& picture = window->RenderOffscreen();
    EXPECT_EQ(picture.GetFrame(), (ZRect{0, 0, 100, 50}));
    EXPECT_EQ(picture.GetNative()->ReadPixels().front(), 0xFF000000u);
    TestView::TakeLog();
    EXPECT_EQ(paint({0, 0, 1, 1}), Log{});
    View(*window, "b").Invalidate();
    EXPECT_EQ(paint({0, 0, 90, 40}), both) << "more than was asked for";
    View(*window, "a").Invalidate();
    window->Invalidate({0, 0, 90, 40});
    EXPECT_EQ(paint({0, 0, 90, 40}), Log{"a draw 0,0"});
    EXPECT_EQ(paint({60, 0, 90, 40}), Log{"b draw 0,0"}) << "uncovered";
    window->Invalidate({0, 0, 100, 50});
    EXPECT_EQ(paint({0, 0, 100, 50}), both) << "the whole window";
}

TEST_F(ZWindowTest, ResizingResizesTheViewsAndThePicture)
{
    const auto window = Make();
    static_cast<void>(window->RenderOffscreen());
    window->NativeSized(120, 40);
    EXPECT_EQ(window->GetRootView()->GetBounds(), (ZRect{0, 0, 120, 40}));
    EXPECT_EQ(window->RenderOffscreen().GetWidth(), 120);
    window->SetScale(2.0);
    EXPECT_EQ(window->RenderOffscreen().GetFrame(), (ZRect{0, 0, 200, 100}));
}

TEST_F(ZWindowTest, MouseReachesTheViewBelowItOrTheCapturedOne)
{
    const auto window = MakeShown();
    const std::pair<Mouse, Log> steps[] = {
        {{Mouse::kMove, {15, 12}, 1}, {"a entered 5,2"}},
        {{Mouse::kMove, {16, 12}, 1}, {}},
        {{Mouse::kMove, {61, 11}, 1}, {"a left", "b entered 1,1"}},
        {{Mouse::kDown, {61, 11}, 3}, {"b down3 1,1"}},
        {{Mouse::kUp, {61, 11}, 1}, {"b up 1,1"}},
        {{Mouse::kWheel, {61, 11}, 1, -2}, {"b wheel1-2 1,1"}},
        {{Mouse::kLeave, {61, 11}}, {"b left"}},
        {{Mouse::kMove, {61, 11}, 1}, {"b entered 1,1"}}};
    for (const auto& [event, log] : steps)
        EXPECT_EQ(Send(*window, event), log);
    EXPECT_EQ(window->GetLastMouse(), (ZPoint{61, 11}));

    TestView& b = View(*window, "b");
    b.SetMouseCapture(true, true);
    EXPECT_EQ(Send(*window, {Mouse::kMove, {15, 12}, 1}), (Log{"b left", "b moved -45,2"}));
    EXPECT_EQ(Send(*window, {Mouse::kMove, {61, 11}, 1}), Log{"b moved 1,1"});
    b.SetMouseCapture(false, true);
    EXPECT_EQ(Send(*window, {Mouse::kMove, {61, 12}, 1}), Log{"b entered 1,2"});
    b.SetMouseCapture(true, true);
    window->Hide();
    EXPECT_EQ(window->GetCapturedView(), nullptr);
    EXPECT_FALSE(b.HasMouseCapture());
}

TEST_F(ZWindowTest, DisabledWindowTakesOnlyTheWheelAndABlockedOneNothing)
{
    const auto window = MakeShown();
    const auto dialog = Make(windowType(" dialog=\"true\""));
    const Mouse wheel{Mouse::kWheel, {15, 12}, 1, 1};
    const Log turned{"a wheel11 5,2"};
    window->HandleZMessage(boost::make_shared<ZMessage>(ZMODALDISABLE));
    for (const auto action : {Mouse::kMove, Mouse::kDown, Mouse::kUp, Mouse::kDoubleClick})
        EXPECT_EQ(Send(*window, {action, {15, 12}, 1}), Log{});
    EXPECT_EQ(Send(*window, wheel), turned);
    window->HandleZMessage(boost::make_shared<ZMessage>(ZMODALENABLE));
    EXPECT_EQ(Send(*window, {Mouse::kDown, {15, 12}, 1}), Log{"a down1 5,2"});

    mApp->BeginModal(*dialog);
    EXPECT_EQ(Send(*window, wheel), Log{});
    EXPECT_EQ(Send(*dialog, wheel), turned);
    EXPECT_TRUE(window->NativeKey({65, {}, false, true, false})) << "no key below a dialog";
    EXPECT_EQ(mApp->GetCurrentDocument(), nullptr);
    mApp->EndModal(*dialog);
    EXPECT_EQ(Send(*window, wheel), turned);
}

TEST_F(ZWindowTest, KeysGoToTheFocusViewUntilAClickEndsTheFocus)
{
    const auto window = MakeShown();
    TestView& b = View(*window, "b");
    window->SetFocusView(&View(*window, "a"));
    window->SetFocusView(&b);
    EXPECT_EQ(TestView::TakeLog(), (Log{"a focus", "a blur", "b focus"}));
    b.messages.clear();
    EXPECT_TRUE(window->NativeKey({kKeyLeft, {}, true, false, false}));
    EXPECT_TRUE(window->NativeKey({kKeyReturn, "\r", false, false, false}));
    EXPECT_TRUE(window->NativeKey({kKeyTab, {}, false, false, false})) << "there is no other view";
    EXPECT_TRUE(window->NativeKey({'X', "x", false, false, false}));
    std::vector<std::int32_t> ids;
    for (const auto& message : b.messages)
        ids.push_back(message->GetId());
    EXPECT_EQ(ids, (std::vector<std::int32_t>{ZKEYDOWN, ZKEYDOWN, ZKEYDOWN, ZKEYDOWN, ZTEXTINPUT}));
    std::uint8_t key = 0;
    bool shift = false;
    EXPECT_TRUE(b.messages.front()->Find("Key", key) && b.messages.front()->Find("shift", shift));
    EXPECT_EQ(key, kKeyLeft);
    EXPECT_TRUE(shift);
    Send(*window, {Mouse::kDown, {1, 1}, 1});
    EXPECT_FALSE(window->NativeKey({'X', "x", false, false, false}));
}

TEST_F(ZWindowTest, RunsTheCommandOfAKeyAndClosesByItsStyle)
{
    const auto keys = Make();
    EXPECT_FALSE(keys->NativeKey({65, {}, true, true, false}));
    EXPECT_FALSE(keys->NativeKey({65, {}, false, true, true}));
    EXPECT_EQ(mApp->GetCurrentDocument(), nullptr);
    EXPECT_TRUE(keys->NativeKey({65, {}, false, true, false}));
    const auto document = mApp->GetCurrentDocument();
    const auto documentsAfterClose = [&](const std::string& style) {
        const auto window = Make(windowType(" closestyle=\"" + style + "\""));
        window->SetDocument(document.get());
        window->NativeCloseRequested();
        return mApp->GetDocumentManager()->GetDocumentCount();
    };
    EXPECT_EQ(documentsAfterClose("hide"), 1);
    EXPECT_EQ(documentsAfterClose("app"), 1);
    EXPECT_EQ(documentsAfterClose("doc"), 0);
}

TEST_F(ZWindowTest, TheRightButtonOpensTheContextMenuOfWhatIsUnderIt)
{
    mApp->GetClassRegistry().AddStandard<NotedMenu>("NotedMenuClass");
    const auto window = Make(windowType("", "<contextmenu class=\"NotedMenuClass\" />"));
    window->Show();
    TestView::TakeLog();
    EXPECT_EQ(Send(*window, {.action = Mouse::kContext, .position = {15, 12}}),
              (Log{"menu a 15,12"}));
    EXPECT_EQ(Send(*window, {.action = Mouse::kContext, .position = {50, 40}}),
              (Log{"menu main 50,40"}));
    EXPECT_EQ(Send(*window, {.action = Mouse::kContextUp, .position = {15, 12}}), Log{});
    window->ShowContextMenu(nullptr, {1, 2});
    EXPECT_EQ(TestView::TakeLog(), (Log{"menu none 1,2"}));
    window->SetCapturedView(&View(*window, "b"));
    EXPECT_EQ(Send(*window, {.action = Mouse::kContext, .position = {15, 12}}), Log{})
        << "a drag is under way";

    EXPECT_EQ(Send(*MakeShown(), {.action = Mouse::kContext, .position = {15, 12}}), Log{})
        << "the description has no menu";
    mApp->GetClassRegistry().AddStandard<TestView>("WrongClass");
    EXPECT_THROW(Make(windowType("", "<contextmenu class=\"WrongClass\" />")), ZException);
}
