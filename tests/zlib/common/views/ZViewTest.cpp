// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZView.h"

#include "support/ExpectZException.h"
#include "support/MessageWith.h"
#include "support/SmallApplication.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/views/TestView.h"
#include "zlib/common/views/ZStringView.h"
#include "zlib/common/views/ZViewMessage.h"
#include "zlib/common/views/ZWindow.h"

using namespace orvane;

namespace
{

using Log = TestView::Log;

boost::shared_ptr<ZMessage> documentMessage(const boost::shared_ptr<ZDocument>& document)
{
    return messageWith(ZDOCUMENTNEW, "Document", document.get());
}

struct ZViewTest : testing::Test
{
    ZViewTest()
    {
        app.GetClassRegistry().RegisterStandardClasses();
        TakeLog();
    }

    boost::shared_ptr<TestView> Make(const std::string& name, const ZRect& bounds)
    {
        return boost::make_shared<TestView>(name, bounds, &app);
    }
    /// Adds a view on top of the root's children.
    boost::shared_ptr<TestView> Add(const std::string& name, const ZRect& bounds)
    {
        const auto view = Make(name, bounds);
        root->AddSubview(view, false);
        return view;
    }
    static Log TakeLog() { return TestView::TakeLog(); }
    /// Sends the root a message of the mouse.
    void Mouse(std::int32_t id, const char* field, const ZPoint& point) const
    {
        root->HandleZMessage(makeMouseMessage(id, field, point, 3));
    }
    boost::shared_ptr<ZDocument> MakeDocument(const std::string& element)
    {
        const auto document = boost::make_shared<ZDocument>(xmlOf("<doctype></doctype>"), &app);
        document->AddSubElement(boost::make_shared<ZElement>(element, ZElement::ZFLOAT, &app));
        return document;
    }
    std::unique_ptr<ZWindow> MakeWindow()
    {
        return std::make_unique<ZWindow>(
            xmlOf("<windowtype name=\"W\" class=\"ZWindowClass\" child=\"true\">"
                  "<rect left=\"0\" top=\"0\" width=\"100\" height=\"80\" /></windowtype>"),
            &app);
    }

    SmallApplication app;
    boost::shared_ptr<TestView> root = Make("root", {0, 0, 100, 80});
};

}  // namespace

TEST_F(ZViewTest, WritesTheXmlThatItReads)
{
    app.strings[5] = "by key";
    const ZView described(
        xmlOf("<view name=\"v\" class=\"ZViewClass\" flex=\"3\" align=\"end\" fill=\"true\">"
              "<element target=\"one\" /><element target=\"two\" />"
              "<constraint minwidth=\"20\" maxheight=\"30\" />"
              "<rect name=\"bounds\" left=\"10\" top=\"20\" width=\"30\" height=\"40\" />"
              "<scale horizontal=\"2\" vertical=\"0.5\" />"
              "<pencolor red=\"300\" green=\"1\" blue=\"2\" alpha=\"3\" />"
              "<bgcolor red=\"1\" green=\"2\" blue=\"3\" alpha=\"4\" />"
              "<frame style=\"rounded\" width=\"3\" radius=\"4\">"
              "<strokecolor red=\"9\" green=\"8\" blue=\"7\" alpha=\"6\" /></frame>"
              "<tooltip type=\"long\" text=\"no\" />"
              "<tooltip type=\"short\" text=\"yes\" key=\"5\" />"
              "<subviews><view name=\"s\" class=\"ZStringViewClass\">"
              "<label text=\"words\" align=\"left\" /></view></subviews></view>"),
        &app);
    const std::string archive = described.ExtractXML()->Write(0);
    const ZView view(xmlOf(archive), &app);
    EXPECT_EQ(view.ExtractXML()->Write(0), archive);
    EXPECT_EQ(view.GetBounds(), (ZRect{10, 20, 40, 60}));
    EXPECT_EQ(view.GetFrame(), (ZRect{0, 0, 30, 40}));
    EXPECT_EQ(view.GetPenColor(), (ZColor{44, 1, 2, 3}));
    for (const char* const part :
         {"target=\"two\"", "flex=\"3\"", "align=\"end\"", "minwidth=\"20\"", "minheight=\"1\"",
          "maxheight=\"30\"", "horizontal=\"2", "vertical=\"0.5", "<bgcolor", "style=\"rounded\"",
          "radius=\"4\"", "red=\"9\"", "by key", "words"})
        EXPECT_NE(archive.find(part), std::string::npos) << part;
}

TEST_F(ZViewTest, UnknownClassBecomesALabel)
{
    const ZView view(xmlOf("<view><subviews>"
                           "<view name=\"a\" class=\"ZViewClass\"><subviews>"
                           "<view name=\"b\" class=\"NobodyClass\"><rect name=\"bounds\" "
                           "left=\"1\" top=\"2\" width=\"3\" height=\"4\" /></view></subviews>"
                           "</view><view name=\"b\" class=\"ZViewClass\"></view></subviews>"
                           "</view>"),
                     &app);
    const auto label = boost::dynamic_pointer_cast<ZStringView>(view.FindSubview("b"));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->GetText().ToNarrow(), "NobodyClass");
    EXPECT_EQ(label->GetBounds(), (ZRect{1, 2, 4, 6}));
}

TEST_F(ZViewTest, TopChildGetsTheMouseInItsOwnCoordinates)
{
    const auto below = Add("below", {10, 10, 30, 30});
    const auto above = Add("above", {20, 20, 40, 40});
    const auto inner = Make("inner", {5, 5, 10, 10});
    above->AddSubview(inner, false);
    const auto click = [this](const ZPoint& at) {
        Mouse(ZMOUSEDOWN, "ClickPoint", at);
        return TakeLog();
    };
    EXPECT_EQ(click({5, 5}), Log{"root down3 5,5"});
    EXPECT_EQ(click({10, 10}), Log{"below down3 0,0"});
    EXPECT_EQ(click({40, 40}), Log{"above down3 20,20"});
    EXPECT_EQ(click({26, 30}), Log{"inner down3 1,5"});
    EXPECT_EQ(click({41, 40}), Log{"root down3 41,40"});
    ZView* found = nullptr;
    EXPECT_FALSE(root->HitTest(found, {101, 5}));
    EXPECT_TRUE(root->HitTest(found, {30, 30}));
    EXPECT_EQ(found, below.get()) << "HitTest takes the lowest child";
    below->Hide();
    EXPECT_TRUE(root->HitTest(found, {25, 25}));
    EXPECT_EQ(found, inner.get());
    below->Show();
    above->Hide();
    TakeLog();
    EXPECT_EQ(click({21, 22}), Log{"below down3 11,12"});
}

TEST_F(ZViewTest, OnlyTheCapturedViewGetsMoves)
{
    const auto child = Add("child", {10, 10, 30, 30});
    Mouse(ZMOUSEUP, "UpPoint", {11, 12});
    Mouse(ZMOUSEDOUBLECLICK, "ClickPoint", {11, 12});
    Mouse(ZMOUSEMOVED, "MovePoint", {11, 12});
    EXPECT_EQ(TakeLog(), (Log{"child up 1,2", "root up 11,12", "child double 1,2"}));
    child->SetMouseCapture(true, false);
    Mouse(ZMOUSEMOVED, "MovePoint", {13, 14});
    root->HandleZMessage(makeWheelMessage({13, 14}, 1, 1, -2));
    EXPECT_EQ(TakeLog(), (Log{"child moved 3,4", "child wheel1-2 3,4"}));
}

TEST_F(ZViewTest, TimersStopAtTheViewThatHandlesThem)
{
    const auto child = Add("child", {0, 0, 10, 10});
    const auto inner = Make("inner", {0, 0, 5, 5});
    child->AddSubview(inner, false);
    child->Hide();
    EXPECT_EQ(TakeLog(), (Log{"inner hidden", "child hidden"}));
    child->HandleZMessage(boost::make_shared<ZMessage>(ZCHILDRESIZED));
    EXPECT_EQ(TakeLog(), (Log{"child child resized", "root child resized"}));
    child->takesTimers = true;
    root->HandleZMessage(messageWith<std::int64_t>(ZTIMER, "TimerID", 7));
    EXPECT_EQ(TakeLog(), (Log{"root timer", "child timer"}));
    root->HandleZMessage(boost::make_shared<ZMessage>(ZSHOW));
    EXPECT_EQ(TakeLog(), (Log{"inner shown", "child shown", "root shown"}));
}

TEST_F(ZViewTest, DocumentBindsTheElementOfTheTargetNameUnlessTheViewIsAnimated)
{
    const auto child = Add("child", {});
    child->SetTargetName("level");
    const auto first = MakeDocument("level");
    const auto second = MakeDocument("level");
    root->HandleZMessage(documentMessage(first));
    EXPECT_EQ(child->GetElement(), first->FindElement("level"));
    root->HandleZMessage(documentMessage(second));
    EXPECT_EQ(first->GetObserverCount(), 0);
    EXPECT_EQ(first->FindElement("level")->GetObserverCount(), 0);
    EXPECT_EQ(child->GetElement(), second->FindElement("level"));
    root->RemoveSubview(child);
    EXPECT_EQ(second->GetObserverCount(), 1);
    EXPECT_EQ(second->FindElement("level")->GetObserverCount(), 0);
    root->AddSubview(child, false);
    EXPECT_EQ(child->GetElement(), second->FindElement("level"));

    root->HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCLOSED));
    EXPECT_EQ(child->GetElement(), nullptr);
    EXPECT_EQ(second->GetObserverCount(), 0);
    const auto element = boost::make_shared<ZElement>("level", ZElement::ZFLOAT, &app);
    root->AttachToElement(element);
    root->SetAnimated(true);
    EXPECT_EQ(element->GetObserverCount(), 0);
    root->SetAnimated(false);
    EXPECT_EQ(element->GetObserverCount(), 1);
}

TEST_F(ZViewTest, RemovedOrDestroyedViewLeavesWindowAndDocument)
{
    const auto document = MakeDocument("level");
    const auto window = MakeWindow();
    window->AttachViews();
    const auto view = Make("view", {0, 0, 10, 10});
    auto child = Make("child", {0, 0, 10, 10});
    child->SetTargetName("level");
    child->SetAnimated(true);
    view->AddSubview(child, false);
    for (const bool dies : {false, true}) {
        window->GetRootView()->AddSubview(view, false);
        view->HandleZMessage(documentMessage(document));
        child->SetMouseCapture(true, true);
        window->SetHoverView(child.get());
        window->SetFocusView(child.get());
        EXPECT_NE(window->GetFrameTimer(), ZWindow::kNoTimer);
        if (dies) {
            child.reset();
            view->RemoveSubview(view->SubviewAt(0));
        } else {
            window->GetRootView()->RemoveSubview(view);
            EXPECT_EQ(child->GetWindow(), nullptr);
            EXPECT_FALSE(child->HasMouseCapture());
        }
        EXPECT_EQ(window->GetCapturedView(), nullptr);
        EXPECT_EQ(window->GetHoverView(), nullptr);
        EXPECT_EQ(window->GetFocusView(), nullptr);
        EXPECT_EQ(window->GetFrameTimer(), ZWindow::kNoTimer);
        EXPECT_EQ(document->FindElement("level")->GetObserverCount(), 0);
        EXPECT_EQ(document->GetObserverCount(), dies ? 1 : 0);
    }
}

TEST_F(ZViewTest, WindowOriginFollowsMovesAndFrameOrigin)
{
    const auto window = MakeWindow();
    window->AttachViews();
    const auto outer = Make("outer", {10, 20, 60, 70});
    const auto inner = Make("inner", {3, 4, 20, 20});
    outer->AddSubview(inner, false);
    window->GetRootView()->AddSubview(outer, false);
    EXPECT_EQ(TakeLog(), (Log{"inner attached", "outer attached"}));
    EXPECT_EQ(inner->GetWindowOrigin(), (ZPoint{13, 24}));
    outer->MoveTo({0, 1});
    EXPECT_EQ(outer->GetBounds(), (ZRect{0, 1, 50, 51}));
    EXPECT_EQ(inner->GetWindowOrigin(), (ZPoint{3, 5}));
    outer->SetFrameOrigin(2, 0);
    EXPECT_EQ(inner->GetWindowOrigin(), (ZPoint{1, 5}));
    outer->HandleZMessage(makeMouseMessage(ZMOUSEDOWN, "ClickPoint", {5, 5}, 3));
    EXPECT_EQ(TakeLog(), (Log{"outer placed 0,1", "inner down3 2,1"}));
}

TEST_F(ZViewTest, EdgesFollowTheParentByTheStretchMask)
{
    const std::pair<std::int32_t, ZRect> cases[] = {
        {ZViewLayout::kFollowRight, {30, 10, 50, 20}},
        {ZViewLayout::kFollowBottom, {10, 15, 30, 25}},
        {ZViewLayout::kStretchAll, {10, 10, 50, 25}},
        {ZViewLayout::kKeepLeft | ZViewLayout::kKeepTop, {10, 10, 30, 20}},
    };
    for (const auto& [mask, expected] : cases) {
        ZViewLayout layout;
        layout.stretchMask = mask;
        layout.RecordMargins({10, 10, 30, 20}, {0, 0, 100, 80});
        EXPECT_EQ(layout.Follow({10, 10, 30, 20}, {7, 7, 127, 92}), expected) << mask;
    }
    const auto window = MakeWindow();
    window->AttachViews();
    window->GetRootView()->AddSubview(root, false);
    const auto filling = boost::make_shared<ZView>(xmlOf("<view fill=\"true\"></view>"), &app);
    root->AddSubview(filling, false);
    EXPECT_EQ(filling->GetBounds(), (ZRect{0, 0, 100, 80}));
    root->Resize(50, 40);
    EXPECT_EQ(filling->GetBounds(), (ZRect{0, 0, 50, 40}));
}
