// SPDX-License-Identifier: GPL-3.0-or-later
#include "resources/KestruneResources.h"
#include "tools/resources/ArtworkTable.h"
#include "tools/resources/PixelFont.h"
#include "zlib/common/objects/ZResources.h"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <utility>

using namespace orvane;

namespace
{

struct Pixel
{
    std::uint32_t value;  // premultiplied, alpha in the top byte

    [[nodiscard]] int channel(unsigned shift) const
    {
        return static_cast<int>((value >> shift) & 0xFF);
    }
    [[nodiscard]] int alpha() const { return channel(24); }
};

Pixel pixelAt(cairo_surface_t* surface, int x, int y)
{
    const unsigned char* const row = cairo_image_surface_get_data(surface) +
                                     std::ptrdiff_t{y} * cairo_image_surface_get_stride(surface);
    Pixel pixel{};
    std::memcpy(&pixel.value, row + std::ptrdiff_t{x} * 4, sizeof pixel.value);
    return pixel;
}

cairo_status_t readBytes(void* source, unsigned char* target, unsigned count)
{
    auto& bytes = *static_cast<std::span<const std::byte>*>(source);
    if (bytes.size() < count)
        return CAIRO_STATUS_READ_ERROR;
    std::memcpy(target, bytes.data(), count);
    bytes = bytes.subspan(count);
    return CAIRO_STATUS_SUCCESS;
}

/// A picture as it is packed into the library.
ArtworkSurface packedPicture(const std::string& name)
{
    std::span<const std::byte> bytes = kestruneResources().Find("IMAGE", name).value();
    return ArtworkSurface(cairo_image_surface_create_from_png_stream(readBytes, &bytes));
}

const PixelFont& labelFont()
{
    static const PixelFont font = PixelFont::read(KESTRUNE_FONT_DRAWINGS);
    return font;
}

int largestDifference(Pixel left, Pixel right)
{
    int largest = 0;
    for (const unsigned shift : {0u, 8u, 16u, 24u})
        largest = std::max(largest, std::abs(left.channel(shift) - right.channel(shift)));
    return largest;
}

/// Relative luminance of an sRGB colour, after the Web Content Accessibility Guidelines 2.1.
double luminance(Pixel pixel)
{
    const auto linear = [&](unsigned shift) {
        const double part = pixel.channel(shift) / 255.0;
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

double contrast(Pixel one, Pixel other)
{
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

constexpr Pixel kBlack{0xFF000000};
constexpr Pixel kWhite{0xFFFFFFFF};
constexpr Pixel kLabelGrey{0xFFB6B6B6};

struct Area
{
    int left;
    int top;
    int right;
    int bottom;
};

double leastContrast(const std::string& name, const Area& area, Pixel text)
{
    const ArtworkSurface picture = packedPicture(name);
    double least = 21.0;
    for (int y = area.top; y < area.bottom; ++y)
        for (int x = area.left; x < area.right; ++x)
            least = std::min(least, contrast(pixelAt(picture.get(), x, y), text));
    return least;
}

}  // namespace

TEST(ArtworkTest, PackedPicturesAreWhatTheProgramPaints)
{
    constexpr int kTolerance = 2;  // of 255: versions of cairo round differently
    for (const Artwork& artwork : artworkTable()) {
        SCOPED_TRACE(artwork.name);
        const ArtworkSurface packed = packedPicture(artwork.name);
        ASSERT_EQ(cairo_image_surface_get_width(packed.get()), artwork.width);
        ASSERT_EQ(cairo_image_surface_get_height(packed.get()), artwork.height);
        const ArtworkSurface painted = paintArtwork(artwork, labelFont());
        int largest = 0;
        for (int y = 0; y < artwork.height; ++y)
            for (int x = 0; x < artwork.width; ++x)
                largest = std::max(largest, largestDifference(pixelAt(packed.get(), x, y),
                                                              pixelAt(painted.get(), x, y)));
        EXPECT_LE(largest, kTolerance) << "scripts/make-artwork was not run after a change";
    }
}

TEST(ArtworkTest, NamesAndLabelsContrastWithThePicturesBelow)
{
    constexpr double kReadable = 4.5;
    constexpr Area kWhiteName{14, 12, 27, 24};
    constexpr Area kBlackName{5, 12, 20, 36};
    for (const char* key : {"nk2.png", "nkl2_RedDot.png", "nkd2.png"})
        EXPECT_GE(leastContrast(key, kWhiteName, kBlack), kReadable) << key;
    for (const char* key : {"nk4.png", "nkl4_RedDot.png"})
        EXPECT_GE(leastContrast(key, kBlackName, kWhite), kReadable) << key;
    EXPECT_GE(leastContrast("nkd4.png", kBlackName, kBlack), kReadable);
    EXPECT_GE(leastContrast("RedGradientBlackTop.png", {14, 47, 110, 57}, kLabelGrey), kReadable);
    EXPECT_GE(leastContrast("RedGradientBlackTop.png", {8, 90, 450, 420}, kLabelGrey), kReadable);
}

TEST(ArtworkTest, RimOfAnUncheckedBoxContrastsWithThePanel)
{
    constexpr double kVisible = 3.0;  // what the guidelines ask of controls
    constexpr Area kPanel{8, 90, 450, 420};
    const ArtworkSurface box = packedPicture("GreenCheckBoxOff.png");
    for (const auto& [x, y] : {std::pair{7, 0}, {13, 6}, {7, 12}, {0, 6}}) {
        const Pixel rim = pixelAt(box.get(), x, y);
        EXPECT_EQ(rim.alpha(), 255) << x << ", " << y;
        EXPECT_GE(leastContrast("RedGradientBlackTop.png", kPanel, rim), kVisible)
            << x << ", " << y;
    }
}

/// Frees the caches of the drawing libraries, so that a leak checker reports real leaks only.
class DrawingCaches : public testing::Environment
{
public:
    void TearDown() override
    {
        cairo_debug_reset_static_data();
        FcFini();
    }
};

const auto* const kDrawingCaches = testing::AddGlobalTestEnvironment(new DrawingCaches);
