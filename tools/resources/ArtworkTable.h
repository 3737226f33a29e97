// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cairo.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orvane
{

class PixelFont;

struct ArtworkFreer
{
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

using ArtworkSurface = std::unique_ptr<cairo_surface_t, ArtworkFreer>;
using ArtworkContext = std::unique_ptr<cairo_t, ArtworkFreer>;

/// One picture of the window.
struct Artwork
{
    std::string name;  // of its file and of its resource
    int width;         // pixels
    int height;
    std::function<void(cairo_t*, const PixelFont&)> paint;  // on a clear surface
};

/// Every picture of the window.
[[nodiscard]] const std::vector<Artwork>& artworkTable();

/// Paints a picture on a surface of its own, with alpha.
[[nodiscard]] ArtworkSurface paintArtwork(const Artwork& artwork, const PixelFont& font);

/// Writes a surface as a PNG file, 8 bits a channel with alpha. Throws std::runtime_error when the
/// file cannot be written.
void writePng(cairo_surface_t* surface, const std::filesystem::path& file);

}  // namespace orvane
