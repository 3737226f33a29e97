// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZPoint.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <span>

namespace orvane
{

/// A linear gradient to fill with; implemented per platform. Beyond the two points the colour of
/// the nearer point continues. [interface thread]
class ZGradientBrush
{
public:
    struct Native;
    struct Stop
    {
        float position;  // 0 at the first point, 1 at the second
        ZColor color;
    };

    /// Null when both points are the same, which gives the gradient no direction.
    [[nodiscard]] static boost::shared_ptr<ZGradientBrush>
    Make(const ZPoint& from, const ZPoint& to, std::span<const Stop> stops);
    explicit ZGradientBrush(std::unique_ptr<Native> native);
    ZGradientBrush(const ZGradientBrush&) = delete;
    ZGradientBrush& operator=(const ZGradientBrush&) = delete;
    ~ZGradientBrush();

    /// For the platform's drawing code.
    [[nodiscard]] Native& GetNative() const { return *mNative; }

private:
    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
