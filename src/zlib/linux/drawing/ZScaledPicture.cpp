// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/drawing/ZScaledPicture.h"

#include "zlib/common/drawing/ZDeviceScale.h"
#include "zlib/linux/drawing/ZPictureCopies.h"
#include "zlib/linux/drawing/ZPixelGrid.h"

#include <algorithm>
#include <cstdint>

namespace orvane
{

namespace
{

/// One direction of the way from the image's pixels to the target.
struct Way
{
    double first;   // the source's first pixel
    double length;  // in pixels
    std::int32_t target;
    std::int32_t targetLength;

    [[nodiscard]] double Of(std::int32_t pixel) const
    {
        const double share = std::clamp((pixel - first) / length, 0.0, 1.0);
        return within(target + share * targetLength);
    }
};

/// Makes the picture the context's source and its area the path, by any transform.
void placeByTransform(cairo_t* context, const ZImage& image, const ZRect& part, const ZEdges& edges)
{
    const auto surface = surfaceOfPart(image, part);
    cairo_translate(context, edges.left, edges.top);
    cairo_scale(context, (edges.right - edges.left) / part.GetWidth(),
                (edges.bottom - edges.top) / part.GetHeight());
    cairo_rectangle(context, 0.0, 0.0, part.GetWidth(), part.GetHeight());
    cairo_set_source_surface(context, surface.get(), 0.0, 0.0);
}

/// Makes the picture the context's source and its area the path, pixel by pixel.
void placeOnPixels(cairo_t* context, const ZImage& image, const ZRect& part, const ZEdges& edges,
                   double scale)
{
    const ZRect place = nearestPixels(context, edges, scale);
    const ZPoint size{place.GetWidth(), place.GetHeight()};
    const bool isSameSize = part.GetWidth() == size.x && part.GetHeight() == size.y;
    const auto surface = isSameSize ? surfaceOfPart(image, part) : copyAtSize(image, part, size);
    if (!surface)
        return placeByTransform(context, image, part, edges);
    cairo_surface_set_device_scale(surface.get(), scale, scale);
    cairo_identity_matrix(context);
    const double left = place.left / scale;
    const double top = place.top / scale;
    cairo_rectangle(context, left, top, size.x / scale, size.y / scale);
    cairo_set_source_surface(context, surface.get(), left, top);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
}

}  // namespace

bool ZScaledPicture::SetSource(cairo_t* context, const ZImage& image) const
{
    const double pixels = image.GetScale();
    const ZRect part = ZDeviceScale(pixels).ToPixels(source).Intersection(
        {0, 0, image.GetWidth(), image.GetHeight()});
    if (part.IsEmpty() || target.IsEmpty())
        return false;
    const Way across{source.left * pixels, source.GetWidth() * pixels, target.left,
                     target.GetWidth()};
    const Way down{source.top * pixels, source.GetHeight() * pixels, target.top,
                   target.GetHeight()};
    const ZEdges edges{across.Of(part.left), down.Of(part.top), across.Of(part.right),
                       down.Of(part.bottom)};
    if (edges.right <= edges.left || edges.bottom <= edges.top)
        return false;
    cairo_new_path(context);
    if (onlyTranslates(context))
        placeOnPixels(context, image, part, edges, scale);
    else
        placeByTransform(context, image, part, edges);
    cairo_clip(context);
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
    return true;
}

}  // namespace orvane
