// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZPoint.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <span>

namespace orvane
{

/// A linear gradient ready to fill with; carried by the platform. Beyond its two points the colour
/// of the nearer one goes on. [interface thread]
class ZGradientBrush
{
public:
    struct Native;
    struct Stop
    {
        float position;  // from 0 at the first point to 1 at the second
        ZColor color;
    };

    /// Null when the two points are one: then there is no direction to go in.
    [[nodiscard]] static boost::shared_ptr<ZGradientBrush>
    Make(const ZPoint& from, const ZPoint& to, std::span<const Stop> stops);
    explicit ZGradientBrush(std::unique_ptr<Native> native);
    ZGradientBrush(const ZGradientBrush&) = delete;
    ZGradientBrush& operator=(const ZGradientBrush&) = delete;
    ~ZGradientBrush();

    /// What the platform's half knows of it.
    [[nodiscard]] Native& GetNative() const { return *mNative; }

private:
    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
