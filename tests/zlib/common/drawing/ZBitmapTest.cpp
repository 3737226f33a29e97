// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZBitmap.h"

#include "support/PngBytes.h"
#include "support/SmallApplication.h"
#include "support/Test.h"
#include "support/TextMutation.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/objects/ZResources.h"

using namespace orvane;

namespace
{

/// An application with pictures among its resources, and with files for others.
struct PictureApplication : SmallApplication
{
    PictureApplication() { resources = ZResources(mEntries); }

    PngBytes mPicture = makePng(4, 3);
    PngBytes mOpaque = makePng(2, 2, false);
    PngBytes mBroken = PngBytes(mPicture.begin(), mPicture.end() - 30);
    std::array<ZResources::Entry, 3> mEntries{{pictureEntry("nk1.png", mPicture),
                                               pictureEntry("opaque.png", mOpaque),
                                               pictureEntry("broken.png", mBroken)}};
};

}  // namespace

TEST(ZBitmapTest, StaysEmptyWithoutAPicture)
{
    PictureApplication application;
    for (const char* name : {"", "missing.png", "broken.png"}) {
        SCOPED_TRACE(name);
        ZBitmap bitmap(name, &application);
        EXPECT_FALSE(bitmap.IsLoaded());
        EXPECT_EQ(bitmap.GetFrame(), ZRect{});
        EXPECT_TRUE(bitmap.LockPixels().empty());
        Canvas canvas(2, 2);
        canvas.DrawBitmap(bitmap, 0, 0, 1.0f);
        canvas.DrawBitmap(bitmap, 0, 0, 2, 2, 0, 0, 2, 2, 0.5f);
        EXPECT_EQ(canvas.Coverage(), 0.0);
    }
}

TEST(ZBitmapTest, BitmapsShareAResourceUntilDrawnInto)
{
    PictureApplication application;
    EXPECT_EQ(ZBitmap("opaque.png", &application).LockPixels()[3], 0xFF03090Fu);
    ZBitmap drawn("nk1.png", &application);
    ZBitmap locked("nk1.png", &application);
    const ZBitmap kept("NK1.png", &application);
    const auto before = kept.GetNative()->ReadPixels();
    EXPECT_EQ(kept.GetFrame(), (ZRect{0, 0, 4, 3}));
    EXPECT_EQ(before[5], 0xFF050F19u);
    EXPECT_EQ(drawn.GetNative(), kept.GetNative());
    drawn.FillRect(0, 0, 1, 1);
    locked.LockPixels()[1] = 0xFF112233u;
    locked.UnlockPixels();
    EXPECT_EQ(kept.GetNative()->ReadPixels(), before);
    auto expected = before;
    expected[0] = 0xFF000000u;
    EXPECT_EQ(drawn.GetNative()->ReadPixels(), expected);
    expected = before;
    expected[1] = 0xFF112233u;
    EXPECT_EQ(locked.GetNative()->ReadPixels(), expected);
}

TEST(ZBitmapTest, DrawsWithItsAlphaTimesTheOneGiven)
{
    Canvas source(2, 1);
    source.LockPixels()[0] = 0xFFFF0000u;
    source.LockPixels()[1] = 0x80FF0000u;
    source.UnlockPixels();
    Canvas canvas(2, 1);
    canvas.DrawBitmap(source, {0, 0}, 1.0f);
    EXPECT_EQ(canvas.Pixels(), source.Pixels());
    Canvas half(2, 1);
    half.DrawBitmap(source, {0, 0}, 0.5f);
    EXPECT_NEAR(half.AlphaAt(0, 0), 128.0, 1.0);
    EXPECT_NEAR(half.AlphaAt(1, 0), 64.0, 1.0);
    Canvas enlarged(8, 8);
    canvas.SetAlphaBlend(false);
    canvas.FillRect(0, 0, 2, 1);
    enlarged.DrawBitmap(canvas, -1, -1, 3, 3, 0, 0, 8, 8, 1.0f);
    EXPECT_EQ(enlarged.Ink(), (ZRect{2, 2, 6, 4})) << "a part beyond the picture draws nothing";
    EXPECT_EQ(enlarged.Coverage(), 8.0);
}

TEST(ZBitmapTest, LockedPixelsAreKeptWithoutLoss)
{
    Canvas bitmap(256, 256);
    std::mt19937 random(7);
    auto pixels = bitmap.LockPixels();
    for (std::uint32_t& pixel : pixels)
        pixel = static_cast<std::uint32_t>(random());
    bitmap.UnlockPixels();
    const auto before = bitmap.Pixels();
    EXPECT_FALSE(bitmap.LockPixels().empty());
    bitmap.UnlockPixels();
    EXPECT_EQ(bitmap.Pixels(), before);
}

TEST(ZBitmapTest, AShadowIsTheMeanOverTheSquareAroundEachPixel)
{
    Canvas source(7, 5);
    source.FillRect(3, 2, 4, 3);
    const auto shadow = source.MakeShadow(1, {0, 0, 0, 180});
    const auto pixels = shadow->GetNative()->ReadPixels();
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const bool isNear = i % 7 >= 2 && i % 7 <= 4 && i / 7 >= 1 && i / 7 <= 3;
        EXPECT_EQ(pixels[i], isNear ? 180u / 9 << 24 : 0u) << i;
    }
}

TEST(ZImageTest, DecodesNoCutOrTooLargePicture)
{
    const PngBytes png = makePng(9, 9);
    ASSERT_NE(ZImage::Decode(png), nullptr);
    EXPECT_TRUE(ZImage::ReadSize(png));
    for (std::size_t length = 0; length < png.size() - 12; ++length) {
        EXPECT_EQ(ZImage::Decode(std::span(png).first(length)), nullptr) << length;
        EXPECT_FALSE(ZImage::ReadSize(std::span(png).first(length))) << length;
    }
    for (const ZPoint size : {ZPoint{0, 5}, ZPoint{30000, 1}, ZPoint{1, 0x7FFFFFFF},
                              ZPoint{16384, 16384}, ZPoint{-1, 1}})
    {
        PngBytes resized = png;
        putBigEndian(std::span(resized).subspan(16), static_cast<std::uint32_t>(size.x));
        putBigEndian(std::span(resized).subspan(20), static_cast<std::uint32_t>(size.y));
        repairCheckSums(resized);
        EXPECT_EQ(ZImage::Decode(resized), nullptr) << size.x << " x " << size.y;
    }
}

TEST(ZImageTest, SpoiltBytesGiveAPictureOrNone)
{
    std::mt19937 random(20);
    const PngBytes whole = makePng(11, 7);
    for (int run = 0; run < 3000; ++run) {
        PngBytes png = whole;
        for (std::size_t spoilt = 0; spoilt <= pick(random, 4); ++spoilt)
            png[pick(random, png.size())] = static_cast<std::byte>(pick(random, 256));
        if (pick(random, 4) != 0)
            repairCheckSums(png);
        const auto image = ZImage::Decode(png);
        const auto size = ZImage::ReadSize(png);
        if (!image)
            continue;
        EXPECT_TRUE(!size || size->width == image->GetWidth());
        EXPECT_EQ(image->ReadPixels().size(), static_cast<std::size_t>(image->GetWidth()) *
                                                  static_cast<std::size_t>(image->GetHeight()));
    }
}
