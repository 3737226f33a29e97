// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/drawing/ZPictureCopies.h"

#include "zlib/common/drawing/ZPictureScaler.h"
#include "zlib/linux/drawing/ZImageNative.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace orvane
{

namespace
{

// A picture is drawn at few sizes: those of one scale, which differ by a pixel with the place.
constexpr std::size_t kMostCopies = 8;

std::uint32_t* pixelsOf(cairo_surface_t* surface)
{
    return reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(surface));
}

/// In pixels.
std::ptrdiff_t strideOf(cairo_surface_t* surface)
{
    return cairo_image_surface_get_stride(surface) /
           static_cast<std::ptrdiff_t>(sizeof(std::uint32_t));
}

CairoPointer<cairo_surface_t> scaledPart(const ZImage& image, const ZRect& part, const ZPoint& size)
{
    CairoPointer<cairo_surface_t> copy(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.x, size.y));
    if (cairo_surface_status(copy.get()) != CAIRO_STATUS_SUCCESS)
        return nullptr;
    const auto source = surfaceOfPart(image, part);
    cairo_surface_flush(copy.get());
    ZPictureScaler(ZPoint{part.GetWidth(), part.GetHeight()}, size)
        .Scale(pixelsOf(source.get()), strideOf(source.get()), pixelsOf(copy.get()),
               strideOf(copy.get()));
    cairo_surface_mark_dirty(copy.get());
    return copy;
}

}  // namespace

CairoPointer<cairo_surface_t> surfaceOfPart(const ZImage& image, const ZRect& part)
{
    cairo_surface_t* const whole = image.GetNative().surface.get();
    assert(part.left >= 0 && part.top >= 0);
    assert(part.right <= image.GetWidth() && part.bottom <= image.GetHeight());
    cairo_surface_flush(whole);
    const int stride = cairo_image_surface_get_stride(whole);
    constexpr std::ptrdiff_t kPixelBytes = 4;
    unsigned char* const first = cairo_image_surface_get_data(whole) +
                                 std::ptrdiff_t{part.top} * stride + part.left * kPixelBytes;
    return CairoPointer<cairo_surface_t>(cairo_image_surface_create_for_data(
        first, CAIRO_FORMAT_ARGB32, part.GetWidth(), part.GetHeight(), stride));
}

CairoPointer<cairo_surface_t> copyAtSize(const ZImage& image, const ZRect& part, const ZPoint& size)
{
    ZImage::Native& native = image.GetNative();
    for (const auto& copy : native.copies)
        if (copy.part == part && copy.size == size)
            return CairoPointer<cairo_surface_t>(cairo_surface_reference(copy.surface.get()));
    auto copy = scaledPart(image, part, size);
    if (copy && native.keepsCopies) {
        if (native.copies.size() >= kMostCopies)
            native.copies.erase(native.copies.begin());
        native.copies.push_back(
            {part, size, CairoPointer<cairo_surface_t>(cairo_surface_reference(copy.get()))});
    }
    return copy;
}

}  // namespace orvane
