// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZViewLayout.h"

#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/views/ZViewTags.h"

#include <cassert>

namespace orvane
{

namespace
{

// The first word for a value is the one that is written.
constexpr ZViewWord kAlignWords[] = {
    {"center", ZViewLayout::kAlignCentre},   {"middle", ZViewLayout::kAlignCentre},
    {"begin", ZViewLayout::kAlignBegin},     {"top", ZViewLayout::kAlignBegin},
    {"left", ZViewLayout::kAlignBegin},      {"end", ZViewLayout::kAlignEnd},
    {"bottom", ZViewLayout::kAlignEnd},      {"right", ZViewLayout::kAlignEnd},
    {"stretch", ZViewLayout::kAlignStretch}, {"fill", ZViewLayout::kAlignStretch},
};

}  // namespace

void ZViewLayout::Read(const ZXMLElement& view)
{
    if (const auto constraint = view.GetChild("constraint")) {
        minSize = {numberOr(*constraint, "minwidth", 1), numberOr(*constraint, "minheight", 1)};
        maxSize = {numberOr(*constraint, "maxwidth", 10000),
                   numberOr(*constraint, "maxheight", 10000)};
    }
    flex = numberOr(view, "flex", flex);
    align = readWord(view, "align", kAlignWords).value_or(align);
    fill = view.GetAttributeBool("fill");
    if (fill)
        stretchMask = kStretchAll;
}

void ZViewLayout::WriteAttributes(ZXMLElement& view) const
{
    view.AddAttribute("flex", flex);
    view.AddAttribute("align", wordOf(align, kAlignWords));
    view.AddAttribute("fill", fill ? "true" : "false");
}

void ZViewLayout::WriteConstraint(ZXMLElement& view) const
{
    ZXMLElement constraint("constraint");
    constraint.AddAttribute("minwidth", minSize.x);
    constraint.AddAttribute("minheight", minSize.y);
    constraint.AddAttribute("maxwidth", maxSize.x);
    constraint.AddAttribute("maxheight", maxSize.y);
    view.AddChild(constraint);
}

void ZViewLayout::SetStretchMask(std::int32_t mask)
{
    assert((mask & ~kStretchAll) == 0);
    stretchMask = mask;
}

void ZViewLayout::RecordMargins(const ZRect& bounds, const ZRect& parent)
{
    assert((stretchMask & ~kStretchAll) == 0);
    if (stretchMask == 0)
        return;
    mMargins = {bounds.left, bounds.top, parent.GetWidth() - bounds.right,
                parent.GetHeight() - bounds.bottom};
}

ZRect ZViewLayout::Follow(const ZRect& bounds, const ZRect& parent) const
{
    ZRect moved = bounds;
    if (stretchMask & kFollowRight) {
        moved.right = parent.GetWidth() - mMargins.right;
        if (!(stretchMask & kKeepLeft))
            moved.left = moved.right - bounds.GetWidth();
    }
    if (stretchMask & kFollowBottom) {
        moved.bottom = parent.GetHeight() - mMargins.bottom;
        if (!(stretchMask & kKeepTop))
            moved.top = moved.bottom - bounds.GetHeight();
    }
    return moved;
}

ZPoint ZViewLayout::SizeWithin(const ZRect& parent) const
{
    return {parent.GetWidth() - mMargins.left - mMargins.right,
            parent.GetHeight() - mMargins.top - mMargins.bottom};
}

}  // namespace orvane
