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

/// An image in memory with 8 bits each of alpha, red, green and blue; implemented per platform. Its
/// device scale is the number of pixels on a unit's side: what draws into an image of scale 2 in
/// units gets twice the detail. [interface thread]
class ZImage
{
public:
    struct Native;

    /// The longest side of an image and the most pixels, so that a damaged file cannot ask for
    /// gigabytes of memory.
    static constexpr std::int32_t kMaxSide = 16384;
    static constexpr std::int64_t kMaxPixels = std::int64_t{1} << 25;

    /// Makes a fully transparent image of width x height units, at a scale above 0; null when a
    /// side in pixels is not in [1, kMaxSide], the product of the sides is beyond kMaxPixels or
    /// memory is short.
    [[nodiscard]] static std::unique_ptr<ZImage> Create(std::int32_t width, std::int32_t height,
                                                        double scale = 1.0);
    /// Decodes a PNG that was drawn for a scale; null when the bytes are no PNG, are damaged, or
    /// name too large a size.
    [[nodiscard]] static std::unique_ptr<ZImage> Decode(std::span<const std::byte> png,
                                                        double scale = 1.0);
    /// Decodes a PNG, or returns the image that an earlier call made of it and that is still in
    /// use. The address of the bytes identifies the PNG, so they must be read-only data that lives
    /// as long as the library, and always comes with the same scale. What draws a shared image at
    /// another size keeps the result with it. [any thread]
    [[nodiscard]] static std::shared_ptr<const ZImage> Share(std::span<const std::byte> png,
                                                             double scale = 1.0);
    struct Size
    {
        std::int32_t width;
        std::int32_t height;
    };
    /// Reads the size of the image that Decode would make, without decoding; none if the bytes are
    /// no PNG or are cut off.
    [[nodiscard]] static std::optional<Size> ReadSize(std::span<const std::byte> png);
    /// Makes an image with the same pixels; null when memory is short.
    [[nodiscard]] std::unique_ptr<ZImage> Copy() const;
    explicit ZImage(std::unique_ptr<Native> native);
    ZImage(const ZImage&) = delete;
    ZImage& operator=(const ZImage&) = delete;
    ~ZImage();

    /// The sides in pixels.
    [[nodiscard]] std::int32_t GetWidth() const;
    [[nodiscard]] std::int32_t GetHeight() const;
    [[nodiscard]] double GetScale() const;

    /// Returns all pixels, row by row as 0xAARRGGBB with straight (not premultiplied) colours.
    [[nodiscard]] std::vector<std::uint32_t> ReadPixels() const;
    /// Stores width x height pixels in the form of ReadPixels. Pixels from ReadPixels are stored
    /// without loss.
    void WritePixels(std::span<const std::uint32_t> pixels);
    /// The pixels in memory, row by row without gaps, as 0xAARRGGBB with colours premultiplied by
    /// alpha: the form in which a window shows them. They live as long as the image.
    [[nodiscard]] std::span<const std::uint32_t> GetPremultipliedPixels() const;

    /// For the platform's drawing code.
    [[nodiscard]] Native& GetNative() const { return *mNative; }

private:
    /// Promises that the pixels never change, so that copies at other sizes may be kept.
    void KeepCopies();

    std::unique_ptr<Native> mNative;
};

}  // namespace orvane
