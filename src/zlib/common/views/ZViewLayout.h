// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

#include <cstdint>

namespace orvane
{

class ZXMLElement;

/// How a view is placed within its parent: which edges it keeps when the parent changes its size,
/// and what a box that lays out its views asks of them. [interface thread]
class ZViewLayout
{
public:
    enum Align : std::int32_t
    {
        kAlignCentre = 0,
        kAlignBegin = 1,
        kAlignEnd = 2,
        kAlignStretch = 3,
    };

    /// Bits of the stretch mask: edges that keep their distance to the same edge of the parent.
    enum Stretch : std::int32_t
    {
        kKeepLeft = 1,
        kFollowRight = 2,
        kKeepTop = 4,
        kFollowBottom = 8,
        kStretchAll = 15,
    };

    /// Reads the attributes flex, align and fill and the tag `constraint`. [setup]
    void Read(const ZXMLElement& view);
    void WriteAttributes(ZXMLElement& view) const;
    void WriteConstraint(ZXMLElement& view) const;

    /// Sets the bits of Stretch.
    void SetStretchMask(std::int32_t mask);
    /// Remembers the distances to the parent's edges where the mask is set. Both rectangles are
    /// bounds: the view's in the parent's coordinates, the parent's in those of its own parent.
    void RecordMargins(const ZRect& bounds, const ZRect& parent);
    /// Returns the bounds after the parent has got another size.
    [[nodiscard]] ZRect Follow(const ZRect& bounds, const ZRect& parent) const;
    /// Returns width and height that fill the parent less the margins.
    [[nodiscard]] ZPoint SizeWithin(const ZRect& parent) const;

    std::int32_t flex = 0;
    ZPoint minSize{1, 1};  // width and height, in pixels
    ZPoint maxSize{10000, 10000};
    std::int32_t align = kAlignCentre;
    bool fill = false;  // takes the parent's size when it is attached
    std::int32_t stretchMask = 0;

private:
    ZRect mMargins;  // distances of the four edges to the parent's
};

}  // namespace orvane
