// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZGraphics.h"

#include "zlib/common/drawing/ZPathOutline.h"
#include "zlib/common/drawing/ZRegion.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/linux/drawing/ZGradientBrushNative.h"
#include "zlib/linux/drawing/ZImageNative.h"
#include "zlib/linux/drawing/ZPixelGrid.h"
#include "zlib/linux/drawing/ZScaledPicture.h"
#include "zlib/linux/drawing/ZTextLayout.h"

#include <cassert>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace orvane
{

struct ZGraphics::Native
{
    CairoPointer<cairo_t> context;
    double scale = 1.0;  // the image's device scale, which is not part of the transform
    std::int32_t level = 0;
};

namespace
{

using Segment = ZPathOutline::Segment;

struct Point
{
    double x;
    double y;
};

bool applyTransform(cairo_t* context, const cairo_matrix_t& change)
{
    cairo_matrix_t matrix;
    cairo_get_matrix(context, &matrix);
    cairo_matrix_multiply(&matrix, &change, &matrix);
    matrix.x0 = within(matrix.x0);
    matrix.y0 = within(matrix.y0);
    // A matrix without an inverse would put the Cairo context into an error state for good.
    cairo_matrix_t inverse = matrix;
    if (cairo_matrix_invert(&inverse) != CAIRO_STATUS_SUCCESS)
        return false;
    cairo_set_matrix(context, &matrix);
    return true;
}

/// While it lives, coordinates name the centre of a pixel instead of its corner.
class PixelCentres
{
public:
    explicit PixelCentres(cairo_t* context)
        : mContext(context)
    {
        cairo_get_matrix(context, &mBefore);
        cairo_matrix_t shifted = mBefore;
        shifted.x0 += 0.5;
        shifted.y0 += 0.5;
        cairo_set_matrix(context, &shifted);
    }
    PixelCentres(const PixelCentres&) = delete;
    PixelCentres& operator=(const PixelCentres&) = delete;
    ~PixelCentres() { cairo_set_matrix(mContext, &mBefore); }

private:
    cairo_t* mContext;
    cairo_matrix_t mBefore;
};

void addArc(cairo_t* context, const Segment& segment)
{
    constexpr double kRadian = std::numbers::pi / 180.0;
    const double start = segment.startDegrees * kRadian;
    const double end = start + segment.sweepDegrees * kRadian;
    const auto arc = segment.sweepDegrees > 0.0f ? cairo_arc : cairo_arc_negative;
    arc(context, within(segment.centre.x), within(segment.centre.y), within(segment.radius), start,
        end);
}

void addSegment(cairo_t* context, const Segment& segment)
{
    switch (segment.kind) {
    case Segment::Kind::kMove:
        cairo_move_to(context, within(segment.point.x), within(segment.point.y));
        break;
    case Segment::Kind::kLine:
        cairo_line_to(context, within(segment.point.x), within(segment.point.y));
        break;
    case Segment::Kind::kArc:
        addArc(context, segment);
        break;
    case Segment::Kind::kClose:
        cairo_close_path(context);
        break;
    }
}

void setPath(cairo_t* context, const ZPathOutline& path)
{
    cairo_new_path(context);
    for (const Segment& segment : path.GetSegments())
        addSegment(context, segment);
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
}

/// Returns false, and sets no path, if the rectangle is empty.
bool setPath(cairo_t* context, const ZRect& rect, double scale)
{
    cairo_new_path(context);
    if (rect.IsEmpty())
        return false;
    const ZEdges edges = edgesOnPixels(context, rect, scale);
    cairo_rectangle(context, edges.left, edges.top, edges.right - edges.left,
                    edges.bottom - edges.top);
    return true;
}

/// Units of the surface, of which its device scale makes pixels.
Point toDevice(cairo_t* context, double x, double y)
{
    Point point{within(x), within(y)};
    cairo_user_to_device(context, &point.x, &point.y);
    return point;
}

/// Units of the surface per unit of the transform: the geometric mean of both directions.
double transformScale(cairo_t* context)
{
    cairo_matrix_t matrix;
    cairo_get_matrix(context, &matrix);
    return std::sqrt(std::abs(matrix.xx * matrix.yy - matrix.xy * matrix.yx));
}

/// The width to stroke with, in units of the transform; never thinner than a unit
/// of the surface.
double strokeWidth(cairo_t* context, const ZPen& pen)
{
    assert(transformScale(context) > 0.0);  // no transform without an inverse is ever in force
    const double pixel = 1.0 / transformScale(context);
    return pen.width > pixel ? within(pen.width) : pixel;
}

/// The ends of open figures, where caps belong, in device pixels.
struct OpenEnds
{
    std::vector<Point> starts;
    std::vector<Point> ends;
};

OpenEnds openEnds(cairo_t* context, std::span<const Segment> segments)
{
    OpenEnds result;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const Point point = toDevice(context, segments[i].point.x, segments[i].point.y);
        const bool last = i + 1 == segments.size() || segments[i + 1].kind == Segment::Kind::kMove;
        if (segments[i].kind == Segment::Kind::kMove)
            result.starts.push_back(point);
        assert(!result.starts.empty());  // the first segment of a figure is a kMove
        if (last && segments[i].kind == Segment::Kind::kClose)
            result.starts.pop_back();
        else if (last)
            result.ends.push_back(point);
    }
    return result;
}

void addDisc(cairo_t* context, const Point& middle, double radius)
{
    cairo_matrix_t before;
    cairo_get_matrix(context, &before);
    cairo_matrix_t moved = before;
    moved.x0 = middle.x;
    moved.y0 = middle.y;
    cairo_set_matrix(context, &moved);
    cairo_new_sub_path(context);
    cairo_arc(context, 0.0, 0.0, radius, 0.0, 2.0 * std::numbers::pi);
    cairo_set_matrix(context, &before);
}

/// Strokes the current path with round caps only at the start or only at the end, which Cairo does
/// not offer. Stroke and discs make up a mask first, so that a transparent pen covers no pixel
/// twice.
void strokeWithDiscs(cairo_t* context, const ZPen& pen, std::span<const Point> discs)
{
    cairo_push_group_with_content(context, CAIRO_CONTENT_ALPHA);
    cairo_set_source_rgb(context, 0.0, 0.0, 0.0);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    cairo_stroke(context);
    for (const Point& disc : discs) {
        addDisc(context, disc, cairo_get_line_width(context) / 2.0);
        cairo_fill(context);
    }
    const CairoPointer<cairo_pattern_t> mask(cairo_pop_group(context));
    setColor(context, pen.color);
    cairo_mask(context, mask.get());
}

/// Strokes the current path with the pen's colour and caps.
void strokePath(cairo_t* context, const ZPen& pen, const OpenEnds& ends)
{
    if (pen.roundStart != pen.roundEnd) {
        strokeWithDiscs(context, pen, pen.roundStart ? ends.starts : ends.ends);
        return;
    }
    cairo_set_line_cap(context, pen.roundStart ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
    setColor(context, pen.color);
    cairo_stroke(context);
}

/// The unit vector from one point to another; it points right when they are the same.
Point direction(const Point& from, const Point& to)
{
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    return length > 0.0 ? Point{(to.x - from.x) / length, (to.y - from.y) / length}
                        : Point{1.0, 0.0};
}

/// Strokes from edge to edge of the two end pixels; a round cap covers its pixel without the extra
/// half pixel. The points are in device pixels, the line width in units of the transform.
void strokeLine(cairo_t* context, const ZPen& pen, const Point& from, const Point& to)
{
    const Point along = direction(from, to);
    const double before = pen.roundStart ? 0.0 : 0.5;
    const double behind = pen.roundEnd ? 0.0 : 0.5;
    cairo_new_path(context);
    cairo_save(context);
    cairo_identity_matrix(context);
    cairo_move_to(context, from.x - before * along.x, from.y - before * along.y);
    cairo_line_to(context, to.x + behind * along.x, to.y + behind * along.y);
    cairo_restore(context);
    strokePath(context, pen, {{from}, {to}});
}

/// The units that a horizontal or vertical line one unit wide covers.
ZRect unitsOfLine(const ZPoint& from, const ZPoint& to)
{
    const auto unitAt = [](const ZPoint& at) { return ZRect{0, 0, 1, 1}.Offset(at.x, at.y); };
    return unitAt(from).Union(unitAt(to));
}

/// Draws a line one pixel wide without anti-aliasing: one pixel in each column, or in each row of a
/// steep line. Cairo's stroke leaves gaps where a line runs exactly between two pixels. The points
/// are in device pixels.
void fillThinLine(cairo_t* context, const ZColor& color, const Point& from, const Point& to)
{
    const bool steep = std::abs(to.y - from.y) > std::abs(to.x - from.x);
    const auto turned = [steep](double x, double y) { return steep ? Point{y, x} : Point{x, y}; };
    const Point start = turned(std::floor(from.x + 0.5), std::floor(from.y + 0.5));
    const Point end = turned(std::floor(to.x + 0.5), std::floor(to.y + 0.5));
    const double slope = start.x == end.x ? 0.0 : (end.y - start.y) / (end.x - start.x);
    const auto across = [&](double step) {
        return std::floor(start.y + slope * (step - start.x) + 0.5);
    };

    cairo_save(context);
    cairo_identity_matrix(context);
    cairo_new_path(context);
    double left, top, right, bottom;
    cairo_clip_extents(context, &left, &top, &right, &bottom);
    const double last = std::min(std::max(start.x, end.x), turned(right, bottom).x);
    double next = 0.0;
    for (double step = std::max(std::min(start.x, end.x), turned(left, top).x); step <= last;
         step = next)
    {
        next = step + 1.0;
        while (next <= last && across(next) == across(step))
            next += 1.0;
        const Point corner = turned(step, across(step));
        const Point size = turned(next - step, 1.0);
        cairo_rectangle(context, corner.x, corner.y, size.x, size.y);
    }
    setColor(context, color);
    cairo_fill(context);
    cairo_restore(context);
}

/// A surface of a part of an image, so that scaling does not mix in pixels beside the part.
CairoPointer<cairo_surface_t> partOf(cairo_surface_t* surface, const ZRect& part)
{
    return CairoPointer<cairo_surface_t>(cairo_surface_create_for_rectangle(
        surface, part.left, part.top, part.GetWidth(), part.GetHeight()));
}

/// Paints the current source. When new pixels replace the old ones, alpha is multiplied into the
/// source first: cairo_paint_with_alpha would mix the old pixels in.
void paintSource(cairo_t* context, double alpha)
{
    if (alpha < 1.0 && cairo_get_operator(context) == CAIRO_OPERATOR_SOURCE) {
        cairo_push_group(context);
        cairo_set_operator(context, CAIRO_OPERATOR_OVER);
        cairo_paint_with_alpha(context, alpha);
        cairo_pop_group_to_source(context);
        cairo_paint(context);
        return;
    }
    cairo_paint_with_alpha(context, alpha);
}

void drawScaled(cairo_t* context, const ZImage& image, const ZScaledPicture& picture, float alpha)
{
    cairo_save(context);
    if (picture.SetSource(context, image))
        paintSource(context, alpha > 0.0f ? std::min(alpha, 1.0f) : 0.0f);
    cairo_restore(context);
}

/// Text is laid out one pixel wider and taller than its rectangle, so that a measured text fits
/// although its measure was rounded down.
std::int32_t layoutLength(std::int32_t length)
{
    return length < std::numeric_limits<std::int32_t>::max() ? length + 1 : length;
}

/// Clips to the columns of a layout, for a letter or an ellipsis that is wider than all of it.
void clipColumns(cairo_t* context, const ZRect& rect)
{
    cairo_new_path(context);
    cairo_rectangle(context, within(rect.left), -kFarthest, within(layoutLength(rect.GetWidth())),
                    2.0 * kFarthest);
    cairo_clip(context);
}

/// Clips to the rows of a layout, for text that is taller than all of it.
void clipRows(cairo_t* context, const ZRect& rect)
{
    cairo_new_path(context);
    cairo_rectangle(context, -kFarthest, within(rect.top), 2.0 * kFarthest,
                    within(std::max(layoutLength(rect.GetHeight()), 0)));
    cairo_clip(context);
}

ZRect toPixels(const PangoRectangle& extents, std::int32_t left, std::int32_t top)
{
    const auto pixels = [](std::int32_t origin, int units) {
        return static_cast<std::int32_t>(origin + static_cast<double>(units) / PANGO_SCALE);
    };
    return {pixels(left, extents.x), pixels(top, extents.y),
            pixels(left, extents.x + extents.width), pixels(top, extents.y + extents.height)};
}

}  // namespace

ZGraphics::ZGraphics(ZImage& image)
    : mNative(std::make_unique<Native>())
{
    assert(image.GetNative().surface);
    mNative->context.reset(cairo_create(image.GetNative().surface.get()));
    mNative->scale = image.GetScale();
    SetAntiAlias(false);
}

ZGraphics::~ZGraphics() = default;

double ZGraphics::GetDeviceScale() const
{
    return mNative->scale;
}

void ZGraphics::StrokeLine(const ZPen& pen, const ZPoint& from, const ZPoint& to)
{
    cairo_t* const context = mNative->context.get();
    const bool isSimple = from.x == to.x || from.y == to.y;
    if (mNative->scale != 1.0 && isSimple && pen.width <= 1.0f && onlyTranslates(context))
        return FillRect(pen.color, unitsOfLine(from, to));
    const Point start = toDevice(context, from.x, from.y);
    const Point end = toDevice(context, to.x, to.y);
    const double width = strokeWidth(context, pen);
    cairo_set_line_width(context, width);
    const bool hard = cairo_get_antialias(context) == CAIRO_ANTIALIAS_NONE;
    if (hard && mNative->scale == 1.0 && width * transformScale(context) <= 1.0)
        fillThinLine(context, pen.color, start, end);
    else
        strokeLine(context, pen, {start.x + 0.5, start.y + 0.5}, {end.x + 0.5, end.y + 0.5});
}

void ZGraphics::StrokeRect(const ZPen& pen, const ZRect& rect)
{
    cairo_t* const context = mNative->context.get();
    cairo_new_path(context);
    {
        const PixelCentres centres(context);
        const double left = within(rect.left);
        const double top = within(rect.top);
        cairo_rectangle(context, left, top, within(rect.right) - left, within(rect.bottom) - top);
    }
    cairo_set_line_width(context, strokeWidth(context, pen));
    setColor(context, pen.color);
    cairo_stroke(context);
}

void ZGraphics::Stroke(const ZPen& pen, const ZPathOutline& path)
{
    cairo_t* const context = mNative->context.get();
    OpenEnds ends;
    {
        const PixelCentres centres(context);
        setPath(context, path);
        if (pen.roundStart != pen.roundEnd)
            ends = openEnds(context, path.GetSegments());
    }
    cairo_set_line_width(context, strokeWidth(context, pen));
    strokePath(context, pen, ends);
}

void ZGraphics::Fill(const ZColor& color, const ZPathOutline& path)
{
    cairo_t* const context = mNative->context.get();
    setPath(context, path);
    setColor(context, color);
    cairo_fill(context);
}

void ZGraphics::FillRect(const ZColor& color, const ZRect& rect)
{
    cairo_t* const context = mNative->context.get();
    if (!setPath(context, rect, mNative->scale))
        return;
    setColor(context, color);
    cairo_fill(context);
}

void ZGraphics::FillRect(const ZGradientBrush& brush, const ZRect& rect)
{
    cairo_t* const context = mNative->context.get();
    if (!setPath(context, rect, mNative->scale))
        return;
    cairo_set_source(context, brush.GetNative().pattern.get());
    cairo_fill(context);
}

void ZGraphics::FillRegion(const ZGradientBrush& brush, const ZRegion& region)
{
    for (const ZRect& rect : region.GetRects())
        FillRect(brush, rect);
}

void ZGraphics::InvertRect(const ZRect& rect)
{
    cairo_t* const context = mNative->context.get();
    if (!setPath(context, rect, mNative->scale))
        return;
    cairo_save(context);
    cairo_set_operator(context, CAIRO_OPERATOR_DIFFERENCE);
    cairo_set_source_rgb(context, 1.0, 1.0, 1.0);
    cairo_fill(context);
    cairo_restore(context);
}

void ZGraphics::DrawImage(const ZImage& image, const ZRect& source, const ZRect& target,
                          float alpha)
{
    if (image.GetScale() != 1.0 || mNative->scale != 1.0)
        return drawScaled(mNative->context.get(), image, {source, target, mNative->scale}, alpha);
    const ZRect part = source.Intersection({0, 0, image.GetWidth(), image.GetHeight()});
    if (part.IsEmpty() || target.IsEmpty())
        return;
    assert(source.GetWidth() > 0 && source.GetHeight() > 0);
    cairo_t* const context = mNative->context.get();
    const double scaleX = static_cast<double>(target.GetWidth()) / source.GetWidth();
    const double scaleY = static_cast<double>(target.GetHeight()) / source.GetHeight();
    const auto surface = partOf(image.GetNative().surface.get(), part);
    cairo_save(context);
    cairo_translate(context,
                    within(target.left + scaleX * (part.left - static_cast<double>(source.left))),
                    within(target.top + scaleY * (part.top - static_cast<double>(source.top))));
    cairo_scale(context, scaleX, scaleY);
    cairo_new_path(context);
    cairo_rectangle(context, 0.0, 0.0, part.GetWidth(), part.GetHeight());
    cairo_clip(context);
    cairo_set_source_surface(context, surface.get(), 0.0, 0.0);
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
    paintSource(context, alpha > 0.0f ? std::min(alpha, 1.0f) : 0.0f);
    cairo_restore(context);
}

void ZGraphics::DrawText(const ZString& text, const ZFont& font, const ZColor& color,
                         const ZRect& rect, const TextFormat& format)
{
    const std::int32_t width = layoutLength(rect.GetWidth());
    if (width <= 0)
        return;
    cairo_t* const context = mNative->context.get();
    ZTextLayout layout(context, text, font);
    layout.Fit(width, format);
    cairo_save(context);
    if (format.truncate)
        clipColumns(context, rect);
    if (layout.GetExtents().height / double{PANGO_SCALE} > layoutLength(rect.GetHeight()))
        clipRows(context, rect);
    setColor(context, color);
    layout.Show(within(rect.left), within(rect.top));
    cairo_restore(context);
    // Pango and fontconfig have registered their clean-up at exit by now. This later registration
    // runs before theirs and stops the interface thread, which might be drawing then.
    static const ZInterfaceThread::AtExit stopThreadBeforePangoCleansUp;
}

ZRect ZGraphics::MeasureText(const ZString& text, const ZFont& font) const
{
    return toPixels(ZTextLayout(mNative->context.get(), text, font).GetExtents(), 0, 0);
}

ZRect ZGraphics::MeasureText(const ZString& text, const ZFont& font, const ZRect& rect,
                             bool truncate) const
{
    ZTextLayout layout(mNative->context.get(), text, font);
    layout.Fit(layoutLength(rect.GetWidth()), {Align::kLeft, truncate});
    return toPixels(layout.GetExtents(), rect.left, rect.top);
}

bool ZGraphics::Translate(double x, double y)
{
    cairo_matrix_t change;
    cairo_matrix_init_translate(&change, x, y);
    return applyTransform(mNative->context.get(), change);
}

bool ZGraphics::Rotate(double degrees)
{
    cairo_matrix_t change;
    cairo_matrix_init_rotate(&change, degrees * std::numbers::pi / 180.0);
    return applyTransform(mNative->context.get(), change);
}

bool ZGraphics::Scale(double x, double y)
{
    cairo_matrix_t change;
    cairo_matrix_init_scale(&change, x, y);
    return applyTransform(mNative->context.get(), change);
}

void ZGraphics::ResetTransform()
{
    cairo_identity_matrix(mNative->context.get());
}

void ZGraphics::SetAlphaBlend(bool on)
{
    cairo_set_operator(mNative->context.get(), on ? CAIRO_OPERATOR_OVER : CAIRO_OPERATOR_SOURCE);
}

void ZGraphics::SetAntiAlias(bool on)
{
    cairo_set_antialias(mNative->context.get(), on ? CAIRO_ANTIALIAS_GOOD : CAIRO_ANTIALIAS_NONE);
}

void ZGraphics::SetClip(const ZRect& rect)
{
    cairo_t* const context = mNative->context.get();
    cairo_reset_clip(context);
    setPath(context, rect, mNative->scale);
    cairo_clip(context);
}

void ZGraphics::SetClip(const ZPathOutline& path)
{
    cairo_t* const context = mNative->context.get();
    cairo_reset_clip(context);
    setPath(context, path);
    cairo_clip(context);
}

std::int32_t ZGraphics::Save()
{
    cairo_save(mNative->context.get());
    return ++mNative->level;
}

void ZGraphics::Restore(std::int32_t level)
{
    assert(level >= 0 && mNative->level >= 0);
    for (; level > 0 && mNative->level >= level; --mNative->level)
        cairo_restore(mNative->context.get());
}

}  // namespace orvane
