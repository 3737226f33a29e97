// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"
#include "zlib/common/objects/ZResources.h"

#include <cairo/cairo.h>

namespace orvane
{

using PngBytes = std::vector<std::byte>;

/// A PNG of width x height pixels, all of different colours, with or without alpha.
inline PngBytes makePng(int width, int height, bool alpha = true)
{
    const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
        cairo_image_surface_create(alpha ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24, width, height),
        cairo_surface_destroy);
    auto* const pixels =
        reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(surface.get()));
    for (int i = 0; i < width * height; ++i)
        pixels[i] = 0xFF000000u | static_cast<std::uint32_t>(i) * 0x010305u;
    cairo_surface_mark_dirty(surface.get());
    PngBytes bytes;
    const auto write = [](void* out, const unsigned char* data, unsigned length) {
        const auto* const begin = reinterpret_cast<const std::byte*>(data);
        static_cast<PngBytes*>(out)->insert(static_cast<PngBytes*>(out)->end(), begin,
                                            begin + length);
        return CAIRO_STATUS_SUCCESS;
    };
    if (cairo_surface_write_to_png_stream(surface.get(), write, &bytes) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error("no PNG made");
    return bytes;
}

/// A picture among the resources.
inline ZResources::Entry pictureEntry(std::string_view name, const PngBytes& bytes)
{
    const char* const begin = reinterpret_cast<const char*>(bytes.data());
    return {"IMAGE", name, begin, begin + bytes.size()};
}

inline void putBigEndian(std::span<std::byte> out, std::uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        out[i] = static_cast<std::byte>(value >> (24 - 8 * i));
}

inline std::uint32_t getBigEndian(std::span<const std::byte> bytes)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | std::to_integer<std::uint32_t>(bytes[i]);
    return value;
}

/// The checksum of PNG chunks: CRC-32 (W3C, Portable Network Graphics, annex D).
inline std::uint32_t crcOf(std::span<const std::byte> bytes)
{
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const std::byte byte : bytes) {
        crc ^= std::to_integer<std::uint32_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1u) ? 0xEDB88320u : 0u);
    }
    return ~crc;
}

/// Corrects the checksums of all complete chunks, so that a reader accepts altered data.
inline void repairCheckSums(std::span<std::byte> png)
{
    for (std::size_t chunk = 8; chunk + 12 <= png.size();) {
        const std::size_t length = getBigEndian(png.subspan(chunk));
        if (length > png.size() - chunk - 12)
            return;
        putBigEndian(png.subspan(chunk + 8 + length), crcOf(png.subspan(chunk + 4, length + 4)));
        chunk += length + 12;
    }
}

}  // namespace orvane
