// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZBlitter.h"

#include "support/DisplayProbe.h"
#include "support/Test.h"
#include "support/VirtualDisplay.h"
#include "zlib/common/drawing/ZImage.h"

using namespace orvane;

namespace
{

constexpr std::int32_t kWidth = 900;
constexpr std::int32_t kHeight = 600;

/// A colour of its own for each of ten pictures.
std::uint32_t colorOf(std::int32_t picture)
{
    return 0x101010U + 0x123400U * static_cast<std::uint32_t>(picture);
}

// Pictures, each of them above the last one's lower part, come faster than any server takes them.
void expectWholePictures(ZBlitter::Route route)
{
    const VirtualDisplay display;
    DisplayProbe probe;
    const xcb_window_t window = probe.MakeWindow({0, 0, kWidth, kHeight});
    const XcbConnection connection(xcb_connect(nullptr, nullptr));
    ZBlitter blitter(connection.get(), probe.GetRoot(), 24, route);
    const auto image = ZImage::Create(kWidth, kHeight);
    for (std::int32_t i = 0; i < 10; ++i) {
        image->WritePixels(std::vector<std::uint32_t>(kWidth * kHeight, 0xFF000000U | colorOf(i)));
        blitter.Blit(window, *image, {0, 60 * i, kWidth + 50, kHeight + 50});
    }
    image->WritePixels(std::vector<std::uint32_t>(kWidth * kHeight, 0xFFFFFFFFU));
    blitter.Blit(window, *image, {100, 100, 101, 101});
    xcb_flush(connection.get());
    EXPECT_TRUE(waitFor([&] { return probe.PixelAt(100, 100) == 0xFFFFFFU; }));
    for (std::int32_t i = 0; i < 10; ++i) {
        EXPECT_EQ(probe.PixelAt(0, 60 * i), colorOf(i)) << i;
        EXPECT_EQ(probe.PixelAt(kWidth - 1, 60 * i + 59), colorOf(i)) << i;
    }
    EXPECT_EQ(probe.PixelAt(101, 100), colorOf(1));
}

}  // namespace

TEST(ZBlitterTest, PicturesArriveWhole)
{
    if (!VirtualDisplay::IsAvailable())
        GTEST_SKIP() << "no X server for tests";
    expectWholePictures(ZBlitter::Route::kBest);
    expectWholePictures(ZBlitter::Route::kConnection);
}
