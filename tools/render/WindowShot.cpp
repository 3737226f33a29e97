// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/WindowShot.h"

#include "tools/render/Failure.h"
#include "tools/render/PluginInstance.h"

#include <cairo.h>
#include <fmt/format.h>

#include <cassert>
#include <memory>

namespace orvane
{

namespace
{

struct CairoDeleter
{
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, CairoDeleter>;

}  // namespace

void writePicture(WindowPixels pixels, const std::filesystem::path& path, const std::string& name)
{
    // Cairo's ARGB32 has the same layout.
    constexpr int kPixelBytes = 4;
    const Surface surface(cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(pixels.values.data()), CAIRO_FORMAT_ARGB32, pixels.width,
        pixels.height, pixels.width * kPixelBytes));
    const cairo_status_t status = cairo_surface_write_to_png(surface.get(), path.c_str());
    if (status != CAIRO_STATUS_SUCCESS)
        fail("cannot write {}: {}", name, cairo_status_to_string(status));
}

void WindowShot::Take()
{
    if (mPixels.values.empty())
        mPixels = mPlugin.Window(mScale);
}

void WindowShot::Write(const std::filesystem::path& path, const std::string& name) const
{
    assert(!mPixels.values.empty());
    writePicture(mPixels, path, name);
}

}  // namespace orvane
