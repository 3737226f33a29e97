// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace orvane
{

/// A set of pixels made of rectangles; carried by the platform. A value. Coordinates beyond two to
/// the power of 24 stay there.
class ZRegion
{
public:
    struct Native;

    /// No pixel.
    ZRegion();
    explicit ZRegion(const ZRect& rect);
    ZRegion(const ZRegion& other);
    ZRegion& operator=(const ZRegion& other);
    ~ZRegion();

    void Add(const ZRect& rect);
    void Subtract(const ZRegion& other);
    void Translate(std::int32_t x, std::int32_t y);

    [[nodiscard]] bool IsEmpty() const;
    /// The smallest rectangle around it; all zero when it is empty.
    [[nodiscard]] ZRect GetBounds() const;
    /// Rectangles that do not overlap and together are the region.
    [[nodiscard]] std::vector<ZRect> GetRects() const;

private:
    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
