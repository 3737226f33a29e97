// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/drawing/ZTextLayout.h"

#include "zlib/common/drawing/ZFont.h"
#include "zlib/common/objects/ZString.h"
#include "zlib/linux/drawing/ZCairo.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <memory>
#include <string>

namespace orvane
{

namespace
{

// In pixels; a single glyph of this height is larger than any window.
constexpr std::int32_t kMaxFontHeight = 2048;

struct PangoFreer
{
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
    void operator()(PangoAttrList* list) const { pango_attr_list_unref(list); }
};

/// Makes a context with grey anti-aliasing and full hinting, whatever the desktop's settings, so
/// that text looks and measures the same on every system.
GObjectPointer<PangoContext> makeContext(PangoFontMap* fontMap, cairo_t* target)
{
    GObjectPointer<PangoContext> context(pango_font_map_create_context(fontMap));
    const CairoPointer<cairo_font_options_t> options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_FULL);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_ON);
    pango_cairo_context_set_font_options(context.get(), options.get());
    pango_cairo_update_context(target, context.get());
    return context;
}

void setFont(PangoLayout* layout, const ZFont& font)
{
    const std::unique_ptr<PangoFontDescription, PangoFreer> description(
        pango_font_description_new());
    const std::string typeface = font.GetTypeface().ToNarrow();
    pango_font_description_set_family(description.get(), typeface.c_str());
    pango_font_description_set_absolute_size(
        description.get(), std::min(font.GetHeight(), kMaxFontHeight) * double{PANGO_SCALE});
    if (font.IsBold())
        pango_font_description_set_weight(description.get(), PANGO_WEIGHT_BOLD);
    if (font.IsItalic())
        pango_font_description_set_style(description.get(), PANGO_STYLE_ITALIC);
    pango_layout_set_font_description(layout, description.get());
}

void underline(PangoLayout* layout)
{
    const std::unique_ptr<PangoAttrList, PangoFreer> attributes(pango_attr_list_new());
    pango_attr_list_insert(attributes.get(), pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
    pango_layout_set_attributes(layout, attributes.get());
}

PangoAlignment toPango(ZGraphics::Align align)
{
    switch (align) {
    case ZGraphics::Align::kCentre:
        return PANGO_ALIGN_CENTER;
    case ZGraphics::Align::kRight:
        return PANGO_ALIGN_RIGHT;
    default:
        return PANGO_ALIGN_LEFT;
    }
}

}  // namespace

ZTextLayout::ZTextLayout(cairo_t* target, const ZString& text, const ZFont& font)
    : mTarget(target)
    , mLock(ZFontCollection::Get().Lock())
{
    if (font.GetHeight() > 0 && !text.IsEmpty())
        MakeLayout(text, font);
}

void ZTextLayout::MakeLayout(const ZString& text, const ZFont& font)
{
    PangoFontMap* const fontMap = ZFontCollection::Get().GetFontMap();
    if (!fontMap)
        return;
    const auto context = makeContext(fontMap, mTarget);
    mLayout.reset(pango_layout_new(context.get()));
    // Otherwise Pango would swap left and right for text that is read from the right.
    pango_layout_set_auto_dir(mLayout.get(), FALSE);
    setFont(mLayout.get(), font);
    if (font.IsUnderline())
        underline(mLayout.get());
    const std::string narrow = text.ToNarrow();
    pango_layout_set_text(mLayout.get(), narrow.data(), static_cast<int>(narrow.size()));
}

void ZTextLayout::Fit(std::int32_t width, const ZGraphics::TextFormat& format)
{
    if (!mLayout)
        return;
    assert(width > 0);
    constexpr std::int32_t kWidest = std::numeric_limits<int>::max() / PANGO_SCALE;
    pango_layout_set_width(mLayout.get(), std::clamp(width, 0, kWidest) * PANGO_SCALE);
    pango_layout_set_alignment(mLayout.get(), toPango(format.align));
    // A word that is wider than the line is broken rather than cut.
    pango_layout_set_wrap(mLayout.get(), PANGO_WRAP_WORD_CHAR);
    if (format.truncate)
        pango_layout_set_ellipsize(mLayout.get(), PANGO_ELLIPSIZE_END);
}

PangoRectangle ZTextLayout::GetExtents() const
{
    PangoRectangle extents{0, 0, 0, 0};
    if (mLayout)
        pango_layout_get_extents(mLayout.get(), nullptr, &extents);
    return extents;
}

void ZTextLayout::Show(double x, double y) const
{
    if (!mLayout)
        return;
    cairo_move_to(mTarget, x, y);
    pango_cairo_show_layout(mTarget, mLayout.get());
    cairo_new_path(mTarget);
}

}  // namespace orvane
