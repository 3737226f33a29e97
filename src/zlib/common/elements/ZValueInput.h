// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZString.h"

#include <optional>

namespace orvane
{

/// Reads a number that the user has typed in the window or in the host, with or without a unit: for
/// cents also semitones and octaves, for milliseconds also seconds and the other way round, for Hz
/// also kHz. A comma can stand for the decimal point, a minus sign for the hyphen; an exponent is
/// taken ("1e2"); letters count in either case. Returns the number in the units; nothing for any
/// other text. [any thread]
[[nodiscard]] std::optional<float> readValue(const ZString& text, ZElement::Units units);

}  // namespace orvane
