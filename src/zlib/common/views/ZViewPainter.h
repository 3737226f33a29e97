// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>

namespace orvane
{

class ZBitmap;
class ZDrawingContext;
class ZFont;
class ZXMLElement;

/// The drawing half of a view: its pen, brush and font, and the operations that draw with them into
/// the context that all views of a window share. Without a context nothing is drawn.
/// [interface thread]
class ZViewPainter
{
public:
    /// Returns the width, or the height, of a text in the painter's font, in pixels; 0 without a
    /// context.
    [[nodiscard]] virtual std::int32_t StringWidth(const ZString& text) const;
    [[nodiscard]] virtual std::int32_t StringHeight(const ZString& text) const;

    // The setters affect the drawing operations that follow; they do not repaint.
    virtual void SetPenColor(const ZColor& color) { mPenColor = color; }
    [[nodiscard]] const ZColor& GetPenColor() const { return mPenColor; }
    void SetBrushColor(const ZColor& color) { mBrushColor = color; }
    [[nodiscard]] const ZColor& GetBrushColor() const { return mBrushColor; }
    /// width >= 0, in pixels.
    void SetPenWidth(std::int32_t width);
    [[nodiscard]] std::int32_t GetPenWidth() const { return mPenWidth; }
    /// The font must not be null.
    virtual void SetFont(const boost::shared_ptr<ZFont>& font);
    [[nodiscard]] const boost::shared_ptr<ZFont>& GetFont() const { return mFont; }

protected:
    ZViewPainter();
    ZViewPainter(const ZViewPainter&) = delete;
    ZViewPainter& operator=(const ZViewPainter&) = delete;
    virtual ~ZViewPainter();

    /// Reads the tags `font`, `pencolor` and `brushcolor`. [setup]
    void ReadPen(const ZXMLElement& xml);
    /// Adds the tags that ReadPen reads.
    void WritePen(ZXMLElement& xml) const;

    void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    void DrawLine(const ZPoint& from, const ZPoint& to);
    void DrawRect(const ZRect& rect);
    void FillRect(const ZRect& rect);
    /// Draws the outline of the ellipse that fits into the rectangle.
    void DrawEllipse(const ZRect& rect);
    /// Draws an arc, with angles as ZDrawingContext::AddPathArc takes them.
    void DrawArc(const ZPoint& centre, std::int32_t radius, std::int32_t startDegrees,
                 std::int32_t sweepDegrees);
    /// Draws a text with the pen's colour. The context looks at horizontalAlign alone of the last
    /// three.
    void DrawString(const ZString& text, const ZRect& rect, std::int32_t verticalAlign,
                    std::int32_t horizontalAlign, std::int32_t flags);
    void DrawBitmap(ZBitmap& bitmap, std::int32_t x, std::int32_t y);
    /// Draws the part source of the bitmap, scaled to target.
    void DrawBitmapPart(ZBitmap& bitmap, const ZRect& source, const ZRect& target);

    boost::shared_ptr<ZDrawingContext> mContext;
    ZColor mPenColor{0, 0, 0, 255};
    ZColor mBrushColor{0, 0, 0, 255};
    boost::shared_ptr<ZFont> mFont;
    std::int32_t mPenWidth = 1;

private:
    void UsePen();
};

}  // namespace orvane
