// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZColor.h"
#include "zlib/common/objects/ZPoint.h"
#include "zlib/common/objects/ZRect.h"

namespace orvane
{

class ZXMLElement;

/// From the attributes x and y.
[[nodiscard]] ZPoint readPoint(const ZXMLElement& xml);

/// From the attributes left, top, width and height. An edge beyond 32 bits stays at their end.
[[nodiscard]] ZRect readRect(const ZXMLElement& xml);

/// From the attributes red, green, blue and alpha, each cut to a byte: an absent one is 255.
[[nodiscard]] ZColor readColor(const ZXMLElement& xml);

}  // namespace orvane
