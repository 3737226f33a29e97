// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/drawing/ZGraphics.h"
#include "zlib/common/drawing/ZPathOutline.h"
#include "zlib/common/drawing/ZPen.h"
#include "zlib/common/drawing/ZSavedGraphicsState.h"
#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <memory>

namespace orvane
{

class ZBitmap;
class ZFont;
class ZImage;
class ZPath;
class ZRegion;
class ZShader;
class ZString;

/// The surface that everything is painted through. The views of a window share the window's
/// context; every bitmap is a context too. Without a target (a ZGraphics) nothing is drawn and all
/// texts measure 0.
///
/// Coordinates are in the current transform. Colours, pen, font, truncation and the wish for
/// anti-aliasing belong to the context; transform, clip, blend mode and the anti-aliasing in force
/// belong to the target. SaveState keeps the target's only, so RestoreState does not bring colours
/// back. An operation that fails has no effect and throws nothing. [interface thread]
class ZDrawingContext
{
public:
    ZDrawingContext() = default;
    ZDrawingContext(const ZDrawingContext&) = delete;
    ZDrawingContext& operator=(const ZDrawingContext&) = delete;
    virtual ~ZDrawingContext() = default;

    /// Draws a line with the pen, both end points included.
    virtual void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    virtual void DrawLine(const ZPoint& from, const ZPoint& to);
    /// Strokes the current path with the pen; the path stays.
    virtual void StrokePath();
    /// Fills the current path with the brush, by the even-odd rule; the path stays.
    virtual void FillPath();
    /// Fill with the shader's gradient; do nothing if the shader has no brush.
    virtual void FillRegion(const ZShader& shader, const ZRegion& region);
    virtual void FillRect(const ZShader& shader, const ZRect& rect);

    /// Appends a line to the current path, joined to the end of an open figure.
    virtual void AddPathLine(const ZPoint& from, const ZPoint& to);
    /// Appends an arc to the current path, with the angles of ZPath::AddArc.
    virtual void AddPathArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
                            std::int32_t sweepDegrees);
    /// Appends a path, joined to the end of an open figure; null appends nothing.
    virtual void AddPath(const boost::shared_ptr<ZPath>& path);
    virtual void AddPath(const ZPath& path);
    /// Closes the open figure of the current path.
    virtual void ClosePath();
    /// Empties the current path.
    virtual void ResetPath();

    /// Draws the outline with the pen. The pixels at right and bottom belong to the outline.
    virtual void DrawRect(std::int32_t left, std::int32_t top, std::int32_t right,
                          std::int32_t bottom);
    /// Fills with the brush. The pixels at right and bottom stay as they are.
    virtual void FillRect(std::int32_t left, std::int32_t top, std::int32_t right,
                          std::int32_t bottom);
    void FillRect(const ZRect& rect) { FillRect(rect.left, rect.top, rect.right, rect.bottom); }
    /// Inverts the colours of the pixels. Transparent pixels count as black and become opaque.
    virtual void InvertRect(std::int32_t left, std::int32_t top, std::int32_t right,
                            std::int32_t bottom);
    /// Draws the two diagonals of the rectangle with the pen.
    virtual void DrawCross(std::int32_t left, std::int32_t top, std::int32_t right,
                           std::int32_t bottom);

    /// Draws text in the pen's colour, starting at the top of the rectangle. align: 0 centre,
    /// 1 left, 2 right, any other value left. The text wraps at words; after SetTruncate(true) it
    /// stays on one line that ends in an ellipsis. Text that is taller than the rectangle is cut.
    /// The two unnamed parameters have no effect.
    virtual void DrawString(const ZString& text, std::int32_t left, std::int32_t top,
                            std::int32_t right, std::int32_t bottom, std::int32_t,
                            std::int32_t align, std::int32_t);
    void DrawString(const ZString& text, const ZRect& rect, std::int32_t align);

    /// Draws the source rectangle of the bitmap, scaled to the destination rectangle; alpha in
    /// [0, 1] multiplies the alpha of its pixels. Loads a bitmap that is empty; draws nothing if it
    /// stays empty.
    virtual void DrawBitmap(ZBitmap& bitmap, std::int32_t sourceLeft, std::int32_t sourceTop,
                            std::int32_t sourceRight, std::int32_t sourceBottom, std::int32_t left,
                            std::int32_t top, std::int32_t right, std::int32_t bottom, float alpha);
    /// Draws the whole bitmap at its own size, with its top left corner at x, y.
    virtual void DrawBitmap(ZBitmap& bitmap, std::int32_t x, std::int32_t y, float alpha);
    virtual void DrawBitmap(ZBitmap& bitmap, const ZPoint& point, float alpha);

    /// Translate, Rotate and Scale prepend to the transform: new coordinates pass the new one
    /// first.
    virtual void Translate(std::int32_t x, std::int32_t y);
    /// Rotates clockwise about a point.
    virtual void Rotate(std::int32_t x, std::int32_t y, float degrees);
    /// Ignores a scale of 0.
    virtual void Scale(float horizontal, float vertical);
    virtual void ResetTransform();

    /// True: new pixels blend with the old ones by alpha. False: they replace them, alpha included.
    virtual void SetAlphaBlend(bool on);
    virtual void SetAntiAlias(bool on);
    /// Sets the width in device pixels: the larger of the two scales in force is divided out.
    virtual void SetPenWidth(float width);
    virtual void SetPenCaps(bool roundStart, bool roundEnd);
    [[nodiscard]] virtual ZColor GetPenColor() const { return mPenColor; }
    virtual void SetPenColor(const ZColor& color);
    [[nodiscard]] virtual ZColor GetBrushColor() const { return mBrushColor; }
    virtual void SetBrushColor(const ZColor& color);
    /// Null until SetFont; texts then use ZFont::MakeDefault().
    [[nodiscard]] virtual boost::shared_ptr<ZFont> GetFont() const { return mFont; }
    virtual void SetFont(const boost::shared_ptr<ZFont>& font);

    /// Size of the text on one unbounded line, in whole pixels, rounded down.
    [[nodiscard]] virtual std::int32_t StringWidth(const ZString& text) const;
    [[nodiscard]] virtual std::int32_t StringHeight(const ZString& text) const;
    /// The rectangle that DrawString covers when it aligns left, each edge rounded towards 0.
    [[nodiscard]] virtual ZRect StringBounds(const ZString& text, const ZRect& rect) const;
    virtual void SetTruncate(bool on);

    /// Each SetClip replaces the clip that was set before.
    virtual void SetClip(const ZRect& rect);
    virtual void SetClipPath(const ZPath& path);
    /// Clips to the bounding rectangle of the region.
    virtual void SetClip(const ZRegion& region);

    /// The image of a bitmap; null for any other context.
    [[nodiscard]] virtual const ZImage* GetNative() const { return nullptr; }
    /// {0, 0, width, height} of a bitmap; all zero for any other context.
    [[nodiscard]] virtual ZRect GetFrame() const { return {}; }

    /// Saves the target's transform, clip, blend mode and anti-aliasing.
    [[nodiscard]] virtual std::unique_ptr<ZSavedGraphicsState> SaveState();
    /// Restores a saved state, frees it and clears the pointer; null does nothing.
    virtual void RestoreState(std::unique_ptr<ZSavedGraphicsState>& saved);

    /// Sets the target, or none, and its anti-aliasing. The context does not own the target.
    virtual void SetGraphics(ZGraphics* graphics);
    [[nodiscard]] virtual ZGraphics* GetGraphics() const { return mGraphics; }
    /// Returns the pixels on the side of a unit of the target; 1 without a target.
    [[nodiscard]] virtual double GetDeviceScale() const;

    [[nodiscard]] float GetPenWidth() const { return mPen.width; }
    [[nodiscard]] bool IsAntiAlias() const { return mAntiAlias; }

private:
    [[nodiscard]] boost::shared_ptr<ZFont> FontOrDefault() const;

    ZGraphics* mGraphics = nullptr;
    ZColor mPenColor{0, 0, 0, 255};
    // Differs from mBrush until the first SetBrushColor; every view sets it before it fills.
    ZColor mBrushColor{100, 100, 100, 255};
    boost::shared_ptr<ZFont> mFont;
    bool mTruncate = false;
    float mHorizontalScale = 1.0f;
    float mVerticalScale = 1.0f;
    ZPen mPen;
    ZColor mBrush{0, 0, 0, 255};
    bool mAntiAlias = false;
    ZPathOutline mPath;
};

/// Saves the state of a context when it is made and restores it when it is destroyed.
/// [interface thread]
class ZSavedStateScope
{
public:
    explicit ZSavedStateScope(ZDrawingContext& context)
        : mContext(context)
        , mSaved(context.SaveState())
    {
    }
    ZSavedStateScope(const ZSavedStateScope&) = delete;
    ZSavedStateScope& operator=(const ZSavedStateScope&) = delete;
    ~ZSavedStateScope() { mContext.RestoreState(mSaved); }

private:
    ZDrawingContext& mContext;
    std::unique_ptr<ZSavedGraphicsState> mSaved;
};

}  // namespace orvane
