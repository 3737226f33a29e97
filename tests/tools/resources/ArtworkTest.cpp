// SPDX-License-Identifier: GPL-3.0-or-later
#include "resources/KestruneResources.h"
#include "tools/resources/ArtworkTable.h"
#include "tools/resources/PixelFont.h"
#include "tools/resources/TrueTypeFile.h"
#include "zlib/common/objects/ZResources.h"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

using namespace orvane;

namespace
{

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

/// The four premultiplied bytes of each pixel.
std::span<const unsigned char> bytesOf(const ArtworkSurface& picture)
{
    const int bytes = cairo_image_surface_get_stride(picture.get()) *
                      cairo_image_surface_get_height(picture.get());
    return {cairo_image_surface_get_data(picture.get()), static_cast<std::size_t>(bytes)};
}

const PixelFont& labelFont()
{
    static const PixelFont font = PixelFont::read(KESTRUNE_FONT_DRAWINGS);
    return font;
}

}  // namespace

// scripts/make-artwork brings the packed files up to date after a change.
TEST(ArtworkTest, PackedPicturesAreWhatTheProgramPaints)
{
    constexpr int kTolerance = 2;  // of 255: versions of cairo round differently
    for (const Artwork& artwork : artworkTable()) {
        SCOPED_TRACE(artwork.name);
        const ArtworkSurface packed = packedPicture(artwork.name);
        const ArtworkSurface painted = paintArtwork(artwork, labelFont());
        EXPECT_EQ(cairo_image_surface_get_width(packed.get()), artwork.width);
        ASSERT_EQ(bytesOf(packed).size(), bytesOf(painted).size());
        EXPECT_TRUE(std::ranges::equal(bytesOf(packed), bytesOf(painted), [](int one, int other) {
            return std::abs(one - other) <= kTolerance;
        }));
    }
}

TEST(ArtworkTest, PackedFontIsWhatTheDrawingsGive)
{
    const auto packed = kestruneResources().Find("FONT", "Kolm 5pt.ttf");
    ASSERT_TRUE(packed);
    const std::vector<std::uint8_t> made = trueTypeFile(labelFont(), "Kolm 5pt");
    EXPECT_TRUE(std::ranges::equal(*packed, std::as_bytes(std::span(made))));
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
