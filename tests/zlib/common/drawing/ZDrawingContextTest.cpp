// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZDrawingContext.h"

#include "support/Test.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/drawing/ZLinearGradientShader.h"
#include "zlib/common/drawing/ZPath.h"
#include "zlib/common/drawing/ZRegion.h"
#include "zlib/common/drawing/ZShader.h"
#include "zlib/common/drawing/ZShading.h"

#include <boost/make_shared.hpp>

using namespace orvane;

namespace
{

constexpr std::int32_t kFar = std::numeric_limits<std::int32_t>::max();

constexpr std::int32_t kWidth = 200;

/// The greys at five places of a row, its ends among them, that the shading fills from left to
/// right.
void expectGreys(const ZShadingFunction& function, const std::array<double, 5>& places,
                 const std::array<double, 5>& greys)
{
    Canvas canvas(kWidth, 1);
    canvas.FillRect(ZShader({0, 0}, {kWidth, 0}, function), {0, 0, kWidth, 1});
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto x = static_cast<std::int32_t>(std::lround(places[i] * (kWidth - 1)));
        EXPECT_NEAR(canvas.At(x, 0) & 0xFFu, greys[i], 2.0) << places[i];
    }
}

}  // namespace

TEST(ZDrawingContextTest, FillsThePixelsBetweenTheEdges)
{
    for (const bool smooth : {false, true}) {
        Canvas canvas(5, 4);
        canvas.SetAntiAlias(smooth);
        canvas.SetBrushColor(kRed);
        canvas.FillRect(1, 1, 4, 3);
        EXPECT_EQ(canvas.Rows(), Rows({".....", ".###.", ".###.", "....."}));
        EXPECT_EQ(canvas.At(1, 1), 0xFFFF0000u);
    }
    Canvas canvas(3, 3);
    canvas.FillRect(2, 0, 1, 3);
    EXPECT_EQ(canvas.Coverage(), 0.0) << "the edges have changed sides";
    canvas.FillRect(-kFar - 1, -kFar - 1, kFar, kFar);
    EXPECT_EQ(canvas.Coverage(), 9.0);
}

TEST(ZDrawingContextTest, LinesHoldBothEndPointsAndAreNoThinnerThanAPixel)
{
    for (std::int32_t y = 0; y < 7; ++y) {
        for (std::int32_t x = 0; x < 7; ++x) {
            SCOPED_TRACE(testing::Message() << "to " << x << ", " << y);
            Canvas canvas(7, 7);
            canvas.DrawLine(ZPoint{3, 3}, ZPoint{x, y});
            EXPECT_EQ(canvas.Coverage(), std::max(std::abs(x - 3), std::abs(y - 3)) + 1);
            EXPECT_EQ(canvas.AlphaAt(3, 3), 255u);
            EXPECT_EQ(canvas.AlphaAt(x, y), 255u);
        }
    }
    Canvas wide(6, 5);
    wide.SetPenWidth(3.0f);
    wide.DrawLine(1, 2, 4, 2);
    EXPECT_EQ(wide.Rows(), Rows({"......", ".####.", ".####.", ".####.", "......"}));
    for (const float width : {0.0f, 0.25f, -3.0f, std::numeric_limits<float>::quiet_NaN()}) {
        Canvas canvas(5, 1);
        canvas.SetAntiAlias(true);
        canvas.SetPenWidth(width);
        canvas.DrawLine(1, 0, 3, 0);
        EXPECT_EQ(canvas.Rows(), Rows({".###."})) << width;
    }
}

TEST(ZDrawingContextTest, PixelsBlendOrReplaceByTheBlendMode)
{
    Canvas canvas(2, 1);
    canvas.SetBrushColor(kWhite);
    canvas.FillRect(0, 0, 2, 1);
    canvas.SetBrushColor({255, 0, 0, 51});
    canvas.FillRect(0, 0, 1, 1);
    EXPECT_EQ(canvas.At(0, 0), 0xFFFFCCCCu);  // 255 - 51
    canvas.SetAlphaBlend(false);
    canvas.FillRect(1, 0, 2, 1);
    EXPECT_EQ(canvas.At(1, 0), 0x33FF0000u);
}

TEST(ZDrawingContextTest, RestoringBringsBackClipTransformAndBlendingAndEndsInnerStates)
{
    Canvas canvas(4, 4);
    canvas.SetClip(ZRect{0, 0, 2, 4});
    {
        const ZSavedStateScope scope(canvas);
        canvas.SetClip(ZRect{2, 0, 4, 4});
        canvas.Translate(1, 1);
        canvas.Scale(2.0f, 2.0f);
        canvas.SetAlphaBlend(false);
        canvas.SetPenColor(kWhite);
        canvas.SetBrushColor(kRed);
    }
    EXPECT_EQ(canvas.GetPenColor(), kWhite);
    canvas.FillRect(0, 0, 4, 2);
    EXPECT_EQ(canvas.Rows(), Rows({"##..", "##..", "....", "...."}));
    EXPECT_EQ(canvas.At(0, 0), 0xFFFF0000u);
    Canvas row(4, 1);
    auto outer = row.SaveState();
    row.Translate(1, 0);
    auto inner = row.SaveState();
    row.Translate(1, 0);
    row.RestoreState(outer);
    EXPECT_EQ(outer, nullptr);
    row.FillRect(0, 0, 1, 1);
    row.Translate(3, 0);
    row.RestoreState(inner);
    row.FillRect(0, 0, 1, 1);
    EXPECT_EQ(row.Rows(), Rows({"#..#"}));
}

TEST(ZDrawingContextTest, ScalesThePenAndTurnsClockwise)
{
    Canvas scaled(9, 9);
    scaled.Scale(2.0f, 1.0f);
    scaled.SetPenWidth(2.0f);
    EXPECT_EQ(scaled.GetPenWidth(), 1.0f);
    Canvas turned(7, 7);
    turned.Rotate(3, 3, 90.0f);
    turned.FillRect(3, 3, 6, 4);  // to the right of the point: comes to lie below it
    EXPECT_EQ(turned.Ink(), (ZRect{2, 3, 3, 6}));
    EXPECT_EQ(turned.Coverage(), 3.0);
}

TEST(ZDrawingContextTest, ClipReplacesTheOneBefore)
{
    Canvas canvas(6, 2);
    canvas.SetClip(ZRect{0, 0, 1, 2});
    canvas.SetClip(ZRect{2, 0, 4, 1});
    canvas.FillRect(0, 0, 6, 2);
    EXPECT_EQ(canvas.Rows(), Rows({"..##..", "......"}));
    ZRegion region(ZRect{4, 0, 5, 1});
    region.Add({5, 1, 6, 2});
    canvas.SetClip(region);
    canvas.FillRect(0, 0, 6, 2);
    EXPECT_EQ(canvas.Rows(), Rows({"..####", "....##"}));
}

TEST(ZDrawingContextTest, PathsAreStrokedAndFilledAndStayUntilReset)
{
    Canvas canvas(6, 6);
    canvas.AddPathLine({1, 1}, {4, 1});
    canvas.AddPathLine({4, 4}, {1, 4});  // joined by a line down the right side
    canvas.ClosePath();
    canvas.StrokePath();
    EXPECT_EQ(canvas.Rows(), Rows({"......", ".####.", ".#..#.", ".#..#.", ".####.", "......"}));
    canvas.FillPath();
    EXPECT_EQ(canvas.Coverage(), 16.0);
    canvas.ResetPath();
    canvas.SetBrushColor(kRed);
    canvas.FillPath();
    EXPECT_EQ(canvas.At(2, 2), 0xFF000000u);
}

TEST(ZDrawingContextTest, FilledCirclesAndArcsHaveTheirArea)
{
    Canvas canvas(40, 40);
    canvas.SetAntiAlias(true);
    canvas.AddPathArc({20, 20}, 15, 0, 360);
    canvas.FillPath();
    EXPECT_NEAR(canvas.Coverage(), std::numbers::pi * 15 * 15, 7.0);  // 1 %
    EXPECT_EQ(canvas.Ink(), (ZRect{5, 5, 35, 35}));

    Canvas quarter(40, 40);
    quarter.SetAntiAlias(true);
    auto path = boost::make_shared<ZPath>();
    path->MoveTo({20, 20});
    path->AddArc({20, 20}, 15, 0, 90);
    quarter.AddPath(path);
    quarter.FillPath();
    EXPECT_NEAR(quarter.Coverage(), std::numbers::pi * 15 * 15 / 4, 2.0);
    EXPECT_EQ(quarter.Ink(), (ZRect{20, 20, 35, 35})) << "from three o'clock, clockwise";
}

TEST(ZDrawingContextTest, RoundsTheRequestedCaps)
{
    const auto ink = [](bool roundStart, bool roundEnd) {
        Canvas canvas(30, 12);
        canvas.SetAntiAlias(true);
        canvas.SetPenColor({0, 0, 0, 128});
        canvas.SetPenWidth(7.0f);
        canvas.SetPenCaps(roundStart, roundEnd);
        canvas.DrawLine(10, 5, 20, 5);
        for (const std::uint32_t pixel : canvas.Pixels())
            EXPECT_LE(pixel >> 24, 128u) << "a pixel covered twice";
        return canvas.Ink();
    };
    EXPECT_EQ(ink(false, false), (ZRect{10, 2, 21, 9}));
    EXPECT_EQ(ink(true, true), (ZRect{7, 2, 24, 9}));
    EXPECT_LE(ink(true, false).right, 21);
}

TEST(ZShadingTest, ShadingsRunThroughTheirThreeGreys)
{
    constexpr std::array kQuarters{0.0, 0.25, 0.5, 0.75, 1.0};
    expectGreys(*MakeShadingFunction("ZNyquistBkgdShader"), kQuarters, {40, 56.5, 73, 56.5, 40});
    expectGreys(*MakeShadingFunction("ZNyquistTitleShader"), kQuarters, {88, 125, 162, 117.5, 73});
    expectGreys(ZLinearGradientShader(kBlack, kWhite, 0.25f, 0.9f), {0.0, 0.125, 0.25, 0.625, 1.0},
                {0, 64, 128, 191.5, 255});
}
