// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZDrawingContext.h"
#include "zlib/common/objects/ZString.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace orvane
{

class ZApplication;
class ZResources;
class ZXMLElement;

/// An image that can be drawn and drawn into. A bitmap with a resource name loads the resource of
/// type "IMAGE" under that name; if there is none, or it cannot be read, the bitmap stays empty,
/// measures 0 by 0 and draws nothing. A resource is decoded when it is first drawn, because hosts
/// start many more instances than they open windows. All bitmaps of one resource share the decoded
/// image; a bitmap makes its own copy before it is drawn into.
///
/// Sizes are in units. An image that is made for a context has the context's device scale. Where a
/// context has a scale above 1, a resource "NAME@2x.png" of twice the size is drawn instead of
/// "NAME.png", if there is one. [interface thread]
class ZBitmap : public ZDrawingContext
{
public:
    /// Makes a fully transparent image with the device scale of the context, or with scale 1 where
    /// context is null. hasAlpha is only kept: every image has alpha. Throws ZException kGeneral
    /// "Failed to create new Bitmap object" if a side is not positive, the size is beyond ZImage's
    /// limits or memory is short.
    ZBitmap(std::int32_t width, std::int32_t height, const ZDrawingContext* context,
            bool hasAlpha = false);
    /// Makes a fully transparent image of that scale, which is above 0. Throws as the one above.
    ZBitmap(std::int32_t width, std::int32_t height, double deviceScale);
    /// Loads the resource at once. application may be null; then the bitmap stays empty.
    ZBitmap(const ZString& resourceName, ZApplication* application);
    /// Loads the resource that the tag names in `id` or, in tags of backgrounds, in `resource`.
    ZBitmap(const ZXMLElement& xml, ZApplication* application);
    ~ZBitmap() override;

    /// Loads the image of an empty bitmap: from the application's resources, or else from the file
    /// that ZApplication::GetResourceFile gives. If application is null, looks again in the
    /// resources of the application that was given before.
    void Load(ZApplication* application);
    [[nodiscard]] bool IsLoaded() const { return mWidth > 0; }
    [[nodiscard]] std::int32_t GetWidth() const { return mWidth; }
    [[nodiscard]] std::int32_t GetHeight() const { return mHeight; }
    [[nodiscard]] const ZString& GetResourceName() const { return mResourceName; }

    /// Whether the context can take the bitmap as it is: false for an image that was made for
    /// another device scale, and that its owner then makes again.
    [[nodiscard]] bool Suits(const ZDrawingContext& context) const;

    /// Returns all pixels, row by row as 0xAARRGGBB with straight (not premultiplied) colours, for
    /// reading and writing until UnlockPixels stores them. Empty without an image. Anything drawn
    /// between the two calls is overwritten.
    std::span<std::uint32_t> LockPixels();
    /// Stores the locked pixels; does nothing if the bitmap is not locked.
    void UnlockPixels();
    /// Writes the colour into every pixel of a locked bitmap; does nothing if it is not locked.
    void Clear(const ZColor& color);
    /// Makes a bitmap of the same size in one colour, with this bitmap's alpha blurred over a
    /// square of side 2 radius + 1 (alpha counts as 0 beyond the edges). radius >= 0. Null without
    /// an image.
    [[nodiscard]] boost::shared_ptr<ZBitmap> MakeShadow(std::int32_t radius,
                                                        const ZColor& color) const;

    /// Makes the tag `bitmap` with the resource's name in `id` and type in `type`: what the owner
    /// uses the bitmap for.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader(std::string_view type) const;

    [[nodiscard]] const ZImage* GetNative() const override;
    /// Returns the image to be drawn to a target of a device scale; null without an image.
    [[nodiscard]] const ZImage* GetNativeFor(double deviceScale) const;
    [[nodiscard]] ZRect GetFrame() const override { return {0, 0, mWidth, mHeight}; }
    [[nodiscard]] ZGraphics* GetGraphics() const override;
    [[nodiscard]] double GetDeviceScale() const override { return mScale; }

private:
    /// Makes the image, of width x height units, this bitmap's; null changes nothing.
    void Adopt(std::unique_ptr<ZImage> image, std::int32_t width, std::int32_t height);
    /// Finds the picture of twice the size, if there is one.
    void FindDouble();
    /// Returns an image that may be written to, copied from the shared one at the first call; null
    /// without an image.
    ZImage* MakeOwn() const;

    ZString mResourceName;
    const ZResources* mResources = nullptr;  // read-only data of the library
    std::int32_t mWidth = 0;
    std::int32_t mHeight = 0;
    double mScale = 1.0;  // of mImage
    bool mLocked = false;
    [[maybe_unused]] bool mHasAlpha = false;
    std::vector<std::uint32_t> mLockData;
    std::span<const std::byte> mPng;        // bytes of the resource
    std::span<const std::byte> mDoublePng;  // bytes of the picture of twice the size; may be empty
    mutable std::shared_ptr<const ZImage> mDouble;  // decoded at first use
    // All three are made at first use. mShared goes when mImage, a copy to write to, is there.
    mutable std::shared_ptr<const ZImage> mShared;
    mutable std::unique_ptr<ZImage> mImage;
    mutable std::unique_ptr<ZGraphics> mImageGraphics;  // draws into mImage
};

}  // namespace orvane
