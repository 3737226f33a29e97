// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZGradientBrush.h"

#include "zlib/linux/drawing/ZGradientBrushNative.h"

#include <boost/make_shared.hpp>

#include <cassert>
#include <utility>

namespace orvane
{

boost::shared_ptr<ZGradientBrush> ZGradientBrush::Make(const ZPoint& from, const ZPoint& to,
                                                       std::span<const Stop> stops)
{
    if (from == to)
        return nullptr;
    auto native = std::make_unique<Native>();
    native->pattern.reset(
        cairo_pattern_create_linear(within(from.x), within(from.y), within(to.x), within(to.y)));
    cairo_pattern_set_extend(native->pattern.get(), CAIRO_EXTEND_PAD);
    for (const Stop& stop : stops) {
        assert(stop.position >= 0.0f && stop.position <= 1.0f);
        cairo_pattern_add_color_stop_rgba(native->pattern.get(), stop.position,
                                          stop.color.red / 255.0, stop.color.green / 255.0,
                                          stop.color.blue / 255.0, stop.color.alpha / 255.0);
    }
    return boost::make_shared<ZGradientBrush>(std::move(native));
}

ZGradientBrush::ZGradientBrush(std::unique_ptr<Native> native)
    : mNative(std::move(native))
{
}

ZGradientBrush::~ZGradientBrush() = default;

}  // namespace orvane
