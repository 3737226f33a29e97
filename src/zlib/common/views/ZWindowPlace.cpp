// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowPlace.h"

#include "zlib/common/drawing/ZImage.h"
#include "zlib/common/objects/ZException.h"
#include "zlib/common/objects/ZXMLElement.h"
#include "zlib/common/objects/ZXMLGeometry.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>

namespace orvane
{

ZWindowPlace::ZWindowPlace(const ZXMLElement& xml)
{
    const auto bounds = xml.GetChild("rect");
    if (!bounds)
        throw ZException("XML Parser error: No bounds information found in Window!\n");
    const ZRect rect = readRect(*bounds);
    mFirstPosition = mPosition = {rect.left, rect.top};
    SetOwnSize({rect.GetWidth(), rect.GetHeight()});
    mFirstSize = mOwnSize;
}

void ZWindowPlace::SetSize(double width, double height)
{
    const auto side = [](double length) {
        return static_cast<std::int32_t>(std::clamp(length, 0.0, double{ZImage::kMaxSide}));
    };
    mSize = {side(width), side(height)};
}

void ZWindowPlace::SetOwnSize(const ZPoint& size)
{
    SetSize(size.x, size.y);
    mOwnSize = mSize;
}

void ZWindowPlace::Scale(double scale)
{
    assert(scale > 0.0);
    SetSize(std::round(mFirstSize.x * scale), std::round(mFirstSize.y * scale));
    mOwnSize = mSize;
}

}  // namespace orvane
