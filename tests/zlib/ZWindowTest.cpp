#include "zlib/common/ZWindow.h"

#include "support/ExpectZException.h"
#include "zlib/Canvas.h"
#include "zlib/WindowFixture.h"
#include "zlib/common/ZCommandList.h"
#include "zlib/common/ZDocumentManager.h"
#include "zlib/common/ZInterfaceLock.h"
#include "zlib/common/ZInterfaceThread.h"
#include "zlib/common/ZPluginWindow.h"
#include "zlib/common/ZWindowTimers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

namespace orvane
{

namespace
{

using Log = std::vector<std::string>;
using Mouse = ZNativeMouseEvent;

const std::string kCommands =
    "<commandlist><command name=\"cmdNew\" target=\"doc\"><hotkey key=\"65\" control=\"true\" />"
    "<message id=\"ZFILENEW\"><ZString name=\"filename\" value=\"Plain\" /></message></command>"
    "</commandlist>\n"
    "<documentmanager name=\"Test File\" type=\"sdi\"><documenttypes>"
    "<doctype class=\"ZAudioDocumentClass\" name=\"Plain\" /></documenttypes></documentmanager>\n";

/// A window of the type in a plug-in's application, without a window of the system.
class ZWindowTest : public testing::Test
{
protected:
    ZWindowTest()
    {
        registerWindowClasses(mApp->GetClassRegistry());
        start(*mApp);
        ProbeView::log.clear();
    }

    template <typename Window = ZWindow>
    std::unique_ptr<Window> Make(const std::string& type = windowType())
    {
        return std::make_unique<Window>(xmlOf(type), mApp.get());
    }
    static ProbeView& View(const ZWindow& window, const char* name)
    {
        return dynamic_cast<ProbeView&>(*window.GetRootView()->FindSubview(name));
    }
    static Log Send(ZWindow& window, const Mouse& event)
    {
        window.NativeMouse(event);
        return ProbeView::TakeLog();
    }

    const ZInterfaceLock mLock;
    const TestResources mResources{kCommands};
    const std::unique_ptr<ZPlugin> mApp = makePlugin(mResources);
};

class Timed : public ZHandler
{
public:
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        std::int64_t id = 0;
        if (message->GetId() == ZTIMER && message->Find("TimerID", id))
            fired.push_back(id);
    }
    std::vector<std::int64_t> fired;
};

/// Gives the lock up until the condition holds; false when it takes too long.
template <typename Condition>
bool waitFor(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        const ZInterfaceUnlock unlocked;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

}  // namespace

TEST_F(ZWindowTest, ReadsItsType)
{
    const auto plain = Make();
    EXPECT_EQ(plain->GetWidth(), 100);
    EXPECT_EQ(plain->GetHeight(), 50);
    EXPECT_EQ(plain->GetPosition(), (ZPoint{5, 6}));
    EXPECT_EQ(plain->GetRootView()->GetName(), "main");
    EXPECT_EQ(plain->GetRootView()->GetBounds(), (ZRect{0, 0, 100, 50}));
    EXPECT_EQ(plain->GetRootView()->GetStretchMask(), 15);
    EXPECT_EQ(plain->GetMaxFramesPerSecond(), 30);
    EXPECT_EQ(plain->GetCloseStyle(), ZWindow::CloseStyle::kApplication);
    EXPECT_TRUE(plain->IsResizable());
    EXPECT_FALSE(plain->IsChild());

    EXPECT_EQ(Make(windowType(" maxfps=\"12\""))->GetMaxFramesPerSecond(), 12);
    EXPECT_EQ(Make(windowType(" maxfps=\"0\""))->GetMaxFramesPerSecond(), 30);
    EXPECT_EQ(Make(windowType(" tool=\"true\""))->GetCloseStyle(), ZWindow::CloseStyle::kHide);
    EXPECT_EQ(Make(windowType(" tool=\"true\" closestyle=\"doc\""))->GetCloseStyle(),
              ZWindow::CloseStyle::kDocument);
    expectZException(-1, "XML Parser error: No bounds information found in Window!\n",
                     [&] { Make("<windowtype name=\"Bare\"></windowtype>"); });
}

TEST_F(ZWindowTest, ShowAttachesTheViewsOnce)
{
    const auto window = Make();
    EXPECT_FALSE(window->IsAttached());
    window->Show();
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"a:attached", "b:attached"}));
    EXPECT_EQ(View(*window, "a").GetWindow(), window.get());
    window->Hide();
    window->Show();
    window->Detach();
    EXPECT_EQ(ProbeView::TakeLog(), Log{});
    EXPECT_TRUE(window->IsAttached());
}

TEST_F(ZWindowTest, APluginWindowDetachesItsViewsAndTakesAllKeys)
{
    const auto window = Make<ZPluginWindow>();
    window->Show();
    window->Detach();
    window->Detach();
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"a:attached", "b:attached", "a:detached", "b:detached"}));
    EXPECT_EQ(View(*window, "a").GetWindow(), nullptr);
    EXPECT_TRUE(window->NativeKey({}));
    EXPECT_FALSE(Make()->NativeKey({}));
}

TEST_F(ZWindowTest, TheFrameTimerRunsWhileThereAreIdleViewsAndFramesAreSeen)
{
    const auto window = Make(windowType(" maxfps=\"12\""));
    window->Show();
    EXPECT_EQ(window->GetFrameTimer(), ZWindow::kNoTimer);
    ProbeView::TakeLog();

    View(*window, "b").SetAnimated(true);
    View(*window, "a").SetAnimated(true);
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"b:rate 15", "a:rate 15"}));
    const auto timer = window->GetFrameTimer();
    EXPECT_NE(timer, ZWindow::kNoTimer);
    window->HandleZMessage(messageWith<std::int64_t>(ZTIMER, "TimerID", timer));
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"b:tick", "a:tick"}));

    window->SetFramesPerSecond(5);
    EXPECT_EQ(window->GetFramesPerSecond(), 15);
    window->HandleZMessage(messageWith<std::int64_t>(ZTIMER, "TimerID", timer));
    EXPECT_EQ(window->GetFramesPerSecond(), 5);
    EXPECT_NE(window->GetFrameTimer(), timer);

    window->Hide();
    EXPECT_EQ(window->GetFrameTimer(), ZWindow::kNoTimer);
    window->Show();
    EXPECT_NE(window->GetFrameTimer(), ZWindow::kNoTimer);
    View(*window, "a").SetAnimated(false);
    EXPECT_NE(window->GetFrameTimer(), ZWindow::kNoTimer);
    View(*window, "b").SetAnimated(false);
    EXPECT_EQ(window->GetFrameTimer(), ZWindow::kNoTimer);
    EXPECT_EQ(ZWindowTimers::Count(), 0);
}

TEST_F(ZWindowTest, ATimerCallsItsHandlerUntilItIsStoppedAndNoHandlerThatHasDied)
{
    const auto window = Make();
    Timed handler;
    const auto id = window->StartTimer(1000, handler);
    ASSERT_TRUE(waitFor([&] { return handler.fired.size() >= 2; }));
    window->StopTimer(id);
    EXPECT_EQ(handler.fired.front(), id);
    EXPECT_EQ(ZWindowTimers::Count(), 0);
    window->StopTimer(id);

    auto dying = std::make_unique<Timed>();
    EXPECT_NE(window->StartTimer(1000, *dying), id);
    dying.reset();
    EXPECT_TRUE(waitFor([] { return ZWindowTimers::Count() == 0; }));
}

TEST_F(ZWindowTest, ATimerOfNobodyGoesToTheViews)
{
    const auto window = Make();
    window->HandleZMessage(messageWith<std::int64_t>(ZTIMER, "TimerID", 77));
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"a:timer 77", "b:timer 77"}));
}

TEST_F(ZWindowTest, PaintsWhatWasAskedForAndAllThatWasUncovered)
{
    const auto window = Make();
    window->NativePaint({0, 0, 100, 50});
    EXPECT_EQ(ProbeView::TakeLog(), Log{}) << "nothing to paint into";
    const ZBitmap& picture = window->RenderOffscreen();
    EXPECT_EQ(picture.GetWidth(), 100);
    EXPECT_EQ(picture.GetHeight(), 50);
    EXPECT_EQ(picture.GetNative()->ReadPixels().front(), 0xFF000000u);
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"a:attached", "b:attached", "a:draw", "b:draw"}));
    window->NativePaint({0, 0, 1, 1});
    EXPECT_EQ(ProbeView::TakeLog(), Log{});

    View(*window, "b").Invalidate();
    window->NativePaint({0, 0, 90, 40});
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"a:draw", "b:draw"})) << "more than was asked for";
    View(*window, "a").Invalidate();
    window->Invalidate({0, 0, 90, 40});
    window->NativePaint({0, 0, 90, 40});
    EXPECT_EQ(ProbeView::TakeLog(), Log{"a:draw"});
    window->NativePaint({60, 0, 90, 40});
    EXPECT_EQ(ProbeView::TakeLog(), Log{"b:draw"}) << "uncovered";
    window->Invalidate({0, 0, 100, 50});
    window->NativePaint({0, 0, 100, 50});
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"a:draw", "b:draw"})) << "the whole window";
}

TEST_F(ZWindowTest, ASizeReachesTheViewsAndThePicture)
{
    const auto window = Make();
    static_cast<void>(window->RenderOffscreen());
    window->NativeSized(120, 40);
    EXPECT_EQ(window->GetWidth(), 120);
    EXPECT_EQ(window->GetRootView()->GetBounds(), (ZRect{0, 0, 120, 40}));
    EXPECT_EQ(window->RenderOffscreen().GetWidth(), 120);
    window->NativeSized(0, -3);
    expectZException(-1, "Window 'Main' has no size to be drawn in",
                     [&] { static_cast<void>(window->RenderOffscreen()); });
    window->SetScale(2.0);
    EXPECT_EQ(window->RenderOffscreen().GetFrame(), (ZRect{0, 0, 200, 100}));
    window->NativeMoved({7, 8});
    EXPECT_EQ(window->GetPosition(), (ZPoint{7, 8}));
}

TEST_F(ZWindowTest, TheMouseReachesTheViewUnderIt)
{
    const auto window = Make();
    window->Show();
    ProbeView::TakeLog();
    EXPECT_EQ(Send(*window, {Mouse::kMove, {15, 12}, 1}), Log{"a:entered 5,2"});
    EXPECT_EQ(Send(*window, {Mouse::kMove, {16, 12}, 1}), Log{});
    EXPECT_EQ(window->GetLastMouse(), (ZPoint{16, 12}));
    EXPECT_EQ(Send(*window, {Mouse::kMove, {61, 11}, 1}), (Log{"a:left", "b:entered 1,1"}));
    EXPECT_EQ(Send(*window, {Mouse::kDown, {61, 11}, 3}), Log{"b:down 1,1 3"});
    EXPECT_EQ(Send(*window, {Mouse::kUp, {61, 11}, 1}), Log{"b:up 1,1"});
    EXPECT_EQ(Send(*window, {Mouse::kWheel, {61, 11}, 1, -2}), Log{"b:wheel 1,1 1 -2"});
    EXPECT_EQ(Send(*window, {Mouse::kLeave, {61, 11}}), Log{"b:left"});
    EXPECT_EQ(Send(*window, {Mouse::kMove, {61, 11}, 1}), Log{"b:entered 1,1"});
}

TEST_F(ZWindowTest, ACapturedViewGetsAllMouseEventsInItsOwnCoordinates)
{
    const auto window = Make();
    window->Show();
    ProbeView& a = View(*window, "a");
    Send(*window, {Mouse::kMove, {15, 12}, 1});
    a.SetMouseCapture(true, true);
    EXPECT_EQ(Send(*window, {Mouse::kMove, {65, 12}, 1}), (Log{"a:left", "a:moved 55,2"}));
    EXPECT_EQ(Send(*window, {Mouse::kMove, {15, 12}, 1}), Log{"a:moved 5,2"});
    EXPECT_EQ(Send(*window, {Mouse::kUp, {-3, 99}, 1}), Log{"a:up -13,89"});
    a.SetMouseCapture(false, true);
    EXPECT_EQ(Send(*window, {Mouse::kMove, {15, 12}, 1}), Log{"a:entered 5,2"});

    a.SetMouseCapture(true, true);
    window->Hide();
    EXPECT_EQ(window->GetCapturedView(), nullptr);
    EXPECT_FALSE(a.HasMouseCapture());
}

TEST_F(ZWindowTest, WhileModallyDisabledOnlyTheWheelPasses)
{
    const auto window = Make();
    window->Show();
    window->HandleZMessage(boost::make_shared<ZMessage>(ZMODALDISABLE));
    ProbeView::TakeLog();
    for (const auto action : {Mouse::kMove, Mouse::kDown, Mouse::kUp, Mouse::kDoubleClick})
        EXPECT_EQ(Send(*window, {action, {15, 12}, 1}), Log{});
    EXPECT_EQ(Send(*window, {Mouse::kWheel, {15, 12}, 1, 1}).size(), 1u);
    window->HandleZMessage(boost::make_shared<ZMessage>(ZMODALENABLE));
    EXPECT_EQ(Send(*window, {Mouse::kDown, {15, 12}, 1}).size(), 1u);
}

TEST_F(ZWindowTest, WhileADialogIsOpenOnlyDialogsTakeMessages)
{
    const auto window = Make();
    const auto dialog = Make(windowType(" dialog=\"true\""));
    mApp->BeginModal();
    EXPECT_EQ(Send(*window, {Mouse::kWheel, {15, 12}, 1, 1}), Log{});
    EXPECT_EQ(Send(*dialog, {Mouse::kWheel, {15, 12}, 1, 1}), Log{"a:wheel 5,2 1 1"});
    mApp->EndModal();
    EXPECT_EQ(Send(*window, {Mouse::kWheel, {15, 12}, 1, 1}), Log{"a:wheel 5,2 1 1"});
}

TEST_F(ZWindowTest, ModalRunsEndWithTheWindowThatTheyStandAbove)
{
    const auto window = Make();
    const ZInterfaceThread thread;
    bool running = false;
    bool ended = false;
    thread.GetLoop().Post([&] {
        ZModalRun run(thread.GetLoop(), mApp.get());
        running = true;
        run.Run();
        ended = true;
    });
    ASSERT_TRUE(waitFor([&] { return running; }));
    thread.GetLoop().Post([&] { window->NativeDestroyed(); });
    EXPECT_TRUE(waitFor([&] { return ended; }));
}

TEST_F(ZWindowTest, KeysGoToTheFocusViewUntilTheMouseTakesTheFocusAway)
{
    const auto window = Make();
    window->Show();
    ProbeView& a = View(*window, "a");
    ProbeView& b = View(*window, "b");
    ProbeView::TakeLog();
    window->SetFocusView(&a);
    window->SetFocusView(&b);
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"a:focus", "a:blur", "b:focus"}));

    const auto typed = [&](const ZNativeKeyEvent& event) {
        b.messages.clear();
        EXPECT_TRUE(window->NativeKey(event));
        std::vector<std::int32_t> ids;
        for (const auto& message : b.messages)
            ids.push_back(message->GetId());
        return ids;
    };
    using Ids = std::vector<std::int32_t>;
    EXPECT_EQ(typed({0x25, {}, true, false, false}), Ids{ZKEYDOWN});
    std::uint8_t key = 0;
    bool shift = false;
    EXPECT_TRUE(b.messages.front()->Find("Key", key) && b.messages.front()->Find("shift", shift));
    EXPECT_EQ(key, 0x25);
    EXPECT_TRUE(shift);
    EXPECT_EQ(typed({13, ZString("\r"), false, false, false}), Ids{ZKEYDOWN});
    EXPECT_EQ(typed({0, ZString("ä"), false, false, false}), Ids{ZTEXTINPUT});
    EXPECT_EQ(typed({'X', ZString("x"), false, false, false}), (Ids{ZKEYDOWN, ZTEXTINPUT}));

    Send(*window, {Mouse::kDown, {1, 1}, 1});
    EXPECT_EQ(window->GetFocusView(), nullptr);
    EXPECT_FALSE(window->NativeKey({'X', ZString("x"), false, false, false}));
}

TEST_F(ZWindowTest, AKeyOfACommandIsTakenAndDispatched)
{
    const auto window = Make();
    EXPECT_TRUE(window->NativeKey({65, {}, false, true, false}));
    EXPECT_EQ(mApp->GetDocumentManager()->GetDocumentCount(), 1);
    EXPECT_FALSE(window->NativeKey({65, {}, true, true, false}));
    EXPECT_FALSE(window->NativeKey({65, {}, false, true, true}));
    EXPECT_FALSE(window->NativeKey({66, {}, false, true, false}));
}

TEST_F(ZWindowTest, ComposesItsTitleFromApplicationAndDocument)
{
    ZDocument document(xmlOf("<doctype name=\"Plain\"></doctype>"), mApp.get());
    document.SetTitle("Doc");
    const auto titleOf = [&](const std::string& style, bool withDocument) {
        const auto window = Make(windowType(" title=\"T\"" + style));
        if (withDocument)
            window->HandleZMessage(messageWith<ZDocument*>(ZDOCUMENTNEW, "Document", &document));
        const std::string title = window->GetTitle().ToNarrow();
        window->HandleZMessage(
            messageWith<ZDocument*>(ZDOCUMENTCLOSED, "CloseDocument", &document));
        EXPECT_EQ(window->GetDocument(), nullptr);
        return title;
    };
    EXPECT_EQ(titleOf("", true), "T");
    EXPECT_EQ(titleOf(" titlestyle=\"app-doc\"", true), "Test - Doc");
    EXPECT_EQ(titleOf(" titlestyle=\"app-doc\"", false), "Test");
    EXPECT_EQ(titleOf(" titlestyle=\"doc\"", true), "Doc");
    EXPECT_EQ(titleOf(" titlestyle=\"app\"", true), "Test");
}

TEST_F(ZWindowTest, ACloseRequestDoesWhatItsStyleSays)
{
    mApp->GetDocumentManager()->HandleZMessage(
        messageWith<ZString>(ZFILENEW, "filename", ZString("Plain")));
    const auto document = mApp->GetCurrentDocument();
    ASSERT_NE(document, nullptr);
    const auto close = [&](const std::string& style) {
        const auto window = Make(windowType(" closestyle=\"" + style + "\""));
        window->SetDocument(document.get());
        window->Show();
        window->NativeCloseRequested();
    };
    close("hide");
    close("app");
    EXPECT_EQ(mApp->GetDocumentManager()->GetDocumentCount(), 1);
    close("doc");
    EXPECT_EQ(mApp->GetDocumentManager()->GetDocumentCount(), 0);
}

TEST_F(ZWindowTest, AMissingFieldIsTold)
{
    const auto window = Make();
    const auto expectMissing = [&](std::int32_t id, const char* field) {
        expectZException(-1, std::string("Couldn't find ") + field + " in Message",
                         [&] { window->HandleZMessage(boost::make_shared<ZMessage>(id)); });
    };
    expectMissing(ZDOCUMENTNEW, "NewDocument");
    expectMissing(ZDOCUMENTCHANGED, "NewDocument");
    expectMissing(ZMOUSEDOWN, "ClickPoint");
    expectMissing(ZMOUSEDOUBLECLICK, "ClickPoint");
    expectMissing(ZMOUSEUP, "UpPoint");
    expectMissing(ZMOUSEMOVED, "MovePoint");
    expectMissing(ZMOVED, "MovePoint");
    expectMissing(ZSIZED, "SizedRect");
    expectMissing(ZTIMER, "TimerID");
    expectZException(-1, "Couldn't find MouseMods in Message", [&] {
        window->HandleZMessage(messageWith<ZPoint>(ZMOUSEDOWN, "ClickPoint", {1, 1}));
    });
}

TEST_F(ZWindowTest, FiltersSeeAMessageBeforeTheWindowActs)
{
    struct Filter : ZWindowFilter
    {
        void FilterMessage(const ZMessage&) override { ProbeView::log.push_back("filter"); }
    } filter;
    const auto window = Make();
    window->AddFilter(ZTIMER, &filter);
    window->AddFilter(ZTIMER, &filter);
    const auto timer = messageWith<std::int64_t>(ZTIMER, "TimerID", 1);
    window->HandleZMessage(timer);
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"filter", "filter", "a:timer 1", "b:timer 1"}));
    window->RemoveFilter(ZTIMER, &filter);
    window->RemoveFilter(ZQUIT, &filter);
    window->HandleZMessage(timer);
    EXPECT_EQ(ProbeView::TakeLog().size(), 3u);
}

TEST_F(ZWindowTest, ForgetsAViewThatDies)
{
    const auto window = Make();
    window->Show();
    auto view = window->GetRootView()->FindSubview("a");
    view->SetAnimated(true);
    view->SetMouseCapture(true, true);
    window->SetHoverView(view.get());
    window->SetFocusView(view.get());
    window->GetRootView()->RemoveSubview(view);
    EXPECT_EQ(window->GetHoverView(), nullptr);
    EXPECT_EQ(window->GetFocusView(), nullptr);
    EXPECT_EQ(window->GetCapturedView(), nullptr);
    EXPECT_EQ(window->GetFrameTimer(), ZWindow::kNoTimer);
}

}  // namespace orvane
