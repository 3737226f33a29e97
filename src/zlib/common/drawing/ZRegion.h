// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZRect.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace orvane
{

/// A set of pixels made of rectangles; a value type, implemented per platform. Coordinates are
/// clamped to +-2^24.
class ZRegion
{
public:
    struct Native;

    /// Makes an empty region.
    ZRegion();
    explicit ZRegion(const ZRect& rect);
    ZRegion(const ZRegion& other);
    ZRegion& operator=(const ZRegion& other);
    ~ZRegion();

    void Add(const ZRect& rect);
    void Subtract(const ZRegion& other);
    void Translate(std::int32_t x, std::int32_t y);

    [[nodiscard]] bool IsEmpty() const;
    /// The bounding rectangle; all zero when the region is empty.
    [[nodiscard]] ZRect GetBounds() const;
    /// Rectangles that do not overlap and together make up the region.
    [[nodiscard]] std::vector<ZRect> GetRects() const;

private:
    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
