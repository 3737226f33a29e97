// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"

namespace orvane
{

class ZElement;

// How the host sees an element: a value from 0 to 1 and a text. A discrete element spreads its list
// over that range, a float one its bounds.

/// Always from 0 to 1, whatever the element holds. 0 for an element that has neither kind of value,
/// or a single one. [any thread, audio thread included]
[[nodiscard]] float hostValueOf(const ZElement& element) noexcept;
/// Stores a host's value and marks the element as changed by the host. A value outside 0 to 1
/// counts as the nearer end; what is not a number changes nothing, nor does what the element holds:
/// hosts set every parameter once more behind a chunk, and a choice that is no news must not act on
/// what the chunk has restored. [any thread, audio thread included]
void setFromHost(ZElement& element, float value) noexcept;
/// The value as a person reads it: the text of a choice, or a number with its unit ("50 ms").
/// [any but audio thread]
[[nodiscard]] ZString displayOf(const ZElement& element);

}  // namespace orvane
