// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"

#include <cstdint>

namespace orvane
{

/// A question of this plug-in's own, asked by effVendorSpecific with kVendorOrvane as index and
/// kVendorWindowPicture as value: what its window shows, also where there is no display or the
/// editor is closed. ptr is a WindowPicture that is filled; the answer is 1, else 0 with the record
/// as it was. Values that changed since the last tick are shown as they were.
/// [host thread]
struct WindowPicture
{
    std::int32_t width;
    std::int32_t height;
    /// width x height, row by row from the top, as 0xAARRGGBB with colours multiplied by alpha.
    /// Lent until the next such question or effClose.
    const std::uint32_t* pixels;
};

constexpr std::int32_t kVendorOrvane = fourCharacters("Orvn");
constexpr std::int32_t kVendorWindowPicture = fourCharacters("wpic");

}  // namespace orvane
