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

/// The surface that everything is painted through. One exists per window, shared by its views; each
/// bitmap is one of its own. Without a target nothing is drawn and all texts measure 0.
///
/// Coordinates are in the current transform. Colours, pen, font, truncation and smoothing are the
/// context's; transform, clip, blend mode and the smoothing in force are the target's, and those
/// are what SaveState keeps: RestoreState brings no colour back. A failed operation has no effect
/// and raises nothing. [interface thread]
class ZDrawingContext
{
public:
    ZDrawingContext() = default;
    ZDrawingContext(const ZDrawingContext&) = delete;
    ZDrawingContext& operator=(const ZDrawingContext&) = delete;
    virtual ~ZDrawingContext() = default;

    /// A line with the pen, both end points included.
    virtual void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    virtual void DrawLine(const ZPoint& from, const ZPoint& to);
    /// The current path with the pen; the path stays.
    virtual void StrokePath();
    /// The current path with the brush, by the even-odd rule; the path stays.
    virtual void FillPath();
    virtual void FillRegion(const ZShader& shader, const ZRegion& region);
    virtual void FillRect(const ZShader& shader, const ZRect& rect);

    /// The current path: each part is joined to the figure that is open.
    virtual void AddPathLine(const ZPoint& from, const ZPoint& to);
    /// As ZPath::AddArc.
    virtual void AddPathArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
                            std::int32_t sweepDegrees);
    /// Null adds nothing.
    virtual void AddPath(const boost::shared_ptr<ZPath>& path);
    virtual void AddPath(const ZPath& path);
    virtual void ClosePath();
    virtual void ResetPath();

    /// The outline with the pen, through the pixels of right and bottom too.
    virtual void DrawRect(std::int32_t left, std::int32_t top, std::int32_t right,
                          std::int32_t bottom);
    virtual void FillRect(std::int32_t left, std::int32_t top, std::int32_t right,
                          std::int32_t bottom);
    void FillRect(const ZRect& rect) { FillRect(rect.left, rect.top, rect.right, rect.bottom); }
    /// As on a device without alpha: what was transparent counts as black.
    virtual void InvertRect(std::int32_t left, std::int32_t top, std::int32_t right,
                            std::int32_t bottom);
    /// The two diagonals.
    virtual void DrawCross(std::int32_t left, std::int32_t top, std::int32_t right,
                           std::int32_t bottom);

    /// Text in the pen's colour from the top of the rectangle. align: 0 centre, 1 left, 2 right,
    /// any other left. It wraps at words, or with SetTruncate stays on one line that ends in an
    /// ellipsis. The two unnamed numbers have no effect.
    virtual void DrawString(const ZString& text, std::int32_t left, std::int32_t top,
                            std::int32_t right, std::int32_t bottom, std::int32_t,
                            std::int32_t align, std::int32_t);
    void DrawString(const ZString& text, const ZRect& rect, std::int32_t align);

    /// The source rectangle of the bitmap scaled to the destination; alpha in [0, 1] multiplies its
    /// own. A bitmap without an image is asked to load it, and draws nothing if it cannot.
    virtual void DrawBitmap(ZBitmap& bitmap, std::int32_t sourceLeft, std::int32_t sourceTop,
                            std::int32_t sourceRight, std::int32_t sourceBottom, std::int32_t left,
                            std::int32_t top, std::int32_t right, std::int32_t bottom, float alpha);
    /// All of it at its own size, its corner at x, y.
    virtual void DrawBitmap(ZBitmap& bitmap, std::int32_t x, std::int32_t y, float alpha);
    virtual void DrawBitmap(ZBitmap& bitmap, const ZPoint& point, float alpha);

    /// Each comes before the transform that was there.
    virtual void Translate(std::int32_t x, std::int32_t y);
    /// About a point, clockwise.
    virtual void Rotate(std::int32_t x, std::int32_t y, float degrees);
    /// A scale of 0 is ignored.
    virtual void Scale(float horizontal, float vertical);
    virtual void ResetTransform();

    /// False: new pixels replace the old ones, alpha included.
    virtual void SetAlphaBlend(bool on);
    virtual void SetAntiAlias(bool on);
    /// In pixels of the device: the larger scale in force is taken out.
    virtual void SetPenWidth(float width);
    virtual void SetPenCaps(bool roundStart, bool roundEnd);
    [[nodiscard]] virtual ZColor GetPenColor() const { return mPenColor; }
    virtual void SetPenColor(const ZColor& color);
    [[nodiscard]] virtual ZColor GetBrushColor() const { return mBrushColor; }
    virtual void SetBrushColor(const ZColor& color);
    /// Null until set; then the framework's default font serves.
    [[nodiscard]] virtual boost::shared_ptr<ZFont> GetFont() const { return mFont; }
    virtual void SetFont(const boost::shared_ptr<ZFont>& font);

    /// Of the text unbounded, in whole pixels rounded down.
    [[nodiscard]] virtual std::int32_t StringWidth(const ZString& text) const;
    [[nodiscard]] virtual std::int32_t StringHeight(const ZString& text) const;
    /// What DrawString takes in the rectangle when it aligns left, each edge rounded towards 0.
    [[nodiscard]] virtual ZRect StringBounds(const ZString& text, const ZRect& rect) const;
    virtual void SetTruncate(bool on);

    /// In place of the clip that was there.
    virtual void SetClip(const ZRect& rect);
    virtual void SetClipPath(const ZPath& path);
    /// To the rectangle around the region.
    virtual void SetClip(const ZRegion& region);

    /// The image of a bitmap; null for a context that is none.
    [[nodiscard]] virtual const ZImage* GetNative() const { return nullptr; }
    /// 0, 0, width and height of a bitmap, else all zero.
    [[nodiscard]] virtual ZRect GetFrame() const { return {}; }

    [[nodiscard]] virtual std::unique_ptr<ZSavedGraphicsState> SaveState();
    /// Frees the state and clears the pointer; null does nothing.
    virtual void RestoreState(std::unique_ptr<ZSavedGraphicsState>& saved);

    /// Takes a target, or none, and gives it the context's smoothing. The target is not owned.
    virtual void SetGraphics(ZGraphics* graphics);
    [[nodiscard]] virtual ZGraphics* GetGraphics() const { return mGraphics; }

    [[nodiscard]] float GetPenWidth() const { return mPen.width; }
    [[nodiscard]] bool IsAntiAlias() const { return mAntiAlias; }

private:
    [[nodiscard]] boost::shared_ptr<ZFont> FontInForce() const;

    ZGraphics* mGraphics = nullptr;
    ZColor mPenColor{0, 0, 0, 255};
    // Differs from the brush until the first SetBrushColor: views set one before they fill.
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

/// Keeps the state of a context for the life of the object.
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
