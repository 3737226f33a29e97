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

WindowPixels enlarged(const WindowPixels& from, int scale)
{
    WindowPixels to{from.width * scale, from.height * scale, {}};
    to.values.reserve(from.values.size() * static_cast<std::size_t>(scale * scale));
    for (int y = 0; y < to.height; ++y) {
        const std::uint32_t* const row = from.values.data() + (y / scale) * from.width;
        for (int x = 0; x < to.width; ++x)
            to.values.push_back(row[x / scale]);
    }
    return to;
}

}  // namespace

void writePicture(const WindowPixels& from, const std::filesystem::path& path,
                  const std::string& name, int scale)
{
    assert(scale >= 1);
    WindowPixels pixels = enlarged(from, scale);
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
        mPixels = mPlugin.Window();
}

void WindowShot::Write(const std::filesystem::path& path, const std::string& name, int scale) const
{
    assert(!mPixels.values.empty());
    writePicture(mPixels, path, name, scale);
}

}  // namespace orvane
