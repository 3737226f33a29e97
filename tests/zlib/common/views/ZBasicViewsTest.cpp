// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ViewCanvas.h"
#include "zlib/common/views/ZBevelView.h"
#include "zlib/common/views/ZGraphAxisView.h"
#include "zlib/common/views/ZPluginLogoView.h"

using namespace orvane;

namespace
{

using ZBasicViewsTest = ViewCanvasTest;

TEST_F(ZBasicViewsTest, LogoShowsALetterForEachMissingVersionPart)
{
    for (const auto& [tag, text] :
         {std::pair{R"(<version major="1" minor="0" sub="1" build="21944"></version>)",
                    "1.0.1.21944"},
          {R"(<version major="1" sub="1" build="21944"></version>)", "1.Y.1.21944"},
          {"<version></version>", "X.Y.Z.bbbb"},
          {"", "X.Y.Z.bbb"}})
        EXPECT_EQ(Make<ZPluginLogoView>("", tag)->GetText().ToNarrow(), text);
}

TEST_F(ZBasicViewsTest, ClicksOnTheLogoShowAndHideTheVersion)
{
    const auto logo = Make<ZPluginLogoView>("");
    Paint(*logo);
    EXPECT_TRUE(canvas->Ink().IsEmpty());
    logo->MouseDown({5, 5}, ZView::kMouseButton);
    Paint(*logo);
    EXPECT_FALSE(canvas->Ink().IsEmpty());
    logo->MouseDown({5, 5}, ZView::kMouseButton);
    EXPECT_FALSE(logo->ShowsVersion());
    EXPECT_FALSE(logo->OnTimer(-1)) << "no timer runs";
    logo->MouseDown({5, 5}, ZView::kMouseButton);
    logo->OnDetached();
    EXPECT_FALSE(logo->ShowsVersion()) << "without a window no timer would end it";
}

TEST_F(ZBasicViewsTest, GroupBoxesHaveOneLineOfLightBelow)
{
    const auto bevel = Make<ZBevelView>("radius=\"5\"", "", "width=\"100\" height=\"30\"");
    Paint(*bevel);
    EXPECT_GT(canvas->At(50, 30) & 0xffu, 0xf0u);
    EXPECT_LT(canvas->AlphaAt(90, 29), 24u);
}

TEST_F(ZBasicViewsTest, SmallGroupBoxesHaveSmallerCorners)
{
    for (const auto& [size, radius] : {std::pair{"width=\"100\" height=\"50\"", 5},
                                       {"width=\"100\" height=\"8\"", 4},
                                       {"width=\"6\" height=\"50\"", 3}})
        EXPECT_EQ(Make<ZBevelView>("radius=\"9\"", "", size)->GetCornerRadius(), radius);
}

TEST_F(ZBasicViewsTest, SquareGroupBoxesAreLightAboveAndDarkBelow)
{
    Paint(*Make<ZBevelView>(
        R"(bevelsize="2")",
        R"(<color name="bevelhighlight" red="255" green="255" blue="255" alpha="255" />)"
        R"(<color name="bevellowlight" red="0" green="0" blue="0" alpha="255" />)"
        R"(<color name="bevelbase" red="100" green="100" blue="100" alpha="255" />)"));
    const auto greyAt = [&](std::int32_t x, std::int32_t y) { return canvas->At(x, y) & 0xffu; };
    EXPECT_EQ(greyAt(50, 0), 255u);
    EXPECT_GT(greyAt(50, 1), 100u);
    EXPECT_LT(greyAt(50, 18), 100u);
    EXPECT_EQ(greyAt(109, 10), 0u);
    EXPECT_EQ(canvas->AlphaAt(50, 10), 0u);
}

TEST_F(ZBasicViewsTest, AxesHaveTheirTicksAtEqualPartsAndTheirValuesAsMinutesOrDecimals)
{
    const auto graph = Make<ZGraphAxisView>(
        R"(yaxisnumticks="3" xaxisstyle="minutes" yaxisdecimalplaces="1")",
        R"(<rect name="graphframe" left="40" top="0" width="60" height="20"></rect>)");
    EXPECT_EQ(graph->XLabel(-75.4f), ZString("-1:15"));
    EXPECT_EQ(graph->YLabel(2.25f), ZString("2.2"));
    Paint(*graph);
    const auto tickAt = [&](std::int32_t y) { return (canvas->At(38, y) & 0xffu) == 141u; };
    for (std::int32_t y = 0; y < 20; ++y)
        EXPECT_EQ(tickAt(y), y == 5 || y == 10 || y == 15) << y;
}

TEST_F(ZBasicViewsTest, OutlinesAndPartsOfBitmapsAreDrawnWhereTheViewSays)
{
    struct Shapes : ZView
    {
        using ZView::ZView;
        void Draw(const ZRect& /*rect*/) override
        {
            DrawEllipse({0, 0, 21, 11});
            DrawArc({40, 0}, 10, 0, 90);
            DrawBitmapPart(*bitmap, {0, 0, 1, 1}, {60, 5, 64, 8});
        }
        boost::shared_ptr<ZBitmap> bitmap = plainBitmap(2, 2);
    };
    Paint(*Make<Shapes>(""));
    for (const ZPoint& edge : {ZPoint{0, 5}, {20, 5}, {10, 0}, {10, 10}, {40, 10}, {50, 0}})
        EXPECT_EQ(canvas->AlphaAt(edge.x, edge.y), 255u) << edge.x << ", " << edge.y;
    EXPECT_EQ(canvas->AlphaAt(10, 5) + canvas->AlphaAt(30, 0), 0u);
    EXPECT_EQ(canvas->At(63, 7), 0xffff0000u);
    EXPECT_EQ(canvas->AlphaAt(64, 8), 0u);
}

}  // namespace
