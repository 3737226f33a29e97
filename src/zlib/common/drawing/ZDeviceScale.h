// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

namespace orvane
{

/// The number of pixels on a unit's side, and what follows from it: views measure in units, images
/// and windows of the system in pixels. At scale 1 both are the same. [any thread]
class ZDeviceScale
{
public:
    constexpr ZDeviceScale() = default;
    /// factor is above 0.
    explicit ZDeviceScale(double factor);

    bool operator==(const ZDeviceScale&) const = default;

    [[nodiscard]] double Get() const { return mFactor; }
    /// Returns a size in pixels, rounded to the nearest and 1 or more where the size is.
    [[nodiscard]] ZPoint ToPixels(const ZPoint& size) const;
    /// Returns the pixels that the rectangle touches.
    [[nodiscard]] ZRect ToPixels(const ZRect& rect) const;
    /// Returns the first pixel of a unit.
    [[nodiscard]] ZPoint ToPixel(const ZPoint& unit) const;
    /// Returns the unit that holds the pixel.
    [[nodiscard]] ZPoint ToUnits(const ZPoint& pixel) const;
    /// Returns the units that the rectangle of pixels touches.
    [[nodiscard]] ZRect ToUnits(const ZRect& pixels) const;

private:
    double mFactor = 1.0;
};

}  // namespace orvane
