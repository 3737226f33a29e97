// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZRegion.h"

#include "zlib/linux/drawing/ZCairo.h"

#include <algorithm>
#include <utility>

namespace orvane
{

struct ZRegion::Native
{
    CairoPointer<cairo_region_t> region;
};

namespace
{

// With this limit differences and translated edges still fit 32 bits.
constexpr std::int32_t kFarthestEdge = 1 << 24;

std::int32_t edge(std::int32_t value)
{
    return std::clamp(value, -kFarthestEdge, kFarthestEdge);
}

cairo_rectangle_int_t toCairo(const ZRect& rect)
{
    const ZRect near{edge(rect.left), edge(rect.top), edge(rect.right), edge(rect.bottom)};
    return {near.left, near.top, std::max(near.GetWidth(), 0), std::max(near.GetHeight(), 0)};
}

ZRect fromCairo(const cairo_rectangle_int_t& rect)
{
    return {rect.x, rect.y, rect.x + rect.width, rect.y + rect.height};
}

}  // namespace

ZRegion::ZRegion()
    : mNative(new Native{CairoPointer<cairo_region_t>(cairo_region_create())})
{
}

ZRegion::ZRegion(const ZRect& rect)
    : ZRegion()
{
    Add(rect);
}

ZRegion::ZRegion(const ZRegion& other)
    : mNative(
          new Native{CairoPointer<cairo_region_t>(cairo_region_copy(other.mNative->region.get()))})
{
}

ZRegion& ZRegion::operator=(const ZRegion& other)
{
    mNative->region.reset(cairo_region_copy(other.mNative->region.get()));
    return *this;
}

ZRegion::~ZRegion() = default;

void ZRegion::Add(const ZRect& rect)
{
    const cairo_rectangle_int_t added = toCairo(rect);
    cairo_region_union_rectangle(mNative->region.get(), &added);
}

void ZRegion::Subtract(const ZRegion& other)
{
    cairo_region_subtract(mNative->region.get(), other.mNative->region.get());
}

void ZRegion::Translate(std::int32_t x, std::int32_t y)
{
    cairo_region_translate(mNative->region.get(), edge(x), edge(y));
}

bool ZRegion::IsEmpty() const
{
    return cairo_region_is_empty(mNative->region.get());
}

ZRect ZRegion::GetBounds() const
{
    if (IsEmpty())
        return {};
    cairo_rectangle_int_t bounds;
    cairo_region_get_extents(mNative->region.get(), &bounds);
    return fromCairo(bounds);
}

std::vector<ZRect> ZRegion::GetRects() const
{
    std::vector<ZRect> rects;
    for (int i = 0; i < cairo_region_num_rectangles(mNative->region.get()); ++i) {
        cairo_rectangle_int_t rect;
        cairo_region_get_rectangle(mNative->region.get(), i, &rect);
        rects.push_back(fromCairo(rect));
    }
    return rects;
}

}  // namespace orvane
