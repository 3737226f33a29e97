#include "tools/resources/ArtworkTable.h"
#include "tools/resources/PixelFont.h"

#include "resources/KestruneResources.h"
#include "zlib/common/ZResources.h"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

using namespace orvane;

namespace
{

struct PictureSize
{
    const char* name;
    int width;
    int height;
};

/// The geometry of the window's views rests on these sizes.
constexpr PictureSize kPictures[] = {
    {"RedGradientBlackTop.png", 456, 432},
    {"KestruneMiniLogo.png", 135, 20},
    {"OrvaneLogoPluginHeader.png", 31, 27},
    {"GreenCheckBoxOn.png", 14, 14},
    {"GreenCheckBoxOff.png", 14, 14},
    {"CheckBoxDisabled.png", 14, 14},
    {"MetalHorizSliderThumb.png", 33, 20},
    {"MIDI_Input72_On.png", 72, 15},
    {"MIDI_Input72_Off.png", 72, 15},
    {"MIDI_Input72_Over.png", 72, 15},
    {"Reset72_Off.png", 72, 15},
    {"Reset72_Over.png", 72, 15},
    {"Reset72_Down.png", 72, 15},
    {"Add_Scale72_Off.png", 72, 15},
    {"Add_Scale72_Over.png", 72, 15},
    {"Add_Scale72_Down.png", 72, 15},
    {"nk1.png", 41, 147},
    {"nk2.png", 41, 147},
    {"nk3.png", 41, 147},
    {"nk4.png", 25, 90},
    {"nkl1_RedDot.png", 41, 147},
    {"nkl2_RedDot.png", 41, 147},
    {"nkl3_RedDot.png", 41, 147},
    {"nkl4_RedDot.png", 25, 90},
    {"nkd1.png", 41, 147},
    {"nkd2.png", 41, 147},
    {"nkd3.png", 41, 147},
    {"nkd4.png", 25, 90},
};

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

TEST(ArtworkTest, EveryPictureIsPackedAtItsSizeWithEightBitsAChannelAndAlpha)
{
    EXPECT_EQ(std::size(kPictures), artworkTable().size());
    for (const PictureSize& size : kPictures) {
        SCOPED_TRACE(size.name);
        const auto bytes = kestruneResources().Find("IMAGE", size.name);
        ASSERT_TRUE(bytes);
        // Depth and colour type stand in the header chunk, behind signature, chunk head and size.
        EXPECT_EQ(std::to_integer<int>((*bytes)[24]), 8);
        EXPECT_EQ(std::to_integer<int>((*bytes)[25]), 6) << "not RGB with alpha";
        const ArtworkSurface picture = packedPicture(size.name);
        EXPECT_EQ(cairo_image_surface_get_width(picture.get()), size.width);
        EXPECT_EQ(cairo_image_surface_get_height(picture.get()), size.height);
    }
}

TEST(ArtworkTest, PackedPicturesAreWhatTheProgramPaints)
{
    constexpr int kTolerance = 2;  // of 255: another version of the drawing library may round
    for (const Artwork& artwork : artworkTable()) {
        SCOPED_TRACE(artwork.name);
        const ArtworkSurface packed = packedPicture(artwork.name);
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
    for (const char* set : {"nk", "nkl", "nkd"}) {
        const std::string end = std::string(set) == "nkl" ? "_RedDot.png" : ".png";
        const auto isClear = [&](const char* shape, int x) {
            const ArtworkSurface key = packedPicture(set + std::string(shape) + end);
            return pixelAt(key.get(), x, kMiddleOfCut).alpha() == 0;
        };
        SCOPED_TRACE(set);
        EXPECT_FALSE(isClear("1", 0) || isClear("1", 28));
        EXPECT_TRUE(isClear("1", 29));
        EXPECT_TRUE(isClear("2", 12) && isClear("2", 29));
        EXPECT_FALSE(isClear("2", 13) || isClear("2", 28));
        EXPECT_TRUE(isClear("3", 12));
        EXPECT_FALSE(isClear("3", 13) || isClear("3", 39));
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

TEST(ArtworkTest, LabelsOfTheWindowStandOnOneLineInTheirPlaces)
{
    struct Label
    {
        const char* text;
        int width;  // of its view, or up to the view beside it where that is nearer
    };
    for (const Label& label :
         {Label{"PITCH RANGE:", 96}, Label{"TRANSPOSE", 84}, Label{"PITCH", 30}, Label{"SIZE", 25},
          Label{"CORRECT PITCH", 104}, Label{"SCALE", 35}, Label{"KEY", 23},
          Label{"PITCH CORRECTION", 94}, Label{"MORE", 27}, Label{"LESS", 27}, Label{"IGNORE:", 75},
          Label{"CUSTOM SCALE", 75}, Label{"TUNING", 36}, Label{"METER", 36}, Label{"-200", 24}})
        EXPECT_LE(labelFont().textWidth(label.text) + PixelFont::kGapColumns, label.width)
            << label.text;
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
