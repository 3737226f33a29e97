// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"

#include <cstdint>

namespace orvane
{

/// A picture of the plug-in's window, which also works without a display and with a closed editor.
/// Requested by effVendorSpecific with index kVendorOrvane, value kVendorWindowPicture and a
/// WindowPicture as ptr; opt is the number of pixels on the side of a unit, which is a pixel at
/// scale 1, and 0 stands for 1. The answer is 1, or 0 with the record unchanged. Values that
/// changed since the last tick are shown as they were before. [host thread]
struct WindowPicture
{
    std::int32_t width;
    std::int32_t height;
    /// width x height, row by row from the top, as 0xAARRGGBB with colours multiplied by alpha.
    /// Valid until the next such request or effClose.
    const std::uint32_t* pixels;
};

/// The limits that opt is moved into.
constexpr float kLeastPictureScale = 0.5f;
constexpr float kMostPictureScale = 8.0f;

constexpr std::int32_t kVendorOrvane = fourCharacters("Orvn");
constexpr std::int32_t kVendorWindowPicture = fourCharacters("wpic");

}  // namespace orvane
