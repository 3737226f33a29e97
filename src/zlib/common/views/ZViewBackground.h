// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace orvane
{

class ZApplication;
class ZBitmap;
class ZDrawingContext;
class ZXMLElement;

/// What a view paints before its own drawing: a bitmap, a bitmap that a shader makes, a frame or a
/// plain colour. Rectangles are in the view's coordinates. [interface thread]
class ZViewBackground
{
public:
    /// Where the bitmap lies in the view's frame.
    enum BitmapStyle : std::int32_t
    {
        kBitmapOrigin = 0,
        kBitmapCenter = 1,
        kBitmapStretch = 2,
        kBitmapStretchWidth = 3,
        kBitmapStretchHeight = 4,
        kBitmapTile = 5,
    };

    enum FrameStyle : std::int32_t
    {
        kFrameOff = 0,
        kFrameRect = 1,
        kFrameRounded = 2,
        kFrameDebug = 3,       // a red outline
        kFrameOverBitmap = 4,  // an outline over the bitmap
    };

    /// The frame around a view without a bitmap, or over the bitmap.
    struct Frame
    {
        std::int32_t style = kFrameOff;
        std::int32_t radius = 10;  // of rounded corners, in pixels
        std::int32_t width = 1;    // of the stroke, in pixels
        ZColor strokeColor{0, 255, 0, 255};
        ZColor fillColor{0, 255, 0, 255};
    };

    ZViewBackground();
    ~ZViewBackground();

    /// Reads the tags `bgcolor`, `backgrndcolor`, `bgbitmap`, `backgrndbitmap` and `frame`. The
    /// application may be null: then bitmaps stay empty. [setup]
    void Read(const ZXMLElement& view, ZApplication* application);
    /// Adds the tags that Read reads.
    void Write(ZXMLElement& view) const;

    /// Whether the view paints its background before each drawing of its own.
    [[nodiscard]] bool IsPainted() const { return mIsPainted; }
    [[nodiscard]] bool HasBitmap() const { return mBitmap != nullptr; }
    /// Whether there is a bitmap, parts of which can be painted alone by RepairBitmap.
    [[nodiscard]] bool CanRepair() const { return mBitmap && mBitmapStyle == kBitmapOrigin; }
    [[nodiscard]] const ZString& GetShaderName() const { return mShaderName; }
    [[nodiscard]] const Frame& GetFrame() const { return mFrame; }
    [[nodiscard]] Frame& GetFrame() { return mFrame; }
    /// Takes a bitmap in place of the one before; it is painted from now on.
    void SetBitmap(std::unique_ptr<ZBitmap> bitmap, BitmapStyle style);

    /// Paints the shader into a bitmap of the frame's size, unless there is a bitmap already. Does
    /// nothing for an empty name; throws ZException kGeneral for an unknown shader.
    void MakeShadedBitmap(ZDrawingContext& context, const ZRect& frame, const ZString& shaderName);
    /// Paints all of the bitmap by its style. Needs HasBitmap().
    void DrawBitmap(ZDrawingContext& context, const ZRect& frame) const;
    /// Paints the bitmap with its corner at 0, 0, whatever its style. Needs HasBitmap().
    void DrawBitmapAtOrigin(ZDrawingContext& context) const;
    /// Paints the bitmap within each of the rectangles alone. Needs CanRepair().
    void RepairBitmap(ZDrawingContext& context, std::span<const ZRect> parts) const;
    /// Paints the frame, where the bitmap leaves room for one. Without a style it fills update with
    /// the background's colour. The context keeps pen, brush and smoothing.
    void DrawFrame(ZDrawingContext& context, const ZRect& frame, const ZRect& update) const;

private:
    void ReadColor(const ZXMLElement& view);
    void ReadBitmap(const ZXMLElement& view, std::string_view tag, bool isPainted,
                    ZApplication* application);
    void ReadFrame(const ZXMLElement& view);
    void WriteBitmap(ZXMLElement& view) const;
    void WriteFrame(ZXMLElement& view) const;
    void TileBitmap(ZDrawingContext& context, const ZRect& frame) const;

    bool mIsPainted = false;
    ZColor mColor{255, 255, 255, 255};
    std::unique_ptr<ZBitmap> mBitmap;
    std::int32_t mBitmapStyle = kBitmapOrigin;
    ZString mShaderName;
    Frame mFrame;
};

}  // namespace orvane
