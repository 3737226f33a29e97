// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/drawing/ZBitmap.h"
#include "zlib/common/drawing/ZImage.h"

namespace orvane
{

constexpr ZColor kBlack{0, 0, 0, 255};
constexpr ZColor kWhite{255, 255, 255, 255};
constexpr ZColor kRed{255, 0, 0, 255};

/// A bitmap to draw into, with its pixels to look at: transparent at first.
struct Canvas : ZBitmap
{
    Canvas(std::int32_t width, std::int32_t height)
        : ZBitmap(width, height, nullptr)
    {
    }

    /// As 0xAARRGGBB.
    std::uint32_t At(std::int32_t x, std::int32_t y) const { return Pixels()[Index(x, y)]; }
    [[nodiscard]] std::uint32_t AlphaAt(std::int32_t x, std::int32_t y) const
    {
        return GetNative()->GetPremultipliedPixels()[Index(x, y)] >> 24;
    }
    [[nodiscard]] std::vector<std::uint32_t> Pixels() const { return GetNative()->ReadPixels(); }

    /// The rows as text: '#' where a pixel is opaque, '.' where it is transparent, else '+'.
    [[nodiscard]] std::vector<std::string> Rows() const
    {
        std::vector<std::string> rows;
        for (std::int32_t y = 0; y < GetHeight(); ++y) {
            rows.emplace_back();
            for (std::int32_t x = 0; x < GetWidth(); ++x)
                rows.back() += AlphaAt(x, y) == 255 ? '#' : AlphaAt(x, y) == 0 ? '.' : '+';
        }
        return rows;
    }
    /// The smallest rectangle around all that is not transparent.
    [[nodiscard]] ZRect Ink() const
    {
        ZRect ink;
        for (std::int32_t y = 0; y < GetHeight(); ++y)
            for (std::int32_t x = 0; x < GetWidth(); ++x)
                if (AlphaAt(x, y) != 0)
                    ink = ink.Union({x, y, x + 1, y + 1});
        return ink;
    }
    /// Sum of all alphas in pixels.
    [[nodiscard]] double Coverage() const
    {
        double sum = 0.0;
        for (const std::uint32_t pixel : Pixels())
            sum += (pixel >> 24) / 255.0;
        return sum;
    }

    [[nodiscard]] std::size_t Index(std::int32_t x, std::int32_t y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(GetWidth()) +
               static_cast<std::size_t>(x);
    }
};

using Rows = std::vector<std::string>;

}  // namespace orvane
