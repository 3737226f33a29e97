// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/linux/drawing/ZCairo.h"

namespace orvane
{

/// Returns a surface, without a device scale, of a part of the image, so that scaling does not mix
/// in pixels beside the part. It shares the image's pixels. part is in pixels and inside the image.
[[nodiscard]] CairoPointer<cairo_surface_t> surfaceOfPart(const ZImage& image, const ZRect& part);

/// Returns a surface, without a device scale, of the part at another size in pixels, at least 1 by
/// 1; null if there is no surface as large. A shared image keeps the last few, since the same views
/// are drawn again and again and good scaling is slow.
[[nodiscard]] CairoPointer<cairo_surface_t> copyAtSize(const ZImage& image, const ZRect& part,
                                                       const ZPoint& size);

}  // namespace orvane
