// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstddef>
#include <span>

namespace orvane
{

/// Writes text as a terminated string, cut at a whole character to the room the host hands over.
void writeHostText(const ZString& text, std::span<char> room);

/// Takes a host's text; no byte from maxBytes on is read, whether a terminator came or not.
[[nodiscard]] ZString readHostText(const char* text, std::size_t maxBytes);

}  // namespace orvane
