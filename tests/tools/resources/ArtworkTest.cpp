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
#include <tuple>
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

/// A picture as the library carries it.
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

TEST(ArtworkTest, PackedPicturesAreWhatTheProgramPaintsWithEightBitsAChannelAndAlpha)
{
    constexpr int kTolerance = 2;  // of 255: another version of the drawing library may round
    for (const Artwork& artwork : artworkTable()) {
        SCOPED_TRACE(artwork.name);
        const auto bytes = kestruneResources().Find("IMAGE", artwork.name);
        ASSERT_TRUE(bytes);
        // Depth and colour type stand in the header chunk, behind signature, chunk head and size.
        EXPECT_EQ(std::to_integer<int>((*bytes)[24]), 8);
        EXPECT_EQ(std::to_integer<int>((*bytes)[25]), 6) << "not RGB with alpha";
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

TEST(ArtworkTest, WhiteKeysAreClearExactlyWhereABlackKeyLies)
{
    constexpr int kMiddleOfCut = 45;
    for (const auto& [set, end] :
         {std::pair{"nk", ".png"}, {"nkl", "_RedDot.png"}, {"nkd", ".png"}}) {
        // First and last column of each upper part; between keys is a gap of one.
        for (const auto& [shape, first, last] :
             {std::tuple{"1", 0, 28}, {"2", 13, 28}, {"3", 13, 39}}) {
            SCOPED_TRACE(std::string(set) + shape);
            const ArtworkSurface key = packedPicture(std::string(set) + shape + end);
            for (int x = 0; x < 41; ++x)
                EXPECT_EQ(pixelAt(key.get(), x, kMiddleOfCut).alpha() != 0, x >= first && x <= last)
                    << x;
        }
    }
}

TEST(ArtworkTest, NamesOnKeysAndLabelsOnTheBackgroundAreReadable)
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

/// Lets the drawing libraries give back their fonts, so that a leak checker tells of real leaks
/// alone.
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
