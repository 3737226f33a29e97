// SPDX-License-Identifier: GPL-3.0-or-later
// Values of elements as texts.
#pragma once

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZString.h"

namespace orvane
{

/// Returns the text that stands behind a number, with a space in front: " ms"; empty for units
/// without one. [any thread]
[[nodiscard]] const char* unitOf(ZElement::Units units);
/// Returns a number with at most two decimals and no trailing zeros, and its unit where it has one:
/// "50 ms", "-12.5 cents". [any thread]
[[nodiscard]] ZString valueText(float value, ZElement::Units units);
/// The same with a sign in front of all numbers but 0: "+12.5 cents". [any thread]
[[nodiscard]] ZString signedValueText(float value, ZElement::Units units);

}  // namespace orvane
