// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace orvane
{

/// A rectangle in pixels, given by its edges; right and bottom are the first pixels outside.
/// Results that exceed 32 bits are clamped.
struct ZRect
{
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    bool operator==(const ZRect&) const = default;

    /// Width and height are negative when right lies left of left, or bottom above top.
    [[nodiscard]] constexpr std::int32_t GetWidth() const
    {
        return Saturate(std::int64_t{right} - left);
    }
    [[nodiscard]] constexpr std::int32_t GetHeight() const
    {
        return Saturate(std::int64_t{bottom} - top);
    }
    /// True when no pixel lies inside.
    [[nodiscard]] constexpr bool IsEmpty() const { return right <= left || bottom <= top; }

    /// True when the pixel lies inside.
    [[nodiscard]] constexpr bool Contains(const ZPoint& point) const
    {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    /// The same, where the edges right and bottom count as inside.
    [[nodiscard]] constexpr bool ContainsWithEdges(const ZPoint& point) const
    {
        return point.x >= left && point.x <= right && point.y >= top && point.y <= bottom;
    }
    /// True when the two have a pixel in common.
    [[nodiscard]] constexpr bool Intersects(const ZRect& other) const
    {
        return !Intersection(other).IsEmpty();
    }
    /// The pixels that lie in both; all edges are 0 when there are none.
    [[nodiscard]] constexpr ZRect Intersection(const ZRect& other) const
    {
        const ZRect common{std::max(left, other.left), std::max(top, other.top),
                           std::min(right, other.right), std::min(bottom, other.bottom)};
        return common.IsEmpty() ? ZRect{} : common;
    }
    /// The smallest rectangle around both; an empty one is ignored.
    [[nodiscard]] constexpr ZRect Union(const ZRect& other) const
    {
        if (IsEmpty())
            return other.IsEmpty() ? ZRect{} : other;
        if (other.IsEmpty())
            return *this;
        return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
                std::max(bottom, other.bottom)};
    }
    /// The rectangle with each edge moved inwards, or outwards for negative amounts.
    [[nodiscard]] constexpr ZRect Inset(std::int32_t x, std::int32_t y) const
    {
        return {Saturate(std::int64_t{left} + x), Saturate(std::int64_t{top} + y),
                Saturate(std::int64_t{right} - x), Saturate(std::int64_t{bottom} - y)};
    }
    /// The rectangle moved by x and y.
    [[nodiscard]] constexpr ZRect Offset(std::int32_t x, std::int32_t y) const
    {
        return {Saturate(std::int64_t{left} + x), Saturate(std::int64_t{top} + y),
                Saturate(std::int64_t{right} + x), Saturate(std::int64_t{bottom} + y)};
    }

private:
    static constexpr std::int32_t Saturate(std::int64_t value)
    {
        using Limits = std::numeric_limits<std::int32_t>;
        return static_cast<std::int32_t>(
            std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
    }
};

}  // namespace orvane
