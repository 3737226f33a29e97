// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZShading.h"

#include "support/ExpectZException.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/drawing/ZLinearGradientShader.h"
#include "zlib/common/drawing/ZRegion.h"
#include "zlib/common/drawing/ZShader.h"
#include "zlib/common/objects/ZString.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace orvane
{

namespace
{

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

TEST(ZShadingTest, ShadingsRunThroughTheirThreeGreys)
{
    constexpr std::array kQuarters{0.0, 0.25, 0.5, 0.75, 1.0};
    expectGreys(*MakeShadingFunction("ZNyquistBkgdShader"), kQuarters, {40, 56.5, 73, 56.5, 40});
    expectGreys(*MakeShadingFunction("ZNyquistTitleShader"), kQuarters, {88, 125, 162, 117.5, 73});
    expectGreys(ZLinearGradientShader(kBlack, kWhite, 0.25f, 0.9f), {0.0, 0.125, 0.25, 0.625, 1.0},
                {0, 64, 128, 191.5, 255});
    expectZException("Unimplemented Shader Function",
                     [] { static_cast<void>(MakeShadingFunction("ZLinearGradientShader")); });
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
