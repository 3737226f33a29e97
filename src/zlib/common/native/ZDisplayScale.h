// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace orvane
{

/// Returns how much larger than on a plain screen the desktop wants its windows to be; nothing if
/// the desktop does not say or there is no display. Implemented per platform. Takes the time of a
/// new connection to the display. [any thread but the audio thread]
[[nodiscard]] std::optional<double> readDisplayScale();

}  // namespace orvane
