// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvane
{

class PixelFont;

/// Returns the bytes of a TrueType font file whose outlines follow the pixels of a pixel font.
///
/// At a size of 5 pixels each pixel of a glyph covers exactly one pixel of the device: capitals are
/// 5 pixels high and a line 8. The font has no hints, since at that size the outlines fit the pixel
/// grid already. family is ASCII. The same glyphs always give the same bytes.
[[nodiscard]] std::vector<std::uint8_t> trueTypeFile(const PixelFont& font,
                                                     const std::string& family);

}  // namespace orvane
