// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

#include <cstddef>
#include <span>

namespace orvane
{

/// Writes text into a buffer of the host, terminated and cut at a whole character. [any thread]
void writeHostText(const ZString& text, std::span<char> buffer);

/// Returns a text of the host, which ends at its terminator or after maxBytes bytes. text is not
/// null. [any thread]
[[nodiscard]] ZString readHostText(const char* text, std::size_t maxBytes);

}  // namespace orvane
