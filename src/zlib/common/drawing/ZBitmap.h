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

/// An image that can be drawn and drawn into. One that is named is found among the resources of
/// type "IMAGE"; where none can be found or read it stays empty, measures 0 by 0 and draws nothing.
/// A resource is decoded when it is first drawn, since hosts start far more instances than they
/// open windows, and is shared by all bitmaps that show it until one is drawn into. [interface
/// thread]
class ZBitmap : public ZDrawingContext
{
public:
    /// A new, fully transparent image; what the context, which may be null, draws to is the same
    /// kind of image. hasAlpha is kept, and drawing does not ask for it. Throws ZException -1
    /// "Failed to create new Bitmap object" when the size gives no image.
    ZBitmap(std::int32_t width, std::int32_t height, const ZDrawingContext* context,
            bool hasAlpha = false);
    /// Loads at once. Application may be null.
    ZBitmap(const ZString& resourceName, ZApplication* application);
    /// From a tag that names the resource by `id`, or as backgrounds do by `resource`.
    ZBitmap(const ZXMLElement& xml, ZApplication* application);
    ~ZBitmap() override;

    /// Looks for the image where there is none yet: among the application's resources, then as the
    /// file that the application has under that name. Without an application the resources of the
    /// one that was given before are asked again.
    void Load(ZApplication* application);
    [[nodiscard]] bool IsLoaded() const { return mWidth > 0; }
    [[nodiscard]] std::int32_t GetWidth() const { return mWidth; }
    [[nodiscard]] std::int32_t GetHeight() const { return mHeight; }
    [[nodiscard]] bool HasAlpha() const { return mHasAlpha; }
    [[nodiscard]] const ZString& GetResourceName() const { return mResourceName; }

    /// All pixels row by row as 0xAARRGGBB, colours as they are, to be read and written until
    /// UnlockPixels puts them back; none without an image. What is drawn in between is lost.
    std::span<std::uint32_t> LockPixels();
    void UnlockPixels();
    /// Writes the colour into each pixel of a locked bitmap; of one that is not, into none.
    void Clear(const ZColor& color);
    /// A bitmap of the same size in one colour, its alpha that of this one averaged over a square
    /// of side 2 radius + 1, beyond the edges 0. Null without an image. radius >= 0.
    [[nodiscard]] boost::shared_ptr<ZBitmap> MakeShadow(std::int32_t radius,
                                                        const ZColor& color) const;

    /// The tag `bitmap` that names the resource; type tells what the owner uses it for.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader(std::string_view type) const;

    [[nodiscard]] const ZImage* GetNative() const override;
    [[nodiscard]] ZRect GetFrame() const override { return {0, 0, mWidth, mHeight}; }
    [[nodiscard]] ZGraphics* GetGraphics() const override;

private:
    /// Takes an image, which may be null, as its own.
    void Adopt(std::unique_ptr<ZImage> image);
    /// The image as one's own, to write into; null without one.
    ZImage* MakeOwn() const;

    ZString mResourceName;
    const ZResources* mResources = nullptr;  // read-only data of the library
    std::int32_t mWidth = 0;
    std::int32_t mHeight = 0;
    bool mLocked = false;
    bool mHasAlpha = false;
    std::vector<std::uint32_t> mLockData;
    std::span<const std::byte> mPng;  // of the resource
    // Made when they are first asked for: the resource's picture, or an image of one's own with its
    // target.
    mutable std::shared_ptr<const ZImage> mShared;
    mutable std::unique_ptr<ZImage> mImage;
    mutable std::unique_ptr<ZGraphics> mImageGraphics;
};

}  // namespace orvane
