// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvane
{

class PixelFont;

/// A TrueType font file with the drawings of a pixel font as outlines, one square a pixel.
///
/// At a size of 5 pixels each pixel of a drawing covers one pixel of the device exactly: capitals
/// are 5 high, a line is 8. The font has no hints, since at that size nothing is left to fit.
/// family is ASCII; the same drawings always give the same bytes.
[[nodiscard]] std::vector<std::uint8_t> trueTypeFile(const PixelFont& font,
                                                     const std::string& family);

}  // namespace orvane
