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

/// Releases a reference to an object of Cairo.
struct ArtworkFreer
{
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

using ArtworkSurface = std::unique_ptr<cairo_surface_t, ArtworkFreer>;
using ArtworkContext = std::unique_ptr<cairo_t, ArtworkFreer>;

/// A picture of the window and the function that paints it.
struct Artwork
{
    std::string name;                                       // of the file and of the resource
    int width;                                              // in pixels
    int height;                                             // in pixels
    std::function<void(cairo_t*, const PixelFont&)> paint;  // on a clear surface
};

/// All pictures of the window.
[[nodiscard]] const std::vector<Artwork>& artworkTable();

/// Paints a picture on a new surface with alpha.
[[nodiscard]] ArtworkSurface paintArtwork(const Artwork& artwork, const PixelFont& font);

/// Writes a surface as a PNG file, 8 bits a channel with alpha. Throws std::runtime_error when the
/// file cannot be written.
void writePng(cairo_surface_t* surface, const std::filesystem::path& file);

}  // namespace orvane
