// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace orvane
{

/// Pixels in memory with alpha; carried by the platform. [interface thread]
class ZImage
{
public:
    struct Native;

    /// The longest side of an image and the most pixels: what is larger is no picture of a window.
    static constexpr std::int32_t kMaxSide = 16384;
    static constexpr std::int64_t kMaxPixels = std::int64_t{1} << 25;

    /// Fully transparent; null when a side is not in [1, kMaxSide] or memory is short.
    [[nodiscard]] static std::unique_ptr<ZImage> Create(std::int32_t width, std::int32_t height);
    /// From the bytes of a PNG; null when they are none, are damaged, or tell of too large a size.
    [[nodiscard]] static std::unique_ptr<ZImage> Decode(std::span<const std::byte> png);
    /// The same, decoded once for all who hold it at a time. The bytes, by whose place it is known,
    /// are read-only data that lives as long as the library. [any thread]
    [[nodiscard]] static std::shared_ptr<const ZImage> Share(std::span<const std::byte> png);
    struct Size
    {
        std::int32_t width;
        std::int32_t height;
    };
    /// What Decode will give, told without decoding; none for bytes that are no whole PNG.
    [[nodiscard]] static std::optional<Size> ReadSize(std::span<const std::byte> png);
    /// The same pixels once more; null when memory is short.
    [[nodiscard]] std::unique_ptr<ZImage> Copy() const;
    explicit ZImage(std::unique_ptr<Native> native);
    ZImage(const ZImage&) = delete;
    ZImage& operator=(const ZImage&) = delete;
    ~ZImage();

    [[nodiscard]] std::int32_t GetWidth() const;
    [[nodiscard]] std::int32_t GetHeight() const;

    /// All pixels row by row, as 0xAARRGGBB with colours as they are.
    [[nodiscard]] std::vector<std::uint32_t> ReadPixels() const;
    /// Takes pixels in the form of ReadPixels, width x height of them. What ReadPixels gave goes
    /// back unchanged.
    void WritePixels(std::span<const std::uint32_t> pixels);
    /// The pixels themselves, row by row with no gap, as 0xAARRGGBB with colours multiplied by
    /// alpha: the form in which a window shows them. They live as long as the image.
    [[nodiscard]] std::span<const std::uint32_t> GetPremultipliedPixels() const;

    /// What the platform's half knows of it.
    [[nodiscard]] Native& GetNative() const { return *mNative; }

private:
    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
