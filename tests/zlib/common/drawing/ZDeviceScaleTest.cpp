// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing at device scales other than 1, by the pixels.
#include "zlib/common/drawing/ZDeviceScale.h"

#include "support/PngBytes.h"
#include "support/SmallApplication.h"
#include "support/Test.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZResources.h"

#include <boost/make_shared.hpp>

using namespace orvane;

namespace
{

constexpr std::array kScales{0.5, 1.1, 1.25, 1.5, 1.75, 2.0, 2.5, 3.0};
constexpr ZColor kHalfRed{255, 0, 0, 128};

std::uint32_t pixelAt(const ZBitmap& bitmap, std::int32_t x, std::int32_t y)
{
    const ZImage& image = *bitmap.GetNative();
    return image.ReadPixels()[static_cast<std::size_t>(y * image.GetWidth() + x)];
}

/// The colours in the bitmap.
std::set<std::uint32_t> colorsOf(const ZBitmap& bitmap)
{
    const auto pixels = bitmap.GetNative()->ReadPixels();
    return {pixels.begin(), pixels.end()};
}

/// An application with pictures for scale 1, and for some also for scale 2.
struct ScaledApplication : SmallApplication
{
    ScaledApplication() { resources = ZResources(mEntries); }

    PngBytes mPlain = makePng(4, 3);
    PngBytes mDouble = makePng(8, 6);
    PngBytes mWrongDouble = makePng(9, 6);
    std::array<ZResources::Entry, 5> mEntries{
        {pictureEntry("both.png", mPlain), pictureEntry("Both@2X.png", mDouble),
         pictureEntry("single.png", mPlain), pictureEntry("wrong.png", mPlain),
         pictureEntry("wrong@2x.png", mWrongDouble)}};
};

}  // namespace

TEST(ZDeviceScaleTest, PixelsGoBackToTheUnitsThatTheyShow)
{
    for (const double factor : kScales) {
        SCOPED_TRACE(factor);
        const ZDeviceScale scale(factor);
        for (std::int32_t unit = -3; unit < 500; ++unit) {
            const ZRect pixels = scale.ToPixels(ZRect{unit, 0, unit + 1, 1});
            if (factor >= 1.0) {
                EXPECT_EQ(scale.ToUnits(ZPoint{pixels.right - 1, 0}).x, unit);
            }
            const ZRect units = scale.ToUnits(pixels);
            EXPECT_EQ(units.Union({unit, 0, unit + 1, 1}), units) << "unit " << unit;
        }
        EXPECT_EQ(scale.ToPixels(ZPoint{1, 0}),
                  (ZPoint{std::max(1, static_cast<std::int32_t>(factor + 0.5)), 0}));
    }
    EXPECT_EQ(ZDeviceScale(1.25).ToPixels(ZPoint{454, 430}), (ZPoint{568, 538}));
    EXPECT_EQ(ZDeviceScale(1.5).ToUnits(ZRect{7, 8, 15, 16}), (ZRect{4, 5, 10, 11}));
}

TEST(ZDeviceScaleTest, NeighboursNeitherOverlapNorLeaveAGap)
{
    for (const double factor : kScales) {
        if (factor < 1.0)
            continue;
        SCOPED_TRACE(factor);
        for (const bool antiAlias : {false, true}) {
            ZBitmap rects(20, 4, factor);
            ZBitmap lines(20, 4, factor);
            ZBitmap clips(20, 4, factor);
            for (ZBitmap* const bitmap : {&rects, &lines, &clips}) {
                bitmap->SetAntiAlias(antiAlias);
                bitmap->SetBrushColor(kHalfRed);
                bitmap->SetPenColor(kHalfRed);
            }
            for (std::int32_t x = 0; x < 20; ++x) {
                const ZSavedStateScope moved(rects);
                rects.Translate(x, 0);
                rects.FillRect(0, 0, 1, 4);
                lines.DrawLine(x, 0, x, 3);
                const ZSavedStateScope clipped(clips);
                clips.SetClip(ZRect{x, 0, x + 1, 4});
                clips.FillRect(0, 0, 20, 4);
            }
            for (const ZBitmap* const bitmap : {&rects, &lines, &clips})
                EXPECT_EQ(colorsOf(*bitmap), std::set<std::uint32_t>{0x80FF0000u});
        }
    }
}

TEST(ZDeviceScaleTest, TextMeasuresTheSameAndUsesAllPixels)
{
    const auto font = boost::make_shared<ZFont>("Arial", 12);
    const ZString text("Normal (D2 - E6)");
    ZBitmap plain(120, 16, 1.0);
    plain.SetFont(font);
    const ZRect measure = plain.StringBounds(text, {0, 0, 60, 100});
    for (const double factor : kScales) {
        ZBitmap bitmap(120, 16, factor);
        bitmap.SetFont(font);
        EXPECT_EQ(bitmap.StringWidth(text), plain.StringWidth(text)) << factor;
        EXPECT_EQ(bitmap.StringBounds(text, {0, 0, 60, 100}), measure) << factor;
    }
    ZBitmap doubled(120, 16, 2.0);
    doubled.SetFont(font);
    doubled.DrawString(text, doubled.GetFrame(), 1);
    const auto pixels = doubled.GetNative()->ReadPixels();
    std::int32_t unlike = 0;
    for (std::size_t i = 0; i < pixels.size(); i += 2)
        unlike += pixels[i] != pixels[i + 1] ? 1 : 0;
    EXPECT_GT(unlike, 50) << "the letters are enlarged pixels";
}

TEST(ZDeviceScaleTest, ThePictureOfTwiceTheSizeIsDrawnAboveScale1)
{
    ScaledApplication application;
    ZBitmap both("both.png", &application);
    EXPECT_EQ(both.GetFrame(), (ZRect{0, 0, 4, 3}));
    EXPECT_EQ(both.GetNativeFor(1.0)->GetWidth(), 4);
    const auto expected = both.GetNativeFor(2.0)->ReadPixels();
    ASSERT_EQ(expected.size(), 48U);
    ZBitmap twice(6, 5, 2.0);
    twice.DrawBitmap(both, 1, 1, 1.0f);
    for (std::int32_t y = 0; y < 6; ++y)
        for (std::int32_t x = 0; x < 8; ++x)
            EXPECT_EQ(pixelAt(twice, 2 + x, 2 + y), expected[static_cast<std::size_t>(8 * y + x)]);
    EXPECT_EQ(pixelAt(twice, 1, 2), 0U);
    EXPECT_EQ(pixelAt(twice, 10, 2), 0U);

    // A part in units of the picture, and other scales, come from it as well.
    ZBitmap part(2, 1, 2.0);
    part.DrawBitmap(both, 1, 1, 3, 2, 0, 0, 2, 1, 1.0f);
    EXPECT_EQ(pixelAt(part, 0, 0), expected[8 * 2 + 2]);
    EXPECT_EQ(pixelAt(part, 3, 1), expected[8 * 3 + 5]);
    ZBitmap between(4, 3, 1.5);
    // Larger than any surface, and further away than any pixel.
    between.DrawBitmap(both, 0, 0, 4, 3, 0, 0, 40000, 3, 1.0f);
    constexpr std::int32_t kFar = 2000000000;
    between.DrawBitmap(both, 0, 0, 4, 3, kFar, kFar, kFar + 4, kFar + 3, 1.0f);
    between.DrawBitmap(both, 0, 0, 1.0f);
    EXPECT_EQ(std::ranges::count(between.GetNative()->ReadPixels(), 0U), 0);

    for (const char* const name : {"single.png", "wrong.png"}) {
        ZBitmap single(name, &application);
        EXPECT_EQ(single.GetNativeFor(2.0)->GetWidth(), 4) << name;
        ZBitmap enlarged(4, 3, 2.0);
        enlarged.DrawBitmap(single, 0, 0, 1.0f);
        EXPECT_EQ(pixelAt(enlarged, 0, 0) >> 24, 255U);
        EXPECT_EQ(pixelAt(enlarged, 7, 5) >> 24, 255U);
    }
    both.FillRect(0, 0, 1, 1);
    EXPECT_EQ(both.GetNativeFor(2.0), both.GetNative()) << "what was drawn into it is lost";
}

TEST(ZDeviceScaleTest, ABitmapFitsContextsOfItsScale)
{
    const ZBitmap window(8, 8, 1.5);
    ZBitmap kept(4, 4, &window);
    EXPECT_EQ(kept.GetNative()->GetWidth(), 6);
    EXPECT_EQ(kept.GetWidth(), 4);
    EXPECT_TRUE(kept.Suits(window));
    EXPECT_FALSE(kept.Suits(ZBitmap(8, 8, nullptr)));
    kept.FillRect(0, 0, 2, 4);
    ZBitmap target(8, 8, 1.5);
    target.DrawBitmap(kept, 2, 2, 1.0f);
    EXPECT_EQ(pixelAt(target, 5, 5), 0xFF000000u);
    EXPECT_EQ(pixelAt(target, 6, 5), 0U);
}
