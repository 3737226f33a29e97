// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/views/KestruneFonts.h"
#include "kestrune/common/views/ProductApplication.h"
#include "support/PrivateFolder.h"
#include "zlib/common/drawing/Canvas.h"
#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/views/ZWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

/// The mean of each channel over squares of 8 by 8 pixels, row by row: what stays when another
/// version of the font library shades the edges of letters otherwise.
std::vector<std::array<double, 3>> meansOf(const ZImage& image)
{
    constexpr std::int32_t kSide = 8;
    const std::int32_t columns = (image.GetWidth() + kSide - 1) / kSide;
    const std::int32_t rows = (image.GetHeight() + kSide - 1) / kSide;
    std::vector<std::array<double, 3>> means(static_cast<std::size_t>(columns * rows));
    const auto pixels = image.GetPremultipliedPixels();
    for (std::int32_t y = 0; y < image.GetHeight(); ++y)
        for (std::int32_t x = 0; x < image.GetWidth(); ++x) {
            const auto pixel = pixels[static_cast<std::size_t>(y * image.GetWidth() + x)];
            auto& mean = means[static_cast<std::size_t>(y / kSide * columns + x / kSide)];
            for (std::size_t i = 0; i < mean.size(); ++i)
                mean[i] += (pixel >> (8 * i) & 0xFF) / double{kSide * kSide};
        }
    return means;
}

bool areAlike(const std::array<double, 3>& a, const std::array<double, 3>& b)
{
    constexpr double kTolerance = 24.0;
    return std::equal(a.begin(), a.end(), b.begin(),
                      [](double x, double y) { return std::abs(x - y) < kTolerance; });
}

/// The shipped product with its window, as the host shell starts it.
class MainWindowTest : public testing::Test
{
protected:
    const ZInterfaceLock mLock;
    const std::unique_ptr<ZPlugin> mProduct = startProduct();
    ZWindow& mWindow = *mProduct->GetMainWindow();
};

std::int32_t widthIn(const char* typeface)
{
    Canvas canvas(10, 10);
    canvas.SetFont(boost::make_shared<ZFont>(typeface, 5));
    return canvas.StringWidth("PITCH RANGE:");
}

}  // namespace

TEST_F(MainWindowTest, ItsLabelsAreSetInTheFontThatTheLibraryCarries)
{
    ASSERT_TRUE(mProduct->GetFonts().empty());
    const std::int32_t fallback = widthIn("No Such Typeface");
    addProductFonts(*mProduct);
    EXPECT_EQ(widthIn("No Such Typeface"), fallback);
    EXPECT_NE(widthIn("Kolm 5pt"), fallback);
}

// The picture is what `kestrune-render --window` makes; it is made anew when the window is meant to
// look otherwise.
TEST_F(MainWindowTest, LooksAsItDid)
{
    addProductFonts(*mProduct);
    const auto now = meansOf(*mWindow.RenderOffscreen().GetNative());
    const std::string png = readTextFile(KESTRUNE_WINDOW_PICTURE);
    const auto stored = ZImage::Decode(std::as_bytes(std::span(png)));
    ASSERT_NE(stored, nullptr);
    const auto then = meansOf(*stored);
    ASSERT_EQ(now.size(), then.size());
    std::size_t unlike = 0;
    for (std::size_t i = 0; i < now.size(); ++i)
        unlike += areAlike(now[i], then[i]) ? 0 : 1;
    EXPECT_LE(unlike, 2u) << "squares of " << now.size();
}

}  // namespace orvane
