// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Test.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/views/TestView.h"
#include "zlib/common/views/ZOverlay.h"
#include "zlib/common/views/ZView.h"
#include "zlib/common/views/ZWindow.h"

using namespace orvane;

namespace
{

using Log = TestView::Log;

constexpr ZColor kGreen{0, 255, 0, 255};
constexpr ZColor kBlue{0, 0, 255, 255};
constexpr ZColor kHalfGreen{0, 255, 0, 128};
constexpr std::uint32_t kRedPixel = 0xffff0000;
constexpr std::uint32_t kGreenPixel = 0xff00ff00;
constexpr std::uint32_t kBluePixel = 0xff0000ff;
constexpr ZRect kAll{0, 0, 1000, 1000};

/// A view whose background bitmap needs no resource.
struct PictureView : ZView
{
    PictureView(const ZRect& bounds, ZViewBackground::BitmapStyle style, const ZColor& color,
                ZPoint size)
        : ZView("picture", bounds, nullptr)
    {
        auto bitmap = std::make_unique<ZBitmap>(size.x, size.y, nullptr);
        bitmap->SetBrushColor(color);
        bitmap->FillRect(bitmap->GetFrame());
        GetBackground().SetBitmap(std::move(bitmap), style);
    }
};

struct OverlayRecorder : ZOverlay
{
    void DrawOverlay(ZDrawingContext&) override { TestView::log.emplace_back("overlay"); }
};

struct ZViewDrawingTest : testing::Test
{
    ZViewDrawingTest() { TestView::log.clear(); }

    boost::shared_ptr<TestView> Make(const std::string& name, const ZRect& bounds,
                                     const ZColor& color)
    {
        const auto view = boost::make_shared<TestView>(name, bounds, nullptr);
        view->SetBrushColor(color);
        return view;
    }
    boost::shared_ptr<TestView> AddTo(ZView& parent, const std::string& name, const ZRect& bounds,
                                      const ZColor& color)
    {
        const auto view = Make(name, bounds, color);
        parent.AddSubview(view, false);
        return view;
    }
    static Log TakeDraws()
    {
        Log taken = TestView::TakeLog();
        std::erase_if(
            taken, [](const std::string& line) { return line.find(" draw") == std::string::npos; });
        return taken;
    }

    const boost::shared_ptr<Canvas> canvas = boost::make_shared<Canvas>(20, 16);
};

}  // namespace

TEST_F(ZViewDrawingTest, PaintsDirtyVisibleViewsTheLastChildOnTop)
{
    const auto root = Make("root", {1, 1, 15, 15}, kRed);
    const auto hidden = AddTo(*root, "hidden", {0, 0, 4, 4}, kGreen);
    AddTo(*root, "far", {10, 10, 14, 14}, kGreen);
    AddTo(*root, "near", {2, 2, 8, 8}, kGreen);
    AddTo(*root, "above", {6, 6, 40, 8}, kBlue);
    hidden->Hide();
    root->SetContext(canvas);
    root->DrawView({4, 5, 7, 7});
    EXPECT_EQ(TakeDraws(), (Log{"root draw 3,4", "near draw 1,2"}));
    EXPECT_EQ(canvas->Ink(), (ZRect{4, 5, 7, 7}));
    root->DrawView(kAll);
    EXPECT_EQ(TakeDraws(), (Log{"far draw 0,0", "above draw 0,0"}));
    root->DrawView(kAll);
    EXPECT_EQ(TakeDraws(), Log{});
    root->MarkSubtreeDirty();
    root->DrawView(kAll);
    EXPECT_EQ(TakeDraws(), (Log{"far draw 0,0", "near draw 0,0", "above draw 0,0"}));
    EXPECT_EQ(canvas->Ink().right, 15) << "clipped to the parent";
    EXPECT_EQ(canvas->At(8, 8), kBluePixel);
}

TEST_F(ZViewDrawingTest, NothingIsPaintedUnderAnOpaqueChild)
{
    const auto root = Make("root", {0, 0, 20, 16}, kRed);
    const auto parent = AddTo(*root, "parent", {0, 0, 20, 16}, kRed);
    const auto child = AddTo(*parent, "child", {0, 0, 20, 10}, kGreen);
    child->isOpaque = true;
    root->SetContext(canvas);
    root->DrawView(kAll);
    EXPECT_EQ(TakeDraws(), (Log{"root draw 0,0", "parent draw 0,10", "child draw 0,0"}));
}

TEST_F(ZViewDrawingTest, OverlaysAreDrawnAfterTheChildrenAndBeforeDrawOver)
{
    const auto root = Make("root", {0, 0, 20, 16}, kRed);
    AddTo(*root, "child", {0, 0, 4, 4}, kGreen);
    const auto overlay = boost::make_shared<OverlayRecorder>();
    root->AddOverlay(overlay);
    root->SetContext(canvas);
    root->DrawView(kAll);
    EXPECT_EQ(TestView::TakeLog(),
              (Log{"root draw 0,0", "child draw 0,0", "child over", "overlay", "root over"}));
    root->RemoveOverlay(overlay);
    root->DrawView(kAll);
    EXPECT_EQ(TestView::TakeLog(), (Log{"child over", "root over"}));
}

TEST_F(ZViewDrawingTest, OnlyADirtyTransparentChildGetsItsBackgroundRepaired)
{
    PictureView root({0, 0, 20, 16}, ZViewBackground::kBitmapOrigin, kRed, {20, 16});
    const auto box = boost::make_shared<ZView>("box", ZRect{2, 2, 18, 14}, nullptr);
    root.AddSubview(box, false);
    // Half transparent, so that painting twice changes the pixels.
    const auto left = AddTo(*box, "left", {0, 0, 4, 4}, kHalfGreen);
    const auto right = AddTo(*box, "right", {4, 0, 8, 4}, kHalfGreen);
    root.SetContext(canvas);
    root.DrawView(kAll);
    const auto before = canvas->Pixels();
    // The update reaches beyond the dirty child.
    for (const auto& view : {left, right}) {
        TakeDraws();
        view->SetDirty();
        root.DrawView(kAll);
        EXPECT_EQ(TakeDraws(), Log{view->GetName() + " draw 0,0"});
        EXPECT_EQ(canvas->Pixels(), before);
    }
}

TEST_F(ZViewDrawingTest, RepairStaysWithinTheUpdate)
{
    PictureView root({0, 0, 20, 16}, ZViewBackground::kBitmapOrigin, kRed, {20, 16});
    root.SetContext(canvas);
    root.DrawView(kAll);
    AddTo(root, "child", {2, 2, 12, 12}, {0, 0, 0, 0});
    canvas->SetAlphaBlend(false);
    canvas->SetBrushColor({0, 0, 0, 0});
    canvas->FillRect(ZRect{0, 0, 20, 16});
    canvas->SetAlphaBlend(true);
    root.DrawView({6, 6, 10, 10});
    EXPECT_EQ(canvas->Ink(), (ZRect{6, 6, 10, 10}));
    EXPECT_EQ(canvas->At(9, 9), kRedPixel);
}

TEST_F(ZViewDrawingTest, ViewsUnderARepaintedBackgroundAreDrawnAgain)
{
    const auto root = boost::make_shared<ZView>(
        xmlOf("<view><rect name=\"bounds\" left=\"0\" top=\"0\" width=\"20\" height=\"16\" />"
              "<bgcolor red=\"255\" green=\"0\" blue=\"0\" alpha=\"255\" /></view>"),
        nullptr);
    AddTo(*root, "in", {2, 2, 6, 6}, kGreen);
    AddTo(*root, "out", {10, 2, 14, 6}, kGreen);
    root->SetContext(canvas);
    root->DrawView(kAll);
    TakeDraws();
    root->DrawView({0, 0, 8, 16});
    EXPECT_EQ(TakeDraws(), Log{"in draw 0,0"});
    EXPECT_EQ(canvas->At(3, 3), kGreenPixel);
    EXPECT_EQ(canvas->At(11, 3), kGreenPixel);
}

TEST_F(ZViewDrawingTest, FrameStrokesTheOutermostPixelsAndFillsTheRest)
{
    ZView view(
        xmlOf("<view><rect name=\"bounds\" left=\"2\" top=\"3\" width=\"8\" height=\"6\" />"
              "<frame style=\"rect\" width=\"1\">"
              "<strokecolor red=\"255\" green=\"0\" blue=\"0\" alpha=\"255\" />"
              "<fillcolor red=\"0\" green=\"0\" blue=\"255\" alpha=\"255\" /></frame></view>"),
        nullptr);
    view.SetContext(canvas);
    view.DrawView(kAll);
    EXPECT_EQ(canvas->Ink(), (ZRect{2, 3, 10, 9}));
    EXPECT_EQ(canvas->At(9, 8), kRedPixel);
    EXPECT_EQ(canvas->At(8, 7), kBluePixel);

    ZView round(
        xmlOf("<view><rect name=\"bounds\" left=\"11\" top=\"3\" width=\"8\" height=\"9\" />"
              "<frame style=\"rounded\" radius=\"3\" /></view>"),
        nullptr);
    round.SetContext(canvas);
    round.DrawView(kAll);
    EXPECT_LT(canvas->AlphaAt(11, 3), 128u);
    EXPECT_GT(canvas->AlphaAt(15, 3), 128u);
    EXPECT_EQ(canvas->At(15, 7), kGreenPixel) << "the default colour";
}

TEST_F(ZViewDrawingTest, AShaderFillsTheBackgroundAndIsWrittenByItsName)
{
    ZView view(xmlOf("<view><rect name=\"bounds\" left=\"2\" top=\"3\" width=\"8\" height=\"6\" />"
                     "<bgbitmap shader=\"ZNyquistBkgdShader\" /></view>"),
               nullptr);
    view.SetContext(canvas);
    view.DrawView(kAll);
    EXPECT_EQ(canvas->Ink(), (ZRect{2, 3, 10, 9}));
    EXPECT_NE(view.ExtractXML()->Write(0).find("<bgbitmap shader=\"ZNyquistBkgdShader\""),
              std::string::npos);
}

TEST_F(ZViewDrawingTest, BitmapStylePlacesTheBitmap)
{
    const std::pair<ZViewBackground::BitmapStyle, ZRect> cases[] = {
        {ZViewBackground::kBitmapOrigin, {2, 2, 5, 4}},
        {ZViewBackground::kBitmapCenter, {6, 5, 9, 7}},
        {ZViewBackground::kBitmapStretch, {2, 2, 12, 10}},
        {ZViewBackground::kBitmapStretchWidth, {2, 2, 12, 4}},
        {ZViewBackground::kBitmapStretchHeight, {2, 2, 5, 10}},
        {ZViewBackground::kBitmapTile, {2, 2, 12, 10}},
    };
    for (const auto& [style, ink] : cases) {
        const auto picture = boost::make_shared<Canvas>(20, 16);
        PictureView view({2, 2, 12, 10}, style, kRed, {3, 2});
        view.SetContext(picture);
        view.DrawView(kAll);
        EXPECT_EQ(picture->Ink(), ink) << style;
    }
}

TEST_F(ZViewDrawingTest, OnlyAVisibleViewInAWindowIsRepainted)
{
    ZWindow window(xmlOf("<windowtype><rect left=\"0\" top=\"0\" width=\"20\" height=\"16\" />"
                         "</windowtype>"),
                   nullptr);
    const auto view = Make("view", {2, 2, 12, 12}, kGreen);
    const auto child = AddTo(*view, "child", {0, 0, 4, 4}, kBlue);
    window.GetRootView()->AddSubview(view, false);
    static_cast<void>(window.RenderOffscreen());
    EXPECT_FALSE(child->IsDirty());
    child->Invalidate(1, 1, 2, 2);
    EXPECT_TRUE(child->IsDirty());
    static_cast<void>(window.RenderOffscreen());
    child->Hide();
    child->Invalidate();
    EXPECT_FALSE(child->IsDirty());
    EXPECT_TRUE(view->IsDirty()) << "what lay below";
    const ZBitmap& picture = window.RenderOffscreen();
    EXPECT_EQ(picture.GetNative()->ReadPixels()[3 * 20 + 3], kGreenPixel);
}
