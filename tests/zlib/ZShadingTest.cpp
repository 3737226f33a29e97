#include "zlib/common/ZShading.h"

#include "support/ExpectZException.h"
#include "zlib/Canvas.h"
#include "zlib/common/ZLinearGradientShader.h"
#include "zlib/common/ZRegion.h"
#include "zlib/common/ZShader.h"
#include "zlib/common/ZString.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvane
{

namespace
{

constexpr std::int32_t kWidth = 200;

/// The grey at a place from 0 to 1 of a row that was filled from its left to its right end.
double greyAt(const Canvas& canvas, double place)
{
    const auto x = static_cast<std::int32_t>(std::lround(place * (kWidth - 1)));
    return canvas.At(x, 0) & 0xFFu;
}

void fillRow(Canvas& canvas, const ZShadingFunction& function)
{
    canvas.FillRect(ZShader({0, 0}, {kWidth, 0}, function), {0, 0, kWidth, 1});
}

void expectThreeGreys(const char* name, double first, double middle, double last)
{
    SCOPED_TRACE(name);
    Canvas canvas(kWidth, 1);
    fillRow(canvas, *MakeShadingFunction(name));
    EXPECT_NEAR(greyAt(canvas, 0.0), first, 1.5);
    EXPECT_NEAR(greyAt(canvas, 0.25), (first + middle) / 2, 1.5);
    EXPECT_NEAR(greyAt(canvas, 0.5), middle, 1.5);
    EXPECT_NEAR(greyAt(canvas, 1.0), last, 1.5);
}

}  // namespace

TEST(ZShadingTest, TheNamedShadingsRunThroughTheirThreeGreys)
{
    expectThreeGreys("ZNyquistBkgdShader", 40, 73, 40);
    expectThreeGreys("ZNyquistTitleShader", 88, 162, 73);
}

TEST(ZShadingTest, AnyOtherNameIsToldByItsText)
{
    expectZException(-1, "Unimplemented Shader Function",
                     [] { static_cast<void>(MakeShadingFunction("ZLinearGradientShader")); });
}

TEST(ZShadingTest, AGradientIsHalfTheWayAtItsMiddlePoint)
{
    Canvas canvas(kWidth, 1);
    fillRow(canvas, ZLinearGradientShader(kBlack, kWhite, 0.25f, 0.9f));
    EXPECT_NEAR(greyAt(canvas, 0.0), 0.0, 2.0);
    EXPECT_NEAR(greyAt(canvas, 0.125), 64.0, 2.0);
    EXPECT_NEAR(greyAt(canvas, 0.25), 128.0, 2.0);
    EXPECT_NEAR(greyAt(canvas, 0.625), 191.5, 2.0);
    EXPECT_NEAR(greyAt(canvas, 1.0), 255.0, 2.0);
}

TEST(ZShadingTest, BetweenOnePointAndItselfThereIsNoBrushAndNothingIsFilled)
{
    const ZShader shader({3, 3}, {3, 3}, ZLinearGradientShader(kBlack, kWhite, 0.5f, 0.5f));
    Canvas canvas(4, 4);
    canvas.FillRect(shader, {0, 0, 4, 4});
    canvas.FillRegion(shader, ZRegion(ZRect{0, 0, 4, 4}));
    EXPECT_EQ(canvas.Coverage(), 0.0);
}

}  // namespace orvane
