// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZString.h"

#include <optional>

namespace orvane
{

/// Reads a number that the user has typed, with or without a unit: for cents also semitones and
/// octaves, for milliseconds also seconds and the other way round. A comma can stand for the
/// decimal point, a minus sign for the hyphen; letters count in either case. Returns the number in
/// the units; nothing for any other text. [any thread]
[[nodiscard]] std::optional<float> readValue(const ZString& text, ZElement::Units units);

}  // namespace orvane
