// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZImage.h"

#include "zlib/common/drawing/ZDeviceScale.h"
#include "zlib/linux/drawing/ZImageNative.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <utility>

namespace orvane
{

namespace
{

using Bytes = std::span<const std::byte>;

bool isAllowed(std::int64_t width, std::int64_t height)
{
    return width > 0 && height > 0 && width <= ZImage::kMaxSide && height <= ZImage::kMaxSide &&
           width * height <= ZImage::kMaxPixels;
}

std::uint32_t bigEndian(Bytes bytes)
{
    std::uint32_t value = 0;
    for (const std::byte byte : bytes.first(4))
        value = value << 8 | std::to_integer<std::uint32_t>(byte);
    return value;
}

/// A PNG begins with 8 bytes of signature and the chunk IHDR with width and height. The size is
/// checked first because a decoder allocates memory for whatever it says.
bool beginsAsAllowedPng(Bytes png)
{
    constexpr std::array<unsigned char, 16> kBeginning{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n',
                                                       0,    0,   0,   13,  'I',  'H',  'D',  'R'};
    return png.size() > 24 && std::memcmp(png.data(), kBeginning.data(), kBeginning.size()) == 0 &&
           isAllowed(bigEndian(png.subspan(16)), bigEndian(png.subspan(20)));
}

/// Whether the bytes hold all chunks of a PNG up to IEND. A chunk is its length, its name, the data
/// and a check sum.
bool endsAsPng(Bytes png)
{
    constexpr std::size_t kSignature = 8;
    constexpr std::size_t kChunkOverhead = 12;  // length, name and check sum
    for (Bytes rest = png.subspan(kSignature); rest.size() >= kChunkOverhead;) {
        const std::size_t length = bigEndian(rest);
        if (length > rest.size() - kChunkOverhead)
            return false;
        if (std::memcmp(&rest[4], "IEND", 4) == 0)
            return true;
        rest = rest.subspan(kChunkOverhead + length);
    }
    return false;
}

cairo_status_t readBytes(void* rest, unsigned char* out, unsigned length)
{
    Bytes& bytes = *static_cast<Bytes*>(rest);
    if (length > bytes.size())
        return CAIRO_STATUS_READ_ERROR;
    std::memcpy(out, bytes.data(), length);
    bytes = bytes.subspan(length);
    return CAIRO_STATUS_SUCCESS;
}

std::unique_ptr<ZImage> imageOf(CairoPointer<cairo_surface_t> surface, double scale)
{
    assert(scale > 0.0);
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
        return nullptr;
    cairo_surface_set_device_scale(surface.get(), scale, scale);
    auto native = std::make_unique<ZImage::Native>();
    native->surface = std::move(surface);
    native->scale = scale;
    return std::make_unique<ZImage>(std::move(native));
}

/// Makes a transparent image; null if it is not allowed or memory is short.
std::unique_ptr<ZImage> createPixels(std::int32_t width, std::int32_t height, double scale)
{
    if (!isAllowed(width, height))
        return nullptr;
    return imageOf(CairoPointer<cairo_surface_t>(
                       cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)),
                   scale);
}

/// Converts a decoded PNG without alpha to ARGB32, the only pixel format that drawing uses.
CairoPointer<cairo_surface_t> withAlpha(CairoPointer<cairo_surface_t> surface)
{
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS ||
        cairo_image_surface_get_format(surface.get()) == CAIRO_FORMAT_ARGB32)
        return surface;
    CairoPointer<cairo_surface_t> copy(cairo_image_surface_create(
        CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(surface.get()),
        cairo_image_surface_get_height(surface.get())));
    const CairoPointer<cairo_t> context(cairo_create(copy.get()));
    cairo_set_source_surface(context.get(), surface.get(), 0.0, 0.0);
    cairo_paint(context.get());
    return copy;
}

constexpr std::uint32_t channel(std::uint32_t pixel, int shift)
{
    return pixel >> shift & 0xFFu;
}

template <typename Convert>
constexpr std::uint32_t convertColors(std::uint32_t pixel, Convert convert)
{
    return (pixel & 0xFF000000u) | convert(channel(pixel, 16)) << 16 |
           convert(channel(pixel, 8)) << 8 | convert(channel(pixel, 0));
}

std::uint32_t premultiply(std::uint32_t pixel)
{
    const std::uint32_t alpha = channel(pixel, 24);
    return convertColors(pixel, [=](std::uint32_t c) { return (c * alpha + 127u) / 255u; });
}

std::uint32_t unpremultiply(std::uint32_t pixel)
{
    const std::uint32_t alpha = channel(pixel, 24);
    if (alpha == 0)
        return 0;
    return convertColors(pixel, [=](std::uint32_t c) {
        return std::min((c * 255u + alpha / 2u) / alpha, std::uint32_t{255});
    });
}

}  // namespace

std::unique_ptr<ZImage> ZImage::Create(std::int32_t width, std::int32_t height, double scale)
{
    if (width <= 0 || height <= 0)
        return nullptr;
    const ZPoint size = ZDeviceScale(scale).ToPixels(ZPoint{width, height});
    return createPixels(size.x, size.y, scale);
}

std::unique_ptr<ZImage> ZImage::Decode(std::span<const std::byte> png, double scale)
{
    if (!beginsAsAllowedPng(png))
        return nullptr;
    return imageOf(withAlpha(CairoPointer<cairo_surface_t>(
                       cairo_image_surface_create_from_png_stream(readBytes, &png))),
                   scale);
}

std::optional<ZImage::Size> ZImage::ReadSize(std::span<const std::byte> png)
{
    if (!beginsAsAllowedPng(png) || !endsAsPng(png))
        return std::nullopt;
    return Size{static_cast<std::int32_t>(bigEndian(png.subspan(16))),
                static_cast<std::int32_t>(bigEndian(png.subspan(20)))};
}

std::unique_ptr<ZImage> ZImage::Copy() const
{
    auto copy = createPixels(GetWidth(), GetHeight(), GetScale());
    if (!copy)
        return nullptr;
    const CairoPointer<cairo_t> context(cairo_create(copy->mNative->surface.get()));
    cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
    cairo_set_source_surface(context.get(), mNative->surface.get(), 0.0, 0.0);
    cairo_paint(context.get());
    return copy;
}

ZImage::ZImage(std::unique_ptr<Native> native)
    : mNative(std::move(native))
{
}

ZImage::~ZImage() = default;

std::int32_t ZImage::GetWidth() const
{
    return cairo_image_surface_get_width(mNative->surface.get());
}

std::int32_t ZImage::GetHeight() const
{
    return cairo_image_surface_get_height(mNative->surface.get());
}

double ZImage::GetScale() const
{
    return mNative->scale;
}

void ZImage::KeepCopies()
{
    mNative->keepsCopies = true;
}

std::span<const std::uint32_t> ZImage::GetPremultipliedPixels() const
{
    cairo_surface_t* const surface = mNative->surface.get();
    cairo_surface_flush(surface);
    // With 4 bytes a pixel Cairo leaves no gap between rows.
    assert(cairo_image_surface_get_stride(surface) == GetWidth() * 4);
    return {reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface)),
            static_cast<std::size_t>(GetWidth()) * static_cast<std::size_t>(GetHeight())};
}

std::vector<std::uint32_t> ZImage::ReadPixels() const
{
    const auto pixels = GetPremultipliedPixels();
    std::vector<std::uint32_t> result(pixels.size());
    std::transform(pixels.begin(), pixels.end(), result.begin(), unpremultiply);
    return result;
}

void ZImage::WritePixels(std::span<const std::uint32_t> pixels)
{
    assert(pixels.size() == GetPremultipliedPixels().size());
    cairo_surface_t* const surface = mNative->surface.get();
    cairo_surface_flush(surface);
    std::transform(pixels.begin(), pixels.end(),
                   reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(surface)),
                   premultiply);
    cairo_surface_mark_dirty(surface);
}

}  // namespace orvane
