#pragma once

#include "tools/resources/ArtworkTable.h"

#include <filesystem>

namespace orvane
{

/// The whole window, put together as its views will do it, to judge the artwork by: pictures at
/// their places, and what views draw themselves (menus, group boxes, title band, track, meter).
///
/// images holds the pictures, labels are set in font. scale is a whole number; each pixel becomes a
/// square of that size. Throws std::runtime_error when a picture cannot be read.
[[nodiscard]] ArtworkSurface paintWindowMock(const std::filesystem::path& images,
                                             const PixelFont& font, int scale);

}  // namespace orvane
