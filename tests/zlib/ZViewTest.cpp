#include "zlib/common/ZView.h"

#include "support/ExpectZException.h"
#include "support/SmallApplication.h"
#include "support/SmallPlugin.h"
#include "zlib/TestView.h"
#include "zlib/common/ZStringView.h"
#include "zlib/common/ZViewClasses.h"
#include "zlib/common/ZWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace orvane
{

namespace
{

using Log = TestView::Log;

boost::shared_ptr<ZMessage> mouse(std::int32_t id, const char* field, const ZPoint& point)
{
    const auto message = boost::make_shared<ZMessage>(id);
    message->Add<ZPoint>(field, point);
    message->Add<std::uint32_t>("MouseMods", 3);
    return message;
}

boost::shared_ptr<ZMessage> documentMessage(ZDocument* document)
{
    const auto message = boost::make_shared<ZMessage>(ZDOCUMENTNEW);
    message->Add<ZDocument*>("Document", document);
    return message;
}

boost::shared_ptr<ZMessage> resized(std::int32_t width, std::int32_t height)
{
    const auto message = boost::make_shared<ZMessage>(ZRESIZE);
    message->Add<ZRect>("ResizeRect", ZRect{7, 7, 7 + width, 7 + height});
    return message;
}

/// Tells the host's gestures.
class EditRecorder : public SmallPlugin
{
public:
    void BeginEdit(const ZElement* element) override { edits += "+" + element->GetName(); }
    void EndEdit(const ZElement* element) override { edits += "-" + element->GetName(); }

    std::string edits;
};

class ZViewTest : public testing::Test
{
protected:
    ZViewTest() { registerViewClasses(app.GetClassRegistry()); }

    boost::shared_ptr<TestView> Make(const std::string& name, const ZRect& bounds)
    {
        return boost::make_shared<TestView>(name, bounds, log, &app);
    }
    /// In the root, at the end.
    boost::shared_ptr<TestView> Add(const std::string& name, const ZRect& bounds)
    {
        const auto view = Make(name, bounds);
        root->AddSubview(view, false);
        return view;
    }
    Log TakeLog() { return std::exchange(log, {}); }
    boost::shared_ptr<ZDocument> MakeDocument(const std::string& element)
    {
        const auto document = boost::make_shared<ZDocument>(viewXml("<doctype></doctype>"), &app);
        document->AddSubElement(boost::make_shared<ZElement>(element, ZElement::ZFLOAT, &app));
        return document;
    }
    std::unique_ptr<ZWindow> MakeWindow()
    {
        return std::make_unique<ZWindow>(
            viewXml("<windowtype name=\"W\" class=\"ZWindowClass\" child=\"true\">"
                    "<rect left=\"0\" top=\"0\" width=\"100\" height=\"80\" /></windowtype>"),
            &app);
    }

    Log log;
    SmallApplication app;
    boost::shared_ptr<TestView> root = Make("root", {0, 0, 100, 80});
};

}  // namespace

TEST_F(ZViewTest, ReadsItsDescription)
{
    app.strings[5] = "by key";
    ZView view(
        viewXml("<view name=\"v\" class=\"ZViewClass\" flex=\"3\" align=\"end\" fill=\"true\" "
                "animated=\"true\"><element target=\"one\" /><element target=\"two\" />"
                "<element other=\"x\" /><constraint minwidth=\"20\" maxheight=\"30\" />"
                "<rect name=\"bounds\" left=\"10\" top=\"20\" width=\"30\" height=\"40\" />"
                "<scale horizontal=\"2\" vertical=\"0.5\" />"
                "<pencolor red=\"300\" green=\"1\" blue=\"2\" alpha=\"3\" />"
                "<frame style=\"rounded\" width=\"3\" radius=\"4\">"
                "<strokecolor red=\"9\" green=\"8\" blue=\"7\" alpha=\"6\" /></frame>"
                "<tooltip type=\"long\" text=\"no\" />"
                "<tooltip type=\"short\" text=\"yes\" key=\"5\" /></view>"),
        &app);
    EXPECT_EQ(view.GetName(), "v");
    EXPECT_EQ(view.GetLooper(), &app);
    EXPECT_EQ(view.GetTargetName(), "two");
    EXPECT_EQ(view.GetFlex(), 3);
    EXPECT_EQ(view.GetAlign(), ZView::kAlignEnd);
    EXPECT_EQ(view.GetStretchMask(), ZView::kStretchAll);
    EXPECT_TRUE(view.IsAnimated());
    EXPECT_EQ(view.GetMinWidth(), 20);
    EXPECT_EQ(view.GetMinHeight(), 1);
    EXPECT_EQ(view.GetMaxWidth(), 10000);
    EXPECT_EQ(view.GetMaxHeight(), 30);
    EXPECT_EQ(view.GetBounds(), (ZRect{10, 20, 40, 60}));
    EXPECT_EQ(view.GetFrame(), (ZRect{0, 0, 30, 40}));
    EXPECT_EQ(view.GetHorizontalScale(), 2.0f);
    EXPECT_EQ(view.GetVerticalScale(), 0.5f);
    EXPECT_EQ(view.GetPenColor(), (ZColor{44, 1, 2, 3}));
    EXPECT_EQ(view.GetFrameStyle(), ZView::kFrameRounded);
    EXPECT_EQ(view.GetFrameWidth(), 3);
    EXPECT_EQ(view.GetFrameRadius(), 4);
    EXPECT_EQ(view.GetStrokeColor(), (ZColor{9, 8, 7, 6}));
    EXPECT_TRUE(view.HasTooltip());
}

TEST_F(ZViewTest, WhatADescriptionLeavesOutStaysAtItsDefault)
{
    ZView view(viewXml("<view><tooltip type=\"long\" text=\"no\" />"
                       "<rect name=\"frame\" left=\"5\" top=\"6\" width=\"7\" height=\"8\" />"
                       "</view>"),
               nullptr);
    EXPECT_EQ(view.GetBounds(), (ZRect{5, 6, 12, 14}));
    EXPECT_EQ(view.GetFrame(), (ZRect{0, 0, 1, 1}));
    EXPECT_FALSE(view.HasTooltip());
    EXPECT_FALSE(view.IsAnimated());
    EXPECT_EQ(view.GetStretchMask(), 0);
    EXPECT_EQ(view.GetTooltipText({0, 0}), ZString());
}

TEST_F(ZViewTest, AClassThatNobodyKnowsBecomesALabelWithItsName)
{
    const ZView view(viewXml("<view><subviews>"
                             "<view name=\"a\" class=\"ZViewClass\"><subviews>"
                             "<view name=\"b\" class=\"NobodyClass\"><rect name=\"bounds\" "
                             "left=\"1\" top=\"2\" width=\"3\" height=\"4\" /></view></subviews>"
                             "</view><view name=\"b\" class=\"ZStringViewClass\">"
                             "<label text=\"words\" align=\"right\" /></view></subviews></view>"),
                     &app);
    const auto label = boost::dynamic_pointer_cast<ZStringView>(view.FindSubview("b"));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->GetText().ToNarrow(), "NobodyClass");
    EXPECT_EQ(label->GetBounds(), (ZRect{1, 2, 4, 6}));
    EXPECT_EQ(label->GetParent(), view.SubviewAt(0).get());
    const auto words = boost::dynamic_pointer_cast<ZStringView>(view.SubviewAt(1));
    ASSERT_NE(words, nullptr);
    EXPECT_EQ(words->GetText().ToNarrow(), "words");
    EXPECT_EQ(words->GetAlign(), 2);
    EXPECT_EQ(view.SubviewAt(2), nullptr);
    EXPECT_EQ(view.FindSubview("c"), nullptr);
}

TEST_F(ZViewTest, ItsArchiveMakesTheSameView)
{
    const ZView view(
        viewXml("<view name=\"v\" class=\"ZViewClass\" align=\"stretch\"><element target=\"t\" />"
                "<rect name=\"bounds\" left=\"1\" top=\"2\" width=\"3\" height=\"4\" />"
                "<bgcolor red=\"1\" green=\"2\" blue=\"3\" alpha=\"4\" />"
                "<frame style=\"rect\" width=\"2\" /><tooltip type=\"short\" text=\"tip\" />"
                "<subviews><view name=\"s\" class=\"ZStringViewClass\">"
                "<label text=\"words\" align=\"left\" /></view></subviews></view>"),
        &app);
    const std::string archive = view.ExtractXML()->Write(0);
    EXPECT_EQ(ZView(viewXml(archive), &app).ExtractXML()->Write(0), archive);
    EXPECT_NE(archive.find("words"), std::string::npos);
}

TEST_F(ZViewTest, TheChildOnTopGetsTheMouseInItsOwnCoordinatesEdgesIncluded)
{
    Add("below", {10, 10, 30, 30});
    const auto above = Add("above", {20, 20, 40, 40});
    const auto inner = Make("inner", {5, 5, 10, 10});
    above->AddSubview(inner, false);
    const auto click = [this](const ZPoint& at) {
        root->HandleZMessage(mouse(ZMOUSEDOWN, "ClickPoint", at));
        return TakeLog();
    };
    EXPECT_EQ(click({5, 5}), Log{"root down3 5,5"});
    EXPECT_EQ(click({10, 10}), Log{"below down3 0,0"});
    EXPECT_EQ(click({21, 22}), Log{"above down3 1,2"});
    EXPECT_EQ(click({40, 40}), Log{"above down3 20,20"});
    EXPECT_EQ(click({26, 30}), Log{"inner down3 1,5"});
    EXPECT_EQ(click({41, 40}), Log{"root down3 41,40"});
    above->Hide();
    TakeLog();
    EXPECT_EQ(click({21, 22}), Log{"below down3 11,12"});
}

TEST_F(ZViewTest, TheFirstSearchTakesTheFirstChildThatIsVisible)
{
    const auto first = Add("first", {10, 10, 30, 30});
    const auto second = Add("second", {10, 10, 30, 30});
    ZView* found = nullptr;
    EXPECT_FALSE(root->HitTest(found, {101, 5}));
    EXPECT_EQ(found, nullptr);
    EXPECT_TRUE(root->HitTest(found, {100, 80}));
    EXPECT_EQ(found, root.get());
    EXPECT_TRUE(root->HitTest(found, {30, 30}));
    EXPECT_EQ(found, first.get());
    first->Hide();
    EXPECT_TRUE(root->HitTest(found, {30, 30}));
    EXPECT_EQ(found, second.get());
}

TEST_F(ZViewTest, AllOnTheWaySeeTheReleaseAndOnlyTheCapturedSeeMoves)
{
    const auto child = Add("child", {10, 10, 30, 30});
    root->HandleZMessage(mouse(ZMOUSEUP, "UpPoint", {11, 12}));
    EXPECT_EQ(TakeLog(), (Log{"child up 1,2", "root up 11,12"}));
    root->HandleZMessage(mouse(ZMOUSEDOUBLECLICK, "ClickPoint", {11, 12}));
    EXPECT_EQ(TakeLog(), Log{"child double 1,2"});
    root->HandleZMessage(mouse(ZMOUSEMOVED, "MovePoint", {11, 12}));
    EXPECT_EQ(TakeLog(), Log{});
    EXPECT_EQ(child->GetLastMove(), (ZPoint{1, 2}));
    child->SetMouseCapture(true, false);
    root->HandleZMessage(mouse(ZMOUSEMOVED, "MovePoint", {13, 14}));
    EXPECT_EQ(TakeLog(), Log{"child moved 3,4"});

    const auto wheel = mouse(ZMOUSEWHEEL, "WheelPoint", {13, 14});
    wheel->Add<std::int32_t>("WheelAxis", 1);
    wheel->Add<std::int32_t>("WheelDelta", -2);
    root->HandleZMessage(wheel);
    EXPECT_EQ(TakeLog(), Log{"child wheel1-2 3,4"});
}

TEST_F(ZViewTest, AMissingFieldIsNamed)
{
    const std::pair<std::int32_t, const char*> cases[] = {{ZMOUSEDOWN, "ClickPoint"},
                                                          {ZMOUSEUP, "UpPoint"},
                                                          {ZMOUSEMOVED, "MovePoint"},
                                                          {ZMOUSEENTERED, "EnteredPoint"},
                                                          {ZMOUSEWHEEL, "WheelPoint"},
                                                          {ZTIMER, "TimerID"},
                                                          {ZSCALEVERTICAL, "Scale"},
                                                          {ZELEMENTCHANGED, "elementid"},
                                                          {ZATTACHED, "Window"},
                                                          {ZDOCUMENTCHANGED, "NewDocument"},
                                                          {ZDOCUMENTNEW, "NewDocument"},
                                                          {ZRESIZE, "SizedRect"},
                                                          {ZMOUSEDOUBLECLICK, "ClickPoint"}};
    for (const auto& [id, field] : cases)
        expectZException(-1, std::string("Couldn't find ") + field + " in Message",
                         [&] { root->HandleZMessage(boost::make_shared<ZMessage>(id)); });
    const auto click = boost::make_shared<ZMessage>(ZMOUSEDOWN);
    click->Add<ZPoint>("ClickPoint", {});
    expectZException(-1, "Couldn't find MouseMods in Message",
                     [&] { root->HandleZMessage(click); });
}

TEST_F(ZViewTest, ATimerGoesOnUntilAViewTakesIt)
{
    const auto child = Add("child", {});
    const auto timer = boost::make_shared<ZMessage>(ZTIMER);
    timer->Add<std::int64_t>("TimerID", 7);
    child->takesTimers = true;
    root->HandleZMessage(timer);
    root->takesTimers = true;
    root->HandleZMessage(timer);
    child->HandleZMessage(boost::make_shared<ZMessage>(ZCHILDRESIZED));
    EXPECT_EQ(TakeLog(), (Log{"child child resized", "root child resized"}));
}

TEST_F(ZViewTest, AHiddenViewStillHearsWhatIsHandedOn)
{
    const auto child = Add("child", {0, 0, 10, 10});
    const auto inner = Make("inner", {0, 0, 5, 5});
    child->AddSubview(inner, false);
    child->Hide();
    EXPECT_EQ(TakeLog(), (Log{"inner hidden", "child hidden"}));
    EXPECT_FALSE(inner->IsVisible());
    const auto scale = boost::make_shared<ZMessage>(ZSCALEHORIZONTAL);
    scale->Add<float>("Scale", 3.0f);
    root->HandleZMessage(scale);
    EXPECT_EQ(inner->GetHorizontalScale(), 3.0f);
    root->HandleZMessage(boost::make_shared<ZMessage>(ZSHOW));
    EXPECT_EQ(TakeLog(), (Log{"inner shown", "child shown", "root shown"}));
}

TEST_F(ZViewTest, ChildrenKeepTheirOrderAndTheirOneParent)
{
    const auto last = Add("last", {});
    const auto first = Make("first", {});
    root->AddSubview(first, true);
    EXPECT_EQ(root->IndexOfSubview(first.get()), 0);
    EXPECT_EQ(root->IndexOfSubview(last.get()), 1);
    first->AddSubview(last, false);
    EXPECT_EQ(last->GetParent(), root.get());
    first->RemoveSubview(last);
    EXPECT_EQ(root->GetSubviewCount(), 2);
    root->RemoveSubview(last);
    EXPECT_EQ(root->IndexOfSubview(last.get()), -1);
    EXPECT_EQ(last->GetParent(), nullptr);
    root->AddSubview(nullptr, false);
    EXPECT_EQ(root->GetSubviewCount(), 1);
}

TEST_F(ZViewTest, ADocumentBindsByNameAndTheNextOneBindsAnew)
{
    const auto child = Add("child", {});
    child->SetTargetName("level");
    const auto first = MakeDocument("level");
    const auto second = MakeDocument("level");
    const auto other = MakeDocument("other");
    root->HandleZMessage(documentMessage(first.get()));
    EXPECT_EQ(child->GetElement(), first->FindElement("level"));
    EXPECT_EQ(root->GetElement(), nullptr);
    EXPECT_EQ(first->GetObserverCount(), 2);
    app.ProcessQueue();  // each hears of the document, and the child of its element
    EXPECT_EQ(TakeLog(), (Log{"root unbound", "child bound", "root changed", "child changed",
                              "child changed"}));

    root->HandleZMessage(documentMessage(second.get()));
    EXPECT_EQ(first->GetObserverCount(), 0);
    EXPECT_EQ(first->FindElement("level")->GetObserverCount(), 0);
    EXPECT_EQ(child->GetElement(), second->FindElement("level"));
    root->HandleZMessage(documentMessage(other.get()));
    EXPECT_EQ(child->GetElement(), nullptr);
    root->HandleZMessage(documentMessage(second.get()));

    root->HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCLOSED));
    EXPECT_EQ(child->GetElement(), nullptr);
    EXPECT_EQ(child->GetDocument(), nullptr);
    EXPECT_EQ(second->GetObserverCount(), 0);
    EXPECT_EQ(TakeLog().back(), "child closed");
}

TEST_F(ZViewTest, AChildJoinsTheDocumentOfItsParentAndLeavesItWithIt)
{
    const auto document = MakeDocument("level");
    root->HandleZMessage(documentMessage(document.get()));
    const auto child = Make("child", {});
    child->SetTargetName("level");
    root->AddSubview(child, false);
    EXPECT_EQ(child->GetDocument(), document.get());
    EXPECT_EQ(document->GetObserverCount(), 2);
    root->RemoveSubview(child);
    EXPECT_EQ(document->GetObserverCount(), 1);
    EXPECT_EQ(document->FindElement("level")->GetObserverCount(), 0);
    root->AddSubview(child, false);
    EXPECT_EQ(child->GetElement(), document->FindElement("level"));
}

TEST_F(ZViewTest, AnAnimatedViewDoesNotListen)
{
    const auto element = boost::make_shared<ZElement>("level", ZElement::ZFLOAT, &app);
    root->AttachToElement(element);
    EXPECT_EQ(element->GetObserverCount(), 1);
    root->SetAnimated(true);
    EXPECT_EQ(element->GetObserverCount(), 0);
    root->AttachToElement(element);
    EXPECT_EQ(element->GetObserverCount(), 0);
    root->SetAnimated(false);
    EXPECT_EQ(element->GetObserverCount(), 1);
    root->AttachToElement(nullptr);
    EXPECT_EQ(element->GetObserverCount(), 0);
}

TEST_F(ZViewTest, AViewThatDiesLeavesNothingBehind)
{
    const auto document = MakeDocument("level");
    const auto window = MakeWindow();
    window->AttachViews();
    const auto view = Make("view", {0, 0, 10, 10});
    auto child = Make("child", {0, 0, 10, 10});
    child->SetTargetName("level");
    child->SetNavigable(true);
    view->AddSubview(child, false);
    window->GetRootView()->AddSubview(view, false);
    view->HandleZMessage(documentMessage(document.get()));
    child->SetMouseCapture(true, true);
    window->SetHoverView(child.get());
    window->SetFocusView(child.get());
    EXPECT_EQ(window->GetCapturedView(), child.get());

    view->RemoveSubview(child);
    EXPECT_EQ(window->GetCapturedView(), nullptr);
    EXPECT_EQ(window->GetHoverView(), nullptr);
    EXPECT_FALSE(child->HasMouseCapture());
    view->AddSubview(child, false);
    window->SetHoverView(view.get());
    window->GetRootView()->RemoveSubview(view);
    EXPECT_EQ(child->GetWindow(), nullptr);
    EXPECT_EQ(window->GetHoverView(), nullptr);

    window->GetRootView()->AddSubview(view, false);
    view->HandleZMessage(documentMessage(document.get()));
    window->SetHoverView(child.get());
    child.reset();
    view->RemoveSubview(view->SubviewAt(0));
    EXPECT_EQ(window->GetHoverView(), nullptr);
    EXPECT_EQ(document->FindElement("level")->GetObserverCount(), 0);
    EXPECT_EQ(document->GetObserverCount(), 1);
}

TEST_F(ZViewTest, ADragIsOneGestureWhateverEndsIt)
{
    EditRecorder plugin;
    const auto level = boost::make_shared<ZElement>("level", ZElement::ZFLOAT, &plugin);
    auto view = boost::make_shared<TestView>("view", ZRect{}, log, &plugin);
    view->SetMouseCapture(true, true);
    view->SetMouseCapture(false, true);
    EXPECT_EQ(std::exchange(plugin.edits, {}), "");
    view->AttachToElement(level);
    view->SetMouseCapture(true, false);
    EXPECT_EQ(plugin.edits, "");
    view->SetMouseCapture(true, true);
    view->SetMouseCapture(true, true);
    view->SetMouseCapture(false, true);
    view->SetMouseCapture(false, true);
    EXPECT_EQ(std::exchange(plugin.edits, {}), "+level-level");
    view->SetMouseCapture(true, true);
    view->HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCLOSED));
    EXPECT_EQ(std::exchange(plugin.edits, {}), "+level-level");
    view->AttachToElement(level);
    view->SetMouseCapture(true, true);
    view.reset();
    EXPECT_EQ(plugin.edits, "+level-level");
    EXPECT_EQ(level->GetObserverCount(), 0);
}

TEST_F(ZViewTest, AWindowIsToldWhereAViewLies)
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
    EXPECT_EQ(outer->GetFrame(), (ZRect{2, 0, 52, 50}));
    EXPECT_EQ(inner->GetWindowOrigin(), (ZPoint{1, 5}));
    outer->HandleZMessage(mouse(ZMOUSEDOWN, "ClickPoint", {5, 5}));
    EXPECT_EQ(TakeLog(), (Log{"outer placed 0,1", "inner down3 2,1"}));
}

TEST_F(ZViewTest, EdgesFollowTheParentAsTheMaskTells)
{
    struct Case
    {
        std::int32_t mask;
        ZRect expected;
    };
    const Case cases[] = {
        {0, {10, 10, 30, 20}},
        {ZView::kFollowRight, {30, 10, 50, 20}},
        {ZView::kFollowBottom, {10, 15, 30, 25}},
        {ZView::kStretchAll, {10, 10, 50, 25}},
        {ZView::kKeepLeft | ZView::kKeepTop, {10, 10, 30, 20}},
    };
    const auto window = MakeWindow();
    window->AttachViews();
    window->GetRootView()->AddSubview(root, false);
    for (const Case& each : cases) {
        const auto child = Make("child", {10, 10, 30, 20});
        child->SetStretchMask(each.mask);
        root->AddSubview(child, false);
        child->HandleZMessage(resized(120, 85));
        EXPECT_EQ(child->GetBounds(), each.expected) << each.mask;
        EXPECT_EQ(child->GetFrame().GetWidth(), each.expected.GetWidth()) << each.mask;
    }
}

TEST_F(ZViewTest, AFillingChildTakesTheSizeOfItsParentAndFollowsIt)
{
    const auto window = MakeWindow();
    window->AttachViews();
    const auto view =
        boost::make_shared<ZView>(viewXml("<view name=\"f\" fill=\"true\"></view>"), &app);
    root->AddSubview(view, false);
    window->GetRootView()->AddSubview(root, false);
    EXPECT_EQ(view->GetBounds(), (ZRect{0, 0, 100, 80}));
    TakeLog();
    root->Resize(50, 40);
    EXPECT_EQ(view->GetBounds(), (ZRect{0, 0, 50, 40}));
    EXPECT_EQ(TakeLog(), Log{"root sized 50,40"});
}

}  // namespace orvane
