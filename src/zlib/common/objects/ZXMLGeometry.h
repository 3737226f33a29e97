// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

namespace orvane
{

class ZXMLElement;

/// A point from the attributes x and y. [any thread]
[[nodiscard]] ZPoint readPoint(const ZXMLElement& xml);

/// A rectangle from the attributes left, top, width and height. An edge beyond 32 bits is clamped.
/// [any thread]
[[nodiscard]] ZRect readRect(const ZXMLElement& xml);

/// A colour from the low bytes of the attributes red, green, blue and alpha; an absent one is 255.
/// [any thread]
[[nodiscard]] ZColor readColor(const ZXMLElement& xml);

}  // namespace orvane
