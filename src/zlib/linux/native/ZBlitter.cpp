// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZBlitter.h"

#include "zlib/common/drawing/ZImage.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace orvane
{

namespace
{

// Bytes of pixels in one request: small enough to let the server serve other programs in between.
constexpr std::size_t kMostBytes = 200'000;

std::size_t pixelsOfRequest(xcb_connection_t* connection)
{
    const std::size_t bytes = std::size_t{xcb_get_maximum_request_length(connection)} * 4;
    static_assert(kMostBytes > sizeof(xcb_put_image_request_t));
    return (std::min(bytes, kMostBytes) - sizeof(xcb_put_image_request_t)) / 4;
}

bool hasOtherByteOrder(xcb_connection_t* connection)
{
    const bool theirsIsLittle =
        xcb_get_setup(connection)->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    return theirsIsLittle != (std::endian::native == std::endian::little);
}

/// A graphics context is made for a drawable of the right depth: a pixmap, since a window might no
/// longer exist.
xcb_gcontext_t makeContext(xcb_connection_t* connection, xcb_window_t root, std::uint8_t depth)
{
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    const xcb_gcontext_t context = xcb_generate_id(connection);
    const std::uint32_t noExposures = 0;
    xcb_create_pixmap(connection, depth, pixmap, root, 1, 1);
    xcb_create_gc(connection, context, pixmap, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    xcb_free_pixmap(connection, pixmap);
    return context;
}

}  // namespace

ZBlitter::ZBlitter(xcb_connection_t* connection, xcb_window_t root, std::uint8_t depth, Route route)
    : mConnection(connection)
    , mDepth(depth)
    , mSwapsBytes(hasOtherByteOrder(connection))
    , mShared(route == Route::kBest ? ZSharedPixels::Create(connection) : nullptr)
    , mContext(makeContext(connection, root, depth))
{
    assert(connection && root != XCB_NONE);
}

void ZBlitter::Blit(xcb_window_t window, const ZImage& image, const ZRect& rect)
{
    const ZRect part = rect.Intersection({0, 0, image.GetWidth(), image.GetHeight()});
    if (part.IsEmpty())
        return;
    const auto width = static_cast<std::size_t>(part.GetWidth());
    const auto rows = static_cast<std::int32_t>(std::max(GetLimit() / width, std::size_t{1}));
    for (std::int32_t top = part.top; top < part.bottom; top += rows)
        BlitRows(window, image, {part.left, top, part.right, std::min(top + rows, part.bottom)});
}

void ZBlitter::BlitRows(xcb_window_t window, const ZImage& image, const ZRect& rows)
{
    assert(!rows.IsEmpty() && rows.bottom <= image.GetHeight() && rows.right <= image.GetWidth());
    const auto pixels = image.GetPremultipliedPixels();
    const auto stride = static_cast<std::size_t>(image.GetWidth());
    const auto width = static_cast<std::size_t>(rows.GetWidth());
    const auto out = Reserve(width * static_cast<std::size_t>(rows.GetHeight()));
    auto to = out.begin();
    for (std::int32_t y = rows.top; y < rows.bottom; ++y) {
        const auto row = pixels.subspan(
            static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(rows.left), width);
        to = std::copy(row.begin(), row.end(), to);
    }
    if (mSwapsBytes)
        std::transform(out.begin(), out.end(), out.begin(),
                       [](std::uint32_t pixel) { return __builtin_bswap32(pixel); });
    const xcb_rectangle_t place{
        static_cast<std::int16_t>(rows.left), static_cast<std::int16_t>(rows.top),
        static_cast<std::uint16_t>(rows.GetWidth()), static_cast<std::uint16_t>(rows.GetHeight())};
    if (mShared)
        mShared->Put(window, mContext, mDepth, place);
    else
        xcb_put_image(mConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, mContext, place.width,
                      place.height, place.x, place.y, 0, mDepth,
                      static_cast<std::uint32_t>(out.size_bytes()),
                      reinterpret_cast<const std::uint8_t*>(out.data()));
}

std::span<std::uint32_t> ZBlitter::Reserve(std::size_t count)
{
    if (mShared)
        return mShared->Reserve(count);
    mCopy.resize(count);
    return mCopy;
}

std::size_t ZBlitter::GetLimit() const
{
    return mShared ? ZSharedPixels::kCapacity : pixelsOfRequest(mConnection);
}

}  // namespace orvane
